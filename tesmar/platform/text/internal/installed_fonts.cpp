#include "tesmar/platform/text/internal/installed_fonts.h"

#include "tesmar/platform/text/internal/font_configuration.h"

#include <filesystem>
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

} // namespace

std::vector<FontRegistry::Source> facesInFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) // opening a fifo waits
        return {};
    FcFontSetPtr fonts(FcFontSetCreate());
    int count = 0;
    FcFreeTypeQueryAll(reinterpret_cast<const FcChar8*>(path.c_str()), static_cast<unsigned>(-1),
                       nullptr, &count, fonts.get());
    return facesOf(fonts.get());
}

std::vector<FontRegistry::Source> installedFaces() {
    const FcConfigPtr config = listingFontConfiguration();
    return config ? facesOf(FcConfigGetFonts(config.get(), FcSetSystem))
                  : std::vector<FontRegistry::Source>();
}

} // namespace tesmar
