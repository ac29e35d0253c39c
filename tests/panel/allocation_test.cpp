// Once everything has been drawn once, no frame allocates anything of ours: neither those of a
// motion nor the one that shows a change. (What a gesture is for, a colour or a font, is made
// before.)
#include "tests/panel/panel_fixture.h"

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

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    allocations += isCounting;
    return std::malloc(size);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    allocations += isCounting;
    const auto unit = static_cast<std::size_t>(alignment);
    if (void* const memory = std::aligned_alloc(unit, (size + unit - 1) / unit * unit))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
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

    // Of the frames that follow the last of several gestures, until all is at rest.
    int allocationsAfter(const std::function<void()>& gesture) {
        for (int round = 0; round < 6; ++round) {
            gesture();
            allocations = 0;
            isCounting = true;
            for (int frame = 0; frame < 120; ++frame) {
                host.advance(1.0 / 60);
                host.render();
            }
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
    int round = 0;
    const auto side = [&] { return round++ % 2 ? -24.0 : 24.0; };
    const struct {
        const char* what;
        std::function<void()> gesture;
        int most = 0;
    } rows[] = {
        // The end of the glide starts the fading of the indicator.
        {"a drag",
         [&] {
             host.drag(scrolled, {2 * side(), 0}, 0.1);
         },
         1},
        {"a whole frame", [&] { host.window()->invalidate(); }},
        {"a tap on a swatch", [&] { host.tap(swatches[round++ % 2]); }},
        {"a step of an opacity",
         [&] {
             host.tap({opacity.x + side(), opacity.y});
         }},
        {"a step of the font size",
         [&] {
             host.tap({size.x + side(), size.y});
         }},
        {"the captions switch", [&] { host.tap(toggle); }},
    };
    for (const auto& row : rows)
        EXPECT_LE(allocationsAfter(row.gesture), row.most) << row.what;
}

} // namespace
} // namespace tesmar
