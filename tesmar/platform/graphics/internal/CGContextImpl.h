// The implementation of CGContext with cairo, in device pixels. Also used by the text layer.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

namespace tesmar {

// A colour that is not premultiplied; components are from 0 to 1.
struct Paint {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    static Paint of(const UIColor& color);
    // With the alpha multiplied by `factor`.
    Paint withAlpha(double factor) const { return {red, green, blue, alpha * factor}; }
};

// The first word of a cached surface's key.
enum class SurfaceKind : std::int32_t { ellipse, ring, roundedRect, shadow, image, text, textEdge };

// Coordinates in device pixels are clamped to ±this; cairo's fixed-point numbers are exact there.
inline constexpr double kLargestPixel = 1 << 22;

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

    // Ends drawing into the previous pixels, and starts in the initial state on these.
    void begin(void* pixels, int width, int height, int stride, CGFloat scale);

    // A point of the current coordinate system, in device pixels.
    CGPoint device(CGPoint p) const {
        const auto inPixels = [this](double v) {
            return std::clamp(finiteCoordinate(v) * scale, -kLargestPixel, kLargestPixel);
        };
        return {inPixels(p.x + state.origin.x), inPixels(p.y + state.origin.y)};
    }

    Paint fillPaint() const { return state.fill.withAlpha(state.alpha); }
    Paint strokePaint() const { return state.stroke.withAlpha(state.alpha); }

    // Does not pop states that were saved before the innermost layer began.
    void restoreState();

    void fillPixels(const PixelRect& r, const Paint& paint);
    void clearPixels(const PixelRect& r);
    // Paints through an A8 surface whose top left corner is at (x, y).
    void paintMask(cairo_surface_t* mask, int x, int y, const PixelRect& within,
                   const Paint& paint);
    // Paints an ARGB32 surface whose top left corner is at (x, y).
    void paintPicture(cairo_surface_t* picture, int x, int y, const PixelRect& within,
                      double alpha);

    // Paints what `render(cairo_t*)` draws into `box`, with the box's top left corner as origin,
    // and caches it under the key `shape`. It is rendered in tiles that start at that corner, each
    // of them whole, so that no pixel depends on the clip. An A8 format takes its colour from
    // `paint`, an ARGB32 one only its alpha.
    template <class Render>
    void paintCached(std::span<const std::int32_t> shape, const PixelRect& box,
                     cairo_format_t format, const Paint& paint, const Render& render);

    // Of the innermost layer. Null without pixels to draw into; then the clip is empty.
    cairo_t* cairo() const { return layers_.empty() ? cairo_ : layers_.back().cairo; }

    void beginLayer(double alpha);
    // Also drops the states saved inside the layer.
    void endLayer();

    double scale = 1; // device pixels per point
    State state;
    std::vector<State> savedStates;

  private:
    struct Layer {
        cairo_surface_t* surface;
        cairo_t* cairo;
        PixelRect box;
        double alpha;
        std::size_t firstState; // index in savedStates of the first one saved inside the layer
    };

    void end();
    // Clears what clearPixels has put off.
    void clearNow();
    // Instead of clearing: replaces these pixels, all of them to be cleared, by the picture's.
    void replacePixels(cairo_surface_t* picture, int x, int y, const PixelRect& visible,
                       double alpha);
    // `visible` must lie within the clip and not be empty.
    void setPixels(const PixelRect& visible, std::uint32_t pixel);

    cairo_surface_t* surface_ = nullptr;
    cairo_t* cairo_ = nullptr;
    PixelRect toClear_; // before anything else is drawn; empty within layers
    std::vector<Layer> layers_;
};

// Cached shapes are cut into tiles of this many pixels a side.
inline constexpr int kTileSide = 1024;

struct CairoDeleter {
    void operator()(cairo_t* cr) const { cairo_destroy(cr); }
};

// A new transparent surface; null if the allocation failed.
SurfacePtr emptySurface(cairo_format_t format, int width, int height);

// An ARGB32 surface over pixels in CGContext's format, only for reading them. The pixels must
// outlive it. Null for null pixels or sizes that CGContext does not take.
SurfacePtr readOnlySurface(const void* pixels, int width, int height, int stride);

// Runs `render(cairo_t*)` on a new surface, with the origin at (-x, -y); null if the allocation
// failed.
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

// Calls `use(surface, tile)` with each tile of `box` that touches `visible`, a part of it; the
// surface is valid during the call. See CGContext::Impl::paintCached. Ends early if there is no
// memory.
template <class Render, class Use>
void forEachCachedTile(std::span<const std::int32_t> shape, const PixelRect& box,
                       const PixelRect& visible, cairo_format_t format, const Render& render,
                       const Use& use) {
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
                SurfacePtr rendered =
                    renderedSurface(format, tile.width, tile.height, x, y, render);
                if (!rendered)
                    return;
                surface = cache.insert(key, std::move(rendered));
            }
            use(surface, tile);
        }
    }
}

template <class Render>
void CGContext::Impl::paintCached(std::span<const std::int32_t> shape, const PixelRect& box,
                                  cairo_format_t format, const Paint& paint, const Render& render) {
    forEachCachedTile(shape, box, intersection(box, state.clip), format, render,
                      [&](cairo_surface_t* surface, const PixelRect& tile) {
                          if (format == CAIRO_FORMAT_A8)
                              paintMask(surface, tile.x, tile.y, tile, paint);
                          else
                              paintPicture(surface, tile.x, tile.y, tile, paint.alpha);
                      });
}

} // namespace tesmar
