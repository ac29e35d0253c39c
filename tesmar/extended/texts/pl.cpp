// Polish.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_pl{
    // Shown.
    .presetsTitle = "STYL",
    .edgeTitle = "KRAWĘDŹ TEKSTU",
    .windowColorTitle = "KOLOR OKNA",
    .windowOpacityTitle = "KRYCIE",
    .undo = "Cofnij",
    .customPreset = "Własny",
    .defaultPreset = "Domyślny",
    .whiteOnBlack = "Biały na czarnym",
    .blackOnWhite = "Czarny na białym",
    .yellowOnBlack = "Żółty na czarnym",
    .yellowOnBlue = "Żółty na niebieskim",
    .largeText = "Duży tekst",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Swobodny",
    .cursive = "Pisanka",
    .smallCapitals = "Kapitaliki",
    .invisibleText = "Ten tekst jest niewidoczny",
    .weakContrast = "Słabo czytelny na niektórych obrazach",
    .tinyText = "Ten tekst jest bardzo mały",
    .mend = "Popraw",
    // Spoken.
    .presets = "Styl",
    .edge = "Krawędź tekstu",
    .windowColor = "Kolor okna",
    .windowOpacity = "Krycie okna",
    .edgeNone = "brak",
    .edgeRaised = "wypukła",
    .edgeDepressed = "wklęsła",
    .edgeUniform = "kontur",
    .edgeDropShadow = "cień",
    .undone = "Przywrócono poprzedni styl",
};

} // namespace tesmar
