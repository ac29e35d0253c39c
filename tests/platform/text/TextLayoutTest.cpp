#include "tesmar/platform/text/TextLayout.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/text/UIFont.h"
#include "tests/platform/Canvas.h"
#include "tests/platform/sanitized.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <tuple>

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

Canvas drawing(const TextLayout& layout, int width, int height, double scale, CGPoint origin) {
    Canvas canvas(width, height, scale);
    CGContext context = canvas.context();
    layout.draw(context, origin, *UIColor::blackColor());
    return canvas;
}

// The smallest rectangle around the drawn pixels, in points.
CGRect drawnArea(const Canvas& canvas) {
    int left = canvas.width, top = canvas.height, right = 0, bottom = 0;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            if (canvas.at(x, y)) {
                left = std::min(left, x), right = std::max(right, x + 1);
                top = std::min(top, y), bottom = std::max(bottom, y + 1);
            }
    const double s = canvas.scale;
    return {left / s, top / s, (right - left) / s, (bottom - top) / s};
}

TEST(TextLayout, InkFillsItsBounds) {
    std::mt19937 random(5);
    for (const char* face : kFaces)
        for (const char* text : kTexts) {
            const double scale = std::array{1.0, 1.5, 2.0, 3.0}[random() % 4];
            const CGPoint origin{20 + (random() % 100) / 100.0, 20 + (random() % 100) / 100.0};
            const TextLayout layout = layoutOf(text, 10 + random() % 20, face);
            const CGRect drawn = drawnArea(drawing(layout, 500, 90, scale, origin));
            const CGRect bounds = layout.inkBounds().offsetBy(origin);
            EXPECT_TRUE(bounds.contains(drawn)) << face << " " << text << " at " << scale;
            EXPECT_LT(bounds.size.width, drawn.size.width + 6) << face << text;
        }
}

TEST(TextLayout, EmojiHaveTheirOwnColorsAndTheSizeOfTheText) {
    const TextLayout layout = layoutOf("\U0001F600", 40);
    const Canvas canvas = drawing(layout, 80, 80, 2, {10, 10});
    int yellow = 0;
    for (const std::uint32_t pixel : canvas.pixels)
        yellow += (pixel >> 16 & 255) > 200 && (pixel >> 8 & 255) > 150 && (pixel & 255) < 128;
    const CGSize drawn = drawnArea(canvas).size;
    EXPECT_GT(yellow, drawn.width * drawn.height * 2);             // half of the pixels
    EXPECT_NEAR(drawn.height, layout.inkBounds().size.height, 10); // pictures have a margin
    EXPECT_NEAR(drawn.height, 45, 10);
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
        const Canvas background(160, 110, std::array{1.0, 2.0, 3.0}[seed % 3], 0xff305070);
        const auto draw = [&](CGContext& context) {
            layout.drawEdge(context, origin, TextEdge(seed % 5), *UIColor::whiteColor(), 0.6);
            layout.draw(context, origin, *color);
        };
        EXPECT_EQ(differencesWhenClipped(background, seed, draw), 0) << seed;
    }
}

TEST(TextLayout, WidthIsProportionalToTheFontSize) {
    for (const char* face : kFaces) {
        const double unit = layoutOf("Opacity 100", 100, face).size().width / 100;
        for (const double size : {10.0, 12.0, 17.0, 18.5})
            EXPECT_NEAR(layoutOf("Opacity 100", size, face).size().width, size * unit, 0.05)
                << face << size;
    }
    EXPECT_EQ(layoutOf("").size().width, 0);
    EXPECT_GT(layoutOf("").size().height, 20); // one empty line
    EXPECT_TRUE(layoutOf("  ").inkBounds().isEmpty());
}

