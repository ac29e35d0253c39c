// The implementation of UIImage: a cairo surface.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <memory>

namespace tesmar {

class NamedImage;

struct UIImage::Impl {
    Impl(SurfacePtr pixels, double pixelsPerPoint);

    ~Impl();

    // The picture to draw at that scale, in pixels per point: this one, unless the image was loaded
    // by name and has a better file. Owned by this object. Any thread.
    const Impl& pictureFor(double drawnScale) const;

    // Draws the image, scaled to `width` by `height` user-space units, at the origin.
    void render(cairo_t* cr, int width, int height, cairo_filter_t filter) const;

    SurfacePtr surface;                      // ARGB32; its pixels do not change
    bool isTransparent;                      // nothing of it shows; also if it has no pixels
    bool hasHardEdges;                       // every pixel is opaque or transparent
    double scale;                            // pixels per point
    std::int32_t id;                         // unique, for keys of cached surfaces
    std::unique_ptr<const NamedImage> named; // null unless the image was loaded by name
};

} // namespace tesmar
