// The device pixels that no longer show what they should.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"

#include <array>
#include <span>

namespace tesmar {

// The device pixels that a rectangle touches, however little.
PixelRect pixelsTouchedBy(const CGRect& rect, CGFloat scale);
// The nearest point on the pixel grid.
CGPoint snappedPoint(CGPoint point, CGFloat scale);

class DamageRegion {
  public:
    // More rectangles than this are not worth the bookkeeping: the closest ones are joined.
    static constexpr std::size_t kMostRects = 16;

    // Rectangles are joined only where that adds no pixel. Allocates nothing: what was damaged is
    // known even when memory is short.
    void add(PixelRect rect) noexcept;
    void clear() { count_ = 0; }
    bool isEmpty() const { return count_ == 0; }
    std::span<const PixelRect> rects() const { return {rects_.data(), count_}; }

  private:
    void remove(std::size_t index) noexcept;
    void joinClosest() noexcept;

    std::array<PixelRect, kMostRects + 1> rects_{}; // one more while two are being joined
    std::size_t count_ = 0;
};

} // namespace tesmar
