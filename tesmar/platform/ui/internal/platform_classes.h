// Registration of the toolkit's classes.
#pragma once

namespace tesmar {

// Registers the toolkit's classes with the object runtime, so that interface files and archives can
// name them. Any thread, any number of times.
void registerPlatformClasses();

} // namespace tesmar
