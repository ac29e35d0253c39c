// Makes coverage masks of the edges of characters from that of the characters, in device pixels.
#pragma once

#include "tesmar/platform/graphics/internal/SurfaceCache.h"
#include "tesmar/platform/text/TextEdge.h"

namespace tesmar {

// How far an edge reaches, in whichever unit.
struct EdgeReach {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

// In device pixels, for that font size in device pixels.
EdgeReach edgeReach(TextEdge edge, double fontSize);

// The largest of the above, in whole pixels.
int edgeMargin(TextEdge edge, double fontSize);

// `glyphs` is an A8 surface that extends edgeMargin() beyond `mask`, one of the same format, on
// every side. Sets `mask` so that painting through it, and then the glyphs with `textAlpha` over
// that, composes both side by side: nothing of the edge lies below the glyphs, and no gap between.
void renderEdge(cairo_surface_t* mask, cairo_surface_t* glyphs, TextEdge edge, double fontSize,
                double textAlpha);

} // namespace tesmar
