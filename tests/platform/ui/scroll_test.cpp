#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/internal/ScrollMotion.h"

namespace tesmar {
namespace {

using P = UITouchPhase;

// Adds the scroll view's notifications to the listener's log.
struct Delegate : UIScrollViewDelegate {
    void scrollViewWillBeginDragging(UIScrollView&) override { listener->log += "begin "; }
    void scrollViewDidEndDragging(UIScrollView&, bool glides) override {
        listener->log += glides ? "end+glide " : "end ";
    }
    void scrollViewWillBeginDecelerating(UIScrollView&) override { listener->log += "glides "; }
    void scrollViewDidEndScrollingAnimation(UIScrollView&) override { listener->log += "there "; }
    void scrollViewDidEndDecelerating(UIScrollView&) override { listener->log += "rest "; }
    Ref<Listener> listener;
};

// 200 × 300 points of a content of 400 × 1000, which a button fills.
class ScrollTest : public UITest {
  protected:
    ScrollTest() {
        scroll->setContentSize({400, 1000});
        delegate->listener = listener;
        scroll->setDelegate(delegate);
        scroll->addSubview(button);
        button->addTarget(listener, Selector("down"), UIControlEventTouchDown);
        button->addTarget(listener, Selector("up"), UIControlEventTouchUpInside);
    }
    CGFloat offset() const { return scroll->contentOffset().y; }

    Ref<UIScrollView> scroll = add<UIScrollView>({0, 0, 200, 300});
    Ref<UIButton> button = makeWith<UIButton>(&UIButton::initWithFrame, CGRect(0, 0, 400, 1000));
    Ref<Delegate> delegate = std::make_shared<Delegate>();
};

TEST_F(ScrollTest, DragsOrDeliversTouches) {
    const struct {
        P phase;
        CGPoint point;
        double wait; // afterwards
        const char* log;
        CGFloat offset;
    } steps[] = {
        {P::began, {100, 200}, 0, "", 0},
        {P::moved, {100, 191}, 0, "", 0}, // below the threshold
        {P::moved, {100, 190}, 0.02, "begin ", 0},
        {P::moved, {120, 150}, 1, "", 40},     // beyond the threshold, on one axis
        {P::ended, {120, 150}, 0, "end ", 40}, // a finger that rested does not throw the content
        {P::began, {100, 200}, 0, "", 40},
        {P::ended, {100, 200}, 0, "down up ", 40},  // a tap is delivered at its lift
        {P::began, {100, 200}, 0.149, "", 40},      // a rest is delivered late
        {P::moved, {100, 200}, 0.002, "down ", 40}, // a control that tracks keeps its touch
        {P::moved, {100, 100}, 0, "", 40},
        {P::ended, {100, 100}, 0, "up ", 40},
        {P::began, {100, 200}, 0, "", 40},
        {P::ended, {100, 145}, 0, "begin end ", 85}, // a flick that moves only at its lift
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        host.touch(steps[i].phase, steps[i].point);
        host.advance(steps[i].wait);
        EXPECT_EQ(listener->take(), steps[i].log) << "step " << i;
        EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, steps[i].offset})) << "step " << i;
    }
}

TEST_F(ScrollTest, GlidesUntilATouchStopsItWithoutATap) {
    host.drag({100, 250}, {0, -100}, 0.1);
    host.advance(0.3);
    const double moving = offset();
    EXPECT_GT(moving, 100);
    host.tap({100, 100});
    EXPECT_EQ(offset(), moving);
    EXPECT_EQ(listener->take(), "begin end+glide glides "); // neither a tap nor another drag
    host.drag({100, 250}, {0, -100}, 0.05);
    host.advance(10);
    EXPECT_EQ(listener->take(), "begin end+glide glides rest ");
}

// Events wait in a queue while the host paints: their own times tell how fast the finger was.
TEST_F(ScrollTest, AFlickIsAsFastAsItsEventsSay) {
    const auto flick = [&](double lateness) {
        scroll->setContentOffset({0, 0}, false);
        UIWindow& window = *host.window();
        const double start = NSRunLoop::mainRunLoop().now() - lateness;
        window.touch(P::began, 1, {100, 250}, start);
        for (int i = 1; i <= 5; ++i)
            window.touch(P::moved, 1, {100, 250.0 - 20 * i}, start + 0.01 * i);
        window.touch(P::ended, 1, {100, 150}, start + 0.05);
        host.advance(10);
        return offset();
    };
    const double fresh = flick(0);
    EXPECT_GT(fresh, 300);
    EXPECT_NEAR(flick(0.5), fresh, 1e-6);
    EXPECT_EQ(flick(std::nan("")), 90); // without times there is no speed
}

