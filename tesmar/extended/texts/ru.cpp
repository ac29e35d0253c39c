// Russian.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_ru{
    // Shown.
    .presetsTitle = "СТИЛЬ",
    .edgeTitle = "КРАЙ ТЕКСТА",
    .windowColorTitle = "ЦВЕТ ОКНА",
    .windowOpacityTitle = "НЕПРОЗРАЧНОСТЬ",
    .undo = "Отменить",
    .customPreset = "Свой",
    .defaultPreset = "По умолчанию",
    .whiteOnBlack = "Белый на чёрном",
    .blackOnWhite = "Чёрный на белом",
    .yellowOnBlack = "Жёлтый на чёрном",
    .yellowOnBlue = "Жёлтый на синем",
    .largeText = "Крупный текст",
    .monospacedSerif = "Моно с засечками",
    .proportionalSerif = "С засечками",
    .monospacedSans = "Моно без засечек",
    .proportionalSans = "Без засечек",
    .casual = "Свободный",
    .cursive = "Рукописный",
    .smallCapitals = "Капитель",
    .invisibleText = "Этот текст невидим",
    .weakContrast = "Плохо читается на некоторых кадрах",
    .tinyText = "Этот текст очень мелкий",
    .mend = "Исправить",
    // Spoken.
    .presets = "Стиль",
    .edge = "Край текста",
    .windowColor = "Цвет окна",
    .windowOpacity = "Непрозрачность окна",
    .edgeNone = "нет",
    .edgeRaised = "выпуклый",
    .edgeDepressed = "вдавленный",
    .edgeUniform = "контур",
    .edgeDropShadow = "тень",
    .undone = "Прежний стиль восстановлен",
};

} // namespace tesmar
