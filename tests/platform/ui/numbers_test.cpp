// Times and fingers that no sane host sends, and offsets that are no places.
#include "fixture.h"

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

namespace tesmar {
namespace {

constexpr double kTenYears = 10 * 365.25 * 86400;

TEST_F(UITest, OffsetsThatAreNoPlacesDoNotMoveForEver) {
    const auto scroll = add<UIScrollView>({10, 100, 100, 100});
    scroll->setContentSize({300, 300});
    for (const double odd : {std::nan(""), HUGE_VAL, -1e300}) {
        scroll->setContentOffset({odd, odd}, true);
        host.advance(4);
        scroll->scrollRectToVisible({odd, odd, odd, odd}, true);
        host.advance(4);
        EXPECT_TRUE(CGRect(0, 0, 201, 201).contains(scroll->contentOffset())) << odd;
        EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline()) << odd;
    }
}

// Work that schedules itself again does not make up for all the time that a jump has left out.
TEST_F(UITest, AJumpOfYearsTakesNoTime) {
    const auto stepper = add<UIStepper>({10, 10, 94, 29});
    stepper->setWraps(true);
    host.touch(UITouchPhase::began, {80, 20});
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    loop.advanceTo(loop.now() + kTenYears);
    host.window()->touch(UITouchPhase::ended, 0, {80, 20}, loop.now());
    loop.advanceTo(loop.now() + 1);
    EXPECT_FALSE(loop.nextDeadline());
}

// Lifts that a host never tells of do not fill the memory, nor hold anything for good.
TEST_F(UITest, FingersWithoutEndAreTakenAway) {
    const auto stepper = add<UIStepper>({10, 10, 94, 29});
    host.touch(UITouchPhase::began, {80, 20}, -1);
    for (std::int64_t id = 0; id < 100; ++id)
        host.touch(UITouchPhase::began, {80, 20}, id);
    EXPECT_FALSE(host.touch(UITouchPhase::moved, {80, 20}, -1));
    EXPECT_TRUE(host.touch(UITouchPhase::moved, {80, 20}, 99));
    host.window()->cancelTouches(host.now());
    EXPECT_FALSE(stepper->isTracking());
}

} // namespace
} // namespace tesmar
