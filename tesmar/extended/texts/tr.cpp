// Turkish.
#include "tesmar/extended/texts/internal/extended_languages.h"

namespace tesmar {

constinit const TESMARExtendedTexts extendedTexts_tr{
    // Shown.
    .presetsTitle = "STİL",
    .edgeTitle = "METİN KENARI",
    .windowColorTitle = "PENCERE RENGİ",
    .windowOpacityTitle = "OPAKLIK",
    .undo = "Geri al",
    .customPreset = "Özel",
    .defaultPreset = "Varsayılan",
    .whiteOnBlack = "Siyah üzerine beyaz",
    .blackOnWhite = "Beyaz üzerine siyah",
    .yellowOnBlack = "Siyah üzerine sarı",
    .yellowOnBlue = "Mavi üzerine sarı",
    .largeText = "Büyük metin",
    .monospacedSerif = "Mono Serif",
    .proportionalSerif = "Serif",
    .monospacedSans = "Mono Sans",
    .proportionalSans = "Sans Serif",
    .casual = "Rahat",
    .cursive = "El yazısı",
    .smallCapitals = "Küçük büyük harf",
    .invisibleText = "Bu metin görünmüyor",
    .weakContrast = "Bazı görüntülerde zor okunur",
    .tinyText = "Bu metin çok küçük",
    .mend = "Düzelt",
    // Spoken.
    .presets = "Stil",
    .edge = "Metin kenarı",
    .windowColor = "Pencere rengi",
    .windowOpacity = "Pencere opaklığı",
    .edgeNone = "yok",
    .edgeRaised = "kabartma",
    .edgeDepressed = "çökük",
    .edgeUniform = "dış çizgi",
    .edgeDropShadow = "gölge",
    .undone = "Önceki stil geri geldi",
};

} // namespace tesmar
