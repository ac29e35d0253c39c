// At rest in the hand: once everything has been drawn once, what a viewer does allocates nothing of
// ours for any of its frames; the few allowed here are the gesture's own.
#include "tesmar/tests/panel/panel_fixture.h"

#include <cstdlib>
#include <functional>
#include <new>

namespace {

bool isCounting = false;
int allocations = 0;

} // namespace

void* operator new(std::size_t size) {
    allocations += isCounting;
    if (void* const memory = std::malloc(size))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace tesmar {
namespace {

class AllocationTest : public PanelTest {
  protected:
    AllocationTest() {
        host.window()->presentViewController(panel, false);
        host.render();
    }

    CGPoint center(const char* identifier) {
        const UIView& view = *host.window()->viewWithIdentifier(identifier);
        return view.convertRectTo(view.bounds(), nullptr).center();
    }

    // In the last of several rounds of the same.
    int allocationsOf(const std::function<void()>& action) {
        for (int round = 0; round < 6; ++round) {
            allocations = 0;
            isCounting = true;
            action();
            isCounting = false;
        }
        return allocations;
    }

    HeadlessHost host{{320, 320}, 2};
    Ref<TESMARViewController> panel = make<TESMARViewController>();
};

TEST_F(AllocationTest, NothingOfOursOnceItIsWarm) {
    const CGPoint scrolled = center("textColorPicker.3");
    const CGPoint swatches[] = {center("textColorPicker.1"), center("textColorPicker.2")};
    const CGPoint size = center("fontPicker.size"),
                  opacity = center("backgroundColorOpacityStepper");
    const CGPoint toggle = center("CCSwitch");
    const auto frames = [&](double seconds) {
        for (double t = 0; t < seconds; t += 1.0 / 60) {
            host.advance(1.0 / 60);
            host.render();
        }
    };
    const auto tap = [&](CGPoint at) {
        host.tap(at);
        frames(0.5);
    };
    int round = 0;
    const struct {
        const char* what;
        std::function<void()> action;
        int most; // the finger and its timers, what it changes (a colour, a font), the start of a
                  // motion
    } rows[] = {
        {"a drag, its glide and its end",
         [&] {
             host.drag(scrolled, {round++ % 2 ? 40.0 : -40.0, 0}, 0.1);
             frames(2);
         },
         4},
        {"a whole frame", [&] { host.window()->invalidate(), host.render(); }, 0},
        {"a tap on a swatch", [&] { tap(swatches[round++ % 2]); }, 4},
        {"a step of an opacity",
         [&] {
             tap({opacity.x + (round++ % 2 ? -24.0 : 24.0), opacity.y});
         },
         5},
        {"a step of the font size",
         [&] {
             tap({size.x + (round++ % 2 ? -24.0 : 24.0), size.y});
         },
         5},
        {"the captions switch", [&] { tap(toggle); }, 4},
    };
    for (const auto& row : rows)
        EXPECT_LE(allocationsOf(row.action), row.most) << row.what;
}

} // namespace
} // namespace tesmar
