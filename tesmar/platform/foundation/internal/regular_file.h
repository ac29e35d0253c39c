#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace tesmar {

// The bytes of a regular file; nothing when there is none, when it cannot be read, or when it is
// longer than `most`. Any thread.
std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most);

} // namespace tesmar
