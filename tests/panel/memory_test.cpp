// Every single allocation of the library's own made to fail, one a session: the host gets a
// std::bad_alloc or what it asked for, and goes on with the same panel. A program of its own, since
// it replaces operator new.
#include "failing_new.h"
#include "stage.h"

namespace tesmar {
namespace {

constexpr int kStride = 97; // in the short form; TESMAR_SOAK=97 and more fail every allocation

TEST_F(PanelTest, ShortOfMemoryOnce) {
    const int stride = std::max(1, kStride / soakFactor());
    long n = 1;
    for (bool wasShort = true; wasShort && !HasFailure(); n += stride) {
        SCOPED_TRACE("allocation " + std::to_string(n));
        Stage stage;
        stage.replaceWindow(); // stands in for one that cannot be made
        const auto styles = CCConstants::CCDefaultStyleAttributes();
        allocationsLeft = n;
        stage.carryOn([&](auto&) { stage.replaceWindow(); });
        stage.carryOn([&](auto&) { stage.replacePanel(); });
        if (!stage.panel)
            stage.replacePanel();
        stage.carryOn([&](auto&) { stage.panel->setCCStyleAttributes(styles->mutableCopy()); });
        try {
            stage.play();
            stage.panel->setRememberChangedStyle(true);
            stage.carryOn([&](auto&) { stage.panel->bgColorChanged(); });
            wasShort = allocationsLeft == 0;
            allocationsLeft = 0;
            stage.panel->dismissViewControllerAnimated(false);
            stage.host->advance(20);
            stage.host->resize({480, 420}, 1); // all of it in sight
            stage.host->window()->presentViewController(stage.panel, false);
            stage.ears->calls.clear();
            for (const char* control : {"textColorPicker.1", "CCSwitch", "resetButton"})
                stage.host->tap(stage.place(control));
            EXPECT_EQ(stage.ears->calls, "style switch style operated ");
            stage.clear();
            EXPECT_EQ(UIGraphicsGetCurrentContext(), nullptr);
        } catch (const Unsound& unsound) {
            ADD_FAILURE() << unsound.what();
        }
    }
    std::printf("one in %d of %ld allocations failed\n", stride, n);
    EXPECT_GT(n, 1000);
}

} // namespace
} // namespace tesmar
