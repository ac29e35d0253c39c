// The painter behind CGContext: cairo, in device pixels. Private to the graphics and text floors.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace tesmar {

struct Paint {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    Paint withAlpha(double factor) const { return {red, green, blue, alpha * factor}; }
};

// First word of the key of a kept surface.
enum class SurfaceKind : std::int32_t { ellipse, ring, roundedRect, shadow, polyline, image, text };

// No edge of anything lies further out, in device pixels; within it cairo's own numbers are exact.
inline constexpr double kFarthestPixel = 1 << 22;

class CGContext::Impl {
  public:
    struct State {
        Paint fill;
        Paint stroke;
        double lineWidth = 1; // points
        double alpha = 1;
        CGPoint origin; // points
        PixelRect clip;
    };

    Impl() { begin(nullptr, 0, 0, 0, 1); }
    ~Impl() { end(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // From the initial state, on these pixels instead of those before.
    void begin(void* pixels, int width, int height, int stride, CGFloat scale);

    // A point of the current coordinates in device pixels.
    CGPoint device(CGPoint p) const {
        const auto place = [this](double v) {
            return std::clamp(finiteCoordinate(v) * scale, -kFarthestPixel, kFarthestPixel);
        };
        return {place(p.x + state.origin.x), place(p.y + state.origin.y)};
    }

    Paint fillPaint() const { return state.fill.withAlpha(state.alpha); }
    Paint strokePaint() const { return state.stroke.withAlpha(state.alpha); }

    // Never beyond the start of the innermost layer.
    void restoreState();

    void fillPixels(const PixelRect& r, const Paint& paint);
    void clearPixels(const PixelRect& r);
    // An A8 surface, in the paint's colour.
    void paintMask(cairo_surface_t* mask, int x, int y, const PixelRect& within,
                   const Paint& paint);
    // An ARGB32 surface, with its own colours.
    void paintPicture(cairo_surface_t* picture, int x, int y, const PixelRect& within,
                      double alpha);

    // Paints what `render(cairo_t*)` draws into `box`, whose top left corner is its origin, and
    // keeps it under `shape`. It is rendered in tiles laid from that corner, each of them whole,
    // so that neither the clip nor the size of the shape changes any pixel.
    template <class Render>
    void paintKept(std::span<const std::int32_t> shape, const PixelRect& box, cairo_format_t format,
                   const Paint& paint, const Render& render);

    cairo_t* cairo() const { return layers_.empty() ? cairo_ : layers_.back().cairo; }

    void beginLayer(double alpha);
    // With the states that were saved within it and not restored.
    void endLayer();

    int width = 0;
    int height = 0;
    double scale = 1;
    State state;
    std::vector<State> savedStates;

  private:
    struct Layer {
        cairo_surface_t* surface;
        cairo_t* cairo;
        PixelRect box;
        double alpha;
        std::size_t firstState; // of savedStates, that belongs to the inside
    };

    void end();

    cairo_surface_t* surface_ = nullptr;
    cairo_t* cairo_ = nullptr;
    std::vector<Layer> layers_;
};

inline constexpr int kTileSide = 1024;

struct CairoDeleter {
    void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};

// A new surface with nothing on it; null when memory is short.
SurfacePtr emptySurface(cairo_format_t format, int width, int height);

// Runs `render` on a new surface with the origin moved by (-x, -y); null when memory is short.
template <class Render>
SurfacePtr renderedSurface(cairo_format_t format, int width, int height, double x, double y,
                           const Render& render) {
    SurfacePtr surface = emptySurface(format, width, height);
    if (!surface)
        return nullptr;
    {
        const std::unique_ptr<cairo_t, CairoDeleter> cr(cairo_create(surface.get()));
        cairo_translate(cr.get(), -x, -y);
        render(cr.get());
    }
    cairo_surface_flush(surface.get());
    return surface;
}

template <class Render>
void CGContext::Impl::paintKept(std::span<const std::int32_t> shape, const PixelRect& box,
                                cairo_format_t format, const Paint& paint, const Render& render) {
    const PixelRect visible = intersection(box, state.clip);
    if (visible.isEmpty())
        return;
    SurfaceCache& cache = SurfaceCache::ofThisThread();
    const auto tileOf = [](int offset) { return offset / kTileSide; };
    for (int ty = tileOf(visible.y - box.y); ty <= tileOf(visible.bottom() - 1 - box.y); ++ty) {
        for (int tx = tileOf(visible.x - box.x); tx <= tileOf(visible.right() - 1 - box.x); ++tx) {
            const int x = tx * kTileSide, y = ty * kTileSide;
            const PixelRect tile{box.x + x, box.y + y, std::min(kTileSide, box.width - x),
                                 std::min(kTileSide, box.height - y)};
            const SurfaceKey key{shape, tx, ty};
            cairo_surface_t* surface = cache.find(key);
            if (!surface) {
                SurfacePtr fresh = renderedSurface(format, tile.width, tile.height, x, y, render);
                if (!fresh)
                    return;
                surface = cache.insert(key, std::move(fresh));
            }
            if (format == CAIRO_FORMAT_A8)
                paintMask(surface, tile.x, tile.y, tile, paint);
            else
                paintPicture(surface, tile.x, tile.y, tile, paint.alpha);
        }
    }
}

} // namespace tesmar
