#include "tesmar/platform/graphics/CGContext.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/graphics/internal/CGContextImpl.h"
#include "tesmar/platform/graphics/internal/UIImageImpl.h"
#include "tesmar/platform/graphics/internal/shapes.h"

#include <array>

namespace tesmar {
namespace {

// Halves round upwards. Rounds to 1/256 pixel first, because sums of fractions often come out just
// below a half.
int nearestPixel(double v) {
    const double clamped = std::clamp(v, -kLargestPixel, kLargestPixel);
    return floorToInt(floorToInt(clamped * 256 + 0.5) / 256.0 + 0.5);
}

PixelRect snappedEdges(double left, double top, double right, double bottom, bool empty) {
    const int x = nearestPixel(left), y = nearestPixel(top);
    if (empty)
        return {x, y, 0, 0};
    return {x, y, std::max(1, nearestPixel(right) - x), std::max(1, nearestPixel(bottom) - y)};
}

} // namespace

PixelRect snappedToPixels(const CGRect& rect, CGFloat scale) {
    const CGRect r = finiteRect(rect);
    const double s = finite(scale, 0.1, 16, 1);
    return snappedEdges(r.minX() * s, r.minY() * s, r.maxX() * s, r.maxY() * s, r.isEmpty());
}

PixelRect intersection(const PixelRect& a, const PixelRect& b) {
    const int x = std::max(a.x, b.x), y = std::max(a.y, b.y);
    const int right = std::min(a.right(), b.right()), bottom = std::min(a.bottom(), b.bottom());
    if (right <= x || bottom <= y)
        return {};
    return {x, y, right - x, bottom - y};
}

CGContext::CGContext(void* pixels, int width, int height, int stride, CGFloat scale) : CGContext() {
    drawInto(pixels, width, height, stride, scale);
}

CGContext::CGContext() : impl_(std::make_unique<Impl>()) {}

void CGContext::drawInto(void* pixels, int width, int height, int stride, CGFloat scale) {
    impl_->begin(pixels, width, height, stride, scale);
}

void CGContext::finish() {
    impl_->begin(nullptr, 0, 0, 0, 1);
}

CGContext::~CGContext() = default;

CGFloat CGContext::scale() const {
    return impl_->scale;
}

void CGContext::saveGState() {
    impl_->savedStates.push_back(impl_->state);
}

void CGContext::restoreGState() {
    impl_->restoreState();
}

void CGContext::setFillColor(const UIColor& color) {
    impl_->state.fill = Paint::of(color);
}

void CGContext::setStrokeColor(const UIColor& color) {
    impl_->state.stroke = Paint::of(color);
}

void CGContext::setRGBFillColor(CGFloat red, CGFloat green, CGFloat blue, CGFloat alpha) {
    const auto component = [](CGFloat v) { return finite(v, 0, 1, 0); };
    impl_->state.fill = {component(red), component(green), component(blue), component(alpha)};
}

void CGContext::setLineWidth(CGFloat width) {
    impl_->state.lineWidth = finite(width, 0, kLargestCoordinate, 0);
}

void CGContext::setAlpha(CGFloat alpha) {
    impl_->state.alpha *= finite(alpha, 0, 1, 0);
}

void CGContext::translate(CGFloat dx, CGFloat dy) {
    CGPoint& origin = impl_->state.origin;
    origin = {finiteCoordinate(origin.x + finiteCoordinate(dx)),
              finiteCoordinate(origin.y + finiteCoordinate(dy))};
}

PixelRect CGContext::pixels(const CGRect& rect) const {
    const CGRect r = finiteRect(rect);
    const CGPoint topLeft = impl_->device(r.origin);
    const CGPoint bottomRight = impl_->device({r.maxX(), r.maxY()});
    return snappedEdges(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y, r.isEmpty());
}

CGRect CGContext::snapped(const CGRect& r) const {
    const PixelRect p = pixels(r);
    const double s = impl_->scale;
    const CGPoint origin = impl_->state.origin;
    return {p.x / s - origin.x, p.y / s - origin.y, p.width / s, p.height / s};
}

CGRect CGContext::snapped(CGPoint center, CGSize size) const {
    const CGSize all = finiteRect({{}, size}).size;
    const double s = impl_->scale;
    const int width = std::max(1, nearestPixel(all.width * s));
    const int height = std::max(1, nearestPixel(all.height * s));
    const CGPoint middle = impl_->device(center);
    const CGPoint origin = impl_->state.origin;
    return {nearestPixel(middle.x - width / 2.0) / s - origin.x,
            nearestPixel(middle.y - height / 2.0) / s - origin.y, width / s, height / s};
}

void CGContext::clipToPixels(const PixelRect& r) {
    impl_->state.clip = intersection(impl_->state.clip, r);
}

PixelRect CGContext::clipPixels() const {
    return impl_->state.clip;
}

void CGContext::fillRect(const CGRect& r) {
    drawRoundedRect(*impl_, finiteRect(r), 0, impl_->fillPaint());
}

void CGContext::fillEllipse(const CGRect& r) {
    drawEllipse(*impl_, finiteRect(r), impl_->fillPaint());
}

void CGContext::strokeEllipse(const CGRect& r) {
    drawRing(*impl_, finiteRect(r), impl_->state.lineWidth, impl_->strokePaint());
}

void CGContext::fillRoundedRect(const CGRect& r, CGFloat radius) {
    drawRoundedRect(*impl_, finiteRect(r), finite(radius, 0, kLargestCoordinate, 0),
                    impl_->fillPaint());
}

void CGContext::fillRoundedFrame(const CGRect& r, CGFloat radius, CGFloat width) {
    width = finite(width, 0, kLargestCoordinate, 0);
    if (width > 0)
        drawRoundedRect(*impl_, finiteRect(r), finite(radius, 0, kLargestCoordinate, 0),
                        impl_->fillPaint(), width);
}

void CGContext::drawShadow(const CGRect& r, CGFloat radius, CGFloat blur, CGPoint offset,
                           const UIColor& color) {
    tesmar::drawShadow(*impl_, finiteRect(r), finite(radius, 0, kLargestCoordinate, 0),
                       finite(blur, 0, 100, 0),
                       {finite(offset.x, -100, 100, 0), finite(offset.y, -100, 100, 0)},
                       Paint::of(color).withAlpha(impl_->state.alpha));
}

void CGContext::drawImage(const UIImage& image, const CGRect& r) {
    const PixelRect box = pixels(r);
    const UIImage::Impl& picture = image.impl().pictureFor(scale());
    if (picture.isTransparent)
        return;
    cairo_surface_t* surface = picture.surface.get();
    if (box.width == cairo_image_surface_get_width(surface) &&
        box.height == cairo_image_surface_get_height(surface)) {
        impl_->paintPicture(surface, box.x, box.y, box, impl_->state.alpha);
        return;
    }
    const std::array key{static_cast<std::int32_t>(SurfaceKind::image), picture.id, box.width,
                         box.height, 0};
    impl_->paintCached(
        key, box, CAIRO_FORMAT_ARGB32, Paint{}.withAlpha(impl_->state.alpha),
        [&](cairo_t* cr) { picture.render(cr, box.width, box.height, CAIRO_FILTER_GOOD); });
}

void CGContext::drawImage(const UIImage& image, const CGRect& r, const UIColor& tint) {
    const PixelRect box = pixels(r);
    const UIImage::Impl& picture = image.impl().pictureFor(scale());
    if (picture.isTransparent)
        return;
    const std::array key{static_cast<std::int32_t>(SurfaceKind::image), picture.id, box.width,
                         box.height, 1};
    const auto filter = picture.hasHardEdges ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_GOOD;
    impl_->paintCached(key, box, CAIRO_FORMAT_A8, Paint::of(tint).withAlpha(impl_->state.alpha),
                       [&](cairo_t* cr) { picture.render(cr, box.width, box.height, filter); });
}

void CGContext::drawPixels(const void* pixels, const PixelRect& place, int stride) {
    if (const SurfacePtr source = readOnlySurface(pixels, place.width, place.height, stride))
        impl_->paintPicture(source.get(), place.x, place.y, place, impl_->state.alpha);
}

void CGContext::clearPixels(const PixelRect& r) {
    impl_->clearPixels(r);
}

void CGContext::beginTransparencyLayer(CGFloat alpha) {
    impl_->beginLayer(alpha);
}

void CGContext::endTransparencyLayer() {
    impl_->endLayer();
}

} // namespace tesmar
