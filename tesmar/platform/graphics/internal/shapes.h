// Antialiased shapes, painted through cached coverage masks.
//
// Positions and sizes are rounded to sixteenths of a device pixel: too fine for the eye, but coarse
// enough for masks to be found in the cache. Rectangles must be finite, and are in points of the
// context's current coordinates; other lengths are in points too.
#pragma once

#include "tesmar/platform/graphics/internal/CGContextImpl.h"

namespace tesmar {

void drawEllipse(CGContext::Impl& painter, const CGRect& r, const Paint& paint);
void drawRing(CGContext::Impl& painter, const CGRect& r, double lineWidth, const Paint& paint);
// With a `frameWidth` above 0 only the part within that distance of the edge.
void drawRoundedRect(CGContext::Impl& painter, const CGRect& r, double radius, const Paint& paint,
                     double frameWidth = 0);
void drawShadow(CGContext::Impl& painter, const CGRect& r, double radius, double blur,
                CGPoint offset, const Paint& paint);

} // namespace tesmar
