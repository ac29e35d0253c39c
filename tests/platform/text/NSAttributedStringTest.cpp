#include "tesmar/platform/text/NSAttributedString.h"

#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

Ref<NSAttributedString> styled(const char* text, NSDictionary::Entries attributes) {
    return NSAttributedString::attributedString(
        text, NSDictionary::dictionaryWithEntries(std::move(attributes)));
}

std::vector<std::uint32_t> drawing(const char* text, NSDictionary::Entries attributes) {
    Canvas canvas(200, 100, 1, 0xffffffff);
    CGContext context = canvas.context();
    styled(text, std::move(attributes))->drawInRect(context, {10, 10, 180, 80});
    return canvas.pixels;
}

TEST(NSAttributedString, ValuesOfAnotherClassCountAsMissing) {
    const auto text = NSString::stringWithString("red");
    const auto plain = drawing("caption", {});
    EXPECT_EQ(plain, drawing("caption",
                             {{"NSColor", text}, {"NSBackgroundColor", text}, {"NSFont", text}}));
    EXPECT_EQ(plain, drawing("caption", {{"NSColor", UIColor::blackColor()},
                                         {"NSFont", UIFont::systemFontOfSize(12)}}));
    EXPECT_NE(plain, drawing("caption", {{"NSColor", UIColor::redColor()}}));
}

TEST(NSAttributedString, DrawsTheBackgroundBehindEachLineWithoutASeam) {
    const auto pixels =
        drawing("a long first line\nb", {{"NSColor", UIColor::clearColor()},
                                         {"NSBackgroundColor", UIColor::colorWithWhite(0, 0.5)},
                                         {"NSFont", UIFont::systemFontOfSize(17)}});
    const auto string = styled("a long first line", {{"NSFont", UIFont::systemFontOfSize(17)}});
    const double line = string->size().width * string->size().height;
    double covered = 0;
    for (const std::uint32_t pixel : pixels) {
        EXPECT_TRUE(pixel == 0xffffffff || pixel == 0xff7f7f7f) << std::hex << pixel;
        covered += pixel != 0xffffffff;
    }
    EXPECT_GT(covered, line);
    EXPECT_LT(covered, line * 1.2); // the second line is short
    EXPECT_LE(string->size(60).width, 60);
    EXPECT_NEAR(string->size(60).height, 3 * string->size().height, 0.01);
}

} // namespace
} // namespace tesmar