TEST_F(ScrollTest, SpringsBackFromItsEnds) {
    for (const auto setting : {MotionSetting::full, MotionSetting::reduced}) {
        setMotionSetting(setting);
        host.touch(P::began, {100, 100});
        host.touch(P::moved, {100, 110});
        host.touch(P::moved, {100, 210}); // 100 past the start
        EXPECT_NEAR(offset(), -60, 40);   // stretched
        host.touch(P::ended, {100, 210});
        host.advance(setting == MotionSetting::full ? 3 : 0);
        EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
    }
}

TEST_F(ScrollTest, KeepsContentInTheView) {
    scroll->setContentOffset({0, 700}, false);
    scroll->setContentSize({200, 500});
    host.render();
    EXPECT_EQ(offset(), 200);
    for (const double odd : {std::nan(""), HUGE_VAL, -1e300}) {
        scroll->setContentOffset({odd, odd}, true);
        host.advance(4);
        scroll->scrollRectToVisible({odd, odd, odd, odd}, true);
        host.advance(4);
        EXPECT_TRUE(CGRect(0, 0, 1, 201).contains(scroll->contentOffset())) << odd;
        EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline()) << odd;
    }
    scroll->setContentSize({200, 300}); // fits: the button gets the touch
    host.render();
    listener->take();
    host.drag({100, 250}, {0, -100}, 0.1);
    EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, 0}));
    EXPECT_EQ(listener->take(), "down up ");
}

TEST_F(ScrollTest, InsetsBelongToTheContent) {
    scroll->setContentInset({20, 10, 30, 0});
    host.render();
    EXPECT_EQ(scroll->contentOffset(), CGPoint());
    const auto show = [&](CGFloat y) { scroll->scrollRectToVisible({0, y, 10, 10}, true); };
    const UIEdgeInsets wide{0, 0, 999, std::nan("")};
    const std::pair<std::function<void()>, CGPoint> steps[] = {
        {[&] {
             scroll->setContentOffset(CGPoint{-99, -99}, true);
         },
         {-10, -20}},
        {[&] {
             scroll->setContentOffset(CGPoint{999, 999}, true);
         },
         {200, 730}},
        {[&] { show(500); }, {-10, 480}},
        {[&] { show(760); }, {-10, 500}},
        {[&] { scroll->setContentSize(CGSize()); }, {-10, -20}},
        {[&] { scroll->setContentInset(wide); }, {0, 0}}};
    for (const auto& [change, offset] : steps) {
        change();
        host.render();
        host.advance(5);
        EXPECT_EQ(scroll->contentOffset(), offset) << offset.x << "," << offset.y;
    }
    EXPECT_TRUE(scroll->canScroll(LayoutAxis::vertical));
}

TEST_F(ScrollTest, StopsAtItsEndsWithoutBouncing) {
    scroll->setBounces(false);
    for (const CGFloat distance : {200, -200, -200, -200}) {
        host.drag({100, distance < 0 ? 250.0 : 20.0}, {0, distance}, 0.05);
        for (int frame = 0; frame < 100; ++frame, host.advance(0.02))
            EXPECT_EQ(offset(), std::clamp(offset(), 0.0, 700.0));
    }
    EXPECT_EQ(offset(), 700);
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
}

