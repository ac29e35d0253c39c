#include "tesmar/platform/graphics/CGContext.h"

#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/internal/SurfaceCache.h"
#include "tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <limits>
#include <numbers>

namespace tesmar {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

double coveredArea(const Canvas& canvas) {
    double sum = 0;
    for (const std::uint32_t pixel : canvas.pixels)
        sum += (pixel >> 24) / 255.0;
    return sum;
}

TEST(CGContext, ShapesCoverTheirArea) {
    constexpr double pi = std::numbers::pi;
    static constexpr CGPoint points[] = {{20, 20}, {60, 20}, {60, 60}};
    const struct {
        const char* name;
        void (*draw)(CGContext&);
        double area;
    } rows[] = {
        {"fractional rect",
         [](auto& c) {
             c.fillRect({10.25, 10.5, 30, 20});
         },
         600},
        {"thin rect",
         [](auto& c) {
             c.fillRect({10.25, 10.25, 0.5, 40});
         },
         20},
        {"empty rect",
         [](auto& c) {
             c.fillRect({10, 10, 0, 20});
         },
         0},
        {"ellipse",
         [](auto& c) {
             c.fillEllipse({9.3, 8.7, 40, 60});
         },
         pi * 20 * 30},
        {"empty ellipse",
         [](auto& c) {
             c.fillEllipse({10, 10, 0, 40});
         },
         0},
        {"ring",
         [](auto& c) {
             c.strokeEllipse({10, 10, 40, 40});
         },
         pi * 40},
        {"empty ring",
         [](auto& c) {
             c.strokeEllipse({10, 10, 0, 0});
         },
         0},
        {"rounded",
         [](auto& c) {
             c.fillRoundedRect({5, 5, 80, 60}, 10);
         },
         4800 - (4 - pi) * 100},
        {"too round",
         [](auto& c) {
             c.fillRoundedRect({5, 5, 80, 60}, 999);
         },
         pi * 900 + 1200},
        {"long",
         [](auto& c) {
             c.fillRoundedRect({0.5, 5, 180, 30}, 10);
         },
         5400 - (4 - pi) * 100},
        {"polyline", [](auto& c) { c.strokePolyline(points, 4, LineCap::butt); }, 320 + pi - 4},
        {"caps",
         [](auto& c) {
             c.strokePolyline({points, 2}, 4, LineCap::round);
         },
         160 + pi * 4},
        {"one point",
         [](auto& c) {
             c.strokePolyline({points, 1}, 4, LineCap::round);
         },
         0},
    };
    for (const auto& row : rows) {
        Canvas canvas(200, 100, 1);
        CGContext context = canvas.context();
        row.draw(context);
        EXPECT_NEAR(coveredArea(canvas), row.area, 0.01 * row.area + 0.2) << row.name;
    }
}

TEST(CGContext, RectanglesOnPixelsAreExact) {
    Canvas canvas(10, 10, 2);
    CGContext context = canvas.context();
    context.setFillColor(*UIColor::colorWithRed(1, 0.2, 0, 1));
    context.translate(1, 1);
    context.fillRect({0.5, 0, 2, 1});
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x)
            EXPECT_EQ(canvas.at(x, y), x >= 3 && x < 7 && y >= 2 && y < 4 ? 0xffff3300 : 0u);
}

