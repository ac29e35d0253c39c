// Makes the widgets known to the object runtime, for interface files and archives.
#pragma once

namespace tesmar {

// Includes the floors below. Any thread, any number of times.
void registerWidgetClasses();

} // namespace tesmar
