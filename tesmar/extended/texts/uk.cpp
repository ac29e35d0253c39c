// Ukrainian.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_uk{
    // Shown.
    .presetsTitle = "СТИЛЬ",
    .edgeTitle = "КРАЙ ТЕКСТУ",
    .windowColorTitle = "КОЛІР ВІКНА",
    .windowOpacityTitle = "НЕПРОЗОРІСТЬ",
    .undo = "Скасувати",
    .customPreset = "Власний",
    .defaultPreset = "Типовий",
    .whiteOnBlack = "Білий на чорному",
    .blackOnWhite = "Чорний на білому",
    .yellowOnBlack = "Жовтий на чорному",
    .yellowOnBlue = "Жовтий на синьому",
    .largeText = "Великий текст",
    .monospacedSerif = "Моно із зарубками",
    .proportionalSerif = "Із зарубками",
    .monospacedSans = "Моно без зарубок",
    .proportionalSans = "Без зарубок",
    .casual = "Вільний",
    .cursive = "Рукописний",
    .smallCapitals = "Капітель",
    .invisibleText = "Цей текст невидимий",
    .weakContrast = "Погано читається на деяких кадрах",
    .tinyText = "Цей текст дуже дрібний",
    .mend = "Виправити",
    // Spoken.
    .presets = "Стиль",
    .edge = "Край тексту",
    .windowColor = "Колір вікна",
    .windowOpacity = "Непрозорість вікна",
    .edgeNone = "немає",
    .edgeRaised = "опуклий",
    .edgeDepressed = "втиснутий",
    .edgeUniform = "контур",
    .edgeDropShadow = "тінь",
    .undone = "Попередній стиль повернено",
};

} // namespace tesmar
