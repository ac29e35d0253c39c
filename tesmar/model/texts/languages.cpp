// Which table of texts a language tag means.
#include "tesmar/model/texts/internal/languages.h"

#include <algorithm>
#include <initializer_list>

namespace tesmar {
namespace {

constinit const TESMARTexts texts_en{};

constinit const TESMARTexts::Language kLanguages[]{
    {"en", &texts_en}, {"ar", &texts_ar},           {"de", &texts_de},           {"el", &texts_el},
    {"es", &texts_es}, {"fr", &texts_fr},           {"he", &texts_he},           {"hi", &texts_hi},
    {"it", &texts_it}, {"ja", &texts_ja},           {"ko", &texts_ko},           {"nl", &texts_nl},
    {"pl", &texts_pl}, {"pt-BR", &texts_pt_BR},     {"ru", &texts_ru},           {"tr", &texts_tr},
    {"uk", &texts_uk}, {"zh-Hans", &texts_zh_Hans}, {"zh-Hant", &texts_zh_Hant},
};

// Tags are ASCII; the process's locale must not matter.
char folded(char c) {
    return c == '_' ? '-' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSame(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return folded(x) == folded(y); });
}

std::string_view primarySubtag(std::string_view tag) {
    return tag.substr(0, tag.find_first_of("-_"));
}

bool hasSubtag(std::string_view tag, std::initializer_list<std::string_view> subtags) {
    while (!tag.empty()) {
        const std::string_view first = primarySubtag(tag);
        for (const std::string_view each : subtags)
            if (isSame(first, each))
                return true;
        tag.remove_prefix(std::min(tag.size(), first.size() + 1));
    }
    return false;
}

const TESMARTexts::Language* find(std::string_view tag, bool byPrimarySubtag) {
    for (const auto& language : kLanguages)
        if (isSame(byPrimarySubtag ? primarySubtag(language.tag) : language.tag, tag))
            return &language;
    return nullptr;
}

} // namespace

std::span<const TESMARTexts::Language> TESMARTexts::languages() {
    return kLanguages;
}

const TESMARTexts::Language& TESMARTexts::closestLanguage(std::string_view tag) {
    if (const auto* exact = find(tag, false))
        return *exact;
    const std::string_view primary = primarySubtag(tag);
    if (isSame(primary, "zh")) {
        const bool isTraditional =
            hasSubtag(tag, {"Hant"}) ||
            (hasSubtag(tag, {"TW", "HK", "MO"}) && !hasSubtag(tag, {"Hans"}));
        return *find(isTraditional ? "zh-Hant" : "zh-Hans", false);
    }
    if (isSame(primary, "iw")) // Hebrew's former tag, which systems still use
        return *find("he", false);
    const auto* same = find(primary, true);
    return same ? *same : kLanguages[0];
}

} // namespace tesmar
