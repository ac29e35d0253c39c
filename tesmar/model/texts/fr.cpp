// French.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_fr{
    // Shown.
    .closedCaptions = "Sous-titres",
    .reset = "Réinitialiser",
    .textColorTitle = "COULEUR DU TEXTE",
    .backgroundColorTitle = "COULEUR DU FOND",
    .textOpacityTitle = "OPACITÉ",
    .backgroundOpacityTitle = "OPACITÉ",
    .fontTitle = "POLICE",
    .sizeTitle = "TAILLE",
    .defaultFont = "Par défaut",
    // Spoken: names.
    .panel = "Réglages des sous-titres",
    .captionsSwitch = "Sous-titres",
    .textColor = "Couleur du texte",
    .textOpacity = "Opacité du texte",
    .backgroundColor = "Couleur du fond",
    .backgroundOpacity = "Opacité du fond",
    .font = "Police",
    .fontSize = "Taille de la police",
    .previousFont = "Police précédente",
    .nextFont = "Police suivante",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "cyan",
    .white = "blanc",
    .black = "noir",
    .yellow = "jaune",
    .red = "rouge",
    .blue = "bleu",
    .green = "vert",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} sur {m}",
    .percent = "{n} pour cent",
    .points = "{n} points",
    .selected = "sélectionné",
    .resetDone = "Style par défaut rétabli",
    .increase = "augmenter",
    .decrease = "diminuer",
    .on = "activé",
    .off = "désactivé",
    .switchRole = "interrupteur",
    .buttonRole = "bouton",
    .headingRole = "titre",
};

} // namespace tesmar
