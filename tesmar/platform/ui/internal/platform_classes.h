// Makes the toolkit's classes known to the object runtime.
#pragma once

namespace tesmar {

// Must have been called before classes are looked up by name: by interface files, archives or other
// languages. Any thread, any number of times.
void registerPlatformClasses();

} // namespace tesmar
