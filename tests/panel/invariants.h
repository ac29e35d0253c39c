// Invariants that no host can break. Each function throws InvariantViolated if one does not hold.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <functional>
#include <stdexcept>

namespace tesmar {

struct InvariantViolated : std::logic_error {
    using std::logic_error::logic_error;
};

// At any time: frames, offsets and values are finite and in range; views know their superviews.
void requireValidState(const UIView& view);
// With no finger down and every motion finished, no control is pressed and no scroll view moves.
void requireAtRest(const UIView& view);
// At rest, and nothing is scheduled on the main run loop.
void requireIdle(const UIWindow& window);
// `pixels`, kept up to date by render(), equal those of a full repaint, byte for byte.
void requireFullyPainted(UIWindow& window, std::span<const std::uint32_t> pixels);

// Cancels all touches and dismisses all controllers. `advance` lets seconds pass.
void dismissAll(UIWindow& window, const std::function<void(double)>& advance);

} // namespace tesmar