TEST(TextLayout, BreaksTruncatesAndAlignsLines) {
    const std::string words = "several words that need more room";
    const double whole = layoutOf(words).size().width;
    const std::tuple<std::string, std::optional<double>, int, std::size_t, bool> rows[] = {
        {words, std::nullopt, 1, 1, false}, {words, 400, 1, 1, false},
        {words, 100, 1, 1, true},           {words, 100, 2, 2, true},
        {words, 100, 0, 4, false},          {words, 0, 1, 1, true},
        {"a\nb", 400, 1, 1, false},         {"a\nb\n\nc", 400, 0, 4, false},
        {"a\r\nb\nc", 400, 2, 2, false},    {"Donaudampfschiffahrt", 60, 0, 4, false},
        {words, whole - 1e-9, 1, 1, false}, {"גופן", 28, 1, 1, false}, // in a fallback font
    };
    for (const auto& [text, width, lineCount, expectedLines, isTruncated] : rows) {
        TextLayout layout = layoutOf(text);
        layout.setWidth(width);
        layout.setLineCount(lineCount);
        EXPECT_EQ(layout.lineBoxes().size(), expectedLines) << text << lineCount;
        EXPECT_EQ(layout.isTruncated(), isTruncated) << text << lineCount;
        EXPECT_LE(layout.size().width, width && *width > 0 ? *width + 1e-6 : 1000) << text;
    }
    const double width = layoutOf("long longer").size().width;
    TextLayout layout = layoutOf("a\nlong\nlonger");
    layout.setLineCount(2); // the last line is "long longer"
    layout.setWidth(200);
    EXPECT_NEAR(layout.size().width, width, 0.01);
    layout.setAlignment(NSTextAlignment::center);
    EXPECT_NEAR(layout.lineBoxes().at(1).minX(), (200 - width) / 2, 0.01);
    layout.setAlignment(NSTextAlignment::right);
    EXPECT_NEAR(layout.lineBoxes().at(1).minX(), 200 - width, 0.01);

    layout.setText("\u05d0\u05d1"); // is aligned with the side on which it starts
    layout.setAlignment(NSTextAlignment::left);
    layout.setLineCount(1);
    layout.setWidth(std::nullopt);
    const double natural = layout.size().width;
    layout.setWidth(200);
    EXPECT_NEAR(layout.lineBoxes().at(0).minX(), 200 - natural, 0.01);
}

TEST(TextLayout, FitsLinesByTheirBreakMode) {
    using enum NSLineBreakMode;
    constexpr const char* kFixedPitch = "Menlo-Regular";
    const double width = layoutOf("fifteen letters", 17, kFixedPitch).size().width;
    const std::string words = "several words that need more room";
    const std::tuple<NSLineBreakMode, std::string, int, std::string> rows[] = {
        {wordWrapping, words, 1, "several words"},
        {charWrapping, words, 1, "several words t"},
        {wordWrapping, words, 2, "several words\nthat need more"},
        {charWrapping, words, 2, "several words t\nhat need more r"},
        {wordWrapping, words, 0, "several words\nthat need more\nroom"},
        {wordWrapping, "a\nb\u2028c\nd", 3, "a\nb\nc"},
        {truncatingHead, words, 1, "\u2026need more room"},
        {truncatingTail, words, 1, "several words \u2026"},
        {truncatingMiddle, words, 1, "several\u2026re room"},
        {truncatingHead, words, 2, "several words\n\u2026need more room"},
        {truncatingMiddle, "fits", 1, "fits"},
        {truncatingHead, std::string(5000, 'i') + words, 1, "\u2026need more room"},
        {truncatingMiddle, words + std::string(5000, 'i') + words, 1, "several\u2026re room"},
        {clipping, "fits\nso", 0, "fits\nso"},
        {clipping, "a\nb\nc", 2, "a\nb"},
    };
    for (const auto& [mode, text, lineCount, expected] : rows) {
        TextLayout layout = layoutOf(text, 17, kFixedPitch);
        TextLayout shown = layoutOf(expected, 17, kFixedPitch);
        shown.setLineCount(0);
        layout.setWidth(width);
        layout.setLineCount(lineCount);
        layout.setLineBreakMode(mode);
        EXPECT_EQ(layout.isTruncated(), expected.find("\u2026") != std::string::npos) << expected;
        EXPECT_EQ(layout.lineBoxes().size(), shown.lineBoxes().size()) << expected;
        EXPECT_EQ(layout.size().height, shown.size().height) << expected;
        EXPECT_LE(layout.size().width, width) << expected;
        const Canvas a = drawing(layout, 200, 100, 2, {5, 5});
        const Canvas b = drawing(shown, 200, 100, 2, {5, 5});
        const auto same = [](unsigned x, unsigned y) {
            return std::max(x, y) - std::min(x, y) < 1u << 31;
        };
        EXPECT_TRUE(std::ranges::equal(a.pixels, b.pixels, same)) << expected; // but for rounding
    }
    TextLayout layout = layoutOf("MMMMMMMMMM");
    layout.setWidth(50);
    layout.setLineBreakMode(clipping);
    layout.setAlignment(NSTextAlignment::center);
    const CGRect drawn = drawnArea(drawing(layout, 100, 40, 2, {20, 5}));
    EXPECT_TRUE(drawn.maxX() == 70 && drawn.minX() > 20) << drawn.minX() << drawn.maxX();
    EXPECT_EQ(layout.size().width, 50);
}

