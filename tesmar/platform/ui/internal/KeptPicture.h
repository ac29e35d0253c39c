// The picture of a view and all in it, kept while only its place and opacity change.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tesmar {

class KeptPicture {
  public:
    // Paints what `context` clips to, with the view's origin at `origin`, in points.
    using Paint = std::function<void(CGContext& context, CGPoint origin)>;

    // `rect`, in points from the view's origin, is out of date.
    void damage(const CGRect& rect) noexcept;
    // Everything is out of date.
    void clear() { isValid_ = false; }
    // Paints what is out of date of a view at `origin`, in points, that covers `extent` of the
    // surface; everything if one of the numbers has changed. Returns false when the allocation of
    // the pixels fails, and within `paint`. When `paint` throws, everything is out of date.
    bool update(CGPoint origin, const PixelRect& extent, CGFloat scale, const Paint& paint);
    // Moved by `translation`, in points, rounded to device pixels.
    void draw(CGContext& context, CGPoint translation) const;

  private:
    bool allocate();
    int stride() const { return extent_.width * 4; }

    CGPoint origin_;
    PixelRect extent_;
    CGFloat scale_ = 1;
    std::vector<std::uint32_t> pixels_;
    bool isValid_ = false;
    bool isPainting_ = false;
    DamageRegion damage_; // in pixels of the picture
};

} // namespace tesmar
