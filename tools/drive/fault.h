// A command of the script that cannot be run.
#pragma once

#include <stdexcept>

namespace tesmar::drive {

// drive prints its text as {"error": …} and continues with the next line.
class Fault : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace tesmar::drive
