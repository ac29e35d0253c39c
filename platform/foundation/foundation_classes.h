#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// Makes the foundation's classes known to the object runtime by name. Again changes nothing.
// Any thread.
TESMAR_API void registerFoundationClasses();

} // namespace tesmar
