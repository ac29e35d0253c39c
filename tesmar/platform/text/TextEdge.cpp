#include "tesmar/platform/text/TextEdge.h"

#include "tesmar/platform/graphics/UIColor.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tesmar {
namespace {

// In the order of the enumerators.
constexpr std::array<std::string_view, 5> kNames{"none", "raised", "depressed", "uniform",
                                                 "dropShadow"};

double linear(double component) {
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

} // namespace

std::string_view textEdgeName(TextEdge edge) {
    return kNames.at(static_cast<std::size_t>(edge));
}

TextEdge textEdgeNamed(std::string_view name) {
    const auto* const found = std::ranges::find(kNames, name);
    return found == kNames.end() ? TextEdge::none : static_cast<TextEdge>(found - kNames.begin());
}

Ref<UIColor> derivedEdgeColor(const UIColor& text) {
    constexpr double kEqualContrast = 0.179; // with black and with white
    const double luminance =
        0.2126 * linear(text.red()) + 0.7152 * linear(text.green()) + 0.0722 * linear(text.blue());
    return luminance < kEqualContrast ? UIColor::whiteColor() : UIColor::blackColor();
}

} // namespace tesmar
