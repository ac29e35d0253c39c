// The installed fonts that are tried for characters which a face lacks. Private to the floor; used
// under the shaping lock.
#pragma once

#include "tesmar/platform/text/internal/FontFile.h"

#include <string>
#include <vector>

namespace tesmar {

// Best first, by the machine's own rules. The family says what kind is wanted ("emoji"); the
// language, which may be empty, what they are for. Kept for good: the first call costs the reading
// of all font caches and rules.
const std::vector<FontFileRef>& fallbackFonts(const std::string& family,
                                              const std::string& language);

} // namespace tesmar
