// When captions are called hard to read, and what mending them changes.
#include "tesmar/captions/internal/StyleAttributes.h"
#include "tesmar/extended/TESMARStylePreset.h"
#include "tesmar/extended/internal/legibility.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

using enum Legibility;

Ref<UIColor> white(double alpha) {
    return UIColor::colorWithWhite(1, alpha);
}
Ref<UIColor> black(double alpha) {
    return UIColor::colorWithWhite(0, alpha);
}

struct Look {
    const char* name;
    Ref<UIColor> text, background, window;
    const char* edge;
    double size; // points
    Legibility expected;
};

Ref<NSMutableDictionary> styleOf(const Look& look) {
    auto style = make<NSMutableDictionary>();
    style->setObject(look.text, NSForegroundColorAttributeName);
    style->setObject(UIFont::systemFontOfSize(look.size), NSFontAttributeName);
    const bool isOwn = look.edge == std::string_view("own"); // black
    style->setObject(NSString::stringWithString(isOwn ? "uniform" : look.edge),
                     TESMAREdgeAttributeName);
    if (isOwn)
        style->setObject(black(1), TESMAREdgeColorAttributeName);
    if (look.background)
        style->setObject(look.background, NSBackgroundColorAttributeName);
    if (look.window)
        style->setObject(look.window, TESMARWindowColorAttributeName);
    return style;
}

TEST(Legibility, IsMendedWithoutAnythingElse) {
    const auto red = UIColor::redColor(), yellow = UIColor::yellowColor();
    const Look looks[] = {
        {"default", white(1), black(0.5), nullptr, "none", 17, good},
        {"nothing behind", white(1), nullptr, nullptr, "none", 17, weakContrast},
        {"outline", white(1), nullptr, nullptr, "uniform", 17, good},
        {"shadow alone", white(1), nullptr, nullptr, "dropShadow", 17, weakContrast},
        {"window in its place", white(1), nullptr, black(0.8), "none", 17, good},
        {"window of its colour", white(1), nullptr, white(1), "none", 17, weakContrast},
        {"pale text", white(0.2), black(1), nullptr, "none", 17, weakContrast},
        {"same colours", red, red, nullptr, "none", 17, weakContrast},
        {"thin background", yellow, black(0.1), nullptr, "none", 17, weakContrast},
        {"invisible", white(0), black(1), nullptr, "none", 8.5, invisibleText},
        {"outline of its colour", black(1), white(0.2), nullptr, "own", 17, weakContrast},
        {"tiny", white(1), black(1), nullptr, "none", 12, tinyText},
        {"small", white(1), black(1), nullptr, "none", 12.75, good}};
    for (const Look& look : looks) {
        SCOPED_TRACE(look.name);
        const auto style = styleOf(look);
        EXPECT_EQ(legibilityOf(*style), look.expected);
        const auto mended = style->mutableCopy();
        makeLegible(*mended);
        EXPECT_EQ(legibilityOf(*mended), good);
        EXPECT_EQ(mended->isEqual(style.get()), look.expected == good);
        const auto text = StyleAttributes(*mended).text;
        EXPECT_TRUE(
            text->colorWithAlphaComponent(1)->isEqual(look.text->colorWithAlphaComponent(1).get()));
    }
}

TEST(Legibility, HoldsForEveryPreset) {
    for (const auto& preset : TESMARPresetStyles())
        EXPECT_EQ(legibilityOf(*preset), good);
}

} // namespace
} // namespace tesmar
