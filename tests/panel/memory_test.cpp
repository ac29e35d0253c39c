// The allocations of the library: frames make none, and any allocation may fail.
#include "failing_new.h"
#include "host_scenario.h"

namespace tesmar {
namespace {

constexpr long kPlenty = 1L << 40;
constexpr int kStride = 97; // of the short form; TESMAR_SOAK=97 and more fail every allocation

// After some frames, showing a motion or a change allocates nothing. (Handling a gesture may: it
// makes a new colour or font.)
TEST_F(PanelTest, FramesAllocateNothingAfterWarmUp) {
    HeadlessHost host({480, 320}, 2);
    UIWindow& window = *host.window();
    const auto panel = make<TESMARViewController>();
    window.presentViewController(panel, false);
    host.advance(2), host.render(); // after the scroll indicators have shown and faded
    int round = 0;
    const auto at = [&](const char* name) { return centerOf(window, name); };
    const auto side = [&] { return CGPoint{round % 2 ? -24.0 : 24.0, 0}; };
    const auto down = [&] { return CGPoint{0, round % 2 ? 60.0 : -60.0}; };
    const auto swatch = [&] { return round % 2 ? "textColorPicker.1" : "textColorPicker.2"; };
    const struct {
        const char* what;
        std::function<void()> gesture;
        int maximum = 0;
    } rows[] = {
        {"a full repaint", [&] { window.invalidate(); }},
        {"a tap on a swatch", [&] { host.tap(at(swatch())); }},
        {"a step of an opacity", [&] { host.tap(at("textColorOpacityStepper") + side()); }},
        {"a step of the font size", [&] { host.tap(at("fontPicker.size") + side()); }},
        {"the captions switch", [&] { host.tap(at("CCSwitch")); }},
        // The end of the motion schedules the fading of the scroll indicator.
        {"a drag", [&] { host.drag(at("textColorPicker.3"), down(), 0.1); }, 1},
    };
    for (const auto& row : rows) {
        for (round = 0; round < 6; ++round) {
            allocationsLeft = 0;
            row.gesture();
            allocationsLeft = kPlenty;
            for (int frame = 0; frame < 120; ++frame) {
                host.advance(1.0 / 60);
                host.render();
            }
        }
        EXPECT_LE(kPlenty - std::exchange(allocationsLeft, 0), row.maximum) << row.what;
    }
}

// Every single allocation is made to fail, one in each scenario: the host gets a std::bad_alloc or
// the result, and goes on with the same panel.
TEST_F(PanelTest, SurvivesAnyFailedAllocation) {
    const int stride = std::max(1, kStride / soakFactor());
    long n = 1;
    for (bool hasFailed = true; hasFailed && !HasFailure(); n += stride) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        HostScenario s;
        s.replaceWindow(); // a window must exist if making the next one fails
        const auto style = CCConstants::CCDefaultStyleAttributes();
        allocationsLeft = n;
        s.perform([&](auto&) { s.replaceWindow(); });
        s.perform([&](auto&) { s.replacePanel(); });
        if (!s.panel)
            s.replacePanel();
        s.perform([&](auto&) { s.panel->setCCStyleAttributes(style->mutableCopy()); });
        try {
            s.play();
            s.perform([&](auto&) { s.panel->bgColorChanged(); });
            hasFailed = std::exchange(allocationsLeft, 0) == 0;
            s.panel->dismissViewControllerAnimated(false);
            s.host->advance(20);
            s.host->resize({480, 420}, 1); // no need to scroll
            s.present(s.panel, false);
            s.log->calls.clear();
            for (const char* control : {"textColorPicker.1", "CCSwitch", "resetButton"})
                s.host->tap(centerOf(*s.host->window(), control));
            EXPECT_EQ(s.log->calls, "style switch style operated ");
            s.end();
            EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
        } catch (const InvariantViolated& violation) {
            ADD_FAILURE() << violation.what();
        }
    }
    std::printf("one in %d of %ld allocations failed\n", stride, n);
    EXPECT_GT(n, 1000);
}

} // namespace
} // namespace tesmar
