#include "tesmar/platform/text/UIFont.h"

#include "tesmar/platform/foundation/archive/NSKeyedArchiver.h"
#include "tesmar/platform/foundation/archive/NSKeyedUnarchiver.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/TextLayout.h"
#include "tests/platform/RecordCoder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tesmar {
namespace {

TEST(UIFont, SizesAreFiniteAndPositive) {
    const struct {
        double size, named, system; // 0: no font
    } rows[] = {{0.5, 0.5, 0.5}, {5000, 1000, 1000}, {0, 0, 17},
                {-3, 0, 17},     {NAN, 0, 17},       {INFINITY, 0, 17}};
    for (const auto& row : rows) {
        const auto font = UIFont::fontWithName("Courier", row.size);
        EXPECT_EQ(font ? font->pointSize() : 0, row.named);
        EXPECT_EQ(UIFont::systemFontOfSize(row.size)->pointSize(), row.system);
    }
    const auto font = UIFont::fontWithName("Courier", 20);
    EXPECT_EQ(font->fontWithSize(NAN)->pointSize(), 20);
    EXPECT_TRUE(font->isEqual(font->fontWithSize(10)->fontWithSize(20).get()));
    EXPECT_FALSE(font->isEqual(font->fontWithSize(20.5).get()));
    EXPECT_FALSE(font->isEqual(UIFont::fontWithName("Avenir", 20).get()));
}

TEST(UIFont, MetricsMatchOneLineOfText) {
    for (const char* name : {".SystemUI", "HelveticaNeue", "SavoyeLetPlain", "Courier"}) {
        const auto font = UIFont::fontWithName(name, 25);
        TextLayout layout;
        layout.setFont(font);
        EXPECT_NEAR(layout.size().height, font->lineHeight(), 0.01) << name;
        EXPECT_NEAR(layout.baseline(), font->ascender(), 0.01) << name;
        EXPECT_NEAR(font->lineHeight(), font->ascender() - font->descender(), 1e-9) << name;
    }
}

Ref<UIFont> decoded(const RecordCoder::Record& record) {
    RecordCoder coder(record);
    return makeWith<UIFont>(&UIFont::initWithCoder, coder);
}

TEST(UIFont, ArchivesItsNameEvenIfTheFaceIsMissing) {
    registerClass(UIFont::classObject());
    const auto missing = decoded({{"UIFontName", "Not-Installed"}, {"UIFontPointSize", 21.0}});
    for (const auto& font : {UIFont::fontWithName("SavoyeLetPlain", 45), missing}) {
        const auto copy = as<UIFont>(NSKeyedUnarchiver::unarchiveObjectWithData(
            NSKeyedArchiver::archivedDataWithRootObject(font)));
        ASSERT_TRUE(font->isEqual(copy.get()));
        EXPECT_EQ(font->face(), copy->face());
    }
    EXPECT_EQ(missing->familyName(), "Not-Installed");
    EXPECT_EQ(missing->lineHeight(), UIFont::systemFontOfSize(21)->lineHeight());
    const RecordCoder::Record incomplete[] = {
        {{"UIFontName", "Courier"}},
        {{"UIFontPointSize", 12.0}},
        {{"UIFontName", ""}, {"UIFontPointSize", 12.0}},
        {{"UIFontName", "Courier"}, {"UIFontPointSize", INFINITY}},
    };
    for (const auto& record : incomplete)
        EXPECT_FALSE(decoded(record));
}

} // namespace
} // namespace tesmar
