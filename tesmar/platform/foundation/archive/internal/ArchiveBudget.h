// How much an archive may hold, and the account that both its writer and its reader keep of it.
//
// Each thing is charged at the bytes that it takes at most in an archive of our own writing. In the
// same account, whatever was read is never worth more when it is written, and then read once more.
#pragma once

#include <algorithm>
#include <cstddef>

namespace tesmar {

class ArchiveBudget {
  public:
    // Each of these answers whether the budget is kept. Once it is not, it stays so.

    // An object with its values; more than a few count each.
    bool spendRecord(std::size_t values = 0) {
        return spend(16 * std::max<std::size_t>(values, 8));
    }
    // The elements of a list, besides the objects that they are.
    bool spendElements(std::size_t count) { return spend(16 * count); }
    // A number, text or bytes: each byte may become two.
    bool spendScalar(std::size_t bytes = 0) { return spend(24 + 2 * bytes); }

    bool isOverdrawn() const { return isOverdrawn_; }

  private:
    // Half of what archives may be long: even with all its classes, one is never too long.
    static constexpr std::size_t kMost = 48 << 10;

    bool spend(std::size_t amount) {
        isOverdrawn_ = isOverdrawn_ || amount > kMost - spent_;
        if (!isOverdrawn_)
            spent_ += amount;
        return !isOverdrawn_;
    }

    std::size_t spent_ = 0;
    bool isOverdrawn_ = false;
};

} // namespace tesmar
