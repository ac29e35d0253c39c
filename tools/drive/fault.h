// Why a command can't be carried out.
#pragma once

#include <stdexcept>

namespace tesmar::drive {

// Its text becomes the answer {"error": …}; the script goes on.
class Fault : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

} // namespace tesmar::drive
