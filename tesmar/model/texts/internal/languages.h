// The tables of the languages that come with the library, a file for each. A new language is a new
// file, a line here, and a row in languages.cpp.
#pragma once

#include "tesmar/model/TESMARTexts.h"

namespace tesmar {

extern const TESMARTexts texts_ar;
extern const TESMARTexts texts_de;
extern const TESMARTexts texts_el;
extern const TESMARTexts texts_es;
extern const TESMARTexts texts_fr;
extern const TESMARTexts texts_he;
extern const TESMARTexts texts_hi;
extern const TESMARTexts texts_it;
extern const TESMARTexts texts_ja;
extern const TESMARTexts texts_ko;
extern const TESMARTexts texts_nl;
extern const TESMARTexts texts_pl;
extern const TESMARTexts texts_pt_BR;
extern const TESMARTexts texts_ru;
extern const TESMARTexts texts_tr;
extern const TESMARTexts texts_uk;
extern const TESMARTexts texts_zh_Hans;
extern const TESMARTexts texts_zh_Hant;

} // namespace tesmar
