// Pango's fonts, made of font files alone. Its own ones choose by fontconfig's rules, for which
// they load the machine's whole configuration; here the face is chosen already. Lengths are points:
// no resolution, no hinting, no rounding. Private to the floor; used under the shaping lock.
#pragma once

#include "tesmar/platform/text/internal/FontFile.h"
#include "tesmar/platform/text/internal/gobject_ptr.h"

namespace tesmar {

enum class Fallback { none, installedFonts };

// A map that has one font for every description: `face`, in the size that is asked for. With
// installed fonts to fall back to, these follow for the characters that it lacks.
GObjectPtr<PangoFontMap> makeFontFileMap(FontFileRef face, Fallback fallback);

// Of a font of such a map.
FontFile& fileOf(PangoFont* font);
double pointSizeOf(PangoFont* font);

} // namespace tesmar
