#include "tesmar/platform/text/internal/installed_fonts.h"

#include "tesmar/platform/foundation/internal/regular_file.h"
#include "tesmar/platform/text/internal/fontconfig_ptr.h"

#include <unordered_map>

namespace tesmar {
namespace {

std::string text(const FcPattern* pattern, const char* property) {
    FcChar8* value = nullptr;
    if (FcPatternGetString(pattern, property, 0, &value) != FcResultMatch)
        return {};
    return reinterpret_cast<const char*>(value);
}

int number(const FcPattern* pattern, const char* property) {
    int value = 0;
    FcPatternGetInteger(pattern, property, 0, &value);
    return value;
}

bool flag(const FcPattern* pattern, const char* property) {
    FcBool value = FcFalse;
    return FcPatternGetBool(pattern, property, 0, &value) == FcResultMatch && value == FcTrue;
}

// Type 1 fonts cannot be shaped, and bitmap fonts cannot be scaled. Of a variable font only the
// named instances are faces, not the pattern for the whole font.
bool canBeShaped(const FcPattern* pattern) {
    const std::string format = text(pattern, FC_FONTFORMAT);
    return flag(pattern, FC_SCALABLE) && !flag(pattern, FC_VARIABLE) &&
           (format == "TrueType" || format == "CFF");
}

std::vector<FontRegistry::Source> facesOf(const FcFontSet* fonts) {
    // If a face is installed twice, the file whose path is first in byte order wins.
    std::unordered_map<std::string, FontRegistry::Source> faces;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        const FcPattern* const pattern = fonts->fonts[i];
        std::string name = text(pattern, FC_POSTSCRIPT_NAME);
        std::string file = text(pattern, FC_FILE);
        if (name.empty() || file.empty() || !canBeShaped(pattern))
            continue;
        const auto known = faces.find(name);
        if (known != faces.end() && known->second.file <= file)
            continue;
        faces[name] = {std::move(file), number(pattern, FC_INDEX), text(pattern, FC_FAMILY), name};
    }
    std::vector<FontRegistry::Source> result;
    result.reserve(faces.size());
    for (auto& [name, source] : faces)
        result.push_back(std::move(source));
    return result;
}

// Fontconfig's main configuration file without its includes: the included rules take several times
// as long to load as the font caches, and are needed for matching fonts, not for listing them.
// Empty if the file cannot be read.
std::string configurationWithoutIncludes(FcConfig* config) {
    FcChar8* const path = FcConfigGetFilename(config, nullptr);
    if (!path)
        return {};
    constexpr std::size_t kLargestFile = 1 << 20; // bytes
    std::string configuration =
        readRegularFile(reinterpret_cast<const char*>(path), kLargestFile).value_or("");
    FcStrFree(path);
    constexpr std::string_view kStart = "<include", kEnd = "</include>";
    for (std::size_t start; (start = configuration.find(kStart)) != std::string::npos;) {
        const std::size_t end = configuration.find(kEnd, start);
        if (end == std::string::npos)
            return {};
        configuration.erase(start, end + kEnd.size() - start);
    }
    return configuration;
}

FcConfigPtr configurationForListing() {
    FcConfigPtr config(FcConfigCreate());
    const std::string rules = configurationWithoutIncludes(config.get());
    const auto* const bytes = reinterpret_cast<const FcChar8*>(rules.c_str());
    if (!rules.empty() && FcConfigParseAndLoadFromMemory(config.get(), bytes, FcFalse) &&
        FcConfigBuildFonts(config.get()))
        return config;
    return FcConfigPtr(FcInitLoadConfigAndFonts());
}

} // namespace

std::vector<FontRegistry::Source> facesInFile(const std::string& path) {
    FcFontSetPtr fonts(FcFontSetCreate());
    int count = 0;
    FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(path.c_str()), static_cast<unsigned>(-1),
                       nullptr, &count, fonts.get());
    return facesOf(fonts.get());
}

std::vector<FontRegistry::Source> installedFaces() {
    const FcConfigPtr config = configurationForListing();
    return config ? facesOf(FcConfigGetFonts(config.get(), FcSetSystem))
                  : std::vector<FontRegistry::Source>();
}

} // namespace tesmar
