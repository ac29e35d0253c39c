#include "tesmar/captions/internal/renderer_words.h"

#include "tesmar/platform/geometry/geometry.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tesmar {
namespace {

// Of the font size, as the library draws edges.
constexpr double kOutline = 1.0 / 20;
constexpr double kShadow = 1.0 / 15;
constexpr double kSamePitch = 0.02; // of the font size: below what is seen

} // namespace

std::string numberText(double number, int decimals) {
    char digits[64];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), number,
                                   std::chars_format::fixed, decimals)
                         .ptr;
    std::string text(digits, end);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

std::string hexByte(double component) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned>(std::lround(std::clamp(component, 0.0, 1.0) * 255));
    return {kDigits[byte >> 4], kDigits[byte & 15]};
}

std::string hexColor(const TESMARCaptionStyle::Color& color) {
    return hexByte(color.red) + hexByte(color.green) + hexByte(color.blue);
}

double usableHeight(double height) {
    return finite(height, 1, 100000, 360);
}

double usableScale(double pixelsPerPoint) {
    return finite(pixelsPerPoint, 0.01, 100, 1);
}

std::string xmlText(std::string_view text) {
    std::string escaped;
    for (const char c : text)
        switch (c) {
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '&':
            escaped += "&amp;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c >= ' ' || c == '\n' || (c & 0x80) != 0 ? c : ' ';
        }
    return escaped;
}

const std::string& nameForLibass(const FontDescription& face) {
    return face.outlines == FontDescription::Outlines::cff ? face.postScriptName : face.fullName;
}

double sizeForLibass(const TESMARCaptionStyle& style) {
    return style.points * style.face.windowsHeight;
}

double outlineWidth(const TESMARCaptionStyle& style) {
    return style.points * kOutline;
}

double shadowDistance(const TESMARCaptionStyle& style) {
    return style.points * kShadow;
}

const TESMARCaptionStyle::Color& onlyBox(const TESMARCaptionStyle& style) {
    return style.background.alpha > 0 ? style.background : style.window;
}

void addPitchLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style, double pitch) {
    const double own = style.points * style.face.lineHeight;
    if (std::abs(pitch - own) > style.points * kSamePitch)
        words.losses.push_back("lines are " + numberText(pitch, 1) + " points apart, not " +
                               numberText(own, 1));
}

void addFontLoss(TESMARRendererStyle& words, const TESMARCaptionStyle& style) {
    if (style.face.file.empty())
        words.losses.push_back("no file has the font \"" + style.fontName +
                               "\": the renderer chooses one");
}

} // namespace tesmar
