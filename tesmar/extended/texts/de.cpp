// German.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_de{
    // Shown.
    .presetsTitle = "STIL",
    .edgeTitle = "SCHRIFTKANTE",
    .windowColorTitle = "FENSTERFARBE",
    .windowOpacityTitle = "DECKKRAFT",
    .undo = "Rückgängig",
    .customPreset = "Eigener",
    .defaultPreset = "Standard",
    .whiteOnBlack = "Weiß auf Schwarz",
    .blackOnWhite = "Schwarz auf Weiß",
    .yellowOnBlack = "Gelb auf Schwarz",
    .yellowOnBlue = "Gelb auf Blau",
    .largeText = "Große Schrift",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Locker",
    .cursive = "Schreibschrift",
    .smallCapitals = "Kapitälchen",
    .invisibleText = "Dieser Text ist unsichtbar",
    .weakContrast = "Auf manchen Bildern schwer lesbar",
    .tinyText = "Dieser Text ist sehr klein",
    .mend = "Beheben",
    // Spoken.
    .presets = "Stil",
    .edge = "Schriftkante",
    .windowColor = "Fensterfarbe",
    .windowOpacity = "Fensterdeckkraft",
    .edgeNone = "keine",
    .edgeRaised = "erhaben",
    .edgeDepressed = "vertieft",
    .edgeUniform = "Umriss",
    .edgeDropShadow = "Schatten",
    .undone = "Der vorherige Stil ist wieder da",
};

} // namespace tesmar
