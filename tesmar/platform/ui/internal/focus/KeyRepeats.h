// Limits how often a held key acts, by the times of its events.
#pragma once

#include "tesmar/platform/ui/UIKey.h"

#include <algorithm>
#include <optional>

namespace tesmar {

class KeyRepeats {
  public:
    // Seconds from the press to the first repetition, and from one repetition to the next.
    static constexpr double kFirst = 0.4;
    static constexpr double kNext = 0.1;

    // Whether an event of `key` at `time` (seconds) acts. Repetitions act only for arrows, Tab,
    // plus and minus, and only of the key that was pressed last.
    bool acts(UIKey key, UIKeyRepeat repeat, double time) {
        constexpr double kRounding = 1e-6; // of sums of frame times
        if (repeat == UIKeyRepeat::pressed) {
            held_ = repeats(key) ? std::optional(key) : std::nullopt;
            due_ = time + kFirst;
            return true;
        }
        if (held_ != key || time < due_ - kRounding)
            return false;
        // From the time when it was due, so that a host's own rhythm does not add up.
        due_ = std::max(due_, time - kNext / 2) + kNext;
        return true;
    }
    // Ignores the held key until it is pressed again.
    void forget() { held_.reset(); }

  private:
    static bool repeats(UIKey key) {
        return key <= UIKey::previous || key == UIKey::increment || key == UIKey::decrement;
    }

    std::optional<UIKey> held_;
    double due_ = 0;
};

} // namespace tesmar
