#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"

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
    void listen(UIControl& control) {
        control.addTarget(listener, Selector("down"), UIControlEventTouchDown);
        control.addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
        control.addTarget(listener, Selector("outside"), UIControlEventTouchUpOutside);
        control.addTarget(listener, Selector("cancelled"), UIControlEventTouchCancel);
        control.addTarget(listener, Selector("changed"), UIControlEventValueChanged);
    }
};

TEST_F(ControlTest, AFingerIsInsideUpToTheMargin) {
    const auto button = add<UIButton>({100, 100, 100, 50});
    listen(*button);
    struct Case {
        CGPoint lift;
        const char* log;
        bool highlighted; // while the finger stands there
    };
    for (const Case& c :
         {Case{{150, 120}, "down up ", true}, Case{{269, 120}, "down up ", true},
          Case{{271, 120}, "down outside ", false}, Case{{150, 31}, "down up ", true},
          Case{{150, 29}, "down outside ", false}}) {
        host.touch(P::began, {150, 120});
        host.advance(0.2);
        host.touch(P::moved, {290, 390}); // away, and back to where it lifts
        EXPECT_FALSE(button->isHighlighted());
        host.touch(P::moved, c.lift);
        EXPECT_EQ(button->isHighlighted(), c.highlighted) << c.lift.x << "," << c.lift.y;
        host.touch(P::ended, c.lift);
        EXPECT_FALSE(button->isHighlighted());
        EXPECT_EQ(listener->take(), c.log) << c.lift.x << "," << c.lift.y;
    }
    host.touch(P::began, {150, 120});
    host.touch(P::cancelled, {150, 120});
    EXPECT_EQ(listener->take(), "down cancelled ");
    button->setEnabled(false);
    host.tap({150, 120});
    EXPECT_EQ(listener->take(), "");
}

TEST_F(ControlTest, AQuickTapIsSeenForAMoment) {
    const auto button = add<UIButton>({100, 100, 100, 50});
    host.tap({150, 120});
    EXPECT_TRUE(button->isHighlighted());
    host.advance(0.2);
    EXPECT_FALSE(button->isHighlighted());
    EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
}

TEST_F(ControlTest, FingersDoNotConfuseEachOther) {
    const auto left = add<UIButton>({0, 0, 100, 50}), right = add<UIButton>({150, 0, 100, 50});
    const auto other = make<Listener>();
    listen(*left);
    right->addTarget(other, Selector("up"), UIControlEventTouchUpInside);
    host.touch(P::began, {50, 20}, 1);
    host.touch(P::began, {200, 20}, 2);
    host.touch(P::began, {60, 20}, 3); // a second finger on the same control is nobody's
    host.touch(P::ended, {50, 20}, 3);
    EXPECT_TRUE(left->isTracking());
    host.touch(P::ended, {200, 20}, 2);
    EXPECT_EQ(other->take(), "up ");
    host.touch(P::ended, {50, 20}, 1);
    EXPECT_EQ(listener->take(), "down up ");
    EXPECT_FALSE(host.touch(P::moved, {50, 20}, 9)); // never landed
}

TEST_F(ControlTest, SmallControlsTakeTouchesAroundThemButNotFromNeighbours) {
    const auto small = add<UIButton>({100, 100, 20, 20});
    const auto neighbour = add<UIButton>({100, 125, 20, 100});
    listen(*small);
    for (const auto& [point, hit] : {std::pair{CGPoint{90, 90}, small.get()},
                                     {CGPoint{87, 110}, nullptr},
                                     {CGPoint{110, 122}, small.get()},
                                     {CGPoint{110, 126}, neighbour.get()}})
        EXPECT_EQ(host.window()->hitTest(point), hit) << point.x << "," << point.y;
}

TEST_F(ControlTest, RemovingAControlUnderTheFingerCancelsIt) {
    auto button = add<UIButton>({100, 100, 100, 50});
    listen(*button);
    host.touch(P::began, {150, 120});
    button->removeFromSuperview();
    EXPECT_EQ(listener->take(), "down cancelled ");
    button.reset();
    host.touch(P::moved, {150, 120});
    host.touch(P::ended, {150, 120});
    EXPECT_EQ(listener->take(), "");
}

