// Draws laid out text by filling the outlines of its glyphs. The drawing library's own text
// functions would move each glyph to a coarser position. Guarded by the shaping lock.
#pragma once

#include "tesmar/platform/text/internal/typesetting.h"

#include <cairo.h>

namespace tesmar {

// Whether a font of the text has glyphs with colours of their own, as emoji do.
bool hasColoredGlyphs(const std::vector<TypesetLine>& lines);

// Whether to spend time on finding the glyphs that are outside the clip.
enum class Glyphs { all, inTheClip };

inline constexpr int kMostPicturePixels = 2 * 1024 * 1024;

// What the glyphs draw, relative to the text's top left corner. Empty if nothing is visible.
CGRect inkOf(const std::vector<TypesetLine>& lines);

// Draws in points, with the text's top left corner at the origin.
// Uses the current source, except for glyphs with colours of their own. Of pictures in fonts, at
// most kMostPicturePixels are decoded in one call; glyphs beyond them are left out.
void drawGlyphs(cairo_t* cr, const std::vector<TypesetLine>& lines, Glyphs glyphs);

} // namespace tesmar
