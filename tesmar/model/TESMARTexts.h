// All texts of the panel, shown and spoken: English, 18 other languages, or the host's own.
//
// Constant data: tables cost nothing until a panel is given one. Any thread.
#pragma once

#include "tesmar/model/CCConstants.h"

#include <span>
#include <string_view>

namespace tesmar {

enum class ReadingDirection { leftToRight, rightToLeft };

// UTF-8. A text that a table leaves out is the English one. To translate the panel, fill in a table
// (the files in tesmar/model/texts are examples) and pass it to TESMARViewController::setTexts().
struct TESMAR_API TESMARTexts {
    struct Language {
        std::string_view tag; // BCP 47: "de", "pt-BR", "zh-Hant"
        const TESMARTexts* texts;
    };
    // English first, then the others in the order of their tags.
    static std::span<const Language> languages();
    // The language for a BCP 47 tag: of the same tag, or else of the same language (and, for
    // Chinese, of the same script or the script of the region), or else English. Upper and lower
    // case are the same, and so are '-' and '_'.
    static const Language& closestLanguage(std::string_view tag);

    ReadingDirection direction = ReadingDirection::leftToRight;

    // --- Shown: as short as they can be ---------------------------------------------------------

    // The header.
    std::string_view closedCaptions = CCConstants::Label::CCSwitchLabel();
    std::string_view reset = CCConstants::Label::ButtonReset();
    // Titles of the controls, in capitals where the script has them.
    std::string_view textColorTitle = CCConstants::Label::ColorPickerTextColor();
    std::string_view backgroundColorTitle = CCConstants::Label::ColorPickerBackgroundColor();
    std::string_view textOpacityTitle = CCConstants::Label::LabelTextColorOpacity();
    std::string_view backgroundOpacityTitle = CCConstants::Label::LabelTextBackgroundColorOpacity();
    std::string_view fontTitle = CCConstants::Label::LabelFont();
    std::string_view sizeTitle = CCConstants::Label::LabelSize();
    // In the place of the name of the system font. Other fonts keep their names.
    std::string_view defaultFont = CCConstants::Label::LabelFontNameDefault();

    // --- Spoken by screen readers ---------------------------------------------------------------

    std::string_view panel = "Caption settings";
    std::string_view captionsSwitch = "Closed captions";
    std::string_view textColor = "Text colour";
    std::string_view textOpacity = "Text opacity";
    std::string_view backgroundColor = "Background colour";
    std::string_view backgroundOpacity = "Background opacity";
    std::string_view font = "Font";
    std::string_view fontSize = "Font size";
    std::string_view previousFont = "Previous font";
    std::string_view nextFont = "Next font";

    std::string_view magenta = "magenta";
    std::string_view cyan = "cyan";
    std::string_view white = "white";
    std::string_view black = "black";
    std::string_view yellow = "yellow";
    std::string_view red = "red";
    std::string_view blue = "blue";
    std::string_view green = "green";

    // Numbers take the places of {n} and {m}: the 5th of 8 colours, 90 percent, 18 points.
    std::string_view position = "{n} of {m}";
    std::string_view percent = "{n} percent";
    std::string_view points = "{n} points";
    std::string_view selected = "selected";
    std::string_view resetDone = "Reset to the default style";
    std::string_view increase = "increase";
    std::string_view decrease = "decrease";
    std::string_view on = "on";
    std::string_view off = "off";
    std::string_view switchRole = "switch";
    std::string_view buttonRole = "button";
    std::string_view headingRole = "heading";
};

} // namespace tesmar
