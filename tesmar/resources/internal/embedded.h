// The interface files and images that are compiled into the library.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

// Answers the bytes of the embedded file of that name ("stepper-up@2x.png"), or nothing when there
// is none. Names are exact; one with a path separator is never found. Any thread.
std::optional<std::string> embeddedResource(std::string_view fileName);

} // namespace tesmar
