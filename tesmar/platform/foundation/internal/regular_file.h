// Reads regular files, and no pipes or devices.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tesmar {

// The bytes of a file; std::nullopt if it is not a regular file, cannot be read, or has more than
// `most` bytes. Any thread.
std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most);

} // namespace tesmar