TEST_F(ScrollTest, TurnsPages) {
    scroll->setPagingEnabled(true);
    const struct {
        CGFloat distance;
        double seconds;
        CGFloat offset;
    } drags[] = {{-100, 2, 0},     {-200, 2, 300},   {-60, 0.05, 600}, {60, 0.05, 300},
                 {-200, 0.1, 600}, {-60, 0.05, 700}, {-60, 0.05, 700}, {200, 0.1, 300}};
    for (const auto& d : drags) {
        host.drag({100, d.distance < 0 ? 250.0 : 20.0}, {0, d.distance}, d.seconds);
        host.advance(5);
        EXPECT_EQ(scroll->contentOffset(), (CGPoint{0, d.offset}))
            << d.distance << " " << d.seconds;
    }
    for (const auto& [notches, expected] : {std::pair(2, 300), {4, 600}}) {
        for (int i = 0; i < notches; ++i)
            host.window()->wheel({100, 100}, {0, -50}, host.now());
        host.advance(5);
        EXPECT_EQ(offset(), expected);
    }
    listener->take();
    scroll->setContentOffset({0, 350}, true);
    host.advance(5);
    EXPECT_EQ(offset(), 350);
    setMotionSetting(MotionSetting::reduced);
    scroll->setContentOffset({0, 0}, true);
    EXPECT_EQ(listener->take(), "there there ");
}

TEST_F(ScrollTest, WhatCannotBeSeenAsksForNoFrames) {
    const auto cover = makeWith<UIView>(&UIView::initWithFrame, CGRect(0, 0, 250, 350));
    const auto toggle = makeWith<UISwitch>(&UIView::initWithFrame, CGRect(20, 20, 51, 31));
    cover->setBackgroundColor(UIColor::whiteColor());
    button->addSubview(toggle);
    const std::function<void()> changes[] = {
        [&] { scroll->setHidden(true); }, [&] { root().setAlpha(0); },
        [&] { scroll->setFrame(CGRect(0, 900, 200, 300)); }, [&] { root().addSubview(cover); },
        [&] { setMotionSetting(MotionSetting::reduced); }};
    for (const auto& change : changes) {
        scroll->setHidden(false), root().setAlpha(1), cover->removeFromSuperview();
        scroll->setFrame({0, 0, 200, 300}), setMotionSetting(MotionSetting::full);
        scroll->setContentOffset({0, 0}, false), toggle->setOn(false);
        scroll->setContentOffset({0, 5}, true), toggle->setOn(true, true);
        host.advance(0.05);
        change();
        host.advance(0.02); // one frame
        EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
        scroll->setContentOffset({0, 10}, true), toggle->setOn(false, true);
        EXPECT_EQ(offset(), 10);
        EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
    }
    scroll->flashScrollIndicators();
    host.tap({100, 100});
    scroll->removeFromSuperview();
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline()); // not for what has left, either
}

TEST_F(ScrollTest, IndicatorsDamageOnlyTheirPlaces) {
    scroll->setContentSize({200, 1000});
    const auto drag = [&] {
        host.touch(P::began, {100, 200});
        host.touch(P::moved, {100, 150});
        host.advance(1);
        host.touch(P::ended, {100, 150}); // after a rest: no glide
        host.render();
        host.advance(0.1);
        return damage();
    };
    const auto bar = drag();
    ASSERT_EQ(bar.size(), 1u);
    EXPECT_TRUE(bar[0].x == 196 && bar[0].width == 4) << bar[0].x << "," << bar[0].width;
    scroll->setShowsVerticalScrollIndicator(false);
    EXPECT_EQ(drag().size(), 0u);
    EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
}

TEST_F(ScrollTest, FadesAtTheEdgesThatHideContent) {
    button->setBackgroundColor(UIColor::blackColor());
    scroll->setEdgeFadeColor(UIColor::whiteColor());
    const std::tuple<CGSize, CGPoint, std::array<bool, 4>> cases[] = {
        // top, left, bottom, right
        {{400, 1000}, {0, 0}, {0, 0, 1, 1}},
        {{400, 1000}, {90, 90}, {1, 1, 1, 1}},
        {{400, 390}, {90, 90}, {1, 1, 0, 1}},
        {{290, 390}, {90, 90}, {1, 1, 0, 0}},
        {{200, 300}, {0, 0}, {0, 0, 0, 0}}};
    for (const auto& [size, offset, faded] : cases) {
        scroll->setContentSize(size), scroll->setContentOffset(offset, false);
        host.render();
        const auto lit = [&](int x, int y) { return (host.pixels()[y * 300 + x] & 255) > 128; };
        EXPECT_EQ((std::array{lit(100, 1), lit(1, 150), lit(100, 298), lit(198, 150)}), faded);
        EXPECT_FALSE(lit(100, 16) || lit(16, 150) || lit(100, 283) || lit(183, 150));
    }
    scroll->setContentSize({400, 300}), host.render(), host.advance(1); // the bar below flashes
    scroll->flashScrollIndicators();
    EXPECT_EQ(damage().size(), 1u);
    host.advance(0.9);
    EXPECT_EQ(damage().size(), 0u);
    host.advance(1);
    EXPECT_EQ(damage().size(), 1u);
}

