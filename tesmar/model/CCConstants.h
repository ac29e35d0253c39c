// Every fixed value of the caption style: the default, the palette, the offered fonts and sizes,
// and all texts of the panel.
//
// Each value is built once, on first use, and never changes or is destroyed. Any thread.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// A caption style is a dictionary of up to three entries:
//
//     NSForegroundColorAttributeName   UIColor   text colour; its alpha is the text opacity
//     NSBackgroundColorAttributeName   UIColor   background colour; its alpha is its opacity
//     NSFontAttributeName              UIFont    face and point size
struct TESMAR_API CCConstants {
    CCConstants() = delete;

    // The key of CCFontsSizesDict for fonts that have no sizes of their own.
    static std::string_view CCFontDefaultSizesKey() { return "Default"; }
    // The names of the fonts that the panel may offer: the family name of the system font at the
    // time of the first use, then seven face names. Always eight, whether installed or not.
    static const std::vector<std::string>& CCFontsNameList();
    // Point sizes by font name, for fonts with sizes of their own and CCFontDefaultSizesKey.
    static const std::map<std::string, std::vector<CGFloat>, std::less<>>& CCFontsSizesDict();
    // White 17-point system text on half-transparent black. Shared and immutable: make a
    // mutableCopy to edit it.
    static const Ref<NSDictionary>& CCDefaultStyleAttributes();
    // Eight opaque colours, for both text and background. White and black are grey-scale colours.
    static const std::vector<Ref<UIColor>>& paletteColors();
    // The font of the panel's small labels; null if "HelveticaNeue-Medium" was not available at the
    // first use.
    static const Ref<UIFont>& font();
    // The preferences key of the saved style.
    static std::string_view CCSessionStyleUserDefaultsKey() {
        return "CCSessionStyleUserDefaultsKey";
    }

    // The texts of the panel in English (see TESMARTexts for other languages).
    struct Label {
        Label() = delete;

        static constexpr std::string_view ColorPickerTextColor() { return "TEXT COLOR"; }
        static constexpr std::string_view ColorPickerBackgroundColor() {
            return "BACKGROUND COLOR";
        }
        static constexpr std::string_view CCSwitchLabel() { return "Closed Captions"; }
        static constexpr std::string_view ButtonReset() { return "Reset"; }
        static constexpr std::string_view LabelTextColorOpacity() { return "OPACITY"; }
        static constexpr std::string_view LabelTextBackgroundColorOpacity() { return "OPACITY"; }
        // Shown for the system font in the font name picker.
        static constexpr std::string_view LabelFontNameDefault() { return "Default"; }
        static constexpr std::string_view LabelFont() { return "FONT"; }
        static constexpr std::string_view LabelSize() { return "SIZE"; }
    };
};

} // namespace tesmar
