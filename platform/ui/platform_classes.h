// Makes the toolkit's classes known to the object runtime.
#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// Must have been called before classes are looked up by name: by interface files, archives or other
// languages. Any thread, any number of times.
TESMAR_API void registerPlatformClasses();

} // namespace tesmar
