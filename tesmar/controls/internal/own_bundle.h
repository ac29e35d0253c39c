// The library's own resource bundle.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"

namespace tesmar {

// The bundle that is registered as TESMARBundleIdentifier. The first call registers the library's
// embedded resources under it. Any thread.
Ref<NSBundle> TESMARBundle();

} // namespace tesmar
