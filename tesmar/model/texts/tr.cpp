// Turkish.
#include "tesmar/model/texts/internal/languages.h"

namespace tesmar {

constinit const TESMARTexts texts_tr{
    // Shown.
    .closedCaptions = "Altyazılar",
    .reset = "Sıfırla",
    .textColorTitle = "METİN RENGİ",
    .backgroundColorTitle = "ARKA PLAN RENGİ",
    .textOpacityTitle = "OPAKLIK",
    .backgroundOpacityTitle = "OPAKLIK",
    .fontTitle = "YAZI TİPİ",
    .sizeTitle = "BOYUT",
    .defaultFont = "Varsayılan",
    // Spoken: names.
    .panel = "Altyazı ayarları",
    .captionsSwitch = "Altyazılar",
    .textColor = "Metin rengi",
    .textOpacity = "Metin opaklığı",
    .backgroundColor = "Arka plan rengi",
    .backgroundOpacity = "Arka plan opaklığı",
    .font = "Yazı tipi",
    .fontSize = "Yazı tipi boyutu",
    .previousFont = "Önceki yazı tipi",
    .nextFont = "Sonraki yazı tipi",
    // Spoken: colours.
    .magenta = "macenta",
    .cyan = "camgöbeği",
    .white = "beyaz",
    .black = "siyah",
    .yellow = "sarı",
    .red = "kırmızı",
    .blue = "mavi",
    .green = "yeşil",
    // Spoken: values, states, actions and kinds of controls.
    .position = "{n} / {m}",
    .percent = "yüzde {n}",
    .points = "{n} punto",
    .selected = "seçili",
    .resetDone = "Varsayılan stile sıfırlandı",
    .increase = "artır",
    .decrease = "azalt",
    .on = "açık",
    .off = "kapalı",
    .switchRole = "anahtar",
    .buttonRole = "düğme",
    .headingRole = "başlık",
};

} // namespace tesmar
