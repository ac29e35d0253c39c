#include "tesmar/extended/internal/ExtendedFontPicker.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 17;
constexpr CGFloat kDefaultScriptSize = 28;

struct FontStyle {
    std::string_view fontName; // the generic face
    std::string_view TESMARExtendedTexts::*text;
};

constexpr std::array<FontStyle, 7> kStyles{{
    {".MonospacedSerif", &TESMARExtendedTexts::monospacedSerif},
    {".ProportionalSerif", &TESMARExtendedTexts::proportionalSerif},
    {".MonospacedSans", &TESMARExtendedTexts::monospacedSans},
    {".ProportionalSans", &TESMARExtendedTexts::proportionalSans},
    {".Casual", &TESMARExtendedTexts::casual},
    {".Cursive", &TESMARExtendedTexts::cursive},
    {".SmallCapitals", &TESMARExtendedTexts::smallCapitals},
}};

bool isScript(std::string_view fontName) {
    return fontName == "SavoyeLetPlain" || fontName == ".Cursive";
}

} // namespace

const std::vector<CGFloat>& offeredSizesForFont(std::string_view fontName) {
    static const auto& sizes = *new const std::vector<CGFloat>{8.5, 12, 15, 18, 20, 23, 26, 30, 34};
    static const auto& scriptSizes =
        *new const std::vector<CGFloat>{14, 20, 25, 28, 30, 35, 40, 45, 56};
    return isScript(fontName) ? scriptSizes : sizes;
}

CGFloat defaultSizeForFont(std::string_view fontName) {
    return isScript(fontName) ? kDefaultScriptSize : kDefaultSize;
}

void ExtendedFontPicker::offer(OfferedSizes sizes, OfferedFonts fonts) {
    sizes_ = sizes;
    fonts_ = fonts;
    updateOffers();
}

void ExtendedFontPicker::setTexts(const TESMARExtendedTexts& texts) {
    for (const FontStyle& style : kStyles)
        fontNamePicker()->setShownText(std::string(style.fontName), texts.*style.text);
}

std::vector<std::string> ExtendedFontPicker::offeredFontNames() const {
    std::vector<std::string> panelFonts = FontPicker::offeredFontNames();
    if (fonts_ == OfferedFonts::panel)
        return panelFonts;
    std::vector<std::string> names;
    if (std::erase(panelFonts, UIFont::systemFontFamily()) > 0)
        names.push_back(UIFont::systemFontFamily());
    for (const FontStyle& style : kStyles)
        if (UIFont::fontWithName(style.fontName, kDefaultSize))
            names.emplace_back(style.fontName);
    names.insert(names.end(), panelFonts.begin(), panelFonts.end());
    return names;
}

std::vector<CGFloat> ExtendedFontPicker::offeredSizes(const std::string& fontName) const {
    return sizes_ == OfferedSizes::panel ? FontPicker::offeredSizes(fontName)
                                         : offeredSizesForFont(fontName);
}

int ExtendedFontPicker::sizeCount() const {
    return sizes_ == OfferedSizes::panel
               ? FontPicker::sizeCount()
               : static_cast<int>(offeredSizesForFont(UIFont::systemFontFamily()).size());
}

} // namespace tesmar
