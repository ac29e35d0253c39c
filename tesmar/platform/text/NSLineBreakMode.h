// How text is fitted into a width that is too small for it.
//
// Toolkit: may change with any version.
#pragma once

namespace tesmar {

enum class NSLineBreakMode {
    wordWrapping = 0,     // lines break between words; lines beyond the limit are left out
    charWrapping = 1,     // the same, between characters
    clipping = 2,         // lines break only where the text says so, and are cut off on the right
    truncatingHead = 3,   // lines break between words; an ellipsis replaces the last one's start
    truncatingTail = 4,   // the same, its end
    truncatingMiddle = 5, // the same, its middle
};

} // namespace tesmar
