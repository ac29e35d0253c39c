// Sample captions in the languages of TESMARTexts.
#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/model/TESMARTexts.h"

#include <algorithm>

namespace tesmar {
namespace {

struct Sample {
    std::string_view tag; // as in TESMARTexts::languages()
    std::string_view text;
};

constinit const Sample kSamples[]{
    {"en", "Meet me at the café at 8:45,\nand bring your guitar, please."},
    {"ar", "نلتقي في المقهى الساعة ٨:٤٥،\nوأحضر معك الكتاب الجديد."},
    {"de", "Wir treffen uns um 8:45 Uhr im Café\nund gehen später über die Brücke."},
    {"el", "Ραντεβού στο καφέ στις 8:45,\nκαι φέρε μαζί σου το βιβλίο."},
    {"es", "Nos vemos en el café a las 8:45,\ny trae también la guitarra pequeña."},
    {"fr", "Rendez-vous au café à 8 h 45,\net n’oublie pas ton goûter."},
    {"he", "ניפגש בבית הקפה ב־8:45,\nותביא את הספר החדש."},
    {"hi", "8:45 बजे चाय की दुकान पर मिलो,\nऔर नई किताब साथ लाना।"},
    {"it", "Ci vediamo al caffè alle 8:45,\ne porta quel giornale più tardi."},
    {"ja", "8時45分に喫茶店で会いましょう。\n新しい本を持ってきてください。"},
    {"ko", "8시 45분에 카페에서 만나요.\n새 책도 꼭 가져오세요."},
    {"nl", "Tot 8.45 uur in het café,\nen vergeet de foto’s van België niet."},
    {"pl", "Spotkajmy się w kawiarni o 8:45\ni weź ze sobą żółtą książkę."},
    {"pt-BR", "Te vejo no café às 8h45,\ne traga também o violão, por favor."},
    {"ru", "Встретимся в кафе в 8:45,\nи возьми с собой ещё одну книгу."},
    {"tr", "8.45’te kafede buluşalım,\nyeşil çantayı da getir, olur mu?"},
    {"uk", "Зустрінемось у кав’ярні о 8:45,\nі візьми ще її нову книгу."},
    {"zh-Hans", "8点45分咖啡馆见，\n记得把那本新书带来。"},
    {"zh-Hant", "8點45分咖啡館見，\n記得把那本新書帶來。"},
};

} // namespace

std::string_view TESMARSampleCaption(std::string_view languageTag) {
    const auto& language = TESMARTexts::closestLanguage(languageTag);
    const auto* const own = std::ranges::find(kSamples, language.tag, &Sample::tag);
    return own == std::end(kSamples) ? kSamples[0].text : own->text;
}

} // namespace tesmar
