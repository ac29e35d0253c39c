// Blurs a coverage mask.
#pragma once

#include <cairo.h>

namespace tesmar {

// Replaces each pixel of an A8 surface by the average of its neighbours up to `radius` pixels away,
// three times in each direction, which is close to a Gaussian blur. Pixels outside the surface
// count as transparent. A radius of 0 or less changes nothing.
void boxBlur(cairo_surface_t* mask, int radius);

} // namespace tesmar
