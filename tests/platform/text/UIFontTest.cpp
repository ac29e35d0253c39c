#include "tesmar/platform/text/UIFont.h"

#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/tests/platform/RecordCoder.h"

#include <gtest/gtest.h>

#include <limits>

namespace tesmar {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(UIFont, SizesAreFiniteAndAboveZero) {
    const struct {
        double size;
        double named;  // 0: no font
        double system; // never without
    } rows[] = {{12, 12, 12}, {0.5, 0.5, 0.5}, {5000, 1000, 1000}, {0, 0, 17},
                {-3, 0, 17},  {kNaN, 0, 17},   {kInfinity, 0, 17}};
    for (const auto& row : rows) {
        const auto font = UIFont::fontWithName("Courier", row.size);
        EXPECT_EQ(font ? font->pointSize() : 0, row.named);
        EXPECT_EQ(UIFont::systemFontOfSize(row.size)->pointSize(), row.system);
    }
    const auto font = UIFont::fontWithName("Courier", 20);
    EXPECT_EQ(font->fontWithSize(30)->pointSize(), 30);
    EXPECT_EQ(font->fontWithSize(kNaN)->pointSize(), 20);
}

TEST(UIFont, EqualityIsNameAndSize) {
    const auto font = UIFont::fontWithName("Courier", 20);
    EXPECT_TRUE(font->isEqual(UIFont::fontWithName("Courier", 20).get()));
    EXPECT_TRUE(font->isEqual(font->fontWithSize(10)->fontWithSize(20).get()));
    EXPECT_FALSE(font->isEqual(font->fontWithSize(20.5).get()));
    EXPECT_FALSE(font->isEqual(UIFont::fontWithName("Avenir", 20).get()));
    EXPECT_TRUE(UIFont::systemFontOfSize(17)->isEqual(UIFont::fontWithName(".SystemUI", 17).get()));
}

TEST(UIFont, MetricsGrowWithTheSize) {
    for (const char* name : {".SystemUI", "HelveticaNeue", "SavoyeLetPlain", "Courier"}) {
        const auto small = UIFont::fontWithName(name, 10), large = UIFont::fontWithName(name, 25);
        EXPECT_GT(small->ascender(), 5) << name;
        EXPECT_LT(small->descender(), 0) << name;
        EXPECT_NEAR(small->lineHeight(), small->ascender() - small->descender(), 1e-9);
        EXPECT_NEAR(large->lineHeight(), 2.5 * small->lineHeight(), 1e-9);
        TextLayout layout;
        layout.setFont(large);
        layout.setText("x");
        EXPECT_NEAR(layout.size().height, large->lineHeight(), 0.01) << name;
        EXPECT_NEAR(layout.baseline(), large->ascender(), 0.01) << name;
    }
}

TEST(UIFont, KeepsItsNameInAnArchiveEvenWhereItsFaceIsMissing) {
    registerClass(UIFont::classObject());
    const auto present = UIFont::fontWithName("SavoyeLetPlain", 45);
    RecordCoder record({{"UIFontName", "Not-Installed"}, {"UIFontPointSize", 21.0}});
    const auto missing = makeWith<UIFont>(&UIFont::initWithCoder, record);
    ASSERT_TRUE(missing);
    for (const auto& font : {present, missing, missing->fontWithSize(30)}) {
        const auto back = as<UIFont>(NSKeyedUnarchiver::unarchiveObjectWithData(
            NSKeyedArchiver::archivedDataWithRootObject(font)));
        ASSERT_TRUE(back);
        EXPECT_TRUE(font->isEqual(back.get()));
        EXPECT_EQ(font->face(), back->face());
    }
    EXPECT_EQ(missing->familyName(), "Not-Installed");
    EXPECT_EQ(missing->lineHeight(), UIFont::systemFontOfSize(21)->lineHeight());
}

TEST(UIFont, RefusesRecordsWithoutANameOrASize) {
    const RecordCoder::Record rows[] = {
        {},
        {{"UIFontName", "Courier"}},
        {{"UIFontPointSize", 12.0}},
        {{"UIFontName", ""}, {"UIFontPointSize", 12.0}},
        {{"UIFontName", 5.0}, {"UIFontPointSize", 12.0}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", "12"}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", 0.0}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", -1.0}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", kNaN}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", kInfinity}},
    };
    for (const auto& row : rows) {
        RecordCoder coder(row);
        EXPECT_EQ(makeWith<UIFont>(&UIFont::initWithCoder, coder), nullptr);
    }
}

} // namespace
} // namespace tesmar
