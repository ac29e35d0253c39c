// The extended panel's texts in the languages that come with the library, a file for each. A new
// language is a new file, a line here, and a row in TESMARExtendedTexts.cpp.
#pragma once

#include "tesmar/extended/TESMARExtendedTexts.h"

namespace tesmar {

extern const TESMARExtendedTexts extendedTexts_ar;
extern const TESMARExtendedTexts extendedTexts_de;
extern const TESMARExtendedTexts extendedTexts_el;
extern const TESMARExtendedTexts extendedTexts_es;
extern const TESMARExtendedTexts extendedTexts_fr;
extern const TESMARExtendedTexts extendedTexts_he;
extern const TESMARExtendedTexts extendedTexts_hi;
extern const TESMARExtendedTexts extendedTexts_it;
extern const TESMARExtendedTexts extendedTexts_ja;
extern const TESMARExtendedTexts extendedTexts_ko;
extern const TESMARExtendedTexts extendedTexts_nl;
extern const TESMARExtendedTexts extendedTexts_pl;
extern const TESMARExtendedTexts extendedTexts_pt_BR;
extern const TESMARExtendedTexts extendedTexts_ru;
extern const TESMARExtendedTexts extendedTexts_tr;
extern const TESMARExtendedTexts extendedTexts_uk;
extern const TESMARExtendedTexts extendedTexts_zh_Hans;
extern const TESMARExtendedTexts extendedTexts_zh_Hant;

} // namespace tesmar
