// Chooses the scroll view that a wheel event moves.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

namespace tesmar {

class UIView;
class UIWindow;

// Moves the content of the nearest scroll view at or above `hit` that can scroll in a direction of
// `delta` (points; positive scrolls towards the content's start), or sideways where nothing there
// scrolls up and down. When `hit` is in no scroll view, moves the first one of the same card. `hit`
// may be null.
void routeWheel(UIWindow& window, UIView* hit, CGPoint delta);

} // namespace tesmar
