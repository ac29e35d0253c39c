#include "tesmar/extended/internal/legibility.h"

#include "tesmar/captions/internal/StyleAttributes.h"
#include "tesmar/extended/internal/ExtendedFontPicker.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tesmar {
namespace {

constexpr double kLeastContrast = 3;
constexpr double kLeastSize = 0.75; // of the default size
constexpr int kOpacitySteps = 10;
// The pictures that captions may lie on, by their grey.
constexpr std::array<double, 3> kPictures{0, 0.5, 1};

using Components = std::array<double, 3>;

Components over(const UIColor& color, const Components& below) {
    const double alpha = color.alpha();
    return {color.red() * alpha + below[0] * (1 - alpha),
            color.green() * alpha + below[1] * (1 - alpha),
            color.blue() * alpha + below[2] * (1 - alpha)};
}

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const Components& c) {
    return 0.2126 * linear(c[0]) + 0.7152 * linear(c[1]) + 0.0722 * linear(c[2]);
}

double contrast(const Components& a, const Components& b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

Ref<UIColor> textColor(const StyleAttributes& style) {
    return style.text ? style.text : UIColor::blackColor();
}

bool hasContrast(const StyleAttributes& style) {
    return std::ranges::all_of(kPictures, [&](double gray) {
        Components behind{gray, gray, gray};
        if (style.window)
            behind = over(*style.window, behind);
        if (style.background)
            behind = over(*style.background, behind);
        const Components text = over(*textColor(style), behind);
        if (style.edge == TextEdge::uniform) {
            const auto edge =
                style.edgeColor ? style.edgeColor : derivedEdgeColor(*textColor(style));
            behind = over(*edge, behind);
        }
        return contrast(text, behind) >= kLeastContrast;
    });
}

// Of the default size of the font: script faces are offered in larger sizes than others.
double relativeSize(const UIFont& font) {
    return font.pointSize() / defaultSizeForFont(font.fontName());
}

bool isTiny(const StyleAttributes& style) {
    return style.font && relativeSize(*style.font) < kLeastSize;
}

void set(NSMutableDictionary& style, std::string_view key, const Ref<UIColor>& color, int steps) {
    style.setObject(color->colorWithAlphaComponent(double(steps) / kOpacitySteps), key);
}

int opacitySteps(const UIColor& color) {
    return static_cast<int>(std::floor(color.alpha() * kOpacitySteps));
}

// Raises an opacity until there is contrast. Returns whether it came to that.
bool raise(NSMutableDictionary& style, std::string_view key, const Ref<UIColor>& color) {
    for (int steps = opacitySteps(*color) + 1; steps <= kOpacitySteps; ++steps) {
        set(style, key, color, steps);
        if (hasContrast(StyleAttributes(style)))
            return true;
    }
    return hasContrast(StyleAttributes(style));
}

void giveContrast(NSMutableDictionary& style) {
    const StyleAttributes before(style);
    const auto text = textColor(before);
    if (raise(style, NSForegroundColorAttributeName, text))
        return;
    // An outline of the host's own colour may be as dark or as light as the text.
    const auto outline = before.edgeColor;
    if (outline) {
        style.removeObjectForKey(TESMAREdgeColorAttributeName);
        if (hasContrast(StyleAttributes(style)))
            return;
        style.setObject(outline, TESMAREdgeColorAttributeName);
    }
    if (before.background && raise(style, NSBackgroundColorAttributeName, before.background))
        return;
    const Components letters = over(*text->colorWithAlphaComponent(1), {});
    const bool isDark = contrast(letters, {1, 1, 1}) > contrast(letters, {0, 0, 0});
    raise(style, NSBackgroundColorAttributeName,
          (isDark ? UIColor::whiteColor() : UIColor::blackColor())->colorWithAlphaComponent(0));
}

void enlarge(NSMutableDictionary& style, const UIFont& font) {
    for (const CGFloat size : offeredSizesForFont(font.fontName()))
        if (size / defaultSizeForFont(font.fontName()) >= kLeastSize) {
            style.setObject(font.fontWithSize(size), NSFontAttributeName);
            return;
        }
}

} // namespace

Legibility legibilityOf(const NSDictionary& dictionary) {
    const StyleAttributes style(dictionary);
    if (textColor(style)->alpha() == 0)
        return Legibility::invisibleText;
    if (!hasContrast(style))
        return Legibility::weakContrast;
    return isTiny(style) ? Legibility::tinyText : Legibility::good;
}

void makeLegible(NSMutableDictionary& style) {
    const StyleAttributes before(style);
    if (textColor(before)->alpha() == 0)
        style.setObject(textColor(before)->colorWithAlphaComponent(1),
                        NSForegroundColorAttributeName);
    if (!hasContrast(StyleAttributes(style)))
        giveContrast(style);
    if (isTiny(before))
        enlarge(style, *before.font);
}

} // namespace tesmar