TEST(TextLayout, ReplacesInvalidTextAndCutsOffEndlessText) {
    using namespace std::literals;
    const std::pair<std::string, std::string> rows[] = {
        {"a\xff.", "a\uFFFD."},
        {"\xc3", "\uFFFD"},
        {"\xed\xa0\x80", "\uFFFD\uFFFD\uFFFD"},
        {"a\0."s, "a\uFFFD."},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(layoutOf(text).text(), expected);
        EXPECT_GT(layoutOf(text).size().width, 0);
    }
    std::string endless;
    while (endless.size() <= TextLayout::kLargestText)
        endless += "\u20ac";
    constexpr std::size_t kWholeCharacters = TextLayout::kLargestText / 3 * 3;
    EXPECT_EQ(layoutOf(endless).text(), endless.substr(0, kWholeCharacters));
}

// The least processor time of a few calls, in seconds; the first that is short enough ends it.
double leastTime(double limit, const std::function<void()>& call) {
    double least = limit;
    for (int i = 0; i < 5 && least >= limit; ++i) {
        const std::clock_t start = std::clock();
        call();
        least = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    }
    return least;
}

TEST(TextLayout, LimitsTimeAndSizeOfAnyText) {
    constexpr double kLimit = test::kSanitized ? 0.2 : 0.05; // 20 ms on a quiet machine
    for (const char* part :
         {"a", "word ", " ", "\n", "\xff", "\t", "\u2028", "a\u0301", "a\u05d0", "\u202eab\u202c",
          "\u0634\u0644", "\u4e2d", "aЖ中\u05d0ก", "\U00012000", "\U0001F600"}) {
        std::string text;
        while (text.size() < TextLayout::kLargestText)
            text += part;
        for (const std::optional<double> width : {std::optional<double>(), {0.0}, {300.0}, {1e5}})
            for (unsigned i = 0; i < (width ? 30 : 5); ++i) {
                const int lines = std::array{1, 3, 0, 0, 0}[i % 5];
                const double fontSize = std::array{17, 17, 17, 8, 1000}[i % 5];
                TextLayout layout = layoutOf(part, fontSize);
                layout.size(); // loads the fonts
                layout.setLineBreakMode(static_cast<NSLineBreakMode>(i / 5));
                layout.setWidth(width);
                layout.setLineCount(lines);
                const auto measure = [&] {
                    layout.setText("");
                    layout.setText(text);
                    layout.size();
                };
                double scale = 2; // another one each time, or the picture would come from the cache
                const auto draw = [&] { drawing(layout, 320, 240, scale += 0.01, {0, 0}); };
                EXPECT_LT(leastTime(kLimit, measure), kLimit) << part << lines << " " << fontSize;
                EXPECT_LT(leastTime(kLimit, draw), kLimit) << part << lines << " " << fontSize;
                const CGSize size = layout.size();
                EXPECT_TRUE(size.width >= 0 && size.height >= 7) << size.width << size.height;
                EXPECT_TRUE(layout.isTruncated());
            }
    }
}

TEST(TextLayout, DrawsTheLatestTextAndFont) {
    TextLayout layout = layoutOf("one");
    const auto pixels = [&layout] { return drawing(layout, 100, 40, 1, {2, 2}).pixels; };
    const auto before = pixels();
    layout.setText("two more");
    EXPECT_NE(pixels(), before);
    layout.setText("one");
    layout.setFont(UIFont::systemFontOfSize(34));
    EXPECT_NE(pixels(), before);
    layout.setFont(nullptr);
    EXPECT_EQ(pixels(), before);
}

} // namespace
} // namespace tesmar
