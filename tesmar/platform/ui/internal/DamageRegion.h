// The device pixels that are out of date.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"

#include <array>
#include <span>

namespace tesmar {

// The device pixels that a rectangle in points covers, even partly.
PixelRect pixelsTouchedBy(const CGRect& rect, CGFloat scale);
// The nearest point on the pixel grid.
CGPoint snappedPoint(CGPoint point, CGFloat scale);

class DamageRegion {
  public:
    // Beyond this many rectangles the closest two are joined: repainting a few pixels more costs
    // less.
    static constexpr std::size_t kMostRects = 16;

    // Joins rectangles where that adds no pixels. Never allocates, so damage is recorded even when
    // allocation fails.
    void add(PixelRect rect) noexcept;
    void clear() { count_ = 0; }
    bool isEmpty() const { return count_ == 0; }
    std::span<const PixelRect> rects() const { return {rects_.data(), count_}; }

  private:
    void remove(std::size_t index) noexcept;
    void joinClosest() noexcept;

    std::array<PixelRect, kMostRects + 1> rects_{}; // one more until two are joined
    std::size_t count_ = 0;
};

} // namespace tesmar
