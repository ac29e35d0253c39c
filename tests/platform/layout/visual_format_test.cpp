// Which constraints a visual format describes, and where a wrong one is reported.
#include "tesmar/platform/layout/internal/visual_format.h"
#include "tests/platform/layout/LayoutBox.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

class VisualFormatTest : public ::testing::Test {
  protected:
    VisualFormatTest() {
        for (const char* name : {"a", "b", "c"})
            views[name] = root->add(name);
        views["orphan"] = std::make_shared<LayoutBox>("orphan");
    }
    auto read(std::string_view format, unsigned options) const {
        return constraintsFromVisualFormat(format, static_cast<NSLayoutFormatOptions>(options),
                                           {{"wide", 120.5}, {"high", 750}, {"over", 2000}}, views);
    }

    std::shared_ptr<LayoutBox> root = std::make_shared<LayoutBox>("root");
    NSLayoutConstraint::Views views;
};
using VisualFormatDeathTest = VisualFormatTest;

// clang-format off
TEST_F(VisualFormatTest, DescribesConstraints) {
    const struct {
        const char* format;
        unsigned options;
        const char* constraints; // required unless they say otherwise
    } cases[] = {
        {"|[a]|", 0, "a.leading = root.leading; root.trailing = a.trailing; "},
        {"H:|-[a]-[b]", 0, "a.leading = root.leading + 20; b.leading = a.trailing + 8; "},
        {"V:[a]-7.5-[b]-|", 0, "b.top = a.bottom + 7.5; root.bottom = b.bottom + 20; "},
        {"V:[a(wide)]->=0-|", 0, "a.height = 120.5; root.bottom >= a.bottom; "},
        {"|-(-15)-[a]->=-5.25-[b]", 0,
         "a.leading = root.leading - 15; b.leading >= a.trailing - 5.25; "},
        {"[a]-(>=20@750,<=40)-[b]", 0,
         "b.leading >= a.trailing + 20 (priority 750); b.leading <= a.trailing + 40; "},
        {"[a]->=wide@high-[b]", 0, "b.leading >= a.trailing + 120.5 (priority 750); "},
        {"[a(==b,>=50)]", 0, "a.width = b.width; a.width >= 50; "},
        {"[a(==1@700.5)][b(<=a@high)]", 0,
         "a.width = 1 (priority 700.5); b.leading = a.trailing; b.width <= a.width (priority 750); "},
        {"[a]-2-[b]-3-[c]", 8,
         "b.leading = a.trailing + 2; c.leading = b.trailing + 3; b.top = a.top; c.top = b.top; "},
        {"[a][b]", 16 | 1024 | 2048, "b.leading = a.trailing; b.bottom = a.bottom; "
         "b.centerY = a.centerY; b.lastBaseline = a.lastBaseline; "},
        {"V:[a][b]", 2 | 4 | 32 | 64 | 512, "b.top = a.bottom; b.left = a.left; b.right = a.right; "
         "b.leading = a.leading; b.trailing = a.trailing; b.centerX = a.centerX; "},
    };
    for (const auto& c : cases) {
        std::string text;
        const auto result = read(c.format, c.options);
        ASSERT_EQ(result.index(), 0u) << c.format;
        for (const auto& constraint : std::get<0>(result))
            text += constraint->description() + "; ";
        for (std::size_t at; (at = text.find(" (required)")) != text.npos;)
            text.erase(at, 11);
        EXPECT_EQ(text, c.constraints) << c.format;
    }
}

TEST_F(VisualFormatTest, ReportsTheOffsetOfAnError) {
    const std::string tooLong(kMaxVisualFormatLength + 1, '[');
    const struct {
        const char* format;
        std::size_t offset;
        unsigned options = 0;
    } cases[] = {
        {"", 0}, {"H:", 2}, {"|", 1}, {"||", 1}, {"a", 0}, {"X:[a]", 0}, {"[]", 1}, {"[1a]", 1},
        {"[a", 2}, {"[a]]", 3}, {"[a] [b]", 3}, {"[a]-", 4}, {"[a]--[b]", 4}, {"[a]--5-[b]", 4},
        {"[a]-5[b]", 5}, {"[a]-(5-[b]", 6}, {"[a]-()-[b]", 5}, {"[a]-(5,)-[b]", 7},
        {"[a]-=5-[b]", 4}, {"[a]->5-[b]", 4}, {"[a()]", 3}, {"[a(5@)]", 5}, {"[a(.)]", 3},
        {"[a(1.2.3)]", 3}, {"[a(1e3)]", 4}, {"[a(inf)]", 3}, {"[a(99999999999)]", 3},
        {"|[a]|[b]", 5}, {"[unknown]", 1}, {"[a(==unknown)]", 5}, {"[a(==1@unknown)]", 7},
        {"[a]-b-[c]", 4}, // a view is not a distance
        {"[a(1@over)]", 5}, {"[a(1@-1)]", 5}, {"|[orphan]", 2}, {"[orphan]-|", 1},
        {"[a]-[b]", 0, NSLayoutFormatAlignAllLeft}, {"V:[a]-[b]", 0, NSLayoutFormatAlignAllCenterY},
        {tooLong.c_str(), kMaxVisualFormatLength},
    };
    for (const auto& c : cases) {
        const auto result = read(c.format, c.options);
        ASSERT_EQ(result.index(), 1u) << c.format;
        const auto& error = std::get<VisualFormatError>(result);
        EXPECT_EQ(error.offset, c.offset) << describe(error, c.format);
    }
}
// clang-format on

TEST_F(VisualFormatDeathTest, AnErrorIsFatalAndItsMessageShowsThePlace) {
    EXPECT_DEATH(NSLayoutConstraint::constraintsWithVisualFormat("|-\n[x]", {}, {}, views),
                 "^tesmar: .*expected a number or a name.*offset 2: \"\\|- >>>\\?\\[x\\]\"\n$");
}

} // namespace
} // namespace tesmar
