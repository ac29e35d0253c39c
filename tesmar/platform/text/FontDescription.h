// A font's face as its file describes it, for hosts that draw text with another engine: engines
// find faces by different names, and measure sizes differently.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <string>

namespace tesmar {

class UIFont;

struct FontDescription {
    enum class Outlines { trueType, cff };

    // Of the face that draws, which may be a stand-in for the one that was asked for. Empty on a
    // machine without fonts; the other values are then the defaults below.
    std::string file; // an absolute path, or the path given to FontRegistry::addFontFile
    // The number of the face in the file; above bit 15 the number of the variable font's instance.
    int index = 0;
    std::string family;
    std::string postScriptName;
    std::string fullName; // in English; the PostScript name if the file has none

    Outlines outlines = Outlines::trueType;
    int weight = 400; // 1 to 1000, as in CSS
    bool isItalic = false;
    // The ascent and descent for Windows, together, in font sizes; those of the line without them.
    // Subtitle engines make that the size which they are given. At least 0.1.
    double windowsHeight = 1;
    // UIFont::lineHeight, in font sizes.
    double lineHeight = 1;
};

// Reads the font's file. Never fails: what the file lacks keeps its default. Any thread.
TESMAR_API FontDescription describeFont(const UIFont& font);

} // namespace tesmar
