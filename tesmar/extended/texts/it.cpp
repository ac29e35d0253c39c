// Italian.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_it{
    // Shown.
    .presetsTitle = "STILE",
    .edgeTitle = "BORDO DEL TESTO",
    .windowColorTitle = "COLORE DEL RIQUADRO",
    .windowOpacityTitle = "OPACITÀ",
    .undo = "Annulla",
    .customPreset = "Personale",
    .defaultPreset = "Predefinito",
    .whiteOnBlack = "Bianco su nero",
    .blackOnWhite = "Nero su bianco",
    .yellowOnBlack = "Giallo su nero",
    .yellowOnBlue = "Giallo su blu",
    .largeText = "Testo grande",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Informale",
    .cursive = "Corsivo",
    .smallCapitals = "Maiuscoletto",
    .invisibleText = "Questo testo è invisibile",
    .weakContrast = "Poco leggibile su alcune immagini",
    .tinyText = "Questo testo è molto piccolo",
    .mend = "Correggi",
    // Spoken.
    .presets = "Stile",
    .edge = "Bordo del testo",
    .windowColor = "Colore del riquadro",
    .windowOpacity = "Opacità del riquadro",
    .edgeNone = "nessuno",
    .edgeRaised = "in rilievo",
    .edgeDepressed = "incassato",
    .edgeUniform = "contorno",
    .edgeDropShadow = "ombra",
    .undone = "Lo stile precedente è tornato",
};

} // namespace tesmar
