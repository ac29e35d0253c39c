// Russian.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_ru{
    // Shown.
    .closedCaptions = "Субтитры",
    .reset = "Сбросить",
    .textColorTitle = "ЦВЕТ ТЕКСТА",
    .backgroundColorTitle = "ЦВЕТ ФОНА",
    .textOpacityTitle = "НЕПРОЗРАЧНОСТЬ",
    .backgroundOpacityTitle = "НЕПРОЗРАЧНОСТЬ",
    .fontTitle = "ШРИФТ",
    .sizeTitle = "РАЗМЕР",
    .defaultFont = "По умолчанию",
    // Spoken: names.
    .panel = "Настройки субтитров",
    .captionsSwitch = "Субтитры",
    .textColor = "Цвет текста",
    .textOpacity = "Непрозрачность текста",
    .backgroundColor = "Цвет фона",
    .backgroundOpacity = "Непрозрачность фона",
    .font = "Шрифт",
    .fontSize = "Размер шрифта",
    .previousFont = "Предыдущий шрифт",
    .nextFont = "Следующий шрифт",
    // Spoken: colours.
    .magenta = "пурпурный",
    .cyan = "голубой",
    .white = "белый",
    .black = "чёрный",
    .yellow = "жёлтый",
    .red = "красный",
    .blue = "синий",
    .green = "зелёный",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} из {m}",
    .percent = "{n} процентов",
    .points = "{n} пт",
    .selected = "выбрано",
    .resetDone = "Стиль по умолчанию восстановлен",
    .increase = "увеличить",
    .decrease = "уменьшить",
    .on = "включено",
    .off = "выключено",
    .switchRole = "переключатель",
    .buttonRole = "кнопка",
    .headingRole = "заголовок",
};

} // namespace tesmar
