#include "tesmar/platform/graphics/UIColor.h"

#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tests/platform/RecordCoder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tesmar {
namespace {

TEST(UIColor, IsEqualToTheSameColorInTheSameSpaceOnly) {
    const auto white = UIColor::whiteColor();
    const auto equals = [](const auto& a, const auto& b) { return a->isEqual(b.get()); };
    EXPECT_TRUE(equals(white, UIColor::colorWithWhite(1, 1)));
    EXPECT_FALSE(equals(white, UIColor::colorWithRed(1, 1, 1, 1)));
    EXPECT_FALSE(equals(white, white->colorWithAlphaComponent(0.999)));
    EXPECT_TRUE(equals(white, white->colorWithAlphaComponent(0)->colorWithAlphaComponent(1)));
    EXPECT_TRUE(equals(UIColor::cyanColor(), UIColor::colorWithRed(0, 1, 1, 1)));
    EXPECT_TRUE(equals(UIColor::clearColor(), UIColor::colorWithWhite(NAN, -INFINITY)));
    EXPECT_FALSE(white->isEqual(nullptr));
    registerClass(UIColor::classObject());
    for (const auto& color :
         {UIColor::colorWithWhite(0.831, 0.1), UIColor::colorWithRed(0.1, 1.0 / 3, 0.9, 0.7)})
        EXPECT_TRUE(color->isEqual(NSKeyedUnarchiver::unarchiveObjectWithData(
                                       NSKeyedArchiver::archivedDataWithRootObject(color))
                                       .get()));
}

TEST(UIColor, DecodesOnlyCompleteRecordsAndClampsThem) {
    const std::string count = "UIColorComponentCount";
    const struct {
        RecordCoder::Record record;
        Ref<UIColor> expected; // null: not decoded
    } rows[] = {
        {{{count, 2.0}, {"UIWhite", 3.0}, {"UIAlpha", -1.0}}, UIColor::colorWithWhite(1, 0)},
        {{{count, 4.0}, {"UIRed", NAN}, {"UIGreen", INFINITY}, {"UIBlue", .5}, {"UIAlpha", 1.0}},
         UIColor::colorWithRed(0, 1, 0.5, 1)},
        {{{"UIWhite", 1.0}, {"UIAlpha", 1.0}}, nullptr},
        {{{count, 2.0}, {"UIWhite", 1.0}}, nullptr},
        {{{count, 2.0}, {"UIWhite", "1"}, {"UIAlpha", 1.0}}, nullptr},
        {{{count, 4.0}, {"UIRed", 1.0}, {"UIGreen", 1.0}, {"UIAlpha", 1.0}}, nullptr},
        {{{count, 3.0}, {"UIWhite", 1.0}, {"UIAlpha", 1.0}}, nullptr},
    };
    for (const auto& row : rows) {
        RecordCoder coder(row.record);
        const auto color = makeWith<UIColor>(&UIColor::initWithCoder, coder);
        EXPECT_EQ(color != nullptr, row.expected != nullptr);
        EXPECT_TRUE(!color || row.expected->isEqual(color.get()));
    }
}

} // namespace
} // namespace tesmar
