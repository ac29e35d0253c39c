// French.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_fr{
    // Shown.
    .presetsTitle = "STYLE",
    .edgeTitle = "CONTOUR DU TEXTE",
    .windowColorTitle = "COULEUR DU CADRE",
    .windowOpacityTitle = "OPACITÉ",
    .undo = "Annuler",
    .customPreset = "Personnalisé",
    .defaultPreset = "Par défaut",
    .whiteOnBlack = "Blanc sur noir",
    .blackOnWhite = "Noir sur blanc",
    .yellowOnBlack = "Jaune sur noir",
    .yellowOnBlue = "Jaune sur bleu",
    .largeText = "Grand texte",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Fantaisie",
    .cursive = "Cursive",
    .smallCapitals = "Petites capitales",
    .invisibleText = "Ce texte est invisible",
    .weakContrast = "Peu lisible sur certaines images",
    .tinyText = "Ce texte est très petit",
    .mend = "Corriger",
    // Spoken.
    .presets = "Style",
    .edge = "Contour du texte",
    .windowColor = "Couleur du cadre",
    .windowOpacity = "Opacité du cadre",
    .edgeNone = "aucun",
    .edgeRaised = "en relief",
    .edgeDepressed = "en creux",
    .edgeUniform = "uniforme",
    .edgeDropShadow = "ombre",
    .undone = "Le style précédent est rétabli",
};

} // namespace tesmar
