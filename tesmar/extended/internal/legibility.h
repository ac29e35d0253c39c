// Whether captions in a style can be read over any picture.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

namespace tesmar {

enum class Legibility {
    good,
    invisibleText, // its opacity is 0
    weakContrast,  // over a black, white or mid grey picture, text and what lies behind it are
                   // closer than 3 : 1; an outline counts as what lies behind
    tinyText,      // smaller than 75 % of the default size
};

// The first of the above that applies.
Legibility legibilityOf(const NSDictionary& style);

// Changes as little as makes legibilityOf() good: opacities first, colours only if these do not
// suffice.
void makeLegible(NSMutableDictionary& style);

} // namespace tesmar
