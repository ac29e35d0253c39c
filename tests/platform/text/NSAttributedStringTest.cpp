#include "tesmar/platform/text/NSAttributedString.h"

#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/tests/platform/Canvas.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

Ref<NSAttributedString> caption(std::string text, NSDictionary::Entries attributes) {
    return NSAttributedString::attributedString(
        std::move(text), NSDictionary::dictionaryWithEntries(std::move(attributes)));
}

std::vector<std::uint32_t> drawing(const NSAttributedString& string) {
    Canvas canvas(200, 100, 1, 0xff4080c0);
    CGContext context = canvas.context();
    string.drawInRect(context, {10, 10, 180, 80}, NSTextAlignment::center);
    return canvas.pixels;
}

TEST(NSAttributedString, ValuesOfAnotherClassCountAsAbsent) {
    const auto text = NSString::stringWithString("red");
    const auto plain = NSAttributedString::attributedString("caption", nullptr);
    const auto odd =
        caption("caption", {{"NSColor", text}, {"NSBackgroundColor", text}, {"NSFont", text}});
    const auto spelledOut = caption(
        "caption", {{"NSColor", UIColor::blackColor()}, {"NSFont", UIFont::systemFontOfSize(12)}});
    EXPECT_EQ(drawing(*plain), drawing(*odd));
    EXPECT_EQ(drawing(*plain), drawing(*spelledOut));
    EXPECT_FALSE(plain->isEqual(odd.get()));
    EXPECT_TRUE(plain->isEqual(NSAttributedString::attributedString("caption", nullptr).get()));
    EXPECT_NE(drawing(*plain), drawing(*caption("caption", {{"NSColor", UIColor::redColor()}})));
}

TEST(NSAttributedString, TheBackgroundStandsBehindEachLine) {
    const auto string =
        caption("a long first line\nb", {{"NSColor", UIColor::clearColor()},
                                         {"NSBackgroundColor", UIColor::colorWithWhite(0, 0.5)},
                                         {"NSFont", UIFont::systemFontOfSize(17)}});
    Canvas canvas(200, 100, 1, 0xffffffff);
    CGContext context = canvas.context();
    string->drawInRect(context, {10, 10, 180, 80});
    const CGSize size = string->size(180);
    int covered = 0;
    for (const std::uint32_t pixel : canvas.pixels) {
        EXPECT_TRUE(pixel == 0xffffffff || pixel == 0xff7f7f7f) << std::hex << pixel;
        covered += pixel != 0xffffffff;
    }
    EXPECT_GT(covered, size.width * size.height / 2);       // the first line…
    EXPECT_LT(covered, size.width * size.height * 0.6 + 9); // …and little of the second
}

TEST(NSAttributedString, BreaksAtTheWidthThatIsGiven) {
    const auto string = caption("words that need more than one line", {});
    const CGSize free = string->size(), narrow = string->size(80);
    EXPECT_LE(narrow.width, 80);
    EXPECT_GE(narrow.height, 2 * free.height);
    EXPECT_EQ(string->size(), free);
}

TEST(NSAttributedString, KeepsItsOwnAttributes) {
    const auto attributes = NSDictionary::dictionaryWithEntries({})->mutableCopy();
    attributes->setObject(UIColor::redColor(), NSForegroundColorAttributeName);
    const auto string = NSAttributedString::attributedString("caption", attributes);
    const auto before = drawing(*string);
    attributes->setObject(UIColor::greenColor(), NSForegroundColorAttributeName);
    EXPECT_EQ(drawing(*string), before);
}

} // namespace
} // namespace tesmar
