#include "tesmar/captions/internal/renderer_words.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kReferenceHeight = 720; // mpv's lengths are pixels of a window as high as this
constexpr double kSmallestFont = 1;

std::string argb(const TESMARCaptionStyle::Color& color) {
    return "#" + hexByte(color.alpha) + hexColor(color);
}

} // namespace

TESMARRendererStyle TESMARMpvStyle(const TESMARCaptionStyle& style, double windowHeight) {
    const double scale = kReferenceHeight / usableHeight(windowHeight);
    const TESMARCaptionStyle::Color& box = onlyBox(style);
    const bool hasBox = box.alpha > 0;
    const bool hasOutline = style.edge == TextEdge::uniform;
    // Where there is a box, the shadow's colour and distance are the box's.
    const bool isShadow = style.edge == TextEdge::dropShadow || style.edge == TextEdge::raised;
    const bool hasShadow = isShadow && !hasBox;
    const double shadow =
        style.edge == TextEdge::raised ? outlineWidth(style) : shadowDistance(style);

    TESMARRendererStyle words;
    words.fields = {
        {"sub-font", nameForLibass(style.face)},
        {"sub-font-size", numberText(std::max(sizeForLibass(style) * scale, kSmallestFont))},
        {"sub-color", argb(style.text)},
        {"sub-back-color", argb(box)},
        {"sub-border-size", numberText(hasOutline ? outlineWidth(style) * scale : 0)},
        {"sub-border-color", argb(style.edgeColor)},
        {"sub-shadow-offset", numberText(hasShadow ? shadow * scale : 0)},
        {"sub-shadow-color", argb(hasShadow ? style.edgeColor : style.window)},
        {"sub-bold", "no"},
        {"sub-italic", "no"},
        {"sub-spacing", "0"},
        {"sub-blur", "0"},
        {"sub-scale", "1"},
    };
    addFontLoss(words, style);
    if (style.background.alpha > 0)
        words.losses.emplace_back("one box around all lines, not one behind each");
    if (style.background.alpha > 0 && style.window.alpha > 0)
        words.losses.emplace_back("no window behind the background");
    if (style.edge != TextEdge::none && !hasOutline && !hasShadow)
        words.losses.push_back("no edge of the kind " + std::string(textEdgeName(style.edge)) +
                               (isShadow ? " in front of a box" : ""));
    else if (style.edge == TextEdge::dropShadow)
        words.losses.emplace_back("the shadow is hard");
    addPitchLoss(words, style, sizeForLibass(style));
    return words;
}

} // namespace tesmar
