#include "tesmar/extended/TESMARExtendedTexts.h"

namespace tesmar {

const TESMARExtendedTexts& TESMARExtendedTexts::inLanguageOf(const TESMARTexts&) {
    static constinit const TESMARExtendedTexts english{};
    return english;
}

} // namespace tesmar
