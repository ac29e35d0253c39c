// The device pixels that no longer show what they should.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"

#include <span>
#include <vector>

namespace tesmar {

// The device pixels that a rectangle touches, however little.
PixelRect pixelsTouchedBy(const CGRect& rect, CGFloat scale);
// The nearest point on the pixel grid.
CGPoint snappedPoint(CGPoint point, CGFloat scale);

class TESMAR_API DamageRegion {
  public:
    // More rectangles than this are not worth the bookkeeping: the closest ones are joined.
    static constexpr std::size_t kMostRects = 16;

    // Rectangles are joined only where that adds no pixel.
    void add(PixelRect rect);
    void clear() { rects_.clear(); }
    bool isEmpty() const { return rects_.empty(); }
    std::span<const PixelRect> rects() const { return rects_; }

  private:
    void joinClosest();

    std::vector<PixelRect> rects_;
};

} // namespace tesmar
