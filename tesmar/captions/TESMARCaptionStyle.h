// A style as plain values, for hosts whose captions another engine draws: see
// tesmar/captions/renderers/TESMARRenderers.h, and docs/renderers.md.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/text/FontDescription.h"
#include "tesmar/platform/text/TextEdge.h"

#include <string>

namespace tesmar {

struct TESMARCaptionStyle {
    // Each 0 to 1; not premultiplied.
    struct Color {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 1;
        bool operator==(const Color&) const = default;
    };

    Color text;
    Color background{0, 0, 0, 0}; // behind each line; transparent: there is none
    double points = 12;           // above 0, at most UIFont::kLargestSize
    // The name in the style, which may be a name that only this library knows, as ".SystemUI".
    std::string fontName;
    FontDescription face; // what draws it here
    TextEdge edge = TextEdge::none;
    Color edgeColor;          // black without an edge
    Color window{0, 0, 0, 0}; // behind all lines; transparent: there is none
};

// The attributes of NSAttributedString, read as that draws them: what is missing or of another
// class has its default, and null has them all. Any thread.
TESMAR_API TESMARCaptionStyle TESMARCaptionStyleFrom(const Ref<NSDictionary>& attributes);

} // namespace tesmar
