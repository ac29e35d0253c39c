// The implementation of UIImage: a cairo surface.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

namespace tesmar {

struct UIImage::Impl {
    Impl(SurfacePtr pixels, double pixelsPerPoint);

    // Draws the image, scaled to `width` by `height` user-space units, at the origin.
    void render(cairo_t* cr, int width, int height) const;

    SurfacePtr surface; // ARGB32; its pixels do not change
    double scale;       // pixels per point
    std::int32_t id;    // unique, for keys of cached surfaces
};

} // namespace tesmar
