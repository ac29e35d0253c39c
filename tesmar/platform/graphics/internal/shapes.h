// Antialiased shapes, painted through coverage masks that are rendered once. Private to the floor.
//
// Places and sizes count in sixteenths of a device pixel: fine enough not to be seen, coarse enough
// that a mask is found again. Rectangles are finite and in points of the painter's coordinates.
#pragma once

#include "tesmar/platform/graphics/internal/CGContextImpl.h"

namespace tesmar {

void drawEllipse(CGContext::Impl& painter, const CGRect& r, const Paint& paint);
void drawRing(CGContext::Impl& painter, const CGRect& r, double lineWidth, const Paint& paint);
void drawRoundedRect(CGContext::Impl& painter, const CGRect& r, double radius, const Paint& paint);
void drawPolyline(CGContext::Impl& painter, std::span<const CGPoint> points, double width,
                  LineCap cap, const Paint& paint);
void drawShadow(CGContext::Impl& painter, const CGRect& r, double radius, double blur,
                CGPoint offset, const Paint& paint);

} // namespace tesmar
