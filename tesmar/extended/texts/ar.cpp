// Arabic.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_ar{
    // Shown.
    .presetsTitle = "النمط",
    .edgeTitle = "حافة النص",
    .windowColorTitle = "لون الإطار",
    .windowOpacityTitle = "التعتيم",
    .undo = "تراجع",
    .customPreset = "مخصص",
    .defaultPreset = "افتراضي",
    .whiteOnBlack = "أبيض على أسود",
    .blackOnWhite = "أسود على أبيض",
    .yellowOnBlack = "أصفر على أسود",
    .yellowOnBlue = "أصفر على أزرق",
    .largeText = "نص كبير",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "عفوي",
    .cursive = "متصل",
    .smallCapitals = "حروف صغيرة",
    .invisibleText = "هذا النص غير مرئي",
    .weakContrast = "تصعب قراءته على بعض الصور",
    .tinyText = "هذا النص صغير جدًا",
    .mend = "إصلاح",
    // Spoken.
    .presets = "النمط",
    .edge = "حافة النص",
    .windowColor = "لون الإطار",
    .windowOpacity = "عتامة الإطار",
    .edgeNone = "بلا",
    .edgeRaised = "بارزة",
    .edgeDepressed = "غائرة",
    .edgeUniform = "محيط",
    .edgeDropShadow = "ظل",
    .undone = "عاد النمط السابق",
};

} // namespace tesmar