TEST_F(ControlTest, ATargetThatLeavesTakesNothingFromTheNext) {
    class Leaver : public Listener {
      public:
        void awakeFromNib() override {
            button->removeTarget(this, Selector("awakeFromNib"), UIControlEventAllEvents);
        }
        Ref<UIButton> button;
    };
    const auto leaver = make<Leaver>();
    leaver->button = add<UIButton>({100, 100, 100, 50});
    leaver->button->addTarget(leaver, Selector("awakeFromNib"), UIControlEventTouchUpInside);
    leaver->button->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
    host.tap({150, 120});
    EXPECT_EQ(listener->take(), "up ");
}

// What an action may do to the control that sends it.
TEST_F(ControlTest, AnActionMayDestroyItsControl) {
    class Destroyer : public Listener {
      public:
        void awakeFromNib() override { victim->removeFromSuperview(), victim.reset(); }
        Ref<UIButton> victim;
    };
    const auto destroyer = make<Destroyer>();
    destroyer->victim = add<UIButton>({100, 100, 100, 50});
    const WeakRef<UIButton> watched = destroyer->victim;
    destroyer->victim->addTarget(destroyer, Selector("awakeFromNib"), UIControlEventTouchUpInside);
    destroyer->victim->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
    host.tap({150, 120});
    EXPECT_EQ(listener->take(), "up ");
    host.advance(1);
    EXPECT_TRUE(watched.expired());
}

TEST_F(ControlTest, StepperSteps) {
    const auto stepper = add<UIStepper>({100, 100, 94, 29});
    listen(*stepper);
    const auto tap = [&](UIStepperHalf half) {
        host.tap(stepper->convertPointTo(stepper->halfRect(half).center(), nullptr));
        return std::exchange(listener->log, {});
    };
    using enum UIStepperHalf;
    stepper->setMaximumValue(2.5);
    EXPECT_EQ(tap(decrement), "down up "); // at the end: no change, no event
    EXPECT_EQ(tap(increment), "down changed up ");
    tap(increment), tap(increment);
    EXPECT_EQ(stepper->value(), 2.5); // held at the end
    EXPECT_FALSE(stepper->canStep(increment));
    stepper->setWraps(true);
    tap(increment);
    EXPECT_EQ(stepper->value(), 0);
    stepper->setValue(99);
    EXPECT_EQ(stepper->value(), 2.5);
    stepper->setMinimumValue(7); // pushes the maximum
    EXPECT_EQ(stepper->value(), 7);
    stepper->setValue(std::nan(""));
    EXPECT_EQ(stepper->value(), 7);
    EXPECT_DEATH(stepper->setStepValue(0), "step must be a number greater than 0");
}

TEST_F(ControlTest, StepperRepeatsWhileHeld) {
    for (const bool continuous : {true, false}) {
        const auto stepper = add<UIStepper>({100, 100, 94, 29});
        stepper->setContinuous(continuous);
        stepper->addTarget(listener, Selector("changed"), UIControlEventValueChanged);
        host.touch(P::began, {180, 110});
        host.advance(0.5 + 2 * 0.15 + 0.01);
        EXPECT_EQ(stepper->value(), 3);
        EXPECT_EQ(listener->take(), continuous ? "changed changed changed " : "");
        host.touch(P::moved, {110, 110}); // off the half: it waits
        host.advance(1);
        EXPECT_EQ(stepper->value(), 3);
        host.touch(P::ended, {110, 110});
        EXPECT_EQ(listener->take(), continuous ? "" : "changed ");
        stepper->removeFromSuperview();
    }
}

TEST_F(ControlTest, SwitchTogglesAndFollowsADrag) {
    const auto toggle = add<UISwitch>({100, 100, 51, 31});
    toggle->addTarget(listener, Selector("changed"), UIControlEventValueChanged);
    toggle->setOn(true, true); // by code: silent
    EXPECT_EQ(listener->take(), "");
    host.tap({120, 110});
    EXPECT_FALSE(toggle->isOn());
    host.touch(P::began, {105, 110});
    host.touch(P::moved, {145, 110});
    EXPECT_FALSE(toggle->isOn()); // not before the lift
    host.touch(P::ended, {145, 110});
    EXPECT_TRUE(toggle->isOn());
    host.touch(P::began, {145, 110}); // there and back again: nothing has changed
    host.touch(P::moved, {105, 110});
    host.touch(P::moved, {148, 110});
    host.touch(P::ended, {148, 110});
    EXPECT_TRUE(toggle->isOn());
    EXPECT_EQ(listener->take(), "changed changed ");
    host.advance(1);
    EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
}

} // namespace
} // namespace tesmar
