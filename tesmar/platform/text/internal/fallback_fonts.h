// The installed fonts to try for characters that a face lacks. Guarded by the shaping lock.
#pragma once

#include "tesmar/platform/text/internal/FontFile.h"

#include <string>
#include <vector>

namespace tesmar {

// The best font first, by the machine's own fontconfig rules. `family` names the kind of font, such
// as "sans-serif" or "emoji"; `language` is the language of the text, or empty if unknown. The
// result is never destroyed. The first call reads all font caches and rules, which is slow.
const std::vector<FontFileRef>& fallbackFonts(const std::string& family,
                                              const std::string& language);

} // namespace tesmar
