#include "tesmar/platform/foundation/internal/regular_file.h"

#include <fstream>

namespace tesmar {

std::optional<std::string> readRegularFile(const std::filesystem::path& path, std::size_t most) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return std::nullopt;
    const auto size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    if (error || size > most || !file)
        return std::nullopt;
    std::string bytes(size, '\0');
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    if (file.bad())
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(file.gcount())); // it may have been truncated meanwhile
    return bytes;
}

} // namespace tesmar
