// How a screen is watched, which decides how large a point is and what is safely seen.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/export.h"
#include "tesmar/platform/geometry/geometry.h"

#include <optional>

namespace tesmar {

enum class UIViewing {
    desk,       // at arm's length: the display's own scale
    hand,       // close: 160 points an inch
    television, // from the sofa: a screen is 540 points high, and its edges may be cut off
};

// What a host knows of the screen that its window is on.
struct UIScreen {
    CGSize pixels;                       // of the window
    CGFloat scale = 1;                   // the display's pixels per point
    std::optional<double> dotsPerInch{}; // unset where the display does not tell
};

// Pixels per point, clamped to 0.1 to 16.
TESMAR_API CGFloat pixelsPerPoint(UIViewing viewing, const UIScreen& screen);
// For UIWindow::setSafeAreaInsets: on a television 48 points at the sides and 27 above and below,
// else zero.
TESMAR_API UIEdgeInsets safeAreaInsets(UIViewing viewing);

} // namespace tesmar
