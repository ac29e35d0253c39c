// Every fixed value of the caption style: its default, the palette, the fonts and sizes on offer,
// and all texts of the panel.
//
// Each value is built at its first use, once for the life of the process, and never changes. Any
// thread.
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

    // The key of CCFontsSizesDict whose sizes serve every font without its own.
    static std::string_view CCFontDefaultSizesKey() { return "Default"; }
    // The fonts on offer: the system font's family name as it was at the first use, then seven face
    // names. Always eight, installed or not.
    static const std::vector<std::string>& CCFontsNameList();
    // Point sizes by font name; only fonts with sizes of their own, and CCFontDefaultSizesKey.
    static const std::map<std::string, std::vector<CGFloat>, std::less<>>& CCFontsSizesDict();
    // White 17-point system text on half-transparent black. Shared: whoever wants to edit it takes
    // a mutableCopy.
    static const Ref<NSDictionary>& CCDefaultStyleAttributes();
    // Eight opaque colours, for text and background alike; white and black are grey-scale colours.
    static const std::vector<Ref<UIColor>>& paletteColors();
    // The font of the panel's small labels; null for good where "HelveticaNeue-Medium" is missing.
    static const Ref<UIFont>& font();
    // Where the preferences keep the style.
    static std::string_view CCSessionStyleUserDefaultsKey() {
        return "CCSessionStyleUserDefaultsKey";
    }

    // The texts of the panel.
    struct Label {
        Label() = delete;

        static std::string_view ColorPickerTextColor() { return "TEXT COLOR"; }
        static std::string_view ColorPickerBackgroundColor() { return "BACKGROUND COLOR"; }
        static std::string_view CCSwitchLabel() { return "Closed Captions"; }
        static std::string_view ButtonReset() { return "Reset"; }
        static std::string_view LabelTextColorOpacity() { return "OPACITY"; }
        static std::string_view LabelTextBackgroundColorOpacity() { return "OPACITY"; }
        // What stands for the system font in the list of fonts.
        static std::string_view LabelFontNameDefault() { return "Default"; }
        static std::string_view LabelFont() { return "FONT"; }
        static std::string_view LabelSize() { return "SIZE"; }
    };
};

} // namespace tesmar
