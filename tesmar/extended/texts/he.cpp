// Hebrew.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_he{
    // Shown.
    .presetsTitle = "סגנון",
    .edgeTitle = "קצה הטקסט",
    .windowColorTitle = "צבע החלון",
    .windowOpacityTitle = "אטימות",
    .undo = "ביטול",
    .customPreset = "מותאם",
    .defaultPreset = "ברירת מחדל",
    .whiteOnBlack = "לבן על שחור",
    .blackOnWhite = "שחור על לבן",
    .yellowOnBlack = "צהוב על שחור",
    .yellowOnBlue = "צהוב על כחול",
    .largeText = "טקסט גדול",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "חופשי",
    .cursive = "כתב",
    .smallCapitals = "אותיות קטנות",
    .invisibleText = "הטקסט הזה בלתי נראה",
    .weakContrast = "קשה לקריאה על חלק מהתמונות",
    .tinyText = "הטקסט הזה קטן מאוד",
    .mend = "תיקון",
    // Spoken.
    .presets = "סגנון",
    .edge = "קצה הטקסט",
    .windowColor = "צבע החלון",
    .windowOpacity = "אטימות החלון",
    .edgeNone = "ללא",
    .edgeRaised = "מוגבה",
    .edgeDepressed = "שקוע",
    .edgeUniform = "קו מתאר",
    .edgeDropShadow = "צל",
    .undone = "הסגנון הקודם חזר",
};

} // namespace tesmar
