// Numbers from outside, of every kind, through every door.
#include "fixture.h"

#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <functional>
#include <limits>

namespace tesmar {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNumbers[] = {std::numeric_limits<double>::quiet_NaN(),
                               kInfinity,
                               -kInfinity,
                               1e300,
                               -1e300,
                               2147483648.0,
                               -2147483648.0,
                               65535,
                               5e-324,
                               -1,
                               0};
constexpr double kTenYears = 10 * 365.25 * 86400;

bool isFinite(const CGRect& r) {
    return std::isfinite(r.minX()) && std::isfinite(r.minY()) && r.size.width >= 0 &&
           r.size.height >= 0 && std::isfinite(r.maxX()) && std::isfinite(r.maxY());
}

TEST_F(UITest, NumbersAreMadeFiniteAtTheDoor) {
    const auto stepper = add<UIStepper>({10, 10, 94, 29});
    const auto scroll = add<UIScrollView>({10, 100, 100, 100});
    const auto label = add<UILabel>({10, 60, 100, 20});
    label->setText("text");
    UIWindow& window = *host.window();
    const std::pair<const char*, std::function<void(double, double)>> doors[] = {
        {"frame",
         [&](double a, double b) {
             label->setFrame({a, b, b, a});
         }},
        {"translation",
         [&](double a, double b) {
             label->setTranslation({a, b});
         }},
        {"alpha", [&](double a, double) { label->setAlpha(a); }},
        {"priority",
         [&](double a, double) { label->setContentHuggingPriority(a, LayoutAxis::vertical); }},
        {"font", [&](double a, double) { label->setFont(UIFont::systemFontOfSize(a)); }},
        {"value",
         [&](double a, double) {
             stepper->setValue(a), host.tap({80, 20});
         }},
        {"range",
         [&](double a, double b) { stepper->setMinimumValue(a), stepper->setMaximumValue(b); }},
        {"content",
         [&](double a, double b) {
             scroll->setContentSize({a, b});
         }},
        {"offset",
         [&](double a, double b) {
             scroll->setContentOffset({a, b}, false);
         }},
        {"moving offset",
         [&](double a, double b) {
             scroll->setContentOffset({a, b}, true);
         }},
        {"visible",
         [&](double a, double b) {
             scroll->scrollRectToVisible({a, b, b, a}, true);
         }},
        {"wheel",
         [&](double a, double b) {
             window.wheel({50, 150}, {a, b}, host.now());
         }},
        {"drag",
         [&](double a, double b) {
             host.drag({50, 150}, {a, b}, 0.1);
         }},
        {"time",
         [&](double a, double b) {
             window.wheel({50, 150}, {0, a}, std::min(b, 0.0));
         }},
        {"safe area",
         [&](double a, double b) {
             window.setSafeAreaInsets({a, b, b, a});
         }},
        {"caption area", [&](double a, double b) { window.setCaptionArea(CGRect(a, b, b, a)); }},
    };
    for (const auto& [name, put] : doors)
        for (const double a : kNumbers)
            for (const double b : kNumbers) {
                SCOPED_TRACE(std::string(name) + " " + std::to_string(a) + " " + std::to_string(b));
                put(a, b);
                host.advance(4);
                host.render();
                for (const UIView* view :
                     {static_cast<UIView*>(label.get()), static_cast<UIView*>(scroll.get())}) {
                    EXPECT_TRUE(isFinite(view->frame()) && isFinite(view->bounds()));
                    EXPECT_TRUE(view->alpha() >= 0 && view->alpha() <= 1);
                }
                EXPECT_TRUE(stepper->value() >= stepper->minimumValue() &&
                            stepper->value() <= stepper->maximumValue());
                EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
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
