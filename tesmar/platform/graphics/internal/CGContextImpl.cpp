#include "tesmar/platform/graphics/internal/CGContextImpl.h"

#include "tesmar/platform/graphics/UIColor.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace tesmar {
namespace {

constexpr int kLargestSide = 32767; // cairo's limit for image surfaces

bool isPossible(const void* pixels, int width, int height, int stride) {
    return pixels && width > 0 && height > 0 && width <= kLargestSide && height <= kLargestSide &&
           stride % 4 == 0 && stride / 4 >= width;
}

void setSource(cairo_t* cr, const Paint& paint) {
    cairo_set_source_rgba(cr, paint.red, paint.green, paint.blue, paint.alpha);
}

// Rounded as cairo rounds colours, so that a shape has the same pixels inside.
std::uint32_t opaquePixel(const Paint& paint) {
    const auto byte = [](double component) {
        return static_cast<std::uint32_t>(floorToInt(component * 65535 + 0.5)) >> 8;
    };
    return 0xffu << 24 | byte(paint.red) << 16 | byte(paint.green) << 8 | byte(paint.blue);
}

void addRectangle(cairo_t* cr, const PixelRect& r) {
    cairo_rectangle(cr, r.x, r.y, r.width, r.height);
}

// Runs one operation within cairo's own clip, unless all that it draws is visible.
template <class Operation>
void withClip(cairo_t* cr, const PixelRect& drawn, const PixelRect& visible, Operation operation) {
    if (drawn == visible) {
        operation();
        return;
    }
    addRectangle(cr, visible);
    cairo_clip(cr);
    operation();
    cairo_reset_clip(cr);
}

// The address of the pixel at (x, y).
std::uint32_t* pixelsOf(cairo_surface_t* surface, int x, int y) {
    unsigned char* const row =
        cairo_image_surface_get_data(surface) + 1LL * y * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<std::uint32_t*>(row) + x;
}

// Each component times alpha / 255, rounded as cairo rounds. 16 bits and blocks of one size,
// because compilers use vector instructions for these.
void scaleRow(const unsigned char* __restrict from, unsigned char* __restrict to, int bytes,
              std::uint16_t alpha) {
    const auto scaled = [alpha](unsigned char component) {
        const auto product = static_cast<std::uint16_t>(component * alpha + 128);
        const auto sum = static_cast<std::uint16_t>(product + (product >> 8));
        return static_cast<unsigned char>(sum >> 8);
    };
    constexpr int kBlock = 16;
    int i = 0;
    for (; i + kBlock <= bytes; i += kBlock)
        for (int j = 0; j < kBlock; ++j)
            to[i + j] = scaled(from[i + j]);
    for (; i < bytes; ++i)
        to[i] = scaled(from[i]);
}

PixelRect extent(cairo_surface_t* surface, int x, int y) {
    return {x, y, cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)};
}

} // namespace

Paint Paint::of(const UIColor& color) {
    return {color.red(), color.green(), color.blue(), color.alpha()};
}

SurfacePtr emptySurface(cairo_format_t format, int width, int height) {
    SurfacePtr surface(cairo_image_surface_create(format, width, height));
    return cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? std::move(surface)
                                                                       : nullptr;
}

SurfacePtr readOnlySurface(const void* pixels, int width, int height, int stride) {
    if (!isPossible(pixels, width, height, stride))
        return nullptr;
    auto* const data = static_cast<unsigned char*>(const_cast<void*>(pixels));
    return SurfacePtr(
        cairo_image_surface_create_for_data(data, CAIRO_FORMAT_ARGB32, width, height, stride));
}

void CGContext::Impl::begin(void* pixels, int w, int h, int stride, CGFloat pixelsPerPoint) {
    end();
    scale = finite(pixelsPerPoint, 0.1, 16, 1);
    state = {};
    if (!isPossible(pixels, w, h, stride))
        return;
    state.clip = {0, 0, w, h};
    surface_ = cairo_image_surface_create_for_data(static_cast<unsigned char*>(pixels),
                                                   CAIRO_FORMAT_ARGB32, w, h, stride);
    cairo_ = cairo_create(surface_);
}

void CGContext::Impl::end() {
    while (!layers_.empty())
        endLayer();
    clearNow();
    savedStates.clear();
    if (!surface_)
        return;
    cairo_destroy(std::exchange(cairo_, nullptr));
    // Cairo must not touch the pixels from here on: the caller may free them.
    cairo_surface_finish(surface_);
    cairo_surface_destroy(std::exchange(surface_, nullptr));
}

void CGContext::Impl::restoreState() {
    const std::size_t firstState = layers_.empty() ? 0 : layers_.back().firstState;
    if (savedStates.size() <= firstState)
        return;
    state = savedStates.back();
    savedStates.pop_back();
}

void CGContext::Impl::fillPixels(const PixelRect& r, const Paint& paint) {
    const PixelRect visible = intersection(r, state.clip);
    if (visible.isEmpty() || paint.alpha <= 0)
        return;
    clearNow();
    if (paint.alpha >= 1) {
        setPixels(visible, opaquePixel(paint));
        return;
    }
    cairo_t* cr = cairo();
    setSource(cr, paint);
    addRectangle(cr, visible);
    cairo_fill(cr);
}

