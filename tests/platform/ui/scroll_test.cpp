#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/internal/ScrollMotion.h"

namespace tesmar {
namespace {

using P = UITouchPhase;

class Log : public UIScrollViewDelegate {
  public:
    void scrollViewWillBeginDragging(UIScrollView&) override { text += "begin "; }
    void scrollViewDidEndDragging(UIScrollView&, bool glides) override {
        text += glides ? "end+glide " : "end ";
    }
    void scrollViewDidEndDecelerating(UIScrollView&) override { text += "rest "; }
    std::string take() { return std::exchange(text, {}); }
    std::string text;
};

class ScrollTest : public UITest {
  protected:
    ScrollTest() {
        scroll->setContentSize({200, 1000});
        scroll->setDelegate(log);
        scroll->addSubview(button);
        button->addTarget(listener, Selector("down"), UIControlEventTouchDown);
        button->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
        button->addTarget(listener, Selector("cancelled"), UIControlEventTouchCancel);
    }
    void finger(P phase, CGPoint point) { host.touch(phase, point); }

    Ref<UIScrollView> scroll = add<UIScrollView>({0, 0, 200, 300});
    Ref<UIButton> button = makeWith<UIButton>(&UIButton::initWithFrame, CGRect(0, 0, 200, 300));
    Ref<Log> log = std::make_shared<Log>();
};

TEST_F(ScrollTest, ContentFollowsTheFingerOnceItDrags) {
    finger(P::began, {100, 200});
    finger(P::moved, {100, 191}); // 9 points: not yet
    EXPECT_EQ(log->take(), "");
    finger(P::moved, {100, 190});
    EXPECT_EQ(log->take(), "begin ");
    finger(P::moved, {120, 150}); // from where it took hold, and not sideways
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 40}));
    host.advance(1);
    finger(P::ended, {120, 150}); // after a rest: nothing is thrown
    EXPECT_EQ(log->take(), "end ");
    EXPECT_EQ(listener->take(), ""); // the button never knew
}

TEST_F(ScrollTest, TouchesReachTheContentLateOrAtTheLift) {
    finger(P::began, {100, 200});
    EXPECT_FALSE(button->isTracking());
    finger(P::ended, {100, 200});
    EXPECT_EQ(listener->take(), "down up ");
    finger(P::began, {100, 200});
    host.advance(0.151);
    EXPECT_TRUE(button->isTracking());
    finger(P::moved, {100, 100}); // a control that tracks keeps its touch
    finger(P::ended, {100, 100});
    EXPECT_EQ(listener->take(), "down up ");
    EXPECT_EQ(log->take(), "");
}

TEST_F(ScrollTest, ALiftFarAwayIsADragEvenWithoutAMove) {
    finger(P::began, {100, 200});
    finger(P::ended, {100, 145});
    EXPECT_EQ(log->take().substr(0, 9), "begin end");
    EXPECT_EQ(listener->take(), "");
}

TEST_F(ScrollTest, TheWheelLeavesAFingersDragAlone) {
    finger(P::began, {100, 200});
    finger(P::moved, {100, 150});
    finger(P::moved, {100, 140});
    host.window()->wheel({100, 100}, {0, -50}, host.now());
    host.advance(1);
    EXPECT_EQ(scroll->contentOffset().y, 50); // all but the first ten points
    finger(P::ended, {100, 140});
    EXPECT_EQ(log->take(), "begin end ");
}

TEST_F(ScrollTest, ThrownContentGlidesAndATouchStopsItWithoutTapping) {
    host.drag({100, 250}, {0, -100}, 0.1);
    EXPECT_EQ(log->take(), "begin end+glide ");
    host.advance(0.3);
    const double moving = scroll->contentOffset().y;
    EXPECT_GT(moving, 100);
    host.tap({100, 100});
    EXPECT_EQ(scroll->contentOffset().y, moving);
    EXPECT_EQ(listener->take(), "");
    EXPECT_EQ(log->take(), ""); // no drag, no end of one
    host.drag({100, 250}, {0, -100}, 0.05);
    host.advance(10);
    EXPECT_EQ(log->take(), "begin end+glide rest ");
    EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
}

