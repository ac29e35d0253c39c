// Compares the time of a frame of the panel with that of its cairo calls alone: for a full repaint,
// a tap on a swatch and a step of the font size. Then the time to read the panel's accessible tree.
#include "CairoTape.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/tesmar.h"

#include <benchmark/benchmark.h>

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

void rawCairo(benchmark::State& state) {
    Panel panel(static_cast<double>(state.range(1)));
    const auto damage = damageOf(panel, static_cast<Change>(state.range(0)));
    auto replayed = panel.pixels;
    CairoTape tape;
    drawFrame(panel, damage);
    tape.stop();
    const CGSize size = panel.window->pixelSize();
    const auto replay = [&] {
        tape.replay(replayed.data(), static_cast<int>(size.width), static_cast<int>(size.height),
                    panel.stride);
    };
    replay();
    if (replayed != panel.pixels)
        state.SkipWithError("the same calls gave other pixels");
    for (auto _ : state)
        replay();
    state.counters["calls"] = static_cast<double>(tape.calls());
}

#define TESMAR_FRAMES(function)                                                                    \
    BENCHMARK(function)                                                                            \
        ->ArgNames({"change", "scale"})                                                            \
        ->ArgsProduct({{static_cast<long>(Change::everything), static_cast<long>(Change::swatch),  \
                        static_cast<long>(Change::fontSize)},                                      \
                       {1, 2}})                                                                    \
        ->Unit(benchmark::kMicrosecond)

TESMAR_FRAMES(frame);
TESMAR_FRAMES(rawCairo);
BENCHMARK(accessibleElements)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tesmar
