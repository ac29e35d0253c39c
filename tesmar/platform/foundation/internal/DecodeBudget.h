// Limits what decoding foreign bytes may cost. An input has one budget, which its readers (property
// list, keyed archive, interface file) spend while they decode.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tesmar {

struct DecodeLimits {
    std::size_t bytes;
    std::size_t values; // a shared value counts each time that it is reached
    int depth;          // values inside one another
};

// Preferences are shared with other programs, which may store far more than we do.
inline constexpr DecodeLimits kPreferencesLimits{16 << 20, 1 << 20, 512};
// An archive is a small value, and the user interface waits while it is read. Each level takes some
// 650 bytes of stack, of which decoding promises to need at most 64 KiB.
inline constexpr DecodeLimits kArchiveLimits{96 << 10, 6144, 80};
// Values are objects and constraints: solving 1,024 constraints takes at most 0.1 s.
inline constexpr DecodeLimits kInterfaceLimits{1 << 20, 1024, 64};

// Each function that spends or checks returns false when the budget does not suffice. A budget that
// was overspent once stays exhausted: every later spending fails. Not thread-safe.
class DecodeBudget {
  public:
    // What one decoded value costs wherever it is reached, besides its bytes.
    struct Cost {
        std::size_t values = 1; // itself and everything inside it
        int depth = 0;          // the levels inside it
    };

    explicit DecodeBudget(const DecodeLimits& limits) : limits_(limits), bytes_(limits.bytes) {}

    // Starts a pass over the whole input, such as from a property list to objects. It may spend
    // `bytes`, which must be within the limit, and all values again.
    bool startPass(std::size_t bytes) {
        bytes_ = bytes;
        values_ = 0;
        return require(bytes <= limits_.bytes);
    }

    bool spendBytes(std::size_t count) {
        if (!require(count <= bytes_))
            return false;
        bytes_ -= count;
        return true;
    }

    // Charges a value at the current level.
    bool spend(const Cost& cost) {
        if (!require(hasValues(cost.values) && hasLevels(cost.depth)))
            return false;
        values_ += cost.values;
        deepest_ = std::max(deepest_, level_ + cost.depth);
        return true;
    }

    // Calls `decode` one level deeper and returns the cost of the value that it decodes. Only its
    // bytes are spent: the caller spends the cost wherever the value is used. Exhausts the budget,
    // without a call, when it has no more levels.
    template <class Decode>
    Cost measure(Decode&& decode) {
        if (!require(hasLevels(1)))
            return {};
        const std::size_t values = values_;
        const int deepest = std::exchange(deepest_, ++level_);
        decode();
        const Cost cost{values_ - values + 1, deepest_ - --level_};
        values_ = values;
        deepest_ = deepest;
        return cost;
    }

    bool hasValues(std::size_t count) const { return count <= limits_.values - values_; }
    bool hasLevels(int count) const { return count <= limits_.depth - level_; }
    bool isExhausted() const { return isExhausted_; }

  private:
    bool require(bool suffices) {
        isExhausted_ = isExhausted_ || !suffices;
        return !isExhausted_;
    }

    DecodeLimits limits_;
    std::size_t bytes_;      // not yet spent
    std::size_t values_ = 0; // spent
    int level_ = 0;
    int deepest_ = 0; // level reached by the value that is being measured
    bool isExhausted_ = false;
};

} // namespace tesmar