TEST_F(ScrollTest, EndsAreElastic) {
    finger(P::began, {100, 100});
    finger(P::moved, {100, 110});
    finger(P::moved, {100, 210}); // 100 past the start
    const double stretched = scroll->contentOffset().y;
    EXPECT_LT(stretched, -20);
    EXPECT_GT(stretched, -100);
    finger(P::ended, {100, 210});
    host.advance(3);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
    // Reduced motion lands at once.
    setMotionSetting(MotionSetting::reduced);
    finger(P::began, {100, 100});
    finger(P::moved, {100, 150});
    finger(P::moved, {100, 210});
    finger(P::ended, {100, 210});
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
}

TEST_F(ScrollTest, ContentThatFitsDoesNotMove) {
    scroll->setContentSize({200, 300});
    host.drag({100, 250}, {0, -100}, 0.1);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
    EXPECT_EQ(log->take(), "");
}

TEST_F(ScrollTest, ABurstOfWheelEventsIsOneDrag) {
    for (int i = 1; i <= 5; ++i) { // a trackpad: followed exactly
        host.window()->wheel({100, 100}, {0, -5}, host.now());
        EXPECT_EQ(scroll->contentOffset().y, 5 * i);
        host.advance(0.05);
    }
    EXPECT_EQ(log->take(), "begin ");
    host.advance(0.2);
    EXPECT_EQ(log->take(), "end ");

    double last = 25, fastest = 0; // notches: one smooth way to where they lead in all
    const auto watch = [&](double seconds) {
        for (const double end = host.now() + seconds; host.now() < end;) {
            host.advance(0.01);
            fastest = std::max(fastest, scroll->contentOffset().y - last);
            EXPECT_GE(scroll->contentOffset().y, last);
            last = scroll->contentOffset().y;
        }
    };
    for (int i = 0; i < 5; ++i) {
        host.window()->wheel({100, 100}, {0, -40}, host.now());
        watch(0.06);
    }
    EXPECT_EQ(log->take(), "begin ");
    watch(2);
    EXPECT_EQ(scroll->contentOffset().y, 225);
    EXPECT_LT(fastest, 15);
    EXPECT_EQ(log->take(), "end+glide rest ");
}

TEST_F(ScrollTest, ShrinkingContentBringsItBack) {
    scroll->setContentOffset({0, 700}, false);
    scroll->setContentSize({200, 500});
    host.render();
    EXPECT_EQ(scroll->contentOffset().y, 200);
}

TEST(ScrollMotionTest, DeceleratesBySpeedAndSpringsBack) {
    ScrollMotion motion;
    motion.setRange(0, 10000);
    motion.setExtent(300);
    motion.jumpTo(100);
    motion.endDrag(1000, 0);
    motion.step(0.1); // 0.998 per millisecond: 0.998^100 of the speed is left
    const double left = std::pow(0.998, 100);
    EXPECT_NEAR(motion.offset(), 100 + 1000 * (left - 1) / (std::log(0.998) * 1000), 1e-6);
    while (motion.step(20)) {
    }
    EXPECT_NEAR(motion.offset(), 100 + 1000 / -(std::log(0.998) * 1000), 6);

    motion.jumpTo(9990); // runs into the end, goes past it, and comes back
    motion.endDrag(2000, 0);
    double farthest = 0;
    for (double t = 0; motion.step(t) && t < 10; t += 1.0 / 60)
        farthest = std::max(farthest, motion.offset());
    EXPECT_GT(farthest, 10010);
    EXPECT_EQ(motion.offset(), 10000);
    EXPECT_FALSE(motion.isMoving());

    motion.jumpTo(-50); // a stretched band that is taken hold of again does not jump
    motion.beginDrag();
    motion.dragBy(0);
    EXPECT_NEAR(motion.offset(), -50, 1e-9);
}

} // namespace
} // namespace tesmar
