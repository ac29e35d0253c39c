// A frame of the panel beside the same cairo calls made alone: a whole one, one after a tap on a
// swatch (what it damages), one after a step of the font size.
#include "CairoTape.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/tesmar.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace tesmar {
namespace {

constexpr CGSize kSize{568, 320};

struct Panel {
    explicit Panel(double scale) : window(UIWindow::windowWithSize(kSize, scale)) {
        window->presentViewController(controller, false);
        stride = static_cast<int>(window->pixelSize().width) * 4;
        pixels.resize(static_cast<std::size_t>(stride) *
                      static_cast<std::size_t>(window->pixelSize().height));
        window->render(pixels.data(), stride);
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
    std::vector<unsigned char> pixels;
    int stride = 0;
};

enum class Change { everything, swatch, fontSize };

void change(Panel& panel, Change kind, int round) {
    switch (kind) {
    case Change::everything:
        return panel.window->invalidate();
    case Change::swatch:
        return panel.tap("textColorPicker." + std::to_string(round % 2 ? 1 : 5));
    case Change::fontSize:
        return panel.tap("fontPicker.size");
    }
}

void frame(benchmark::State& state) {
    Panel panel(static_cast<double>(state.range(1)));
    const auto kind = static_cast<Change>(state.range(0));
    for (int round = 0; auto _ : state) {
        state.PauseTiming();
        change(panel, kind, round++);
        state.ResumeTiming();
        panel.window->render(panel.pixels.data(), panel.stride);
    }
}

void rawCairo(benchmark::State& state) {
    Panel panel(static_cast<double>(state.range(1)));
    for (int round = 0; round < 2; ++round) { // the second finds every mask kept
        change(panel, static_cast<Change>(state.range(0)), round);
        panel.window->render(panel.pixels.data(), panel.stride);
    }
    change(panel, static_cast<Change>(state.range(0)), 2);
    auto drawnAgain = panel.pixels;
    CairoTape tape;
    panel.window->render(panel.pixels.data(), panel.stride);
    tape.stop();
    const CGSize size = panel.window->pixelSize();
    const auto play = [&] {
        tape.play(drawnAgain.data(), static_cast<int>(size.width), static_cast<int>(size.height),
                  panel.stride);
    };
    play();
    if (drawnAgain != panel.pixels)
        state.SkipWithError("the same calls gave other pixels");
    for (auto _ : state)
        play();
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

} // namespace
} // namespace tesmar
