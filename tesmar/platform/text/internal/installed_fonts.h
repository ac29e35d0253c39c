// The fonts installed on the machine, as fontconfig lists them.
#pragma once

#include "tesmar/platform/text/FontRegistry.h"

#include <string>
#include <vector>

namespace tesmar {

// Every installed face that can be shaped, without duplicate names, in no particular order.
std::vector<FontRegistry::Source> installedFaces();

// The same for one font file; empty if it has no faces or cannot be read.
std::vector<FontRegistry::Source> facesInFile(const std::string& path);

} // namespace tesmar
