// Polish.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_pl{
    // Shown.
    .closedCaptions = "Napisy",
    .reset = "Resetuj",
    .textColorTitle = "KOLOR TEKSTU",
    .backgroundColorTitle = "KOLOR TŁA",
    .textOpacityTitle = "KRYCIE",
    .backgroundOpacityTitle = "KRYCIE",
    .fontTitle = "CZCIONKA",
    .sizeTitle = "ROZMIAR",
    .defaultFont = "Domyślna",
    // Spoken: names.
    .panel = "Ustawienia napisów",
    .captionsSwitch = "Napisy",
    .textColor = "Kolor tekstu",
    .textOpacity = "Krycie tekstu",
    .backgroundColor = "Kolor tła",
    .backgroundOpacity = "Krycie tła",
    .font = "Czcionka",
    .fontSize = "Rozmiar czcionki",
    .previousFont = "Poprzednia czcionka",
    .nextFont = "Następna czcionka",
    // Spoken: colours.
    .magenta = "magenta",
    .cyan = "cyjan",
    .white = "biały",
    .black = "czarny",
    .yellow = "żółty",
    .red = "czerwony",
    .blue = "niebieski",
    .green = "zielony",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} z {m}",
    .percent = "{n} procent",
    .points = "{n} pkt",
    .selected = "wybrano",
    .resetDone = "Przywrócono styl domyślny",
    .increase = "zwiększ",
    .decrease = "zmniejsz",
    .on = "włączone",
    .off = "wyłączone",
    .switchRole = "przełącznik",
    .buttonRole = "przycisk",
    .headingRole = "nagłówek",
};

} // namespace tesmar
