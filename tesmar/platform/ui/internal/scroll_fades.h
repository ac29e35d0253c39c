// Soft edges that tell where a scroll view hides content.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

namespace tesmar {

class UIColor;

// How far from an edge of `bounds`, in points, content fades.
inline constexpr CGFloat kEdgeFade = 16;

// Draws `paper` over the edges of `bounds` into the current context: opaque at the edge, and
// transparent at kEdgeFade points from it. `hidden` is how far content reaches beyond each edge, in
// points; an edge that hides less than kEdgeFade fades less, and one that hides none not at all.
void drawEdgeFades(const CGRect& bounds, const UIEdgeInsets& hidden, const UIColor& paper);

} // namespace tesmar
