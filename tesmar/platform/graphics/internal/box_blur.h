// Softens a coverage mask. Private to the floor.
#pragma once

#include <cairo.h>

namespace tesmar {

// Averages every pixel of an A8 surface with its neighbours up to `radius` pixels away, three times
// in each direction: close to a Gaussian blur. What lies outside the surface counts as empty.
void boxBlur(cairo_surface_t* mask, int radius);

} // namespace tesmar
