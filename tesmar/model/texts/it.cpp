// Italian.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_it{
    // Shown.
    .closedCaptions = "Sottotitoli",
    .reset = "Ripristina",
    .textColorTitle = "COLORE DEL TESTO",
    .backgroundColorTitle = "COLORE DELLO SFONDO",
    .textOpacityTitle = "OPACITÀ",
    .backgroundOpacityTitle = "OPACITÀ",
    .fontTitle = "CARATTERE",
    .sizeTitle = "DIMENSIONE",
    .defaultFont = "Predefinito",
    // Spoken: names.
    .panel = "Impostazioni dei sottotitoli",
    .captionsSwitch = "Sottotitoli",
    .textColor = "Colore del testo",
    .textOpacity = "Opacità del testo",
    .backgroundColor = "Colore dello sfondo",
    .backgroundOpacity = "Opacità dello sfondo",
    .font = "Carattere",
    .fontSize = "Dimensione del carattere",
    .previousFont = "Carattere precedente",
    .nextFont = "Carattere successivo",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "ciano",
    .white = "bianco",
    .black = "nero",
    .yellow = "giallo",
    .red = "rosso",
    .blue = "blu",
    .green = "verde",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} di {m}",
    .percent = "{n} per cento",
    .points = "{n} punti",
    .selected = "selezionato",
    .resetDone = "Stile predefinito ripristinato",
    .increase = "aumenta",
    .decrease = "riduci",
    .on = "attivato",
    .off = "disattivato",
    .switchRole = "interruttore",
    .buttonRole = "pulsante",
    .headingRole = "intestazione",
};

} // namespace tesmar