TEST_F(ScrollTest, TreatsABurstOfWheelEventsAsOneDrag) {
    const auto wheel = [&](CGFloat y) { host.window()->wheel({100, 100}, {0, y}, host.now()); };
    host.touch(P::began, {100, 200});
    host.touch(P::moved, {100, 150});
    wheel(-50); // ignored: the finger takes precedence
    host.advance(1);
    host.touch(P::ended, {100, 150});
    EXPECT_EQ(listener->take(), "begin end ");
    for (int i = 1; i <= 5; ++i) { // a trackpad: followed exactly
        wheel(-5);
        EXPECT_EQ(offset(), 40 + 5 * i);
        host.advance(0.05);
    }
    host.advance(0.2);
    EXPECT_EQ(listener->take(), "begin end ");

    double last = offset(), fastest = 0;
    for (int i = 0; i < 250; ++i) { // notches: one smooth motion
        if (i < 30 && i % 6 == 0)
            wheel(-40);
        host.advance(0.01);
        EXPECT_GE(offset(), last);
        fastest = std::max(fastest, offset() - std::exchange(last, offset()));
    }
    EXPECT_EQ(offset(), 265);
    EXPECT_LT(fastest, 15);
    EXPECT_EQ(listener->take(), "begin end+glide glides rest ");
}

TEST_F(UITest, WheelMovesWhatScrollsNearby) {
    const auto card = make<UIViewController>();
    const auto add = [](UIView& to, CGRect frame, CGSize content) {
        auto s = makeWith<UIScrollView>(&UIScrollView::initWithFrame, frame);
        to.addSubview(s), s->setContentSize(content);
        return s;
    };
    const auto page = add(*card->view(), {0, 100, 280, 200}, {280, 900});
    const auto row = add(*page, {0, 0, 280, 50}, {900, 50});
    const auto strip = add(*card->view(), {0, 320, 280, 50}, {900, 50});
    host.window()->presentViewController(card, false);
    const auto roll = [&](const UIView& over, CGPoint at, CGPoint delta) {
        host.window()->wheel(over.convertPointTo(at, nullptr), delta, host.now()), host.advance(1);
        return page->contentOffset() + row->contentOffset() + strip->contentOffset();
    };
    EXPECT_EQ(roll(*row, {20, 20}, {0, -5}), (CGPoint{0, 5}));
    EXPECT_EQ(roll(*row, {20, 20}, {-5, 0}), (CGPoint{5, 5}));
    EXPECT_EQ(roll(*strip, {20, 20}, {0, -5}), (CGPoint{10, 5})); // up and down moves it sideways
    EXPECT_EQ(roll(*card->view(), {20, 20}, {0, -5}), (CGPoint{10, 10})); // above the page
}

TEST(ScrollMotionTest, DeceleratesAndSpringsBack) {
    ScrollMotion motion;
    motion.setRange(0, 10000);
    motion.setExtent(300);
    motion.jumpTo(100);
    motion.endDrag(1000, 0);
    const double rate = std::log(0.998) * 1000; // of the speed's logarithm, per second
    motion.step(0.1);
    EXPECT_NEAR(motion.offset(), 100 + 1000 * std::expm1(rate / 10) / rate, 1e-6);

    motion.jumpTo(9990);
    motion.endDrag(2000, 0);
    double farthest = 0; // overshoots the end
    for (double t = 0; motion.step(t) && t < 10; t += 1.0 / 60)
        farthest = std::max(farthest, motion.offset());
    EXPECT_GT(farthest, 10010);
    EXPECT_EQ(motion.offset(), 10000);

    motion.jumpTo(-50); // a drag that starts past the end does not jump
    motion.beginDrag();
    motion.dragBy(0);
    EXPECT_NEAR(motion.offset(), -50, 1e-9);
}

} // namespace
} // namespace tesmar
