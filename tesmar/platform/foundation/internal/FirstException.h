// Makes a series of calls of which each must run even if an earlier one throws.
#pragma once

#include <exception>

namespace tesmar {

class FirstException {
  public:
    // Returns whether the call returned without an exception.
    template <class Call>
    bool run(Call&& call) {
        try {
            call();
            return true;
        } catch (...) {
            if (!first_)
                first_ = std::current_exception();
            return false;
        }
    }
    // Throws the first exception that a call threw, if any.
    void rethrow() const {
        if (first_)
            std::rethrow_exception(first_);
    }

  private:
    std::exception_ptr first_;
};

} // namespace tesmar
