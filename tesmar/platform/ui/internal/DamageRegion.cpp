#include "tesmar/platform/ui/internal/DamageRegion.h"

#include <algorithm>

namespace tesmar {
namespace {

// Beyond any surface, and exact in an int.
constexpr double kFarPixel = 1 << 24;

int floorPixel(double value) {
    return floorToInt(finite(value, -kFarPixel, kFarPixel, 0));
}

int ceilPixel(double value) {
    return -floorPixel(-value);
}

long long area(const PixelRect& r) {
    return static_cast<long long>(r.width) * r.height;
}

PixelRect boundingBox(const PixelRect& a, const PixelRect& b) {
    const int x = std::min(a.x, b.x);
    const int y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

// How many pixels a joined rectangle would have in excess.
long long waste(const PixelRect& a, const PixelRect& b) {
    return area(boundingBox(a, b)) - area(a) - area(b) + area(intersection(a, b));
}

} // namespace

PixelRect pixelsTouchedBy(const CGRect& rect, CGFloat scale) {
    // Computed frames may lie beyond a pixel's edge by a rounding error.
    constexpr double kRoundingError = 1e-6;
    const int left = floorPixel(rect.minX() * scale + kRoundingError);
    const int top = floorPixel(rect.minY() * scale + kRoundingError);
    return {left, top, ceilPixel(rect.maxX() * scale - kRoundingError) - left,
            ceilPixel(rect.maxY() * scale - kRoundingError) - top};
}

CGPoint snappedPoint(CGPoint point, CGFloat scale) {
    // The same rounding as in drawing; another one would sometimes damage the neighbouring pixel.
    const PixelRect pixel = snappedToPixels({point, {}}, scale);
    return {pixel.x / scale, pixel.y / scale};
}

void DamageRegion::add(PixelRect rect) noexcept {
    if (rect.isEmpty())
        return;
    // Start over after each join: the larger rectangle may absorb others.
    for (std::size_t i = 0; i < count_;) {
        if (waste(rects_[i], rect) > 0) {
            ++i;
            continue;
        }
        rect = boundingBox(rects_[i], rect);
        remove(i);
        i = 0;
    }
    rects_[count_++] = rect;
    if (count_ > kMostRects)
        joinClosest();
}

void DamageRegion::remove(std::size_t index) noexcept {
    std::move(rects_.begin() + index + 1, rects_.begin() + count_, rects_.begin() + index);
    --count_;
}

void DamageRegion::joinClosest() noexcept {
    std::size_t first = 0, second = 1;
    for (std::size_t a = 0; a < count_; ++a)
        for (std::size_t b = a + 1; b < count_; ++b)
            if (waste(rects_[a], rects_[b]) < waste(rects_[first], rects_[second]))
                first = a, second = b;
    const PixelRect joined = boundingBox(rects_[first], rects_[second]);
    remove(second);
    remove(first);
    add(joined);
}

} // namespace tesmar
