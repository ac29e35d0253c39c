// Makes the library's bundle, and its operations on the toolkit's controls, known to the runtime.
#pragma once

namespace tesmar {

// Includes the floors below. Any thread, any number of times.
void registerControlClasses();

} // namespace tesmar
