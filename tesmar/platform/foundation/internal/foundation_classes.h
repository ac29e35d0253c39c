#pragma once

namespace tesmar {

// Makes the foundation's classes known to the object runtime by name. Again changes nothing.
// Any thread.
void registerFoundationClasses();

} // namespace tesmar
