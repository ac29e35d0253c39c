// The interface files and images that are compiled into the library.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

// A copy of the embedded file with exactly that name, such as "stepper-up@2x.png"; std::nullopt if
// there is none. Names with a path separator are never found. Any thread.
std::optional<std::string> embeddedResource(std::string_view fileName);

} // namespace tesmar
