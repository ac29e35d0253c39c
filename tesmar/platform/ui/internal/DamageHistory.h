// What the last frames repainted, for hosts whose buffers take turns.
#pragma once

#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <algorithm>
#include <array>
#include <optional>

namespace tesmar {

class DamageHistory {
  public:
    // The oldest content, in frames, that can be brought up to date without painting everything.
    static constexpr std::size_t kOldestAge = 4;

    // What content that is `age` frames old lacks, if `current` has changed since the last frame.
    // Nothing when that is unknown.
    std::optional<DamageRegion> lackedBy(int age, const DamageRegion& current) const {
        if (age < 1 || static_cast<std::size_t>(age) > count_ + 1)
            return std::nullopt;
        DamageRegion lacked = current;
        for (int frame = 0; frame < age - 1; ++frame)
            for (const PixelRect& rect : frames_[static_cast<std::size_t>(frame)].rects())
                lacked.add(rect);
        return lacked;
    }
    // A frame with these changes has been painted. One without changes doesn't count: hosts that
    // don't show it may leave it out of their buffers' ages, and for the others more is repainted.
    void add(const DamageRegion& frame) {
        if (frame.isEmpty())
            return;
        std::move_backward(frames_.begin(), frames_.end() - 1, frames_.end());
        frames_.front() = frame;
        count_ = std::min(count_ + 1, frames_.size());
    }
    void clear() { count_ = 0; }

  private:
    std::array<DamageRegion, kOldestAge - 1> frames_; // the last one first
    std::size_t count_ = 0;
};

} // namespace tesmar
