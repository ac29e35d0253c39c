// Dutch.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_nl{
    // Shown.
    .closedCaptions = "Ondertiteling",
    .reset = "Herstellen",
    .textColorTitle = "TEKSTKLEUR",
    .backgroundColorTitle = "ACHTERGRONDKLEUR",
    .textOpacityTitle = "DEKKING",
    .backgroundOpacityTitle = "DEKKING",
    .fontTitle = "LETTERTYPE",
    .sizeTitle = "GROOTTE",
    .defaultFont = "Standaard",
    // Spoken: names.
    .panel = "Instellingen voor ondertiteling",
    .captionsSwitch = "Ondertiteling",
    .textColor = "Tekstkleur",
    .textOpacity = "Tekstdekking",
    .backgroundColor = "Achtergrondkleur",
    .backgroundOpacity = "Achtergronddekking",
    .font = "Lettertype",
    .fontSize = "Lettergrootte",
    .previousFont = "Vorig lettertype",
    .nextFont = "Volgend lettertype",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "cyaan",
    .white = "wit",
    .black = "zwart",
    .yellow = "geel",
    .red = "rood",
    .blue = "blauw",
    .green = "groen",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} van {m}",
    .percent = "{n} procent",
    .points = "{n} punten",
    .selected = "geselecteerd",
    .resetDone = "Standaardstijl hersteld",
    .increase = "verhogen",
    .decrease = "verlagen",
    .on = "aan",
    .off = "uit",
    .switchRole = "schakelaar",
    .buttonRole = "knop",
    .headingRole = "kop",
};

} // namespace tesmar
