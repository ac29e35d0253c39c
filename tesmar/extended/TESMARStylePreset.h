// Whole caption styles that the viewer takes over with one tap.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

#include <string>
#include <vector>

namespace tesmar {

struct TESMARStylePreset {
    std::string name; // shown, UTF-8
    // Attributes of NSAttributedString; never null. A value of another class counts as missing, and
    // reaches the viewer's style as it is.
    Ref<NSDictionary> style;
};

// The styles of the presets that come with the extended panel, in the order of their tiles: the
// default style, white on black, black on white, yellow on black, yellow on blue, large text. Built
// at the first use and shared. Any thread.
TESMAR_API const std::vector<Ref<NSDictionary>>& TESMARPresetStyles();

} // namespace tesmar
