#include "tesmar/platform/text/internal/font_configuration.h"

#include "tesmar/platform/foundation/internal/regular_file.h"

#include <filesystem>
#include <optional>
#include <stdlib.h>
#include <string>
#include <string_view>

namespace tesmar {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLargestFile = 1 << 20;                                     // bytes
constexpr std::string_view kIncludeStart = "<include", kIncludeEnd = "</include"; // with a '>'

// The path that fontconfig opens for a name; for null, its main file. Empty if it finds no file.
std::string fileNamed(const char* name) {
    const FcConfigPtr config(FcConfigCreate()); // else the process's one would be loaded
    FcChar8* const found =
        FcConfigGetFilename(config.get(), reinterpret_cast<const FcChar8*>(name));
    std::string path = found ? reinterpret_cast<const char*>(found) : "";
    FcStrFree(found);
    return path;
}

std::string fileIncluded(std::string_view attributes, std::string_view name) {
    std::string file(name);
    if (attributes.find("xdg") == attributes.npos)
        return fileNamed(file.c_str());
    if (const char* const directory = ::secure_getenv("XDG_CONFIG_HOME"); directory && *directory)
        return std::string(directory) + "/" + file;
    return fileNamed(("~/.config/" + file).c_str());
}

// Whether fontconfig can load the file, or the files of the directory, and all that they include
// without waiting. A missing file is no obstacle.
bool isLoadable(const std::string& path, int depth = 0) {
    constexpr int kMostLevels = 8;
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (path.empty() || !fs::exists(status))
        return true;
    if (fs::is_directory(status)) {
        for (auto entry = fs::directory_iterator(path, error); entry != fs::directory_iterator();
             entry.increment(error))
            if (entry->path().extension() == ".conf" && !isLoadable(entry->path(), depth + 1))
                return false;
        return true;
    }
    if (depth > kMostLevels || !fs::is_regular_file(status))
        return false;
    const std::string rules = readRegularFile(path, kLargestFile).value_or("");
    for (std::size_t at = 0; (at = rules.find(kIncludeStart, at)) != rules.npos;) {
        at += kIncludeStart.size();
        const std::size_t name = rules.find('>', at), end = rules.find(kIncludeEnd, at);
        if (end == rules.npos || name > end)
            return true; // not XML; fontconfig refuses it
        const std::string_view text = rules;
        if (!isLoadable(
                fileIncluded(text.substr(at, name - at), text.substr(name + 1, end - name - 1)),
                depth + 1))
            return false;
    }
    return true;
}

// Null if fontconfig does not accept the rules.
FcConfigPtr configurationOf(const std::string& rules) {
    FcConfigPtr config(FcConfigCreate());
    const auto* const bytes = reinterpret_cast<const FcChar8*>(rules.c_str());
    const bool isBuilt = FcConfigParseAndLoadFromMemory(config.get(), bytes, FcFalse) &&
                         FcConfigBuildFonts(config.get());
    return isBuilt ? std::move(config) : nullptr;
}

// The main file without its includes. Empty if it cannot be read.
std::string rulesWithoutIncludes() {
    const std::string path = fileNamed(nullptr);
    std::string rules = readRegularFile(path, kLargestFile).value_or("");
    for (std::size_t start; (start = rules.find(kIncludeStart)) != rules.npos;) {
        const std::size_t end = rules.find('>', rules.find(kIncludeEnd, start));
        if (end == rules.npos)
            return {};
        rules.erase(start, end + 1 - start);
    }
    return rules;
}

} // namespace

FcConfigPtr fullFontConfiguration() {
    if (isLoadable(fileNamed(nullptr)))
        return FcConfigPtr(FcInitLoadConfigAndFonts());
    return configurationOf("<fontconfig><dir>/usr/share/fonts</dir>"
                           "<dir>/usr/local/share/fonts</dir><dir prefix=\"xdg\">fonts</dir>"
                           "<cachedir>/var/cache/fontconfig</cachedir>"
                           "<cachedir prefix=\"xdg\">fontconfig</cachedir></fontconfig>");
}

FcConfigPtr listingFontConfiguration() {
    const std::string rules = rulesWithoutIncludes();
    FcConfigPtr config = rules.empty() ? nullptr : configurationOf(rules);
    return config ? std::move(config) : fullFontConfiguration();
}

} // namespace tesmar
