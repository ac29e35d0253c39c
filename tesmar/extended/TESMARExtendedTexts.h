// The texts of what the extended panel adds (see TESMARTexts for the rest).
//
// Constant data. Any thread.
#pragma once

#include "tesmar/model/TESMARTexts.h"

namespace tesmar {

// UTF-8. A text that a table leaves out is the English one.
struct TESMAR_API TESMARExtendedTexts {
    // Those in the language of `texts`; English for texts of the host's own.
    static const TESMARExtendedTexts& inLanguageOf(const TESMARTexts& texts);

    // --- Shown ----------------------------------------------------------------------------------

    // Titles of the rows, in capitals where the script has them.
    std::string_view presetsTitle = "STYLE";
    std::string_view edgeTitle = "TEXT EDGE";
    std::string_view windowColorTitle = "WINDOW COLOR";
    std::string_view windowOpacityTitle = "OPACITY";
    // In the place of the reset button.
    std::string_view undo = "Undo";

    // After the title of the presets: which one the style is.
    std::string_view customPreset = "Custom";
    std::string_view defaultPreset = "Default";
    std::string_view whiteOnBlack = "White on black";
    std::string_view blackOnWhite = "Black on white";
    std::string_view yellowOnBlack = "Yellow on black";
    std::string_view yellowOnBlue = "Yellow on blue";
    std::string_view largeText = "Large text";

    // In the places of the names of fonts, as short as they can be.
    std::string_view monospacedSerif = "Mono Serif";
    std::string_view proportionalSerif = "Serif";
    std::string_view monospacedSans = "Mono Sans";
    std::string_view proportionalSans = "Sans Serif";
    std::string_view casual = "Casual";
    std::string_view cursive = "Cursive";
    std::string_view smallCapitals = "Small Capitals";

    // Hints, and what a tap on each does.
    std::string_view invisibleText = "This text is invisible";
    std::string_view weakContrast = "Hard to read on some pictures";
    std::string_view tinyText = "This text is very small";
    std::string_view mend = "Fix";

    // --- Spoken by screen readers ---------------------------------------------------------------

    std::string_view presets = "Style";
    std::string_view edge = "Text edge";
    std::string_view windowColor = "Window colour";
    std::string_view windowOpacity = "Window opacity";
    std::string_view edgeNone = "none";
    std::string_view edgeRaised = "raised";
    std::string_view edgeDepressed = "depressed";
    std::string_view edgeUniform = "outline";
    std::string_view edgeDropShadow = "shadow";
    std::string_view undone = "The previous style is back";
};

} // namespace tesmar
