// Private to the floor.
#pragma once

#include "tesmar/platform/text/internal/FontCatalogue.h"

namespace tesmar {

// The registry's catalogue, built when it is first asked for. Any thread.
std::shared_ptr<const FontCatalogue> currentCatalogue();

} // namespace tesmar
