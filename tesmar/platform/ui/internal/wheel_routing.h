// Chooses the scroll view that a wheel event moves.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

namespace tesmar {

class UIView;

// Moves the content of the nearest scroll view at or above `hit` that can scroll in a direction of
// `delta` (points; positive scrolls towards the content's start). `hit` may be null.
void routeWheel(UIView* hit, CGPoint delta);

} // namespace tesmar
