// Registration of the library's classes, for hosts that look them up by name.
#pragma once

#include "tesmar/platform/foundation/export.h"

namespace tesmar {

// Registers the library's classes, its class operations on toolkit classes and its resource bundle
// with the object runtime. Making a TESMARViewController does this; a host calls it only to look
// classes up by name before that. Any thread, any number of times.
TESMAR_API void registerTESMAR();

} // namespace tesmar
