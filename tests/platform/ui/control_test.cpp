#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"

#include <cmath>
#include <tuple>

namespace tesmar {

Class& Listener::classObject() {
    static Class type("Listener", &NSObject::classObject(), allocator<Listener>(),
                      {method<&Listener::changed>("changed"), method<&Listener::down>("down"),
                       method<&Listener::up>("up"), method<&Listener::outside>("outside"),
                       method<&Listener::cancelled>("cancelled")});
    return type;
}

namespace {

using P = UITouchPhase;

class ControlTest : public UITest {
  protected:
    // Adds a control that notifies the listener of everything.
    template <class T>
    Ref<T> addHeard(CGRect frame) {
        auto control = add<T>(frame);
        const std::pair<const char*, unsigned> actions[] = {
            {"down", UIControlEventTouchDown},
            {"up", UIControlEventTouchUpInside},
            {"outside", UIControlEventTouchUpOutside},
            {"cancelled", UIControlEventTouchCancel},
            {"changed", UIControlEventValueChanged}};
        for (const auto& [action, events] : actions)
            control->addTarget(listener, Selector(action), events);
        return control;
    }
};

TEST_F(ControlTest, TracksAFingerUpToTheMargin) {
    auto button = addHeard<UIButton>({100, 100, 100, 50});
    const struct {
        CGPoint lift;
        const char* log;
        bool highlighted; // while the finger is there
    } cases[] = {{{150, 120}, "down up ", true},
                 {{269, 120}, "down up ", true},
                 {{271, 120}, "down outside ", false},
                 {{150, 31}, "down up ", true},
                 {{150, 29}, "down outside ", false}};
    for (const auto& c : cases) {
        host.touch(P::began, {150, 120});
        host.advance(0.2);
        host.touch(P::moved, {290, 390}); // away, and back to where it lifts
        host.touch(P::moved, c.lift);
        EXPECT_EQ(button->isHighlighted(), c.highlighted) << c.lift.x << "," << c.lift.y;
        host.touch(P::ended, c.lift);
        EXPECT_FALSE(button->isHighlighted());
        EXPECT_EQ(listener->take(), c.log) << c.lift.x << "," << c.lift.y;
    }
    for (const auto& [right, log] : {std::pair(209, "down up "), std::pair(211, "down outside ")}) {
        host.window()->touch(P::began, 1, {150, 120}, host.now(), UITouchSource::mouse);
        host.window()->touch(P::ended, 1, {CGFloat(right), 120}, host.now());
        EXPECT_EQ(listener->take(), log) << right;
    }
    host.tap({150, 120}); // too quick to be seen: highlighted for a moment
    EXPECT_TRUE(button->isHighlighted());
    host.advance(0.05);
    host.tap({150, 120});
    host.advance(0.09); // the first tap's moment is over
    EXPECT_TRUE(button->isHighlighted());
    host.advance(0.02);
    EXPECT_FALSE(button->isHighlighted());
    button->setEnabled(false);
    host.tap({150, 120});
    EXPECT_EQ(listener->take(), "down up down up ");
    button->setEnabled(true);
    host.touch(P::began, {150, 120});
    button->removeFromSuperview();
    button.reset();
    host.touch(P::moved, {150, 120});
    host.touch(P::ended, {150, 120});
    EXPECT_EQ(listener->take(), "down cancelled ");
    EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
    button = addHeard<UIButton>({100, 100, 100, 50});
    host.touch(P::began, {150, 120});
    listener->afterCancelled = [&] { button->removeFromSuperview(), button.reset(); };
    button->setEnabled(false); // destroys it
    EXPECT_EQ(listener->take(), "down cancelled ");
}

TEST_F(ControlTest, KeepsFingersApart) {
    const auto left = addHeard<UIButton>({0, 0, 100, 50});
    const auto right = add<UIButton>({150, 0, 100, 50});
    host.touch(P::began, {50, 20}, 1);
    host.touch(P::began, {200, 20}, 2);
    host.touch(P::began, {60, 20}, 3); // ignored: the control already tracks a finger
    host.touch(P::ended, {50, 20}, 3);
    EXPECT_TRUE(left->isTracking() && right->isTracking());
    host.touch(P::ended, {200, 20}, 2);
    EXPECT_TRUE(left->isTracking() && !right->isTracking());
    EXPECT_FALSE(host.touch(P::moved, {50, 20}, 9)); // never landed
    for (std::int64_t id = 10; id < 110; ++id)       // without a lift: the oldest are cancelled
        host.touch(P::began, {200, 20}, id);
    EXPECT_EQ(listener->take(), "down cancelled ");
    EXPECT_FALSE(host.touch(P::moved, {200, 20}, 10));
    EXPECT_TRUE(host.touch(P::moved, {200, 20}, 109));
    host.window()->cancelTouches(host.now());
    EXPECT_FALSE(right->isTracking());
}

TEST_F(ControlTest, EnlargesSmallTargetsUpToTheirNeighbours) {
    const auto small = add<UIButton>({100, 100, 20, 20});
    const auto neighbour = add<UIButton>({100, 125, 20, 20});
    for (const auto& [point, hit] : {std::pair{CGPoint{90, 90}, small.get()},
                                     {CGPoint{87, 110}, nullptr},
                                     {CGPoint{110, 122}, small.get()},
                                     {CGPoint{110, 126}, neighbour.get()}})
        EXPECT_EQ(host.window()->hitTest(point), hit) << point.x << "," << point.y;
}

// Only the part of a control that a scroll view shows counts.
TEST_F(ControlTest, TargetsReachPastTheEdgeOfAScrollView) {
    const auto scroll = add<UIScrollView>({100, 100, 100, 100});
    const auto button = makeWith<UIButton>(&UIButton::initWithFrame, CGRect(20, 85, 60, 29));
    scroll->addSubview(button);
    const auto hits = [&](CGFloat y) { return host.window()->hitTest({150, y}) == button.get(); };
    EXPECT_TRUE(hits(221));                    // 15 points of it are shown, from 185 on
    EXPECT_FALSE(hits(222));                   // too far from them
    scroll->setContentOffset({0, -20}, false); // out of sight
    EXPECT_FALSE(hits(205));
    add<UIButton>({100, 50, 100, 30});
    scroll->setContentOffset({0, 113}, false); // one point of it is shown
    EXPECT_TRUE(hits(95) && !hits(82));        // not on its hidden part, close to the other
    scroll->setContentOffset({0, 114}, false);
    EXPECT_FALSE(hits(95) || hits(103));
}

// The decrement half of a stepper has 32 of its 47 points in the scroll view.
TEST_F(ControlTest, TargetsOfHalvesReachPastTheEdgeOfAScrollView) {
    const auto scroll = add<UIScrollView>({100, 100, 100, 100});
    const auto stepper = makeWith<UIStepper>(&UIStepper::initWithFrame, CGRect(-15, 20, 94, 29));
    scroll->addSubview(stepper);
    EXPECT_EQ(host.window()->hitTest({89, 134}), stepper.get());
    EXPECT_NE(host.window()->hitTest({87, 134}), stepper.get());
}

// The next target still gets its action.
TEST_F(ControlTest, AnActionMayRemoveItsTargetOrDestroyItsControl) {
    for (const bool destroys : {false, true}) {
        const auto first = make<Listener>();
        auto button = add<UIButton>({100, 100, 100, 50});
        const WeakRef<UIButton> watched = button;
        button->addTarget(first, Selector("up"), UIControlEventTouchUpInside);
        button->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
        first->afterUp = [&] {
            button->removeTarget(first.get(), Selector("up"), UIControlEventAllEvents);
            if (destroys)
                button->removeFromSuperview(), button.reset();
        };
        host.tap({150, 120});
        EXPECT_EQ(listener->take(), "up ");
        host.advance(1);
        EXPECT_EQ(watched.expired(), destroys);
    }
}

TEST_F(ControlTest, AListenerMayUnsubscribeOrDestroyItsControl) {
    Ref<UIButton> button;
    UIControlListener token;
    const auto send = [](UIControl& c) { c.sendActionsForControlEvents(UIControlEventAllEvents); };
    const std::pair<std::function<void(UIControl&)>, int> rows[] = {
        {[](UIControl&) {}, 2},
        {[&](UIControl&) { token = {}; }, 1},
        {[&](UIControl& sender) { token = {}, send(sender); }, 1},
        {[&](UIControl& sender) { sender.removeFromSuperview(), button.reset(); }, 1},
        {[&](UIControl& sender) { token = sender.addListener(0, [](UIControl&) {}); }, 1}};
    for (const auto& [act, calls] : rows) {
        button = add<UIButton>({100, 100, 100, 50});
        const auto count = std::make_shared<int>(0);
        token = button->addListener(UIControlEventTouchUpInside,
                                    [run = act, count](UIControl& c) { ++*count, run(c); });
        host.tap({150, 120});
        host.tap({150, 120});
        host.advance(1);
        EXPECT_EQ(*count, calls) << &act - &rows[0].first;
        token = {};
        EXPECT_EQ(count.use_count(), 1); // the function is destroyed
        if (button)
            button->removeFromSuperview();
    }
    EXPECT_DEATH(token = add<UIButton>({})->addListener(1, {}), "function is empty");
}

TEST_F(ControlTest, ButtonsKeepTheirInsets) {
    const auto button = add<UIButton>({0, 0, 100, 50});
    button->setTitle("title", 0);
    const CGSize plain = button->intrinsicContentSize();
    button->setContentEdgeInsets({1, 20, 3, 40});
    const CGSize inset = button->intrinsicContentSize();
    EXPECT_EQ(inset, (CGSize{plain.width + 60, plain.height + 4}));
    const CGFloat baseline = *button->layoutBaselineBelowCenter();
    button->setTitleEdgeInsets({10, 5, 0, std::nan("")});
    EXPECT_EQ(button->intrinsicContentSize(), inset);
    EXPECT_EQ(*button->layoutBaselineBelowCenter(), baseline + 5);
    host.render();
    EXPECT_EQ(button->titleLabel()->frame(), CGRect(25, 11, 35, 36));
}

// Paler only where a state shows the normal one.
TEST_F(ControlTest, ButtonsStretchTheBackgroundImageOfTheirState) {
    const auto button = add<UIButton>({10, 10, 60, 30});
    const auto pixel = [&](std::size_t x, std::size_t y) { return picture()[y * 300 + x]; };
    button->setBackgroundImage(imageOf(3, 2), 0);
    const auto full = pixel(40, 25);
    EXPECT_EQ(pixel(12, 12), full);
    EXPECT_EQ(pixel(67, 37), full);
    button->setHighlighted(true);
    EXPECT_NE(pixel(40, 25), full);
    button->setBackgroundImage(imageOf(3, 2), UIControlStateHighlighted);
    EXPECT_EQ(pixel(40, 25), full);
}

TEST_F(ControlTest, LabelsMeasureTheLinesThatTheyMayHave) {
    const auto label = make<UILabel>();
    label->setText("two words\nand more");
    const CGSize line = label->intrinsicContentSize();
    const std::tuple<int, CGFloat, double> rows[] = {{0, 0, 2}, {2, 0, 2},  {0, 60, 4}, {3, 60, 3},
                                                     {1, 0, 1}, {1, 60, 1}, {-7, 0, 2}};
    for (const auto& [lines, width, expected] : rows) {
        label->setNumberOfLines(lines);
        label->setPreferredMaxLayoutWidth(width);
        const CGSize size = label->intrinsicContentSize();
        EXPECT_EQ(std::round(size.height / line.height), expected) << lines << " " << width;
        EXPECT_LE(size.width, width > 0 && lines != 1 ? width : line.width);
    }
}

TEST_F(ControlTest, StepperStaysInItsRange) {
    const auto stepper = addHeard<UIStepper>({100, 100, 94, 29});
    using enum UIStepperHalf;
    const auto expectTap = [&](UIStepperHalf half, const char* log, double value) {
        host.tap(stepper->convertPointTo(stepper->halfRect(half).center(), nullptr));
        EXPECT_EQ(listener->take(), log) << value;
        EXPECT_EQ(stepper->value(), value);
    };
    stepper->setMaximumValue(1.5);
    expectTap(decrement, "down up ", 0); // at the end: no event
    expectTap(increment, "down changed up ", 1);
    expectTap(increment, "down changed up ", 1.5);
    stepper->setWraps(true);
    expectTap(increment, "down changed up ", 0);
    expectTap(decrement, "down changed up ", 1.5);
    stepper->setMinimumValue(7); // raises the maximum
    EXPECT_EQ(stepper->value(), 7);
    EXPECT_DEATH(stepper->setStepValue(0), "step must be a number greater than 0");
}

TEST_F(ControlTest, StepperRepeatsWhileHeld) {
    const auto stepper = addHeard<UIStepper>({100, 100, 94, 29});
    for (const bool continuous : {true, false}) {
        stepper->setContinuous(continuous);
        stepper->setValue(0);
        host.touch(P::began, {180, 110});
        host.advance(0.5 + 2 * 0.15 + 0.01);
        EXPECT_EQ(stepper->value(), 3);
        EXPECT_EQ(listener->take(), continuous ? "down changed changed changed " : "down ");
        host.touch(P::moved, {110, 110}); // off the half: pauses
        host.advance(1);
        EXPECT_EQ(stepper->value(), 3);
        host.touch(P::ended, {180, 110});
        EXPECT_EQ(stepper->value(), 3); // it takes no further step
        EXPECT_EQ(listener->take(), continuous ? "up " : "changed up ");
    }
    stepper->setWraps(true);
    host.touch(P::began, {180, 110});
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    loop.advanceTo(loop.now() + 3e8); // ten years: it skips most of the missed steps
    host.window()->touch(P::ended, 0, {180, 110}, loop.now());
    loop.advanceTo(loop.now() + 1);
    EXPECT_FALSE(loop.nextDeadline());
}

TEST_F(ControlTest, SwitchShowsItsStateWithoutColour) {
    const auto toggle = add<UISwitch>({100, 100, 51, 31});
    // Of the middle row: one pixel of the free track, and one of the mark in it.
    using enum UISemanticContentAttribute;
    const std::tuple<UISemanticContentAttribute, bool, std::size_t, std::size_t> rows[] = {
        {unspecified, false, 139, 135},
        {unspecified, true, 108, 112},
        {forceRightToLeft, false, 111, 115},
        {forceRightToLeft, true, 142, 138}};
    for (const auto& [direction, on, track, mark] : rows) {
        toggle->setSemanticContentAttribute(direction);
        toggle->setOn(on);
        host.render();
        EXPECT_LT(host.pixels()[115 * 300 + track] >> 16 & 255, 160u) << on;
        EXPECT_GT(host.pixels()[115 * 300 + mark] >> 16 & 255, 220u) << on;
    }
}

TEST_F(ControlTest, SwitchFollowsTapsAndDrags) {
    const auto toggle = addHeard<UISwitch>({100, 100, 51, 31});
    toggle->setOn(true, true); // by code: no event
    host.render();
    host.advance(0.05);
    EXPECT_FALSE(host.render().empty()); // the thumb slides
    using enum UISemanticContentAttribute;
    const struct {
        std::vector<CGFloat> path; // of the finger
        const char* log;
        bool on; // at the end
        UISemanticContentAttribute direction = unspecified;
    } cases[] = {{{120}, "down changed up ", false},
                 {{105, 145}, "down changed up ", true},
                 {{145, 105, 148}, "down up ", true}, // there and back
                 {{105, 145, 102}, "down up ", true, forceRightToLeft}};
    for (const auto& c : cases) {
        toggle->setSemanticContentAttribute(c.direction);
        const bool before = toggle->isOn();
        host.touch(P::began, {c.path.front(), 110});
        for (const CGFloat x : c.path)
            host.touch(P::moved, {x, 110});
        EXPECT_EQ(toggle->isOn(), before); // until the lift
        host.touch(P::ended, {c.path.back(), 110});
        EXPECT_EQ(toggle->isOn(), c.on);
        EXPECT_EQ(listener->take(), c.log);
        host.advance(1);
        EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
    }
}

} // namespace
} // namespace tesmar
