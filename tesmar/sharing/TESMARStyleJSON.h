// A caption style (see CCConstants) as a JSON text, to take it to another device, an account or
// another program and back. docs/style-json.md describes the text.
//
// Neither function looks at the stored style or changes it: see TESMARConfig. Any thread, as long
// as no other thread modifies the dictionary.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

#include <string>
#include <string_view>

namespace tesmar {

// The style as UTF-8 text with line breaks. Colours, fonts and edges that the library knows are
// written exactly: styleFromJSON() makes equal values of them. Left out are entries under other
// keys, values of other types, edges of other names, and fonts whose names styleFromJSON() refuses.
TESMAR_API std::string styleToJSON(const NSDictionary& style);

struct TESMARStyleFromJSON {
    // A new dictionary with the entries that the text has, perhaps none; null if it was refused.
    Ref<NSDictionary> style;
    // Why the text was refused, for developers: "line 3: background.opacity must be a number from 0
    // to 1". Valid UTF-8, one line. Empty if it was not.
    std::string problem;
};

// The style of a text, or the first problem in it: nothing of a text with a problem is used. A font
// whose face is missing keeps its name, and is drawn by the system font. A text of any size and
// content costs at most a few milliseconds, 1 MiB and 64 KiB of stack.
TESMAR_API TESMARStyleFromJSON styleFromJSON(std::string_view text);

} // namespace tesmar
