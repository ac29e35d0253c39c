// Hebrew.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_he{
    .direction = ReadingDirection::rightToLeft,
    // Shown.
    .closedCaptions = "כתוביות",
    .reset = "איפוס",
    .textColorTitle = "צבע הטקסט",
    .backgroundColorTitle = "צבע הרקע",
    .textOpacityTitle = "אטימות",
    .backgroundOpacityTitle = "אטימות",
    .fontTitle = "גופן",
    .sizeTitle = "גודל",
    .defaultFont = "ברירת מחדל",
    // Spoken: names.
    .panel = "הגדרות כתוביות",
    .captionsSwitch = "כתוביות",
    .textColor = "צבע הטקסט",
    .textOpacity = "אטימות הטקסט",
    .backgroundColor = "צבע הרקע",
    .backgroundOpacity = "אטימות הרקע",
    .font = "גופן",
    .fontSize = "גודל הגופן",
    .previousFont = "הגופן הקודם",
    .nextFont = "הגופן הבא",
    // Spoken: colours.
    .magenta = "מג'נטה",
    .cyan = "ציאן",
    .white = "לבן",
    .black = "שחור",
    .yellow = "צהוב",
    .red = "אדום",
    .blue = "כחול",
    .green = "ירוק",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} מתוך {m}",
    .percent = "{n} אחוז",
    .points = "{n} נקודות",
    .selected = "נבחר",
    .resetDone = "סגנון ברירת המחדל שוחזר",
    .increase = "הגדלה",
    .decrease = "הקטנה",
    .on = "פועל",
    .off = "כבוי",
    .switchRole = "מתג",
    .buttonRole = "לחצן",
    .headingRole = "כותרת",
};

} // namespace tesmar
