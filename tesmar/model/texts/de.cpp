// German.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_de{
    // Shown.
    .closedCaptions = "Untertitel",
    .reset = "Zurücksetzen",
    .textColorTitle = "TEXTFARBE",
    .backgroundColorTitle = "HINTERGRUNDFARBE",
    .textOpacityTitle = "DECKKRAFT",
    .backgroundOpacityTitle = "DECKKRAFT",
    .fontTitle = "SCHRIFTART",
    .sizeTitle = "GRÖSSE",
    .defaultFont = "Standard",
    // Spoken: names.
    .panel = "Untertiteleinstellungen",
    .captionsSwitch = "Untertitel",
    .textColor = "Textfarbe",
    .textOpacity = "Textdeckkraft",
    .backgroundColor = "Hintergrundfarbe",
    .backgroundOpacity = "Hintergrunddeckkraft",
    .font = "Schriftart",
    .fontSize = "Schriftgröße",
    .previousFont = "Vorherige Schriftart",
    .nextFont = "Nächste Schriftart",
    // Spoken: colours.
    .magenta = "Magenta",
    .cyan = "Cyan",
    .white = "Weiß",
    .black = "Schwarz",
    .yellow = "Gelb",
    .red = "Rot",
    .blue = "Blau",
    .green = "Grün",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} von {m}",
    .percent = "{n} Prozent",
    .points = "{n} Punkt",
    .selected = "ausgewählt",
    .resetDone = "Auf den Standardstil zurückgesetzt",
    .increase = "erhöhen",
    .decrease = "verringern",
    .on = "ein",
    .off = "aus",
    .switchRole = "Schalter",
    .buttonRole = "Taste",
    .headingRole = "Überschrift",
};

} // namespace tesmar
