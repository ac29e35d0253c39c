// Compares the time of a frame of the panel with that of the same picture painted by hand with
// cairo: for a full repaint, a tap on a swatch and a step of the font size. Then the time to read
// the panel's accessible tree, and the CPU time of each frame while the panel is presented. Last, a
// caption of two lines at 1920 x 1080 with each kind of edge: a text that is new, and a repeated
// one.
#include "HandPainting.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/text/TextEdge.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/tesmar.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

namespace tesmar {
namespace {

constexpr CGSize kSize{568, 320};

struct Panel {
    explicit Panel(double scale) : window(UIWindow::windowWithSize(kSize, scale)) {
        window->presentViewController(controller, false);
        stride = static_cast<int>(window->pixelSize().width) * 4;
        pixels.resize(static_cast<std::size_t>(stride / 4) *
                      static_cast<std::size_t>(window->pixelSize().height));
        window->render(pixels, stride);
    }

    void tap(const std::string& identifier) {
        const UIView& view = *window->viewWithIdentifier(identifier);
        const CGPoint at = view.convertRectTo(view.bounds(), nullptr).center();
        double now = NSRunLoop::mainRunLoop().now();
        window->touch(UITouchPhase::began, 1, at, now += 0.2);
        window->touch(UITouchPhase::ended, 1, at, now += 0.2);
        NSRunLoop::mainRunLoop().advanceTo(now + 1);
    }

    Ref<TESMARViewController> controller = make<TESMARViewController>();
    Ref<UIWindow> window;
    std::vector<std::uint32_t> pixels;
    int stride = 0;
};

enum class Change { everything, swatch, fontSize };

// The rectangles that a change repaints, in points.
std::vector<CGRect> damageOf(Panel& panel, Change change) {
    if (change == Change::everything)
        return {panel.window->bounds()};
    panel.tap(change == Change::swatch ? "textColorPicker.5" : "fontPicker.size");
    const double scale = panel.window->scale();
    std::vector<CGRect> damage;
    for (const PixelRect& r : panel.window->render(panel.pixels, panel.stride))
        damage.emplace_back(r.x / scale, r.y / scale, r.width / scale, r.height / scale);
    return damage;
}

void drawFrame(Panel& panel, const std::vector<CGRect>& damage) {
    for (const CGRect& rect : damage)
        panel.window->damagePixels(panel.window->surfacePixels(rect));
    panel.window->render(panel.pixels, panel.stride);
}

void frame(benchmark::State& state) {
    Panel panel(static_cast<double>(state.range(1)));
    const auto damage = damageOf(panel, static_cast<Change>(state.range(0)));
    for (auto _ : state)
        drawFrame(panel, damage);
}

void accessibleElements(benchmark::State& state) {
    Panel panel(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(accessibleTree(*panel.window));
}

double cpuMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// On a television of 3840 x 2160 pixels: from the frame that follows the presentation until the
// card is in place. Each iteration presents a new panel.
void presenting(benchmark::State& state) {
    const auto window = UIWindow::windowWithSize({960, 540}, 4);
    constexpr int stride = 3840 * 4;
    std::vector<std::uint32_t> pixels(3840 * 2160);
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    std::vector<double> call, first, others;
    for (auto _ : state) {
        const auto controller = make<TESMARViewController>();
        double before = cpuMilliseconds();
        window->presentViewController(controller, true);
        call.push_back(cpuMilliseconds() - before);
        for (int frame = 0; frame < 19; ++frame) {
            before = cpuMilliseconds();
            loop.advanceTo(loop.now() + 1.0 / 60);
            window->render(pixels, stride);
            (frame == 0 ? first : others).push_back(cpuMilliseconds() - before);
        }
        window->presentedViewController()->dismissViewControllerAnimated(false);
        window->render(pixels, stride);
    }
    const auto median = [](std::vector<double>& times) {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::ranges::nth_element(times, middle);
        return *middle;
    };
    state.counters["call_ms"] = median(call);
    state.counters["first_ms"] = median(first);
    state.counters["other_ms"] = median(others);
    first.insert(first.end(), others.begin(), others.end());
    state.counters["worst_ms"] = *std::ranges::max_element(first);
}

// Whether no colour component differs by more than a rounding error.
bool lookTheSame(const std::vector<std::uint32_t>& a, const std::vector<std::uint32_t>& b) {
    constexpr int kRoundingError = 2;
    const auto isClose = [](std::uint32_t x, std::uint32_t y) {
        for (int shift = 0; shift < 32; shift += 8)
            if (std::abs(static_cast<int>(x >> shift & 255) - static_cast<int>(y >> shift & 255)) >
                kRoundingError)
                return false;
        return true;
    };
    return std::ranges::equal(a, b, isClose);
}

void byHand(benchmark::State& state) {
    Panel panel(static_cast<double>(state.range(1)));
    std::vector<PixelRect> damage;
    for (const CGRect& rect : damageOf(panel, static_cast<Change>(state.range(0))))
        damage.push_back(panel.window->surfacePixels(rect));
    const HandPainting painting(*panel.window);
    std::vector<std::uint32_t> painted(panel.pixels.size());
    const PixelRect whole = panel.window->surfacePixels(panel.window->bounds());
    painting.paint(painted.data(), panel.stride, {&whole, 1});
    if (!lookTheSame(painted, panel.pixels))
        state.SkipWithError("the picture is not that of the panel");
    for (auto _ : state)
        painting.paint(painted.data(), panel.stride, damage);
}

void caption(benchmark::State& state) {
    constexpr int kWidth = 1920, kHeight = 1080;
    std::vector<std::uint32_t> pixels(std::size_t{kWidth} * kHeight);
    CGContext context(pixels.data(), kWidth, kHeight, kWidth * 4, 1);
    const auto style = CCConstants::CCDefaultStyleAttributes()->mutableCopy();
    style->setObject(UIFont::systemFontOfSize(54), NSFontAttributeName);
    const auto edge = static_cast<TextEdge>(state.range(0));
    style->setObject(NSString::stringWithString(std::string(textEdgeName(edge))),
                     TESMAREdgeAttributeName);
    const bool isNew = state.range(1) != 0;
    int number = 0;
    for (auto _ : state) {
        const std::string text = "A caption of two lines that nobody\nhas read before, number " +
                                 std::to_string(isNew ? ++number : 0);
        NSAttributedString::attributedString(text, style)
            ->drawInRect(context, {0, 900, kWidth, 180}, NSTextAlignment::center);
    }
}

#define TESMAR_FRAMES(function)                                                                    \
    BENCHMARK(function)                                                                            \
        ->ArgNames({"change", "scale"})                                                            \
        ->ArgsProduct({{static_cast<long>(Change::everything), static_cast<long>(Change::swatch),  \
                        static_cast<long>(Change::fontSize)},                                      \
                       {1, 2}})                                                                    \
        ->Unit(benchmark::kMicrosecond)

TESMAR_FRAMES(frame);
TESMAR_FRAMES(byHand);
BENCHMARK(presenting)->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(accessibleElements)->Unit(benchmark::kMicrosecond);
BENCHMARK(caption)
    ->ArgNames({"edge", "new"})
    ->ArgsProduct({{0, 1, 2, 3, 4}, {0, 1}})
    ->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tesmar
