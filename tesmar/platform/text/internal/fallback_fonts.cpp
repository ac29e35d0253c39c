#include "tesmar/platform/text/internal/fallback_fonts.h"

#include "tesmar/platform/text/internal/font_configuration.h"

#include <map>
#include <string_view>
#include <utility>

namespace tesmar {
namespace {

const FcChar8* chars(const std::string& text) {
    return reinterpret_cast<const FcChar8*>(text.c_str());
}

FcFontSetPtr sortedFonts(const std::string& family, const std::string& language) {
    static FcConfig* const config = fullFontConfiguration().release(); // never destroyed
    const FcPatternPtr wanted(FcPatternCreate());
    FcPatternAddString(wanted.get(), FC_FAMILY, chars(family));
    if (!language.empty())
        FcPatternAddString(wanted.get(), FC_LANG, chars(language));
    // Ends the list of languages, to which those of the process's locale would be appended.
    FcPatternAddString(wanted.get(), FC_LANG, chars("und"));
    FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result;
    return FcFontSetPtr(FcFontSort(config, wanted.get(), FcTrue, nullptr, &result));
}

FontFileRef fontFile(FcPattern* pattern) {
    FcChar8 *path = nullptr, *format = nullptr;
    FcCharSet* characters = nullptr;
    FcBool isScalable = FcFalse;
    int index = 0;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    FcPatternGetBool(pattern, FC_SCALABLE, 0, &isScalable);
    if (!isScalable || FcPatternGetString(pattern, FC_FILE, 0, &path) != FcResultMatch ||
        FcPatternGetString(pattern, FC_FONTFORMAT, 0, &format) != FcResultMatch ||
        FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch)
        return nullptr;
    const std::string_view kind = reinterpret_cast<const char*>(format);
    if (kind != "TrueType" && kind != "CFF")
        return nullptr; // other formats cannot be shaped
    return std::make_shared<FontFile>(reinterpret_cast<const char*>(path), index, characters);
}

} // namespace

const std::vector<FontFileRef>& fallbackFonts(const std::string& family,
                                              const std::string& language) {
    static auto* const cache =
        new std::map<std::pair<std::string, std::string>, std::vector<FontFileRef>>;
    const auto [entry, isNew] = cache->try_emplace({family, language});
    if (isNew)
        if (const FcFontSetPtr fonts = sortedFonts(family, language))
            for (int i = 0; i < fonts->nfont; ++i)
                if (FontFileRef file = fontFile(fonts->fonts[i]))
                    entry->second.push_back(std::move(file));
    return entry->second;
}

} // namespace tesmar
