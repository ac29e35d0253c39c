// PNG in and out of pixel surfaces. Private to the floor.
#pragma once

#include "tesmar/platform/graphics/internal/SurfaceCache.h"

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

// An ARGB32 surface; null for bytes that are no whole PNG, or that declare more pixels than an
// image may have (before any memory is taken for them).
SurfacePtr decodePNG(std::string_view bytes);

std::optional<std::string> encodePNG(cairo_surface_t* surface);

} // namespace tesmar
