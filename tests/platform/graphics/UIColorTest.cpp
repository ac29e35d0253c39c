#include "tesmar/platform/graphics/UIColor.h"

#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/tests/platform/RecordCoder.h"

#include <gtest/gtest.h>

#include <limits>

namespace tesmar {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(UIColor, ClassColoursHaveTheirSpaceAndComponents) {
    using enum UIColor::Space;
    const struct {
        Ref<UIColor> color;
        UIColor::Space space;
        double red, green, blue, alpha;
    } rows[] = {
        {UIColor::whiteColor(), gray, 1, 1, 1, 1},   {UIColor::blackColor(), gray, 0, 0, 0, 1},
        {UIColor::grayColor(), gray, .5, .5, .5, 1}, {UIColor::clearColor(), gray, 0, 0, 0, 0},
        {UIColor::redColor(), rgb, 1, 0, 0, 1},      {UIColor::greenColor(), rgb, 0, 1, 0, 1},
        {UIColor::blueColor(), rgb, 0, 0, 1, 1},     {UIColor::cyanColor(), rgb, 0, 1, 1, 1},
        {UIColor::yellowColor(), rgb, 1, 1, 0, 1},   {UIColor::magentaColor(), rgb, 1, 0, 1, 1},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.color->space(), row.space);
        EXPECT_EQ(row.color->red(), row.red);
        EXPECT_EQ(row.color->green(), row.green);
        EXPECT_EQ(row.color->blue(), row.blue);
        EXPECT_EQ(CGColorGetAlpha(*row.color), row.alpha);
    }
}

TEST(UIColor, EqualityIsExactAndKnowsTheSpace) {
    const auto white = UIColor::whiteColor();
    EXPECT_TRUE(white->isEqual(UIColor::colorWithWhite(1, 1).get()));
    EXPECT_FALSE(white->isEqual(UIColor::colorWithRed(1, 1, 1, 1).get()));
    EXPECT_FALSE(white->isEqual(white->colorWithAlphaComponent(0.999).get()));
    EXPECT_TRUE(
        white->isEqual(white->colorWithAlphaComponent(0.3)->colorWithAlphaComponent(1).get()));
    EXPECT_FALSE(white->isEqual(nullptr));
}

TEST(UIColor, ComponentsAreHeldWithinTheirRange) {
    const auto color = UIColor::colorWithRed(kNaN, -kInfinity, kInfinity, 7);
    EXPECT_TRUE(color->isEqual(UIColor::colorWithRed(0, 0, 1, 1).get()));
    EXPECT_EQ(color->colorWithAlphaComponent(kNaN)->alpha(), 0);
}

TEST(UIColor, KeepsItsValueInAnArchive) {
    registerClass(UIColor::classObject());
    for (const auto& color : {UIColor::colorWithWhite(0.831, 0.1), UIColor::clearColor(),
                              UIColor::colorWithRed(0.1, 1.0 / 3, 0.9, 0.7)}) {
        const auto back = NSKeyedUnarchiver::unarchiveObjectWithData(
            NSKeyedArchiver::archivedDataWithRootObject(color));
        EXPECT_TRUE(color->isEqual(back.get()));
    }
}

TEST(UIColor, DecodesOnlyWholeRecordsAndClampsThem) {
    const struct {
        RecordCoder::Record record;
        Ref<UIColor> expected; // null: refused
    } rows[] = {
        {{{"UIColorComponentCount", 2.0}, {"UIWhite", 3.0}, {"UIAlpha", -1.0}},
         UIColor::colorWithWhite(1, 0)},
        {{{"UIColorComponentCount", 4.0},
          {"UIRed", kNaN},
          {"UIGreen", kInfinity},
          {"UIBlue", 0.5},
          {"UIAlpha", 1.0}},
         UIColor::colorWithRed(0, 1, 0.5, 1)},
        {{}, nullptr},
        {{{"UIWhite", 1.0}, {"UIAlpha", 1.0}}, nullptr},
        {{{"UIColorComponentCount", 2.0}, {"UIWhite", 1.0}}, nullptr},
        {{{"UIColorComponentCount", 2.0}, {"UIAlpha", 1.0}}, nullptr},
        {{{"UIColorComponentCount", 4.0}, {"UIRed", 1.0}, {"UIGreen", 1.0}, {"UIAlpha", 1.0}},
         nullptr},
        {{{"UIColorComponentCount", 3.0}, {"UIWhite", 1.0}, {"UIAlpha", 1.0}}, nullptr},
        {{{"UIColorComponentCount", 2.0}, {"UIWhite", "1"}, {"UIAlpha", 1.0}}, nullptr},
    };
    for (const auto& row : rows) {
        RecordCoder coder(row.record);
        const auto color = alloc<UIColor>();
        EXPECT_EQ(color->initWithCoder(coder), row.expected != nullptr);
        if (row.expected) {
            EXPECT_TRUE(row.expected->isEqual(color.get()));
        }
    }
}

} // namespace
} // namespace tesmar
