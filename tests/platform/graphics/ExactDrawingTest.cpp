// Windows repaint damaged rectangles only: that must give the very bytes of a full repaint.
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <functional>

namespace tesmar {
namespace {

constexpr int kWidth = 160;
constexpr int kHeight = 110;

class Scene {
  public:
    explicit Scene(unsigned seed) : random_(seed) {
        for (int i = 0; i < 12; ++i)
            add();
    }
    void draw(CGContext& context) const {
        for (const auto& step : steps_)
            step(context);
    }

  private:
    double number(double low, double high) {
        const double v = std::uniform_real_distribution<>(low, high)(random_);
        return random_() % 2 ? std::round(v) : v;
    }
    CGRect rect() {
        const double side = random_() % 4 ? 60 : 300;
        return {number(-40, kWidth), number(-40, kHeight), number(0, side), number(0, side)};
    }
    Ref<UIColor> color() {
        return UIColor::colorWithRed(number(0, 1), number(0, 1), number(0, 1), number(0.2, 1));
    }
    Ref<UIImage> image() {
        UIGraphicsBeginImageContextWithOptions({7, 9}, false, 2);
        CGContext& context = *UIGraphicsGetCurrentContext();
        context.setFillColor(*color());
        context.fillEllipse({1, 1, 5, 7});
        auto result = UIGraphicsGetImageFromCurrentImageContext();
        UIGraphicsEndImageContext();
        return result;
    }

    void add() {
        const CGRect r = rect();
        const auto c = color();
        const double a = number(0, 20), b = number(0, 12);
        const auto picture = image();
        const auto cap = a > 10 ? LineCap::round : LineCap::butt;
        const std::vector<CGPoint> line{
            r.origin, {r.midX(), r.maxY()}, {r.maxX(), r.minY()}, {a, b}};
        const std::function<void(CGContext&)> kinds[] = {
            [=](CGContext& x) { x.fillRect(r); },
            [=](CGContext& x) { x.fillEllipse(r); },
            [=](CGContext& x) { x.fillRoundedRect(r, a); },
            [=](CGContext& x) { x.strokeEllipse(r); },
            [=](CGContext& x) { x.strokePolyline(line, b, cap); },
            [=](CGContext& x) {
                x.drawShadow(r, b, a, {b - 6, b}, *c);
            },
            [=](CGContext& x) { x.drawImage(*picture, r); },
            [=](CGContext& x) {
                x.drawImage(*picture, {r.origin, picture->size()}, *c);
            },
            [=](CGContext& x) { x.setAlpha(0.9); },
            [=](CGContext& x) {
                x.clearRect({r.minX(), r.minY(), a, b});
            },
            [=](CGContext& x) {
                x.beginTransparencyLayer(a / 20);
                x.fillEllipse(r);
                x.setAlpha(0.5);
                x.fillRect({r.minX() + 5, r.minY() + 5, 30, 10.5});
                x.endTransparencyLayer();
            },
            [=](CGContext& x) {
                x.saveGState();
                x.translate(a, -b);
                x.clipToRect(CGRectInset(r, 4.3, 4.3));
                x.fillRoundedRect(r, b);
                x.restoreGState();
            },
        };
        steps_.push_back([c, b, step = kinds[random_() % std::size(kinds)]](CGContext& context) {
            context.setFillColor(*c);
            context.setStrokeColor(*c);
            context.setLineWidth(b);
            step(context);
        });
    }

    std::mt19937 random_;
    std::vector<std::function<void(CGContext&)>> steps_;
};

TEST(ExactDrawing, ClippedPiecesMakeTheWholePicture) {
    const double scales[] = {1, 1.5, 2, 3};
    for (unsigned seed = 0; seed < 120; ++seed) {
        const Scene scene(seed);
        const Canvas background(kWidth, kHeight, scales[seed % 4], seed % 3 ? 0xff305070 : 0);
        EXPECT_EQ(differencesWhenClipped(background, seed,
                                         [&](CGContext& context) { scene.draw(context); }),
                  0)
            << "scene " << seed;
    }
}

// Larger than one kept surface, and far beyond the edges.
TEST(ExactDrawing, HoldsForShapesInTiles) {
    const Canvas background(1300, 1100, 1, 0xff305070);
    EXPECT_EQ(differencesWhenClipped(background, 7,
                                     [](CGContext& context) {
                                         context.setFillColor(*UIColor::yellowColor());
                                         context.fillEllipse({-600.3, -500.2, 1850, 1590});
                                         context.setLineWidth(30);
                                         context.strokeEllipse({10.5, 30.25, 1280, 1000});
                                         context.fillRoundedRect({100, 900, 1e6, 1e6}, 700);
                                     }),
              0);
}

} // namespace
} // namespace tesmar
