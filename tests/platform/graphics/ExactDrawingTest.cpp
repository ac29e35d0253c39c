// Windows repaint only damaged rectangles, which must give the same bytes as a full repaint.
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <functional>

namespace tesmar {
namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 110;

Ref<UIImage> greenEllipse() {
    UIGraphicsBeginImageContextWithOptions({7, 9}, false, 2);
    UIGraphicsGetCurrentContext()->setFillColor(*UIColor::greenColor());
    UIGraphicsGetCurrentContext()->fillEllipse({1, 1, 5, 7});
    auto image = UIGraphicsGetImageFromCurrentImageContext();
    UIGraphicsEndImageContext();
    return image;
}

void drawRandomShape(CGContext& c, std::mt19937& random, const UIImage& image) {
    const auto number = [&random](double low, double high) {
        const double v = std::uniform_real_distribution<>(low, high)(random);
        return random() % 2 ? std::round(v) : v;
    };
    const double side = random() % 4 ? 60 : 300;
    const CGRect r{number(-40, kWidth), number(-40, kHeight), number(0, side), number(0, side)};
    const double a = number(0, 20), b = number(0, 12), red = number(0, 1);
    const auto color = UIColor::colorWithRed(red, number(0, 1), 0.4, number(0.2, 1));
    const CGPoint offset{b - 6, b};
    const std::function<void()> shapes[] = {
        [&] { c.fillRect(r); },
        [&] { c.fillEllipse(r); },
        [&] { c.fillRoundedRect(r, a); },
        [&] { c.fillRoundedFrame(r, a, b); },
        [&] { c.strokeEllipse(r); },
        [&] { c.drawShadow(r, b, a, offset, *color); },
        [&] { c.drawImage(image, r); },
        [&] { c.drawImage(image, CGRect(r.minX(), r.minY(), 7, 9), *color); },
        [&] { c.setAlpha(0.9); },
        [&] { c.clearPixels(c.pixels(CGRect(r.minX(), r.minY(), a, b))); },
        [&] {
            c.beginTransparencyLayer(a / 20);
            c.fillEllipse(r);
            c.setAlpha(0.5);
            c.fillRect({r.minX() + 5, r.minY() + 5, 30, 10.5});
            c.endTransparencyLayer();
        },
        [&] {
            c.saveGState();
            c.translate(a, -b);
            c.clipToPixels(c.pixels(CGRectInset(r, 4.3, 4.3)));
            c.fillRoundedRect(r, b);
            c.restoreGState();
        },
    };
    c.setFillColor(*color);
    c.setStrokeColor(*color);
    c.setLineWidth(b);
    shapes[random() % std::size(shapes)]();
}

TEST(ExactDrawing, ClippedPiecesMakeTheWholePicture) {
    const double scales[] = {1, 1.5, 2, 3};
    const auto image = greenEllipse();
    for (unsigned seed = 0; seed < 120; ++seed) {
        const Canvas background(kWidth, kHeight, scales[seed % 4], seed % 3 ? 0xff305070 : 0);
        const auto drawScene = [&](CGContext& context) {
            std::mt19937 random(seed);
            for (int i = 0; i < 12; ++i)
                drawRandomShape(context, random, *image);
        };
        EXPECT_EQ(differencesWhenClipped(background, seed, drawScene), 0) << "scene " << seed;
    }
}

// Shapes larger than one cached tile, which reach far beyond the edges.
TEST(ExactDrawing, HoldsForShapesInTiles) {
    const auto drawLargeShapes = [](CGContext& context) {
        context.setFillColor(*UIColor::yellowColor());
        context.fillEllipse({-600.3, -500.2, 1850, 1590});
        context.setLineWidth(30);
        context.strokeEllipse({10.5, 30.25, 1280, 1000});
        context.fillRoundedRect({100, 900, 1e6, 1e6}, 700);
    };
    EXPECT_EQ(differencesWhenClipped(Canvas(1300, 1100, 1, 0xff305070), 7, drawLargeShapes), 0);
}

} // namespace
} // namespace tesmar
