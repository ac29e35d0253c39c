// The machine's fonts, as fontconfig knows them. Private to the floor.
#pragma once

#include "tesmar/platform/text/FontRegistry.h"

#include <string>
#include <vector>

namespace tesmar {

// Every installed face that can be shaped, each name once, in no order.
std::vector<FontRegistry::Source> installedFaces();

// Those of one font file; empty when it holds none.
std::vector<FontRegistry::Source> facesInFile(const std::string& path);

} // namespace tesmar
