// What formats stand for, and where those that stand for nothing go wrong.
#include "tesmar/platform/layout/internal/visual_format.h"
#include "tests/platform/layout/LayoutBox.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

struct Names {
    Names() {
        for (const char* name : {"a", "b", "c"})
            views[name] = root->add(name);
        views["orphan"] = orphan;
    }
    std::shared_ptr<LayoutBox> root = std::make_shared<LayoutBox>("root");
    std::shared_ptr<LayoutBox> orphan = std::make_shared<LayoutBox>("orphan");
    NSLayoutConstraint::Views views;
    NSLayoutConstraint::Metrics metrics{{"wide", 120.5}, {"high", 750}, {"over", 2000}};
};

std::string constraintsOf(std::string_view format, unsigned options) {
    const Names names;
    std::string text;
    for (const auto& constraint : NSLayoutConstraint::constraintsWithVisualFormat(
             format, static_cast<NSLayoutFormatOptions>(options), names.metrics, names.views))
        text += constraint->description() + "; ";
    return text;
}

// clang-format off
TEST(VisualFormat, StandsForConstraints) {
    const struct {
        const char* format;
        unsigned options;
        const char* constraints;
    } cases[] = {
        {"[a]", 0, ""},
        {"|[a]|", 0, "a.leading = root.leading (required); root.trailing = a.trailing (required); "},
        {"H:|-[a]-[b]", 0,
         "a.leading = root.leading + 20 (required); b.leading = a.trailing + 8 (required); "},
        {"V:[a]-7.5-[b]-|", 0,
         "b.top = a.bottom + 7.5 (required); root.bottom = b.bottom + 20 (required); "},
        {"V:[a]->=0-|", 0, "root.bottom >= a.bottom (required); "},
        {"|-(-15)-[a]", 0, "a.leading = root.leading - 15 (required); "},
        {"[a]->=-5.25-[b]", 0, "b.leading >= a.trailing - 5.25 (required); "},
        {"[a]-(>=20@750,<=40)-[b]", 0,
         "b.leading >= a.trailing + 20 (priority 750); b.leading <= a.trailing + 40 (required); "},
        {"[a]->=wide@high-[b]", 0, "b.leading >= a.trailing + 120.5 (priority 750); "},
        {"V:[a(wide)]", 0, "a.height = 120.5 (required); "},
        {"[a(==b,>=50)]", 0, "a.width = b.width (required); a.width >= 50 (required); "},
        {"[a(==120@700.5)][b(<=a@high)]", 0,
         "a.width = 120 (priority 700.5); b.leading = a.trailing (required); "
         "b.width <= a.width (priority 750); "},
        {"[a]-2-[b]-3-[c]", NSLayoutFormatAlignAllCenterY | NSLayoutFormatAlignAllTop,
         "b.leading = a.trailing + 2 (required); c.leading = b.trailing + 3 (required); "
         "b.top = a.top (required); c.top = b.top (required); "
         "b.centerY = a.centerY (required); c.centerY = b.centerY (required); "},
        {"V:|[a][b]|", 2 | 4 | 32 | 64 | 512,
         "a.top = root.top (required); b.top = a.bottom (required); "
         "root.bottom = b.bottom (required); b.left = a.left (required); "
         "b.right = a.right (required); b.leading = a.leading (required); "
         "b.trailing = a.trailing (required); b.centerX = a.centerX (required); "},
        {"[a][b]", 16 | 2048,
         "b.leading = a.trailing (required); b.bottom = a.bottom (required); "
         "b.lastBaseline = a.lastBaseline (required); "},
    };
    for (const auto& c : cases)
        EXPECT_EQ(constraintsOf(c.format, c.options), c.constraints) << c.format;
}

TEST(VisualFormat, ErrorsPointAtThePlace) {
    const struct {
        const char* format;
        std::size_t offset;
    } cases[] = {
        {"", 0}, {"H:", 2}, {"|", 1}, {"||", 1}, {"a", 0}, {"X:[a]", 0}, {"[]", 1}, {"[1a]", 1},
        {"[a", 2}, {"[a]]", 3}, {"[a] [b]", 3}, {"[a]-", 4}, {"[a]--[b]", 4}, {"[a]--5-[b]", 4},
        {"[a]-5[b]", 5}, {"[a]-(5-[b]", 6}, {"[a]-()-[b]", 5}, {"[a]-(5,)-[b]", 7},
        {"[a]-=5-[b]", 4}, {"[a]->5-[b]", 4}, {"[a()]", 3}, {"[a(5@)]", 5}, {"[a(.)]", 3},
        {"[a(1.2.3)]", 3}, {"[a(1e3)]", 4}, {"[a(inf)]", 3}, {"[a(99999999999)]", 3},
        {"|[a]|[b]", 5}, {"[nobody]", 1}, {"[a(==nobody)]", 5}, {"[a(==1@nothing)]", 7},
        {"[a]-b-[c]", 4}, // a view is no distance
        {"[a(1@over)]", 5}, {"[a(1@-1)]", 5}, {"|[orphan]", 2}, {"[orphan]-|", 1},
    };
    const Names names;
    for (const auto& c : cases) {
        const auto result =
            constraintsFromVisualFormat(c.format, NSLayoutFormatNone, names.metrics, names.views);
        const auto* error = std::get_if<VisualFormatError>(&result);
        ASSERT_TRUE(error) << c.format;
        EXPECT_EQ(error->offset, c.offset) << describe(*error, c.format);
    }
}
// clang-format on

TEST(VisualFormat, TakesHostileLengthsInItsStride) {
    const Names names;
    for (const char* piece : {"[", "(", "-", "|", "[a]", "[a(", "1", "==", "[a]-(1,"}) {
        std::string format = "|-";
        while (format.size() <= kLongestVisualFormat)
            format += piece;
        const std::string fits = format.substr(0, kLongestVisualFormat);
        constraintsFromVisualFormat(fits, NSLayoutFormatNone, names.metrics, names.views);
        const auto result =
            constraintsFromVisualFormat(format, NSLayoutFormatNone, names.metrics, names.views);
        EXPECT_EQ(std::get<VisualFormatError>(result).offset, kLongestVisualFormat);
    }
}

TEST(VisualFormatDeathTest, MisuseEndsTheProcessAndShowsThePlace) {
    EXPECT_DEATH(
        constraintsOf("|-20-[nobody]", 0),
        "^tesmar: .*no view is named \"nobody\".*offset 6: \"\\|-20-\\[ >>>nobody\\]\"\n$");
    EXPECT_DEATH(constraintsOf("[a(tall)]", 0), "no metric and no view is named \"tall\"");
    EXPECT_DEATH(constraintsOf("[a]-[b]", NSLayoutFormatAlignAllLeft), "along the format");
    EXPECT_DEATH(constraintsOf("V:[a]-[b]", NSLayoutFormatAlignAllCenterY), "along the format");
}

} // namespace
} // namespace tesmar
