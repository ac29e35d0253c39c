// Ukrainian.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_uk{
    // Shown.
    .closedCaptions = "Субтитри",
    .reset = "Скинути",
    .textColorTitle = "КОЛІР ТЕКСТУ",
    .backgroundColorTitle = "КОЛІР ТЛА",
    .textOpacityTitle = "НЕПРОЗОРІСТЬ",
    .backgroundOpacityTitle = "НЕПРОЗОРІСТЬ",
    .fontTitle = "ШРИФТ",
    .sizeTitle = "РОЗМІР",
    .defaultFont = "Типовий",
    // Spoken: names.
    .panel = "Налаштування субтитрів",
    .captionsSwitch = "Субтитри",
    .textColor = "Колір тексту",
    .textOpacity = "Непрозорість тексту",
    .backgroundColor = "Колір тла",
    .backgroundOpacity = "Непрозорість тла",
    .font = "Шрифт",
    .fontSize = "Розмір шрифту",
    .previousFont = "Попередній шрифт",
    .nextFont = "Наступний шрифт",
    // Spoken: colours.
    .magenta = "пурпуровий",
    .cyan = "блакитний",
    .white = "білий",
    .black = "чорний",
    .yellow = "жовтий",
    .red = "червоний",
    .blue = "синій",
    .green = "зелений",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} з {m}",
    .percent = "{n} відсотків",
    .points = "{n} пт",
    .selected = "вибрано",
    .resetDone = "Типовий стиль відновлено",
    .increase = "збільшити",
    .decrease = "зменшити",
    .on = "увімкнено",
    .off = "вимкнено",
    .switchRole = "перемикач",
    .buttonRole = "кнопка",
    .headingRole = "заголовок",
};

} // namespace tesmar
