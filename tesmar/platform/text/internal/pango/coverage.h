// The characters of a font file in pango's form.
#pragma once

#include "tesmar/platform/text/internal/FontFile.h"

#include <pango/pango.h>

namespace tesmar {

// Made at the first call; owned by `file`. Guarded by the shaping lock.
PangoCoverage* coverageOf(FontFile& file);

} // namespace tesmar
