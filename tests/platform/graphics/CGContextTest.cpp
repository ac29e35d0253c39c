#include "tesmar/platform/graphics/CGContext.h"

#include "tesmar/platform/graphics/SurfaceCache.h"
#include "tesmar/platform/graphics/UIColor.h"
#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/tests/platform/Canvas.h"

#include <gtest/gtest.h>

#include <array>
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
    const CGPoint corner[] = {{20, 20}, {60, 20}, {60, 60}};
    const struct {
        const char* name;
        void (*draw)(CGContext&, const CGPoint*);
        double area;
    } rows[] = {
        {"rect",
         [](CGContext& c, auto*) {
             c.fillRect({10, 10, 30, 20});
         },
         600},
        {"fractional rect",
         [](CGContext& c, auto*) {
             c.fillRect({10.25, 10.5, 30, 20});
         },
         600},
        {"thin rect",
         [](CGContext& c, auto*) {
             c.fillRect({10.25, 10.25, 0.5, 40});
         },
         20},
        {"empty rect",
         [](CGContext& c, auto*) {
             c.fillRect({10, 10, 0, 20});
         },
         0},
        {"ellipse",
         [](CGContext& c, auto*) {
             c.fillEllipse({10, 10, 40, 60});
         },
         pi * 20 * 30},
        {"moved circle",
         [](CGContext& c, auto*) {
             c.fillEllipse({9.3, 8.7, 40, 40});
         },
         pi * 400},
        {"empty ellipse",
         [](CGContext& c, auto*) {
             c.fillEllipse({10, 10, 0, 40});
         },
         0},
        {"ring",
         [](CGContext& c, auto*) {
             c.strokeEllipse({10, 10, 40, 40});
         },
         pi * 40},
        {"empty ring",
         [](CGContext& c, auto*) {
             c.strokeEllipse({10, 10, 0, 0});
         },
         0},
        {"rounded",
         [](CGContext& c, auto*) {
             c.fillRoundedRect({5, 5, 80, 60}, 10);
         },
         4800 - (4 - pi) * 100},
        {"too round",
         [](CGContext& c, auto*) {
             c.fillRoundedRect({5, 5, 80, 60}, 999);
         },
         pi * 900 + 20 * 60},
        {"long rounded",
         [](CGContext& c, auto*) {
             c.fillRoundedRect({0.5, 5, 180, 30}, 10);
         },
         5400 - (4 - pi) * 100},
        {"polyline",
         [](CGContext& c, auto* p) {
             c.strokePolyline({p, 3}, 4, LineCap::butt);
         },
         4 * 80 + pi - 4}, // the overlap of the two, and a quarter disc outside it
        {"round caps",
         [](CGContext& c, auto* p) {
             c.strokePolyline({p, 2}, 4, LineCap::round);
         },
         160 + pi * 4},
        {"one point",
         [](CGContext& c, auto* p) {
             c.strokePolyline({p, 1}, 4, LineCap::round);
         },
         0},
    };
    for (const auto& row : rows) {
        Canvas canvas(200, 100, 1);
        CGContext context = canvas.context();
        row.draw(context, corner);
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

TEST(CGContext, AFillOverARingLeavesItsOuterHalf) {
    Canvas canvas(50, 50, 4);
    CGContext context = canvas.context();
    CGContextSetStrokeColorWithColor(context, *UIColor::grayColor());
    CGContextSetLineWidth(context, 1);
    CGContextSetFillColorWithColor(context, *UIColor::redColor());
    CGContextStrokeEllipseInRect(context, {5, 5, 40, 40});
    CGContextFillEllipseInRect(context, {5, 5, 40, 40});
    const int middle = 100; // pixels; the disc starts at 20, its ring at 18
    EXPECT_EQ(canvas.at(17, middle), 0u);
    EXPECT_EQ(canvas.at(19, middle), 0xff808080);
    EXPECT_EQ(canvas.at(22, middle), 0xffff0000);
}

TEST(CGContext, SnapsEveryEdgeToTheNearestPixel) {
    const struct {
        CGRect rect;
        double scale;
        PixelRect expected;
    } rows[] = {
        {{1, 2, 3, 4}, 1, {1, 2, 3, 4}},
        {{0.4, 0.5, 1, 1}, 1, {0, 1, 1, 1}},
        {{-0.5, -0.6, 1, 1}, 1, {0, -1, 1, 1}},
        {{0.1, 0.1, 0.2, 0.2}, 1, {0, 0, 1, 1}}, // never vanishes
        {{0.1 + 0.2, 0, 0.1 + 0.1, 1}, 2.5, {1, 0, 1, 3}},
        {{5, 5, 0, 10}, 1, {5, 5, 0, 0}},
        {{kNaN, kInfinity, kNaN, 5}, 1, {0, 1 << 22, 0, 0}},
        {{-kInfinity, 0, kInfinity, 1}, 1, {-(1 << 22), 0, 1 << 22, 1}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(snappedToPixels(row.rect, row.scale), row.expected)
            << row.rect.minX() << " at " << row.scale;

    Canvas canvas(20, 20, 2);
    CGContext context = canvas.context();
    context.translate(0.3, 0);
    EXPECT_EQ(context.pixels({1, 1, 2, 2}), (PixelRect{3, 2, 4, 4}));
    const CGRect snapped = context.snapped({1, 1, 2, 2});
    EXPECT_NEAR(snapped.minX(), 1.2, 1e-12);
    EXPECT_NEAR(snapped.maxX(), 3.2, 1e-12);
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
                context.fillRect(r);
                context.fillEllipse(r);
                context.strokeEllipse(r);
                context.fillRoundedRect(r, b);
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

TEST(CGContext, ImpossibleSurfacesDrawNothing) {
    std::uint32_t pixel = 0;
    const struct {
        void* pixels;
        int width, height, stride;
    } rows[] = {{nullptr, 1, 1, 4}, {&pixel, 0, 1, 4}, {&pixel, 1, -1, 4},
                {&pixel, 2, 1, 4},  {&pixel, 1, 1, 5}, {&pixel, 40000, 1, 160000}};
    for (const auto& row : rows) {
        CGContext context(row.pixels, row.width, row.height, row.stride, 1);
        context.fillRect({0, 0, 9, 9});
        context.beginTransparencyLayer(0.5);
        context.fillEllipse({0, 0, 9, 9});
        context.endTransparencyLayer();
        EXPECT_TRUE(context.clipBounds().isEmpty());
        EXPECT_EQ(pixel, 0u);
    }
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
    EXPECT_EQ(context.clipPixels(), (PixelRect{6, 8, 2, 10}));
    context.clearRect({0, 0, 20, 20});
    context.fillRect({0, 0, 20, 20});
    context.clipToRect({9, 9, 1, 1});
    EXPECT_TRUE(context.clipBounds().isEmpty());
    context.restoreGState();
    EXPECT_EQ(coveredArea(canvas), 20);
    EXPECT_EQ(context.clipPixels(), (PixelRect{0, 0, 40, 40}));
}

TEST(CGContext, ALayerIsOnePicture) {
    Canvas canvas(20, 10, 1);
    CGContext context = canvas.context();
    context.setAlpha(0.5);
    context.beginTransparencyLayer(0.5);
    context.saveGState();
    context.setFillColor(*UIColor::redColor());
    context.fillRect({0, 0, 10, 10});
    context.setFillColor(*UIColor::blueColor());
    context.fillRect({5, 0, 10, 10});
    context.restoreGState();
    context.restoreGState(); // not out of the layer
    context.saveGState();    // left to the end of the layer
    context.translate(3, 3);
    context.endTransparencyLayer();
    EXPECT_EQ(canvas.at(2, 2), 0x40400000u);
    EXPECT_EQ(canvas.at(7, 2), 0x40000040u); // no red shines through
    EXPECT_EQ(context.clipBounds(), CGRect(0, 0, 20, 10));
    context.endTransparencyLayer();
    context.fillRect({19, 0, 1, 1}); // still half transparent
    EXPECT_EQ(canvas.alphaAt(19, 0), 128);
}

TEST(CGContext, AShadowFadesOutsideItsShapeOnly) {
    Canvas canvas(120, 100, 1);
    CGContext context = canvas.context();
    const CGRect card(30, 30, 60, 40);
    context.drawShadow(card, 8, 12, {0, 6}, *UIColor::colorWithWhite(0, 0.5));
    for (int y = 31; y < 69; ++y)
        for (int x = 39; x < 81; ++x)
            EXPECT_EQ(canvas.at(x, y), 0u);
    for (int y = 70; y < 88; ++y)
        EXPECT_GE(canvas.alphaAt(60, y), canvas.alphaAt(60, y + 1)) << y;
    EXPECT_GT(canvas.alphaAt(60, 71), 64);
    EXPECT_GT(canvas.alphaAt(60, 71), canvas.alphaAt(60, 28)); // it falls downwards
    for (int x = 0; x < 120; ++x)
        EXPECT_EQ(canvas.at(x, 90) | canvas.at(x, 22), 0u); // 12 beyond the moved edge, no more
}

TEST(CurrentContext, IsTheLastThatWasPushed) {
    EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
    UIGraphicsPopContext();
    Canvas canvas(4, 4, 1);
    CGContext context = canvas.context();
    UIGraphicsPushContext(context);
    EXPECT_EQ(UIGraphicsGetImageFromCurrentImageContext(), nullptr);
    UIGraphicsBeginImageContextWithOptions({3, 3}, false, 1);
    EXPECT_NE(UIGraphicsGetCurrentContext(), &context);
    UIGraphicsPopContext(); // an image context has its own end
    UIGraphicsEndImageContext();
    UIGraphicsEndImageContext();
    EXPECT_EQ(UIGraphicsGetCurrentContext(), &context);
    UIGraphicsPopContext();
    EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
}

TEST(SurfaceCache, LetsTheLongestUnusedGo) {
    SurfaceCache cache;
    const auto insert = [&cache](std::int32_t name) {
        const std::array key{name};
        cache.insert({key}, SurfacePtr(cairo_image_surface_create(CAIRO_FORMAT_A8, 1024, 1024)));
    };
    const auto has = [&cache](std::int32_t name) {
        const std::array key{name};
        return cache.find({key}) != nullptr;
    };
    for (std::int32_t name = 0; name < 8; ++name)
        insert(name);
    EXPECT_TRUE(has(0)); // used again
    insert(8);
    EXPECT_TRUE(has(0));
    EXPECT_FALSE(has(1));
    EXPECT_TRUE(has(8));
    const std::array tiled{0};
    EXPECT_EQ(cache.find({tiled, 1, 0}), nullptr);
}

} // namespace
} // namespace tesmar
