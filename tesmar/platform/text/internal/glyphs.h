// Draws laid out text by filling the outlines of its glyphs. The drawing library's own text
// functions would move each glyph to a coarser position. Guarded by the shaping lock.
#pragma once

#include <cairo.h>
#include <pango/pango.h>

namespace tesmar {

// Whether a font of the layout has glyphs with colours of their own, as emoji do.
bool hasColoredGlyphs(PangoLayout* layout);

// Whether to spend time on finding the glyphs that are outside the clip.
enum class Glyphs { all, inTheClip };

inline constexpr int kMostPicturePixels = 2 * 1024 * 1024;

// Draws the first `lineCount` lines, in points, from the layout's top left corner at the origin.
// Uses the current source, except for glyphs with colours of their own. Of pictures in fonts, at
// most kMostPicturePixels are decoded in one call; glyphs beyond them are left out.
void drawGlyphs(cairo_t* cr, PangoLayout* layout, int lineCount, Glyphs glyphs);

} // namespace tesmar
