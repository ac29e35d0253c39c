// For calls out that must all be made, whichever of them throws.
#pragma once

#include <exception>

namespace tesmar {

class FirstException {
  public:
    template <class Call>
    void run(Call&& call) {
        try {
            call();
        } catch (...) {
            if (!first_)
                first_ = std::current_exception();
        }
    }
    // Throws what the first call that threw has thrown.
    void rethrow() const {
        if (first_)
            std::rethrow_exception(first_);
    }

  private:
    std::exception_ptr first_;
};

} // namespace tesmar
