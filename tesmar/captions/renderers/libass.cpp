#include "tesmar/captions/internal/renderer_words.h"

#include <algorithm>

namespace tesmar {
namespace {

using Color = TESMARCaptionStyle::Color;

constexpr double kMargin = 1.0 / 20; // of the picture's height
// How libass draws borders.
constexpr const char* kOutlined = "1";
constexpr const char* kBoxPerLine = "3"; // in the outline's colour
constexpr const char* kBoxPerCue = "4";  // in the back colour
constexpr double kLeastBorder = 0.01;    // without a border, libass draws no box per line

// Blue comes first, after transparency instead of opacity.
std::string abgr(const Color& color) {
    return "&H" + hexByte(1 - color.alpha) + hexByte(color.blue) + hexByte(color.green) +
           hexByte(color.red);
}

void addEdgeLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style, bool isShown) {
    if (style.edge == TextEdge::none)
        return;
    if (!isShown)
        words.losses.push_back("no edge of the kind " + std::string(textEdgeName(style.edge)) +
                               " with this box");
    else if (style.edge == TextEdge::dropShadow)
        words.losses.emplace_back("the shadow is hard");
}

} // namespace

TESMARRendererStyle TESMARAssStyle(const TESMARCaptionStyle& style, double pictureHeight,
                                   double playResY, TESMARAssBox box) {
    const double height = usableHeight(playResY);
    const double scale = height / usableHeight(pictureHeight);
    const bool hasBackground = style.background.alpha > 0;
    // Without a background the one box is the window.
    const bool isPerLine = hasBackground && box == TESMARAssBox::perLine;
    const Color& shown = onlyBox(style);
    const bool isPerCue = !isPerLine && shown.alpha > 0;
    const bool hasOutline = style.edge == TextEdge::uniform && !isPerLine;
    const bool isShadow = style.edge == TextEdge::dropShadow || style.edge == TextEdge::raised;
    const bool hasShadow = isShadow && !isPerLine && !isPerCue;
    const double shadow =
        style.edge == TextEdge::raised ? outlineWidth(style) : shadowDistance(style);
    const std::string margin = numberText(height * kMargin, 0);

    TESMARRendererStyle words;
    words.fields = {
        {"Fontname", nameForLibass(style.face)},
        {"Fontsize", numberText(sizeForLibass(style) * scale)},
        {"PrimaryColour", abgr(style.text)},
        {"SecondaryColour", abgr(style.text)},
        {"OutlineColour", abgr(isPerLine ? style.background : style.edgeColor)},
        {"BackColour", abgr(isPerCue ? shown : style.edgeColor)},
        {"Bold", "0"},
        {"Italic", "0"},
        {"Underline", "0"},
        {"StrikeOut", "0"},
        {"ScaleX", "100"},
        {"ScaleY", "100"},
        {"Spacing", "0"},
        {"Angle", "0"},
        {"BorderStyle", isPerLine  ? kBoxPerLine
                        : isPerCue ? kBoxPerCue
                                   : kOutlined},
        {"Outline", numberText(hasOutline  ? outlineWidth(style) * scale
                               : isPerLine ? kLeastBorder
                                           : 0)},
        {"Shadow", numberText(hasShadow ? shadow * scale : 0)},
        {"Alignment", "2"},
        {"MarginL", margin},
        {"MarginR", margin},
        {"MarginV", margin},
        {"Encoding", "1"},
    };
    addFontLoss(words, style);
    if (hasBackground && isPerCue)
        words.losses.emplace_back("one box around all lines, not one behind each");
    if (hasBackground && style.window.alpha > 0)
        words.losses.emplace_back("no window behind the background");
    addEdgeLoss(words, style, hasOutline || hasShadow);
    addPitchLoss(words, style, sizeForLibass(style));
    return words;
}

// Fonts' files and hosts may name anything, but commas and ends of lines end a field.
std::string TESMARAssStyleLine(std::string_view name, const TESMARRendererStyle& style) {
    const auto field = [](std::string text) {
        std::ranges::replace_if(
            text, [](char c) { return c == ',' || (c >= 0 && c < ' '); }, ' ');
        return text;
    };
    std::string line = "Style: " + field(std::string(name));
    for (const auto& [key, value] : style.fields)
        line += "," + field(value);
    return line;
}

} // namespace tesmar