TEST(CGContext, SnapsEveryEdgeToTheNearestPixel) {
    const struct {
        CGRect rect;
        double scale;
        PixelRect expected;
    } rows[] = {
        {{0.4, 0.5, 1, 1}, 1, {0, 1, 1, 1}},
        {{-0.5, -0.6, 1, 1}, 1, {0, -1, 1, 1}},
        {{0.1, 0.1, 0.2, 0.2}, 1, {0, 0, 1, 1}}, // never vanishes
        {{0.1 + 0.2, 0, 0.1 + 0.1, 1}, 2.5, {1, 0, 1, 3}},
        {{5, 5, 0, 10}, 1, {5, 5, 0, 0}},
        {{kNaN, kInfinity, kNaN, 5}, 1, {0, 1 << 22, 0, 0}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(snappedToPixels(row.rect, row.scale), row.expected) << row.rect.minX();
}

TEST(CGContext, NumbersThatAreNotFiniteLeaveItUsable) {
    Canvas canvas(20, 20, 1);
    CGContext context = canvas.context();
    const double odd[] = {kNaN, kInfinity, -kInfinity, 1e300, -1e300, 1e-300};
    for (const double a : odd) {
        for (const double b : odd) {
            for (const CGRect& r : {CGRect(a, b, 10, 10), CGRect(1, 1, a, b), CGRect(a, a, b, b)}) {
                context.saveGState();
                context.setFillColor(*UIColor::clearColor());
                context.setStrokeColor(*UIColor::clearColor());
                context.setLineWidth(b);
                context.translate(a, b);
                const CGPoint points[] = {r.origin, {a, b}, {1, 1}};
                context.fillRoundedRect(r, b);
                context.fillEllipse(r);
                context.strokeEllipse(r);
                context.strokePolyline(points, b, LineCap::round);
                context.drawShadow(r, b, a, {a, b}, *UIColor::clearColor());
                context.clipToRect(r);
                context.setAlpha(a);
                context.restoreGState();
            }
        }
    }
    EXPECT_EQ(context.clipBounds(), CGRect(0, 0, 20, 20));
    context.fillRect({3, 3, 1, 1});
    EXPECT_EQ(canvas.at(3, 3), 0xff000000);
    EXPECT_EQ(coveredArea(canvas), 1);
}

TEST(CGContext, ClipsNarrowAndComeBack) {
    Canvas canvas(20, 20, 2);
    CGContext context = canvas.context();
    context.restoreGState(); // one too many
    context.saveGState();
    context.translate(2, 3);
    context.clipToRect({1, 1, 5, 5});
    EXPECT_EQ(context.clipBounds(), CGRect(1, 1, 5, 5));
    context.clipToPixels({0, 0, 8, 40});
    context.fillRect({0, 0, 20, 20});
    context.clipToRect({9, 9, 1, 1});
    EXPECT_TRUE(context.clipBounds().isEmpty());
    context.restoreGState();
    EXPECT_EQ(coveredArea(canvas), 2 * 10);
    EXPECT_EQ(context.clipPixels(), (PixelRect{0, 0, 40, 40}));
}

TEST(CGContext, ALayerIsOnePicture) {
    Canvas canvas(20, 10, 1);
    CGContext context = canvas.context();
    context.setAlpha(0.5);
    context.beginTransparencyLayer(0.5);
    context.setFillColor(*UIColor::redColor());
    context.fillRect({0, 0, 10, 10});
    context.setFillColor(*UIColor::blueColor());
    context.fillRect({5, 0, 10, 10});
    context.restoreGState(); // not out of the layer
    context.saveGState();    // left to the end of the layer
    context.translate(3, 3);
    context.endTransparencyLayer();
    EXPECT_EQ(canvas.at(2, 2), 0x40400000u);
    EXPECT_EQ(canvas.at(7, 2), 0x40000040u); // no red shines through
    context.endTransparencyLayer();
    context.fillRect({19, 0, 1, 1}); // still half transparent
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
    EXPECT_GT(alphaAt(60, 71), alphaAt(60, 28)); // it falls downwards
    for (int x = 0; x < 120; ++x)
        EXPECT_EQ(canvas.at(x, 90) | canvas.at(x, 22), 0u); // 12 beyond the moved edge, no more
}

TEST(SurfaceCache, LetsTheLongestUnusedGo) {
    SurfaceCache cache;
    const auto insert = [&cache](std::int32_t name) {
        cache.insert({std::span(&name, 1)},
                     SurfacePtr(cairo_image_surface_create(CAIRO_FORMAT_A8, 1024, 1024)));
    };
    const auto has = [&cache](std::int32_t name) {
        return cache.find({std::span(&name, 1)}) != nullptr;
    };
    for (std::int32_t name = 0; name < 8; ++name)
        insert(name);
    EXPECT_TRUE(has(0)); // used again
    insert(8);
    EXPECT_TRUE(has(0) && has(8));
    EXPECT_FALSE(has(1));
}

} // namespace
} // namespace tesmar
