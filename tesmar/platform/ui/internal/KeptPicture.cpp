#include "tesmar/platform/ui/internal/KeptPicture.h"

#include "tesmar/platform/ui/internal/CurrentContext.h"

#include <cmath>
#include <new>
#include <utility>

namespace tesmar {
namespace {

constexpr long long kMostPixels = 1LL << 26; // of one picture: 256 MiB

// Starts at a multiple of four points where the scale has no finer part than a quarter: then the
// views' origins, seen from there, are exact and round to the same pixels as on the surface.
PixelRect aligned(const PixelRect& rect, CGFloat scale) {
    const int grid = static_cast<int>(std::lround(4 * scale));
    if (grid < 1)
        return rect;
    const auto before = [grid](int v) { return ((v % grid) + grid) % grid; };
    const int x = before(rect.x), y = before(rect.y);
    return {rect.x - x, rect.y - y, rect.width + x, rect.height + y};
}

} // namespace

void KeptPicture::damage(const CGRect& rect) noexcept {
    const PixelRect pixels = pixelsTouchedBy(rect.offsetBy(origin_), scale_);
    // One pixel more on each side: a translation may have rounded the rectangle otherwise.
    damage_.add(intersection(
        {pixels.x - extent_.x - 1, pixels.y - extent_.y - 1, pixels.width + 2, pixels.height + 2},
        {0, 0, extent_.width, extent_.height}));
}

bool KeptPicture::allocate() {
    if (extent_.isEmpty() || 1LL * extent_.width * extent_.height > kMostPixels)
        return false;
    try {
        pixels_.resize(static_cast<std::size_t>(extent_.width) *
                       static_cast<std::size_t>(extent_.height));
    } catch (const std::bad_alloc&) {
        return false;
    }
    damage_.clear();
    damage_.add({0, 0, extent_.width, extent_.height});
    return true;
}

bool KeptPicture::update(CGPoint origin, const PixelRect& extent, CGFloat scale,
                         const Paint& paint) {
    if (isPainting_)
        return false;
    const PixelRect covered = aligned(extent, scale);
    if (!isValid_ || origin != origin_ || covered != extent_ || scale != scale_) {
        origin_ = origin, extent_ = covered, scale_ = scale;
        isValid_ = allocate();
        if (!isValid_)
            return false;
    }
    if (damage_.isEmpty())
        return true;
    CGContext context(pixels_.data(), extent_.width, extent_.height, stride(), scale);
    const CurrentContext current(context);
    // Damage that is reported during painting belongs to the next frame.
    const DamageRegion painted = std::exchange(damage_, {});
    isPainting_ = true;
    try {
        for (const PixelRect& rect : painted.rects()) {
            context.saveGState();
            context.clipToPixels(rect);
            context.clearPixels(rect);
            paint(context, origin - CGPoint{extent_.x / scale, extent_.y / scale});
            context.restoreGState();
        }
    } catch (...) {
        isPainting_ = isValid_ = false;
        throw;
    }
    isPainting_ = false;
    return true;
}

void KeptPicture::draw(CGContext& context, CGPoint translation) const {
    PixelRect place = extent_;
    place.x += static_cast<int>(std::lround(translation.x * scale_));
    place.y += static_cast<int>(std::lround(translation.y * scale_));
    context.drawPixels(pixels_.data(), place, stride());
}

} // namespace tesmar
