// Draws laid out text by its glyphs' outlines: these stand, unlike the drawing library's own
// glyphs, where they belong to within a fraction of a pixel. Private to the floor; used under the
// shaping lock.
#pragma once

#include <cairo.h>
#include <pango/pango.h>

namespace tesmar {

// Whether a glyph has colours of its own, as emoji do.
bool hasColoredGlyphs(PangoLayout* layout);

// In the current source, but for glyphs that have colours of their own.
void drawGlyphs(cairo_t* cr, PangoLayout* layout);

} // namespace tesmar
