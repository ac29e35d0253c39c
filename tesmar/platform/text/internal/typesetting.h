// Text as it is to be drawn: lines of glyphs in their places. Two typesetters make it: the plain
// one (plain_text.h), which is part of the library, and the full one (ComplexText.h), a module that
// is loaded when a text first needs it. Lengths are in points, from the text's top left corner.
// Guarded by the shaping lock.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/NSLineBreakMode.h"
#include "tesmar/platform/text/NSTextAlignment.h"
#include "tesmar/platform/text/internal/FontFile.h"

#include <optional>
#include <string>
#include <vector>

namespace tesmar {

struct PlacedGlyph {
    hb_codepoint_t glyph = 0; // 0 is the font's sign for a missing character
    CGPoint origin;           // on the baseline
};

// Glyphs that are filled at once: those that touch would otherwise have a seam between them.
struct GlyphRun {
    FontFileRef file;
    double pointSize = 0;
    std::vector<PlacedGlyph> glyphs;
};

struct TypesetLine {
    CGRect box;
    double baseline = 0;
    std::vector<GlyphRun> runs;
};

struct TypesetText {
    std::vector<TypesetLine> lines; // those that are shown
    bool isLeftToRight = true;      // the first line
    bool isEllipsized = false;
};

enum class Letters {
    asWritten,
    smallCapitals, // in the place of small letters; the plain typesetter leaves these
};

// See TextLayout.
struct TypesettingRequest {
    std::string text; // valid UTF-8
    double pointSize = 0;
    std::optional<CGFloat> width;
    int lineCount = 1;
    NSTextAlignment alignment = NSTextAlignment::left;
    NSLineBreakMode lineBreakMode = NSLineBreakMode::truncatingTail;
    Letters letters = Letters::asWritten;
};

// Both typesetters count in whole 1024ths of a point, so that they agree to the last bit.
inline constexpr int kUnitsPerPoint = 1024;

inline int typesettingUnits(double points) {
    return static_cast<int>(std::lround(points * kUnitsPerPoint));
}

inline double pointsFromUnits(int units) {
    return static_cast<double>(units) / kUnitsPerPoint;
}

} // namespace tesmar
