// Pango font maps over known font files. Pango's own font maps choose a font by fontconfig's rules,
// for which they load the whole configuration of the machine; here the face is already known. All
// lengths are in points: there is no resolution, no hinting and no rounding. Guarded by the shaping
// lock.
#pragma once

#include "tesmar/platform/text/internal/FontFile.h"
#include "tesmar/platform/text/internal/gobject_ptr.h"

namespace tesmar {

enum class Fallback { none, installedFonts };

// A map that ignores the family and style of a description: it has only `face`, at the size of the
// description. With Fallback::installedFonts, these follow for the characters that `face` lacks.
GObjectPtr<PangoFontMap> makeFontFileMap(FontFileRef face, Fallback fallback);

// The file and the size, in points, of a font from such a map.
FontFile& fileOf(PangoFont* font);
double pointSizeOf(PangoFont* font);

// The font's glyph; for a character that no font has, 0: the font's sign for a missing character.
hb_codepoint_t glyphIndex(PangoGlyph glyph);

} // namespace tesmar
