// The style in the markup of Pango, which GStreamer's overlays draw, too.
#include "tesmar/captions/internal/renderer_words.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr double kUnitsPerPoint = 1024; // of a size in markup, which is in points of 1/72 inch
constexpr double kPixelsPerPoint = 96.0 / 72;

// From 1, since 0 is not an alpha there, to 65535.
std::string alpha(double component) {
    return numberText(std::clamp(std::round(component * 65535), 1.0, 65535.0), 0);
}

} // namespace

TESMARRendererStyle TESMARPangoStyle(const TESMARCaptionStyle& style, double pixelsPerPoint) {
    const double pixels = style.points * usableScale(pixelsPerPoint);
    const TESMARCaptionStyle::Color& box = onlyBox(style);
    TESMARRendererStyle words;
    words.fields = {
        {"font_family", style.face.family},
        {"font_weight", numberText(style.face.weight, 0)},
        {"font_style", style.face.isItalic ? "italic" : "normal"},
        {"font_size", numberText(std::round(pixels / kPixelsPerPoint * kUnitsPerPoint), 0)},
        {"foreground", "#" + hexColor(style.text)},
        {"fgalpha", alpha(style.text.alpha)},
    };
    if (box.alpha > 0) {
        words.fields.push_back({"background", "#" + hexColor(box)});
        words.fields.push_back({"bgalpha", alpha(box.alpha)});
    }
    addFontLoss(words, style);
    if (style.window.alpha > 0)
        words.losses.emplace_back(style.background.alpha > 0
                                      ? "no window behind the background"
                                      : "a box for each line, not one window behind all");
    if (style.edge != TextEdge::none)
        words.losses.push_back("no edge of the kind " + std::string(textEdgeName(style.edge)));
    return words;
}

std::string TESMARPangoMarkup(const TESMARRendererStyle& style, std::string_view text) {
    std::string markup = "<span";
    for (const auto& [name, value] : style.fields)
        markup += " " + name + "=\"" + xmlText(value) + "\"";
    return markup + ">" + xmlText(text) + "</span>";
}

// The text itself carries the style: as properties there are only a colour and a font.
TESMARRendererStyle TESMARGStreamerStyle(const TESMARCaptionStyle& style, double pixelsPerPoint) {
    TESMARRendererStyle words = TESMARPangoStyle(style, pixelsPerPoint);
    words.fields = {
        {"auto-resize", "false"}, // or the size follows the video's
        {"draw-shadow", "false"},
        {"draw-outline", style.edge == TextEdge::uniform ? "true" : "false"},
        {"outline-color", "0x" + hexByte(style.edgeColor.alpha) + hexColor(style.edgeColor)},
        {"shaded-background", "false"},
    };
    if (style.edge == TextEdge::uniform)
        std::erase_if(words.losses, [](const auto& loss) { return loss.starts_with("no edge"); });
    return words;
}

} // namespace tesmar
