// Pango font maps over known font files. Pango's own font maps choose a font by fontconfig's rules,
// for which they load the whole configuration of the machine; here the face is already known. All
// lengths are in points: there is no resolution, no hinting and no rounding. Guarded by the shaping
// lock.
#pragma once

#include "tesmar/platform/text/internal/ComplexText.h"
#include "tesmar/platform/text/internal/pango/gobject_ptr.h"

#include <pango/pango.h>

namespace tesmar {

// A map that ignores the family and style of a description: it has only `face`, at the size of the
// description. Unless `fallbackFonts` is null, its fonts follow for the characters that `face`
// lacks.
GObjectPtr<PangoFontMap> makeFontFileMap(FontFileRef face, FallbackFonts fallbackFonts);

// The file and the size, in points, of a font from such a map.
const FontFileRef& fileOf(PangoFont* font);
double pointSizeOf(PangoFont* font);

// The font's glyph; for a character that no font has, 0: the font's sign for a missing character.
hb_codepoint_t glyphIndex(PangoGlyph glyph);

} // namespace tesmar
