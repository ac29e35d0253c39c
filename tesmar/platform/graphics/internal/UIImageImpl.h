// The pixels behind UIImage. Private to the graphics floor.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

namespace tesmar {

struct UIImage::Impl {
    Impl(SurfacePtr pixels, double pixelsPerPoint);

    // Draws the picture over `width` by `height` units from the origin.
    void render(cairo_t* cr, int width, int height) const;

    SurfacePtr surface; // ARGB32, never drawn into again
    double scale;
    std::int32_t id; // its own, for keys of kept surfaces
};

} // namespace tesmar
