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

TEST(NSAttributedString, TheBackgroundHoldsAccentedCapitals) {
    for (const char* name : {"HelveticaNeue", "Courier", "Menlo-Regular", "TrebuchetMS", "Avenir",
                             "SavoyeLetPlain", "Copperplate", ".SystemUI"}) {
        const auto font = UIFont::fontWithName(name, 60);
        ASSERT_TRUE(font) << name;
        // The same ink on a background as without one, but for a pixel of antialiasing.
        const auto ink = [&](const Ref<UIColor>& background) {
            Canvas canvas(200, 100, 1, 0xffffffff);
            CGContext context = canvas.context();
            styled("\u00c9\u00c5g\u00e7", {{"NSColor", UIColor::redColor()},
                                           {"NSBackgroundColor", background},
                                           {"NSFont", font}})
                ->drawInRect(context, {5, 20, 190, 80});
            return canvas.pixels;
        };
        const auto boxed = ink(UIColor::blackColor());
        int outside = 0; // red that the box does not hold is mixed with white
        for (std::size_t i = 0; i < boxed.size(); ++i)
            outside += boxed[i] != 0xffffffff && (boxed[i] & 0xff) > 40;
        EXPECT_LE(outside, 30) << name; // swashes, and the edges of the highest
    }
}

constexpr const char* kEdges[] = {"raised", "depressed", "uniform", "dropShadow"};

// White text with a red edge; on a transparent canvas, whose origin is at (40, 40).
Canvas withEdge(const char* text, const char* edge, double alpha, double size, double scale) {
    Canvas canvas(240, 120, scale);
    CGContext context = canvas.context();
    styled(text, {{"NSColor", UIColor::colorWithWhite(1, alpha)},
                  {"NSFont", UIFont::systemFontOfSize(size)},
                  {"TESMAREdge", NSString::stringWithString(edge)},
                  {"TESMAREdgeColor", UIColor::redColor()}})
        ->drawInRect(context, {40, 40, 200, 80});
    return canvas;
}

CGRect drawnPixels(const Canvas& canvas, std::uint32_t leastAlpha = 128) {
    CGRect drawn;
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            if (canvas.at(x, y) >> 24 >= leastAlpha)
                drawn = CGRectUnion(drawn, CGRect{double(x), double(y), 1, 1});
    return drawn;
}

TEST(NSAttributedString, EdgesLieBesideTheCharactersWithoutAGap) {
    for (const char* text : {"Ag fi", "سلام", "नमस्ते", "字한", "\U0001F600"})
        for (const char* edge : kEdges)
            for (const double alpha : {1.0, 0.5}) {
                const Canvas opaque = withEdge(text, "none", 1, 24, 2);
                const Canvas plain = withEdge(text, "none", alpha, 24, 2);
                const Canvas edged = withEdge(text, edge, alpha, 24, 2);
                int changed = 0, gaps = 0, red = 0;
                for (std::size_t i = 0; i < plain.pixels.size(); ++i) {
                    const std::uint32_t covered = opaque.pixels[i] >> 24, now = edged.pixels[i];
                    changed += covered == 255 && plain.pixels[i] != now;
                    gaps += covered > 128 && covered < 255 && alpha == 1 && now >> 24 < 253 &&
                            std::string_view(edge) == "uniform";
                    red += covered < 20 && now >> 24 > 200 && (now & 255) < 20;
                }
                EXPECT_EQ(changed, 0) << text << edge << alpha;
                EXPECT_EQ(gaps, 0) << text << edge << alpha;
                EXPECT_GT(red, 20) << text << edge << alpha;
            }
}

TEST(NSAttributedString, EdgesAreSharesOfTheFontSize) {
    struct {
        const char* edge;
        double size, scale, left, right; // pixels
    } const rows[] = {
        {"uniform", 40, 1, 2, 2},    {"uniform", 40, 3, 6, 6},  {"uniform", 8, 1, 1, 1},
        {"uniform", 100, 3, 15, 15}, {"raised", 40, 2, 0, 4},   {"raised", 8, 1, 0, 1},
        {"depressed", 40, 2, 4, 0},  {"depressed", 8, 3, 1, 0}, {"dropShadow", 60, 1, 0, 6},
    };
    for (const auto& [edge, size, scale, left, right] : rows) {
        const CGRect plain = drawnPixels(withEdge("H", "none", 1, size, scale));
        const CGRect edged = drawnPixels(withEdge("H", edge, 1, size, scale));
        EXPECT_NEAR(plain.minX() - edged.minX(), left, 0.8) << edge << size << "@" << scale;
        EXPECT_NEAR(edged.maxX() - plain.maxX(), right, 0.8) << edge << size << "@" << scale;
        EXPECT_NEAR(plain.minY() - edged.minY(), left, 0.8) << edge << size << "@" << scale;
    }
}

TEST(NSAttributedString, DrawsNothingBeyondItsBounds) {
    const auto window = UIColor::colorWithWhite(0, 0.5);
    for (int i = 0; i < 40; ++i) {
        NSDictionary::Entries attributes{{"NSFont", UIFont::systemFontOfSize(8 + i)},
                                         {"TESMAREdge", NSString::stringWithString(kEdges[i % 4])}};
        if (i % 3 == 0)
            attributes.emplace("TESMARWindowColor", window);
        if (i % 5 == 0)
            attributes.emplace("NSBackgroundColor", window);
        Canvas canvas(400, 300, 1 + i % 5 * 0.5);
        CGContext context = canvas.context();
        const CGRect rect{60 + i * 0.13, 60 + i * 0.29, 150, 100};
        const auto string = styled("fjord \U0001F600\ngy", std::move(attributes));
        string->drawInRect(context, rect, NSTextAlignment(i % 3));
        const CGRect bounds =
            string->drawingBounds(rect.size.width, NSTextAlignment(i % 3)).offsetBy(rect.origin);
        context.clearPixels(context.pixels(bounds));
        context.finish();
        EXPECT_TRUE(drawnPixels(canvas, 1).isEmpty()) << i;
        EXPECT_LT(bounds.size.height, 4 * (8 + i)) << i;
    }
    EXPECT_TRUE(styled("", {{"TESMARWindowColor", window}})->drawingBounds(100).isEmpty());
}

TEST(TextEdge, DerivedColorsContrastWithTheText) {
    const auto isWhite = [](const Ref<UIColor>& text) { return derivedEdgeColor(*text)->white(); };
    EXPECT_EQ(isWhite(UIColor::clearColor()), 1);
    EXPECT_EQ(isWhite(UIColor::blueColor()), 1);
    EXPECT_EQ(isWhite(UIColor::redColor()), 0);
    EXPECT_EQ(isWhite(UIColor::colorWithWhite(0.42, 1)), 1);
    EXPECT_EQ(isWhite(UIColor::grayColor()), 0);
    EXPECT_EQ(textEdgeNamed("Uniform"), TextEdge::none);
    EXPECT_EQ(textEdgeName(textEdgeNamed("dropShadow")), "dropShadow");
}

} // namespace
} // namespace tesmar