void CGContext::Impl::clearPixels(const PixelRect& r) {
    const PixelRect visible = intersection(r, state.clip);
    clearNow();
    if (layers_.empty())
        toClear_ = visible;
    else if (!visible.isEmpty())
        setPixels(visible, 0);
}

void CGContext::Impl::clearNow() {
    if (!toClear_.isEmpty())
        setPixels(std::exchange(toClear_, {}), 0);
}

void CGContext::Impl::replacePixels(cairo_surface_t* picture, int x, int y,
                                    const PixelRect& visible, double alpha) {
    const PixelRect c = std::exchange(toClear_, {});
    const PixelRect besides[] = {
        {c.x, c.y, c.width, visible.y - c.y},
        {c.x, visible.bottom(), c.width, c.bottom() - visible.bottom()},
        {c.x, visible.y, visible.x - c.x, visible.height},
        {visible.right(), visible.y, c.right() - visible.right(), visible.height}};
    for (const PixelRect& part : besides)
        if (!part.isEmpty())
            setPixels(part, 0);
    const auto byte = static_cast<std::uint16_t>(floorToInt(alpha * 65535 + 0.5) >> 8);
    cairo_surface_flush(picture);
    cairo_surface_flush(surface_);
    for (int row = visible.y; row < visible.bottom(); ++row) {
        const auto* const from =
            reinterpret_cast<const unsigned char*>(pixelsOf(picture, visible.x - x, row - y));
        auto* const to = reinterpret_cast<unsigned char*>(pixelsOf(surface_, visible.x, row));
        scaleRow(from, to, 4 * visible.width, byte);
    }
    cairo_surface_mark_dirty(surface_);
}

// In memory: filling with cairo would take most of the time of a small frame.
void CGContext::Impl::setPixels(const PixelRect& visible, std::uint32_t pixel) {
    cairo_surface_t* const target = layers_.empty() ? surface_ : layers_.back().surface;
    const PixelRect box = layers_.empty() ? PixelRect() : layers_.back().box;
    cairo_surface_flush(target);
    for (int y = visible.y; y < visible.bottom(); ++y)
        std::fill_n(pixelsOf(target, visible.x - box.x, y - box.y), visible.width, pixel);
    cairo_surface_mark_dirty(target);
}

void CGContext::Impl::paintMask(cairo_surface_t* mask, int x, int y, const PixelRect& within,
                                const Paint& paint) {
    const PixelRect drawn = extent(mask, x, y);
    const PixelRect visible = intersection(intersection(drawn, within), state.clip);
    if (visible.isEmpty() || paint.alpha <= 0)
        return;
    clearNow();
    cairo_t* cr = cairo();
    withClip(cr, drawn, visible, [&] {
        setSource(cr, paint);
        cairo_mask_surface(cr, mask, x, y);
    });
}

void CGContext::Impl::paintPicture(cairo_surface_t* picture, int x, int y, const PixelRect& within,
                                   double alpha) {
    const PixelRect drawn = extent(picture, x, y);
    const PixelRect visible = intersection(intersection(drawn, within), state.clip);
    if (visible.isEmpty() || alpha <= 0)
        return;
    if (intersection(toClear_, visible) == visible &&
        cairo_image_surface_get_format(picture) == CAIRO_FORMAT_ARGB32) {
        replacePixels(picture, x, y, visible, alpha);
        return;
    }
    clearNow();
    cairo_t* cr = cairo();
    // cairo_paint fills cairo's whole clip, so that has to be exactly the visible part.
    addRectangle(cr, visible);
    cairo_clip(cr);
    cairo_set_source_surface(cr, picture, x, y);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    cairo_paint_with_alpha(cr, alpha);
    cairo_reset_clip(cr);
    setSource(cr, {}); // releases the picture
}

void CGContext::Impl::beginLayer(double alpha) {
    clearNow();
    const double opacity = state.alpha * finite(alpha, 0, 1, 0);
    layers_.reserve(layers_.size() + 1); // push_back must not throw: it would leak the surface
    savedStates.push_back(state);
    state.alpha = 1;
    if (opacity <= 0)
        state.clip = {};
    Layer layer{nullptr, nullptr, state.clip, opacity, savedStates.size()};
    SurfacePtr surface = emptySurface(CAIRO_FORMAT_ARGB32, layer.box.width, layer.box.height);
    if (!surface) { // allocation failed: the layer stays empty
        state.clip = layer.box = {};
        surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 0, 0));
    }
    layer.surface = surface.release();
    cairo_surface_set_device_offset(layer.surface, -layer.box.x, -layer.box.y);
    layer.cairo = cairo_create(layer.surface);
    layers_.push_back(layer);
}

void CGContext::Impl::endLayer() {
    if (layers_.empty())
        return;
    const Layer layer = layers_.back();
    layers_.pop_back();
    savedStates.resize(layer.firstState);
    restoreState();
    cairo_destroy(layer.cairo);
    cairo_surface_set_device_offset(layer.surface, 0, 0);
    paintPicture(layer.surface, layer.box.x, layer.box.y, layer.box, layer.alpha);
    cairo_surface_destroy(layer.surface);
}

} // namespace tesmar
