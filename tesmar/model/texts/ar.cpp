// Arabic.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_ar{
    .direction = ReadingDirection::rightToLeft,
    // Shown.
    .closedCaptions = "الترجمة",
    .reset = "إعادة تعيين",
    .textColorTitle = "لون النص",
    .backgroundColorTitle = "لون الخلفية",
    .textOpacityTitle = "التعتيم",
    .backgroundOpacityTitle = "التعتيم",
    .fontTitle = "الخط",
    .sizeTitle = "الحجم",
    .defaultFont = "افتراضي",
    // Spoken: names.
    .panel = "إعدادات الترجمة",
    .captionsSwitch = "الترجمة",
    .textColor = "لون النص",
    .textOpacity = "تعتيم النص",
    .backgroundColor = "لون الخلفية",
    .backgroundOpacity = "تعتيم الخلفية",
    .font = "الخط",
    .fontSize = "حجم الخط",
    .previousFont = "الخط السابق",
    .nextFont = "الخط التالي",
    // Spoken: colours.
    .magenta = "أرجواني",
    .cyan = "سماوي",
    .white = "أبيض",
    .black = "أسود",
    .yellow = "أصفر",
    .red = "أحمر",
    .blue = "أزرق",
    .green = "أخضر",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} من {m}",
    .percent = "{n} بالمائة",
    .points = "{n} نقطة",
    .selected = "محدد",
    .resetDone = "تمت استعادة النمط الافتراضي",
    .increase = "زيادة",
    .decrease = "إنقاص",
    .on = "مفعّل",
    .off = "معطّل",
    .switchRole = "مفتاح تبديل",
    .buttonRole = "زر",
    .headingRole = "عنوان",
};

} // namespace tesmar
