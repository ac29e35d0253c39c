#include "tesmar/extended/TESMARExtendedTexts.h"

#include "tesmar/extended/texts/internal/extended_languages.h"

#include <algorithm>

namespace tesmar {
namespace {

constinit const TESMARExtendedTexts kEnglish{};

struct Language {
    std::string_view tag; // as in TESMARTexts::languages()
    const TESMARExtendedTexts* texts;
};

constinit const Language kLanguages[]{
    {"ar", &extendedTexts_ar},           {"de", &extendedTexts_de},
    {"el", &extendedTexts_el},           {"es", &extendedTexts_es},
    {"fr", &extendedTexts_fr},           {"he", &extendedTexts_he},
    {"hi", &extendedTexts_hi},           {"it", &extendedTexts_it},
    {"ja", &extendedTexts_ja},           {"ko", &extendedTexts_ko},
    {"nl", &extendedTexts_nl},           {"pl", &extendedTexts_pl},
    {"pt-BR", &extendedTexts_pt_BR},     {"ru", &extendedTexts_ru},
    {"tr", &extendedTexts_tr},           {"uk", &extendedTexts_uk},
    {"zh-Hans", &extendedTexts_zh_Hans}, {"zh-Hant", &extendedTexts_zh_Hant},
};

} // namespace

const TESMARExtendedTexts& TESMARExtendedTexts::inLanguageOf(const TESMARTexts& texts) {
    for (const TESMARTexts::Language& language : TESMARTexts::languages()) {
        if (language.texts != &texts)
            continue;
        const auto* const own = std::ranges::find(kLanguages, language.tag, &Language::tag);
        return own == std::end(kLanguages) ? kEnglish : *own->texts;
    }
    return kEnglish;
}

} // namespace tesmar
