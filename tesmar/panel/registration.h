// Makes the whole library known to the object runtime.
#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// Its own entry points see to it; only a host that looks classes up by name before it has made a
// panel needs to call this. Any thread, any number of times.
TESMAR_API void registerTESMAR();

} // namespace tesmar
