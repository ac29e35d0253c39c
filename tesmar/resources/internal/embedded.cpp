#include "tesmar/resources/internal/embedded.h"

#include <algorithm>

namespace tesmar {

std::optional<std::string> embeddedResource(std::string_view fileName) {
    const auto files = embeddedFiles();
    const auto found = std::ranges::find(files, fileName, &EmbeddedFile::name);
    if (found == files.end())
        return std::nullopt;
    return std::string(found->content);
}

} // namespace tesmar
