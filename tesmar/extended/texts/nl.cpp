// Dutch.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_nl{
    // Shown.
    .presetsTitle = "STIJL",
    .edgeTitle = "TEKSTRAND",
    .windowColorTitle = "VENSTERKLEUR",
    .windowOpacityTitle = "DEKKING",
    .undo = "Herstel",
    .customPreset = "Aangepast",
    .defaultPreset = "Standaard",
    .whiteOnBlack = "Wit op zwart",
    .blackOnWhite = "Zwart op wit",
    .yellowOnBlack = "Geel op zwart",
    .yellowOnBlue = "Geel op blauw",
    .largeText = "Grote tekst",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Informeel",
    .cursive = "Schrijfletter",
    .smallCapitals = "Kleinkapitaal",
    .invisibleText = "Deze tekst is onzichtbaar",
    .weakContrast = "Moeilijk leesbaar op sommige beelden",
    .tinyText = "Deze tekst is erg klein",
    .mend = "Verhelp",
    // Spoken.
    .presets = "Stijl",
    .edge = "Tekstrand",
    .windowColor = "Vensterkleur",
    .windowOpacity = "Vensterdekking",
    .edgeNone = "geen",
    .edgeRaised = "verhoogd",
    .edgeDepressed = "verdiept",
    .edgeUniform = "omtrek",
    .edgeDropShadow = "schaduw",
    .undone = "De vorige stijl is terug",
};

} // namespace tesmar
