// Decodes and encodes PNG. Also used by the text layer, for the pictures in fonts.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

// An ARGB32 surface. Null for anything but a complete PNG, and for a size beyond
// UIImage::kMaximumSide and `mostPixels`, which is refused before memory is allocated for it.
SurfacePtr decodePNG(std::string_view bytes, int mostPixels = UIImage::kMaximumPixels);

// `surface` is ARGB32. std::nullopt if encoding fails.
std::optional<std::string> encodePNG(cairo_surface_t* surface);

} // namespace tesmar
