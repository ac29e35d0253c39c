// Makes the model's classes and operations known to the object runtime.
#pragma once

namespace tesmar {

// Includes the floors below. Any thread, any number of times.
void registerModelClasses();

} // namespace tesmar
