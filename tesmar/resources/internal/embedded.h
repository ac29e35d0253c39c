// The interface files and images that are compiled into the library.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tesmar {

struct EmbeddedFile {
    std::string_view name; // without directory, such as "stepper-up@2x.png"
    std::string_view content;
};

// All of them. Its source is generated (embed.cmake).
std::span<const EmbeddedFile> embeddedFiles();

// A copy of the embedded file with exactly that name; std::nullopt if there is none. Names with a
// path separator are never found. Any thread.
std::optional<std::string> embeddedResource(std::string_view fileName);

} // namespace tesmar
