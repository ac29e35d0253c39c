#include "tesmar/platform/text/TextLayout.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

namespace tesmar {
namespace {

constexpr const char* kFaces[] = {".SystemUI",   "HelveticaNeue",  "Courier",    "Menlo-Regular",
                                  "TrebuchetMS", "SavoyeLetPlain", "Copperplate"};
constexpr const char* kTexts[] = {"Captions", "fjord quiz, if", "AVATAR", "Zażółć gęślą",
                                  "Ж שלום ภาษา नमस्ते"};

TextLayout layoutOf(std::string_view text, double size = 17, const char* face = ".SystemUI") {
    TextLayout layout;
    layout.setFont(UIFont::fontWithName(face, size));
    layout.setText(text);
    return layout;
}

// The drawn pixels' box, empty when there are none.
PixelRect drawnPixels(const Canvas& canvas) {
    int left = canvas.width, top = canvas.height, right = 0, bottom = 0;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            if (canvas.at(x, y)) {
                left = std::min(left, x), right = std::max(right, x + 1);
                top = std::min(top, y), bottom = std::max(bottom, y + 1);
            }
    return right > left ? PixelRect{left, top, right - left, bottom - top} : PixelRect{};
}

TEST(TextLayout, InkStaysWithinItsBounds) {
    std::mt19937 random(5);
    for (const char* face : kFaces) {
        for (const char* text : kTexts) {
            const double scale = std::array{1.0, 1.5, 2.0, 3.0}[random() % 4];
            const CGPoint origin{20 + (random() % 100) / 100.0, 20 + (random() % 100) / 100.0};
            const TextLayout layout = layoutOf(text, 10 + random() % 20, face);
            Canvas canvas(500, 90, scale);
            CGContext context = canvas.context();
            layout.draw(context, origin, *UIColor::blackColor());
            const PixelRect drawn = drawnPixels(canvas);
            const CGRect bounds = layout.inkBounds().offsetBy(origin);
            EXPECT_FALSE(drawn.isEmpty()) << face << text;
            EXPECT_TRUE(bounds.contains(CGRect(drawn.x / scale, drawn.y / scale,
                                               drawn.width / scale, drawn.height / scale)))
                << face << " " << text << " at " << scale;
            // …which are no wider than they need be.
            EXPECT_LT(bounds.size.width, drawn.width / scale + 6) << face << text;
        }
    }
}

TEST(TextLayout, EmojiKeepTheirColors) {
    const TextLayout layout = layoutOf("\U0001F600", 40);
    Canvas canvas(80, 80, 2);
    CGContext context = canvas.context();
    layout.draw(context, {10, 10}, *UIColor::blackColor());
    int yellow = 0;
    for (const std::uint32_t pixel : canvas.pixels)
        yellow += (pixel >> 16 & 255) > 200 && (pixel >> 8 & 255) > 150 && (pixel & 255) < 128;
    const PixelRect drawn = drawnPixels(canvas);
    EXPECT_GT(yellow, drawn.width * drawn.height / 2);
    EXPECT_NEAR(drawn.height, layout.inkBounds().size.height * 2, 20); // pictures have a margin
    EXPECT_GT(drawn.height, 70); // as large as the text asks for, not as the font's picture is
    EXPECT_LT(drawn.height, 110);
}

TEST(TextLayout, ClippedPiecesMakeTheWholeText) {
    std::mt19937 random(9);
    for (unsigned seed = 0; seed < 24; ++seed) {
        TextLayout layout = layoutOf(std::string(kTexts[seed % 5]) + " " + kTexts[seed % 3],
                                     9 + random() % 30, kFaces[seed % 7]);
        layout.setLineCount(0);
        layout.setWidth(100 + random() % 100);
        const CGPoint origin{random() % 300 / 10.0 - 5, random() % 300 / 10.0 - 5};
        const auto color = UIColor::colorWithRed(1, 0.5, 0.1, seed % 2 ? 1 : 0.6);
        const double scale = std::array{1.0, 2.0, 3.0}[seed % 3];
        EXPECT_EQ(differencesWhenClipped(
                      Canvas(160, 110, scale, 0xff305070), seed,
                      [&](CGContext& context) { layout.draw(context, origin, *color); }),
                  0)
            << seed;
    }
}

TEST(TextLayout, MeasuresTheSameAtEverySize) {
    for (const char* face : kFaces) {
        const double unit = layoutOf("Opacity 100", 100, face).size().width / 100;
        for (const double size : {10.0, 12.0, 17.0, 18.5})
            EXPECT_NEAR(layoutOf("Opacity 100", size, face).size().width, size * unit, 0.05)
                << face << size;
    }
    EXPECT_EQ(layoutOf("").size().width, 0);
    EXPECT_GT(layoutOf("").size().height, 20); // an empty line is a line
    EXPECT_TRUE(layoutOf("  ").inkBounds().isEmpty());
}

TEST(TextLayout, LinesBreakAndEnd) {
    const std::string words = "several words that need more room";
    const struct {
        const char* name;
        std::string text;
        std::optional<double> width;
        int lineCount;
        std::size_t expectedLines;
        bool isTruncated;
    } rows[] = {
        {"one line as wide as it is", words, std::nullopt, 1, 1, false},
        {"one line that fits", words, 400, 1, 1, false},
        {"one line cut off", words, 100, 1, 1, true},
        {"two lines cut off", words, 100, 2, 2, true},
        {"as many as needed", words, 100, 0, 4, false},
        {"a line break in one line", "a\nb", 400, 1, 1, false},
        {"paragraphs", "a\nb\n\nc", 400, 0, 4, false},
        {"paragraphs in two lines", "a\r\nb\nc", 400, 2, 2, false},
        {"no room at all", words, 0, 1, 1, true},
        {"a word that is too long", "Donaudampfschiffahrt", 60, 0, 4, false},
    };
    for (const auto& row : rows) {
        TextLayout layout = layoutOf(row.text);
        layout.setWidth(row.width);
        layout.setLineCount(row.lineCount);
        EXPECT_EQ(layout.lineBoxes().size(), row.expectedLines) << row.name;
        EXPECT_EQ(layout.isTruncated(), row.isTruncated) << row.name;
        if (row.width.value_or(0) > 20) {
            EXPECT_LE(layout.size().width, *row.width) << row.name;
        }
    }
}

TEST(TextLayout, AlignsWithinItsWidth) {
    TextLayout layout = layoutOf("short");
    const double own = layout.size().width;
    layout.setWidth(200);
    layout.setAlignment(NSTextAlignment::center);
    EXPECT_NEAR(layout.lineBoxes().at(0).minX(), (200 - own) / 2, 0.01);
    layout.setAlignment(NSTextAlignment::right);
    EXPECT_NEAR(layout.lineBoxes().at(0).minX(), 200 - own, 0.01);
    EXPECT_NEAR(layout.size().width, own, 0.01);
}

TEST(TextLayout, TextThatIsNotValidIsReplaced) {
    const struct {
        std::string text, expected;
    } rows[] = {{"a\xff"
                 "b",
                 "a\uFFFD"
                 "b"},
                {"\xc3", "\uFFFD"},
                {"\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
                {std::string("a\0b", 3), "a\uFFFD"
                                         "b"}};
    for (const auto& row : rows) {
        const TextLayout layout = layoutOf(row.text);
        EXPECT_EQ(layout.text(), row.expected);
        EXPECT_GT(layout.size().width, 0);
    }
    std::string endless;
    while (endless.size() <= TextLayout::kLargestText)
        endless += "\u20ac";
    const TextLayout layout = layoutOf(endless);
    EXPECT_LE(layout.text().size(), TextLayout::kLargestText);
    EXPECT_TRUE(layout.text().ends_with("\u20ac"));
}

TEST(TextLayout, ChangesShowAtTheNextLook) {
    TextLayout layout = layoutOf("one");
    const auto drawing = [&layout] {
        Canvas canvas(100, 40, 1);
        CGContext context = canvas.context();
        layout.draw(context, {2, 2}, *UIColor::blackColor());
        return canvas.pixels;
    };
    const auto before = drawing();
    layout.setText("two more");
    EXPECT_NE(drawing(), before);
    layout.setText("one");
    layout.setFont(UIFont::systemFontOfSize(34));
    EXPECT_NE(drawing(), before);
    layout.setFont(nullptr);
    EXPECT_EQ(drawing(), before);
}

} // namespace
} // namespace tesmar
