// Fontconfig configurations of this library's own, separate from the current one, which belongs to
// the whole process.
#pragma once

#include "tesmar/platform/text/internal/fontconfig_ptr.h"

namespace tesmar {

// All installed fonts and the machine's own rules for choosing among them. If a file of the
// configuration is not a regular one, all of it is ignored and the fonts are those of the usual
// directories: fontconfig would wait for a fifo for ever. Null if allocation fails.
FcConfigPtr fullFontConfiguration();

// All installed fonts, without most of the rules, which take several times as long to load and are
// not needed for listing. Null if allocation fails.
FcConfigPtr listingFontConfiguration();

} // namespace tesmar
