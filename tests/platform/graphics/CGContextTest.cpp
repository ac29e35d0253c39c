#include "tesmar/platform/graphics/CGContext.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

namespace tesmar {
namespace {

double coveredArea(const Canvas& canvas) {
    double sum = 0;
    for (const std::uint32_t pixel : canvas.pixels)
        sum += (pixel >> 24) / 255.0;
    return sum;
}

TEST(CGContext, ShapesCoverTheirArea) {
    constexpr double pi = std::numbers::pi;
    const auto rounded = [](CGContext& c, const CGRect& r) { c.fillRoundedRect(r, 10); };
    const auto tooRound = [](CGContext& c, const CGRect& r) { c.fillRoundedRect(r, 999); };
    const struct {
        const char* name;
        std::function<void(CGContext&, const CGRect&)> draw;
        CGRect rect;
        double area;
    } rows[] = {
        {"fractional rect", &CGContext::fillRect, {10.25, 10.5, 30, 20}, 600},
        {"thin rect", &CGContext::fillRect, {10.25, 10.25, 0.5, 40}, 20},
        {"empty rect", &CGContext::fillRect, {10, 10, 0, 20}, 0},
        {"ellipse", &CGContext::fillEllipse, {9.3, 8.7, 40, 60}, pi * 20 * 30},
        {"empty ellipse", &CGContext::fillEllipse, {10, 10, 0, 40}, 0},
        {"ring", &CGContext::strokeEllipse, {10, 10, 40, 40}, pi * 40},
        {"empty ring", &CGContext::strokeEllipse, {10, 10, 0, 0}, 0},
        {"rounded", rounded, {5, 5, 80, 60}, 4800 - (4 - pi) * 100},
        {"too round", tooRound, {5, 5, 80, 60}, pi * 900 + 1200},
        {"in tiles", &CGContext::fillEllipse, {-1100, 10, 2200, 1000}, pi * 1100 * 500 / 2},
        {"stretched", rounded, {0.5, 5, 180, 30}, 5400 - (4 - pi) * 100},
    };
    for (const auto& row : rows) {
        Canvas canvas(1300, 1100, 1);
        CGContext context = canvas.context();
        row.draw(context, row.rect);
        EXPECT_NEAR(coveredArea(canvas), row.area, 0.002 * row.area + 0.2) << row.name;
    }
}

TEST(CGContext, SnapsEveryEdgeToTheNearestPixel) {
    const struct {
        CGRect rect;
        double scale;
        PixelRect expected;
    } rows[] = {
        {{0.4, 0.5, 1, 1}, 1, {0, 1, 1, 1}},      {{-0.5, -0.6, 1, 1}, 1, {0, -1, 1, 1}},
        {{0.1, 0.1, 0.2, 0.2}, 1, {0, 0, 1, 1}},  // at least one pixel
        {{2.5 - 1e-9, 0, 1, 1}, 1, {3, 0, 1, 1}}, // counts as a half
        {{5, 5, 0, 10}, 1, {5, 5, 0, 0}},         {{NAN, INFINITY, NAN, 5}, 1, {0, 1 << 22, 0, 0}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(snappedToPixels(row.rect, row.scale), row.expected) << row.rect.minX();
}

TEST(CGContext, NonFiniteNumbersLeaveItUsable) {
    Canvas canvas(20, 20, 1);
    CGContext context = canvas.context();
    const double odd[] = {NAN, INFINITY, -INFINITY, 1e300, -1e300, 1e-300};
    for (const double a : odd)
        for (const double b : odd)
            for (const CGRect& r : {CGRect(a, b, 10, 10), CGRect(1, 1, a, b), CGRect(a, a, b, b)}) {
                context.saveGState();
                context.setFillColor(*UIColor::clearColor());
                context.setStrokeColor(*UIColor::clearColor());
                context.setLineWidth(b);
                context.translate(a, b);
                context.fillRoundedRect(r, b);
                context.fillEllipse(r);
                context.strokeEllipse(r);
                context.drawShadow(r, b, a, {a, b}, *UIColor::clearColor());
                context.clipToPixels(context.pixels(r));
                context.setAlpha(a);
                context.restoreGState();
            }
    EXPECT_EQ(context.clipPixels(), (PixelRect{0, 0, 20, 20}));
    context.fillRect({3, 3, 1, 1});
    EXPECT_EQ(canvas.at(3, 3), 0xff000000);
    EXPECT_EQ(coveredArea(canvas), 1);
}

TEST(CGContext, RestoringUndoesClipColorAndTranslation) {
    Canvas canvas(20, 20, 2);
    CGContext context = canvas.context();
    context.restoreGState(); // without a save
    context.saveGState();
    context.setFillColor(*UIColor::colorWithRed(1, 0.2, 0, 1));
    context.translate(2, 3);
    context.clipToPixels(context.pixels({1, 1, 5, 5}));
    context.clipToPixels({0, 0, 8, 40});
    context.fillRect({0, 0, 20, 20});
    context.clipToPixels({30, 30, 1, 1});
    EXPECT_TRUE(context.clipPixels().isEmpty());
    context.restoreGState();
    context.fillRect({10.5, 0, 2, 1});
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x) {
            const bool isRed = x >= 6 && x < 8 && y >= 8 && y < 18;
            const bool isBlack = x >= 21 && x < 25 && y < 2;
            EXPECT_EQ(canvas.at(x, y), isRed ? 0xffff3300u : isBlack ? 0xff000000u : 0u);
        }
}

TEST(CGContext, PixelsBlendOverTheSurface) {
    Canvas canvas(3, 1, 1, 0xff646464);
    CGContext context = canvas.context();
    const std::uint32_t front[] = {0x80400000, 0xff123456, 0};
    context.translate(1, 0); // does not apply
    context.drawPixels(front, {0, 0, 3, 1}, 12);
    EXPECT_EQ(canvas.pixels, (std::vector<std::uint32_t>{0xff723232, 0xff123456, 0xff646464}));
}

// Written without clearing first, they are those that are painted on what was cleared before.
TEST(CGContext, PixelsOnClearedOnesRoundAlike) {
    std::vector<std::uint32_t> front(256);
    for (unsigned i = 0; i < 256; ++i)
        front[i] = i << 24 | i / 3 << 16 | i / 2 << 8 | i;
    for (int step = 0; step <= 300; ++step) {
        Canvas written(261, 4, 1, 0xff646464), painted = written;
        for (Canvas* const canvas : {&written, &painted}) {
            CGContext context = canvas->context();
            context.clipToPixels({1, 1, 259 - step % 8, 3});
            context.clearPixels({0, 0, 261, 4});
            if (canvas == &painted)
                context.fillRect({1, 1, 1, 1});
            context.setAlpha(step / 300.0);
            context.drawPixels(front.data(), {2, 2, 256, 1}, 1024);
            context.setAlpha(1e6), context.clearPixels({1, 1, 1, 1});
        }
        ASSERT_EQ(written.pixels, painted.pixels) << step;
    }
}

TEST(CGContext, RectanglesAndShapesRoundAColorAlike) {
    for (int i = 0; i <= 2000; ++i) {
        Canvas canvas(2, 1, 8);
        auto context = canvas.context();
        context.setRGBFillColor(i / 2000.0, 1 - i / 2000.0, i / 5000.0, 1);
        context.fillRect({0, 0, 1, 1});
        context.fillEllipse({1, 0, 1, 1});
        ASSERT_EQ(canvas.at(4, 4), canvas.at(12, 4)) << i;
    }
}

TEST(CGContext, ALayerIsOnePicture) {
    Canvas canvas(20, 10, 1);
    CGContext context = canvas.context();
    context.setAlpha(0.5);
    context.beginTransparencyLayer(0.5);
    context.restoreGState(); // has no save inside the layer
    context.setFillColor(*UIColor::redColor());
    context.fillRect({0, 0, 10, 10});
    context.setFillColor(*UIColor::blueColor());
    context.fillRect({5, 0, 10, 10});
    context.saveGState(); // has no restore inside the layer
    context.translate(3, 3);
    context.endTransparencyLayer();
    EXPECT_EQ(canvas.at(2, 2), 0x40400000u);
    EXPECT_EQ(canvas.at(7, 2), 0x40000040u); // blue hides the red below it
    context.endTransparencyLayer();          // without a begin
    context.fillRect({19, 0, 1, 1});         // still half transparent
    EXPECT_EQ(canvas.at(19, 0), 0x80000000u);
}

TEST(CGContext, AShadowFadesOutsideItsShapeOnly) {
    Canvas canvas(120, 100, 1);
    CGContext context = canvas.context();
    context.drawShadow({30, 30, 60, 40}, 8, 12, {0, 6}, *UIColor::colorWithWhite(0, 0.5));
    const auto alphaAt = [&canvas](int x, int y) { return canvas.at(x, y) >> 24; };
    EXPECT_EQ(alphaAt(31, 50) + alphaAt(60, 31) + alphaAt(60, 69), 0u); // inside
    for (int y = 70; y < 88; ++y)
        EXPECT_GE(alphaAt(60, y), alphaAt(60, y + 1)) << y;
    EXPECT_GT(alphaAt(60, 71), 64u);
    EXPECT_GT(alphaAt(60, 71), alphaAt(60, 28)); // moved downwards
    for (int x = 0; x < 120; ++x)
        EXPECT_EQ(canvas.at(x, 90) | canvas.at(x, 22), 0u); // beyond its reach

    Canvas large(1000, 20, 16); // moved and blurred by 300 pixels, which takes seconds by 1,600
    large.context().drawShadow({0, -99, 10, 200}, 0, 100, {100, 0}, *UIColor::redColor());
    EXPECT_GT(large.at(700, 10) >> 24, 0u);
    EXPECT_EQ(large.at(761, 10), 0u);
}

TEST(SurfaceCache, EvictsTheLeastRecentlyUsed) {
    SurfaceCache cache;
    const auto insert = [&cache](std::int32_t name) {
        cache.insert({std::span(&name, 1)},
                     SurfacePtr(cairo_image_surface_create(CAIRO_FORMAT_A8, 1024, 1024)));
    };
    const auto has = [&cache](std::int32_t name) { return cache.find({std::span(&name, 1)}); };
    for (std::int32_t name = 0; name < 8; ++name)
        insert(name);
    EXPECT_TRUE(has(0)); // and so used again
    insert(8);
    EXPECT_TRUE(has(0) && has(8));
    EXPECT_FALSE(has(1));
}

} // namespace
} // namespace tesmar
