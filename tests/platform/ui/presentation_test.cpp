#include "fixture.h"

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UISwitch.h"

#include <functional>

namespace tesmar {
namespace {

class Controller : public UIViewController {
  public:
    void viewDidLoad() override { note("load"); }
    void viewWillAppear(bool) override {
        note("will");
        if (fails)
            throw 1;
    }
    void viewDidAppear(bool) override { note("did"); }
    void viewWillDisappear(bool) override {
        note("willnot");
        if (fails)
            throw 1;
    }
    void viewDidDisappear(bool) override { note("gone"); }
    std::optional<CGSize> preferredContentSize() override { return whenCalled(), preferredSize; }

    std::string name;
    std::function<void()> whenCalled = [] {};
    std::optional<CGSize> preferredSize;
    bool fails = false;
    static inline std::string log; // of all of them

  private:
    void note(const std::string& what) { log += name + what + " ", whenCalled(); }
};

TEST_F(UITest, PresentationsNotifyControllersInOrder) {
    UIWindow& window = *host.window();
    const auto a = make<Controller>(), b = make<Controller>();
    a->name = "a.", b->name = "b.";
    const auto done = [] { Controller::log += "done "; };
    const auto show = [&](const auto& c) { window.presentViewController(c, true, done); };
    const auto dismiss = [&](const auto& c) { c->dismissViewControllerAnimated(true, done); };
    const auto wait = [&](double seconds) { host.advance(seconds); };
    const auto full = make<Controller>(), next = make<Controller>();
    constexpr auto card = UIModalPresentationStyle::card,
                   fills = UIModalPresentationStyle::fullScreen;
    full->name = "f.", full->setModalPresentationStyle(fills);
    next->name = "n.", next->setModalPresentationStyle(fills);
    const auto reduce = [] { setMotionSetting(MotionSetting::reduced); };
    const std::pair<std::function<void()>, const char*> steps[] = {
        {[&] { show(a); }, "a.load a.will "},
        {[&] { wait(1); }, "a.did done "},
        {[&] { dismiss(a), dismiss(a); }, "a.willnot "}, // the second time under way already
        {[&] { EXPECT_TRUE(a->isBeingDismissed()); }, ""},
        {[&] { wait(1); }, "a.gone done "},
        {[&] { dismiss(a); }, ""}, // not presented
        {[&] { show(a), wait(0.1), dismiss(a), wait(0.1); }, "a.will a.willnot "},
        {[&] { show(a); }, "a.gone done a.will "}, // interrupts its dismissal
        {[&] { wait(1); }, "a.did done "},
        {[&] { reduce(), dismiss(a), show(a); }, "a.willnot a.gone done a.will a.did done "},
        {[&] { show(b); }, "b.load b.will b.did done "},
        {[&] { host.key(UIKey::back); }, "b.willnot b.gone "},
        {[&] { show(b); }, "b.will b.did done "},
        {[&] { EXPECT_EQ(b->presentingViewController(), a); }, ""},
        // The controller that the root presents, and all above it.
        {[&] { dismiss(window.rootViewController()); }, "b.willnot b.gone a.willnot a.gone done "},
        {[&] { show(a), show(b); }, "a.will a.did done b.will b.did done "}, // a card above a card
        {[&] { setMotionSetting(MotionSetting::full), show(full); },
         "f.load a.willnot b.willnot f.will "},
        {[&] { wait(1); }, "f.did a.gone b.gone done "},
        {[&] { full->setModalPresentationStyle(card), dismiss(full); }, "f.willnot a.will b.will "},
        {[&] { full->setModalPresentationStyle(fills), wait(1); }, "a.did b.did f.gone done "},
        {[&] { show(full), wait(0.1); }, "a.willnot b.willnot f.will "},
        {[&] { dismiss(full); }, "f.willnot a.will b.will "},
        {[&] { wait(1); }, "a.did b.did f.gone done "},
        {[&] { show(full), wait(1), dismiss(full), wait(0.1), show(next); }, // before it is gone
         "a.willnot b.willnot f.will f.did a.gone b.gone done f.willnot a.will b.will n.load "
         "a.willnot b.willnot n.will "},
        {[&] { wait(1), dismiss(next), wait(1); },
         "f.gone done n.did a.gone b.gone done n.willnot a.will b.will a.did b.did n.gone done "},
        {[&] { dismiss(b), wait(1); }, "b.willnot b.gone done "},
        {[&] { show(b), wait(0.2), show(full), wait(0.05), dismiss(full), wait(1); }, // b slower
         "b.will a.willnot b.willnot f.will f.willnot a.will b.will done a.did b.did f.gone done "},
        {[&] {
             full->fails = true;
             EXPECT_THROW(show(full), int);
         },
         "a.willnot b.willnot f.will a.will b.will a.did b.did "},
        {[&] {
             full->fails = false, reduce(), show(full), full->fails = true;
             EXPECT_THROW(dismiss(a), int);
         },
         "a.willnot b.willnot f.will f.did a.gone b.gone done f.willnot a.will a.did f.gone done "},
        {[&] { full->fails = false, show(b), show(full); },
         "b.will b.did done a.willnot b.willnot f.will f.did a.gone b.gone done "},
        {[&] { dismiss(a); }, "f.willnot a.will a.did f.gone done "}, // b, which `a` presents
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].first();
        EXPECT_EQ(std::exchange(Controller::log, {}), steps[i].second) << "step " << i;
    }
}

TEST_F(UITest, MotionSetsOffAtItsFirstFrame) {
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    const auto scroll = add<UIScrollView>({0, 0, 100, 100});
    scroll->setContentSize({100, 1000});
    host.window()->presentViewController(make<Controller>(), true);
    scroll->setContentOffset({0, 500}, true);
    loop.advanceTo(loop.now() + 100); // the host has slept
    EXPECT_LT(host.window()->viewWithIdentifier("card")->alpha(), 0.5);
    EXPECT_LT(scroll->contentOffset().y, 250);
    EXPECT_DEATH(make<UIWindow>()->presentViewController(make<Controller>(), false),
                 "made by UIWindow::windowWithSize");
}

TEST_F(UITest, CallbacksMayReleaseTheWindow) {
    const auto c = make<Controller>();
    const UIEdgeInsets insets{1, 1, 1, 1};
    const std::function<void(UIWindow&)> calls[] = {
        [&](UIWindow&) { host.advance(1); }, [](UIWindow& w) { w.setSize(CGSize()); },
        [&](UIWindow& w) { w.setSafeAreaInsets(insets), w.needsRender(); }};
    for (const auto& call : calls) {
        auto window = UIWindow::windowWithSize({300, 400});
        const WeakRef<UIWindow> watched = window;
        window->presentViewController(c, true);
        c->whenCalled = [&] {
            window.reset();
            EXPECT_FALSE(watched.expired()); // until the call has returned
        };
        call(*window);
        EXPECT_TRUE(watched.expired());
        c->whenCalled = [] {};
    }
}

TEST_F(UITest, ControllersSeeEachLayoutOfTheirViews) {
    struct Observer : UIViewController {
        void viewWillLayoutSubviews() override { note("will "); }
        void viewDidLayoutSubviews() override { note("did "); }
        void note(const char* what) {
            log += what + std::to_string(static_cast<int>(inner->frame().size.width)) + " ";
        }
        Ref<UIView> inner = make<UIView>();
        std::string log;
    };
    const auto c = make<Observer>();
    c->inner->setTranslatesAutoresizingMaskIntoConstraints(false);
    c->view()->addSubview(c->inner);
    c->view()->addConstraintsWithVisualFormats({{"|[inner]|"}}, {{"inner", c->inner}});
    const auto layOut = [&](CGFloat width) {
        c->view()->setFrame(CGRect(0, 0, width, 50));
        c->view()->layoutIfNeeded();
        return std::exchange(c->log, {});
    };
    EXPECT_EQ(layOut(100), "will 0 did 100 ");
    EXPECT_EQ(layOut(100), "");
    const Ref<UIView> view = c->view();
    c->setView(make<UIView>());
    view->setNeedsLayout(), view->layoutIfNeeded();
    EXPECT_EQ(c->log, ""); // no longer its view
}

// Against a window that was changed before the motion.
TEST_F(UITest, MotionShowsWhatChangesMeanwhile) {
    struct Shown {
        explicit Shown(CGFloat scale) : host({300, 400}, scale) {
            panel->addSubview(part), controller->view()->addSubview(panel);
            part->setBackgroundColor(UIColor::redColor());
        }
        void change() {
            part->setBackgroundColor(UIColor::blueColor());
            panel->setFrame({30.4, 20, 80, 60}), panel->setClipsToBounds(true);
            panel->addSubview(makeWith<UISwitch>(&UISwitch::initWithFrame, CGRect(1.3, 2, 0, 0)));
        }
        Ref<UIView> view(CGRect frame) { return makeWith<UIView>(&UIView::initWithFrame, frame); }

        HeadlessHost host;
        Ref<UIView> panel = view({30, 20, 90, 50}), part = view({7.5, 40, 90.3, 30});
        Ref<Controller> controller = make<Controller>();
    };
    for (const CGFloat scale : {1.0, 1.25, 3.0}) {
        Shown later(scale), before(scale);
        before.change();
        for (Shown* const shown : {&later, &before})
            shown->host.window()->presentViewController(shown->controller, true);
        host.advance(0.1), later.host.render(), later.change();
        host.advance(0.1), later.host.render(), before.host.render();
        EXPECT_TRUE(std::ranges::equal(later.host.pixels(), before.host.pixels())) << scale;
    }
}

// Before the first frame or in a later one; against a card that nothing changes as it draws.
TEST_F(UITest, DrawingMayChangeTheCardInMotion) {
    struct Painter : UIView {
        void draw(CGRect) override {
            ++drawn, std::exchange(then, [] {})();
            UIGraphicsGetCurrentContext()->setRGBFillColor(0, 0, 1, 1);
            UIGraphicsGetCurrentContext()->fillRect(bounds());
        }
        int drawn = 0;
        std::function<void()> then = [] {};
    };
    struct Shown {
        Shown() {
            controller->view()->addSubview(painter), painter->setFrame({30, 20, 80, 60});
            controller->view()->setBackgroundColor(UIColor::redColor());
        }
        HeadlessHost host{{300, 400}};
        Ref<Painter> painter = make<Painter>();
        Ref<Controller> controller = make<Controller>();
    };
    const std::function<void(Shown&)> changes[] = {
        [](Shown& s) { s.controller->view()->setBackgroundColor(UIColor::blueColor()); },
        [](Shown& s) { s.controller->view()->superview()->setClipsToBounds(true); },
        [](Shown& s) { s.controller->dismissViewControllerAnimated(false); },
        [](Shown& s) { s.host.render(); },
        [](Shown&) { throw std::bad_alloc(); },
    };
    const auto unlessItThrows = [](const auto& act) {
        try {
            act();
        } catch (const std::bad_alloc&) {
        }
    };
    for (const auto& change : changes)
        for (const bool first : {true, false}) {
            Shown changed, still;
            const auto during = [&] { change(changed); };
            for (Shown* const shown : {&changed, &still}) {
                if (shown == &changed && first)
                    shown->painter->then = during;
                shown->host.window()->presentViewController(shown->controller, true);
                EXPECT_EQ(shown->painter->drawn, 1);
            }
            unlessItThrows([&] { change(still); }), host.advance(0.1);
            if (!first) {
                changed.painter->then = during, changed.painter->setNeedsDisplay();
                unlessItThrows([&] { changed.host.render(); });
            }
            host.advance(0.1), changed.host.render(), still.host.render();
            EXPECT_TRUE(std::ranges::equal(changed.host.pixels(), still.host.pixels()))
                << &change - changes << first;
        }
}

TEST_F(UITest, CardsOverCardsAreAlwaysPaintedWhole) {
    UIWindow& window = *host.window();
    const auto below = make<Controller>(), above = make<Controller>();
    window.presentViewController(below, false);
    for (int frame = 0; frame < 60; ++frame) {
        if (frame == 1 || frame == 30)
            window.presentViewController(above, true);
        else if (frame == 29)
            above->dismissViewControllerAnimated(true);
        const auto partial = picture();
        window.invalidate();
        ASSERT_TRUE(partial == picture()) << frame;
        host.advance(1.0 / 60);
    }
}

TEST_F(UITest, LeavingOrHiddenCardsTakeNoTouches) {
    const auto c = make<Controller>();
    const auto button = makeWith<UIButton>(&UIButton::initWithFrame, CGRect(20, 20, 100, 100));
    button->addTarget(listener, Selector("cancelled"), UIControlEventTouchCancel);
    c->view()->addSubview(button);
    host.window()->setOutsideTap(OutsideTap::dismisses);
    host.window()->presentViewController(c, false);
    const CGPoint finger = button->convertPointTo({50, 50}, nullptr);
    const auto full = make<Controller>();
    full->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    EXPECT_TRUE(host.touch(UITouchPhase::began, finger, 0));
    host.window()->presentViewController(full, true);
    EXPECT_EQ(listener->take(), "cancelled ");
    full->dismissViewControllerAnimated(false);
    EXPECT_TRUE(host.touch(UITouchPhase::began, finger, 1));
    c->dismissViewControllerAnimated(true);
    EXPECT_EQ(listener->take(), "cancelled ");
    EXPECT_FALSE(host.touch(UITouchPhase::began, finger, 2));
}

TEST_F(UITest, LayoutIsNotEnteredAgain) {
    struct Restless : UIView {
        void layoutSubviews() override {
            if (++count < 100)
                setNeedsLayout(), layoutIfNeeded();
        }
        int count = 0;
    };
    const auto view = make<Restless>();
    view->layoutIfNeeded();
    EXPECT_GT(view->count, 1);
    EXPECT_LT(view->count, 20);
}

TEST_F(UITest, AHugeWindowLowersItsScaleForAWhile) {
    struct Row {
        int width, height;
        CGFloat scale;
        CGSize pixels;
    };
    const Row rows[] = {{1080, 2340, 2.625, {1080, 2340}}, {1, 1, 16, {1, 1}},
                        {1366, 768, 1.1, {1366, 768}},     {32767, 3, 0.1, {6554, 3}},
                        {-5, 99999, 1, {0, 32767}},        {7, 5, NAN, {7, 5}}};
    for (const Row& row : rows) {
        host.window()->setPixelSize(row.width, row.height, row.scale);
        EXPECT_EQ(host.window()->pixelSize(), row.pixels) << row.width << '@' << row.scale;
    }
    host.window()->setScale(3);
    for (const auto& [width, scale] : {std::pair(32767.0, 1.0), std::pair(200.0, 3.0)}) {
        host.window()->setSize({width, 100});
        EXPECT_EQ(host.window()->scale(), scale) << width;
    }
}

TEST_F(UITest, CardsFollowADragDown) {
    const auto c = make<Controller>();
    c->name = "c.", c->preferredSize = CGSize{280, 200}, Controller::log = "";
    UIWindow& window = *host.window();
    const CGPoint header{150, 110};
    const auto pull = [&](CGFloat distance, double seconds) {
        host.drag(header, {0, distance}, seconds);
        const CGFloat moved = window.viewWithIdentifier("card")->translation().y;
        host.advance(1);
        return moved;
    };
    window.presentViewController(c, false);
    pull(150, 1);
    EXPECT_EQ(std::exchange(Controller::log, {}), "c.load c.will c.did "); // ignored
    window.setDragDown(DragDown::dismisses);
    EXPECT_NEAR(pull(50, 1), 40, 1); // and back
    pull(-80, 0.1);
    EXPECT_EQ(window.viewWithIdentifier("card")->translation(), CGPoint());
    EXPECT_EQ(Controller::log, "");
    for (const auto& [distance, seconds] : {std::pair(70, 1.0), std::pair(40, 0.05)}) {
        pull(distance, seconds);
        EXPECT_EQ(std::exchange(Controller::log, {}), "c.willnot c.gone ") << distance;
        window.presentViewController(c, false), Controller::log = "";
    }
    host.touch(UITouchPhase::began, header), host.touch(UITouchPhase::moved, {150, 300});
    c->dismissViewControllerAnimated(false); // while a finger holds it
    EXPECT_FALSE(host.touch(UITouchPhase::ended, {150, 300}) && window.presentedViewController());
    window.presentViewController(c, false);
    const UIView& card = *window.viewWithIdentifier("card");
    host.touch(UITouchPhase::began, header), host.touch(UITouchPhase::moved, {150, 150});
    window.presentViewController(make<Controller>(), false); // meanwhile
    host.touch(UITouchPhase::ended, {150, 300}), host.advance(1);
    EXPECT_EQ(card.translation(), CGPoint());
    EXPECT_NE(window.presentedViewController(), c);
}

TEST_F(UITest, CardsDimOnRequest) {
    host.window()->presentViewController(make<Controller>(), false);
    const auto paper = [&] { return host.render(), host.pixels()[200 * 300 + 150]; };
    for (const auto& [brightness, expected] :
         {std::pair(0.0, 0xFFA8A8A8u), std::pair(0.7, 0xFFD9D9D9u), std::pair(2.0, 0xFFFFFFFFu)}) {
        host.window()->setPresentedBrightness(brightness);
        EXPECT_EQ(paper(), expected) << std::hex << paper();
    }
    host.window()->setPresentedBrightness(NAN);
    EXPECT_FALSE(host.window()->needsRender());
}

TEST_F(UITest, CardsAndPaperKeepClearOfCaptionsAndEdges) {
    struct Case {
        CGSize size;
        std::optional<CGRect> captions;
        UIEdgeInsets safe;
        CGSize preferred{440, 375};
    };
    const Case cases[] = {{{568, 320}, {}, {}},
                          {{760, 420}, CGRect(315, 216, 445, 204), {}}, // largest part: narrow
                          {{568, 320}, CGRect(0, 260, 568, 60), {}},
                          {{760, 420}, CGRect(100, 150, 560, 260), {}, {200, 100}}, // small
                          {{320, 568}, CGRect(0, 480, 320, 60), {20, 0, 20, 0}},
                          {{1024, 768}, CGRect(100, 600, 824, 100), {}},
                          {{640, 360}, CGRect(0, 0, 640, 50), {0, 44, 0, 44}}};
    UIWindow& window = *host.window();
    const auto c = make<Controller>();
    window.presentViewController(c, false);
    const auto full = make<Controller>();
    full->setModalPresentationStyle(UIModalPresentationStyle::fullScreen);
    window.presentViewController(full, false);
    for (const Case& t : cases) {
        c->preferredSize = t.preferred;
        window.setSize(t.size);
        window.setSafeAreaInsets(t.safe);
        window.setCaptionArea(t.captions);
        window.layoutIfNeeded();
        const CGRect card = window.viewWithIdentifier("card")->frame();
        std::vector<CGRect> shown{card};
        if (t.preferred.height > 180)
            shown.push_back(full->view()->convertRectTo(full->view()->bounds(), nullptr));
        for (const CGRect& r : shown) {
            EXPECT_TRUE(CGRectInset(window.bounds(), t.safe).contains(r)) << t.size.width;
            EXPECT_GE(r.size.height, std::min(180.0, t.preferred.height));
            EXPECT_TRUE(CGRectIntersection(r, t.captions.value_or(CGRect())).isEmpty());
        }
    }
    full->dismissViewControllerAnimated(false);
    // Captions that the card does not cover neither move it nor cost a frame.
    window.setSafeAreaInsets({});
    host.resize({1024, 768}, 1);
    for (const CGFloat top : {768.0, 740.0, 735.0}) {
        host.render();
        window.setCaptionArea(CGRect(100, top, 824, 20));
        EXPECT_FALSE(window.needsRender()) << top;
        EXPECT_NEAR(window.viewWithIdentifier("card")->frame().midY(), 384, 1) << top;
    }
    // Captions that grow while a finger is down wait for it.
    for (const auto& [phase, moves] :
         {std::pair(UITouchPhase::began, false), std::pair(UITouchPhase::ended, true)}) {
        window.touch(phase, 1, {512, 384}, host.now());
        window.setCaptionArea(CGRect(100, 500, 824, 200));
        window.needsRender(), host.advance(0.1);
        EXPECT_EQ(window.needsRender(), moves);
    }
}

TEST_F(UITest, CardsKeepTheirUpperEdgeAsCaptionsChange) {
    host.resize({640, 360}, 1.25);
    UIWindow& window = *host.window();
    const auto c = make<Controller>();
    c->preferredSize = CGSize{440, 320};
    window.presentViewController(c, false);
    const UIView& card = *window.viewWithIdentifier("card");
    const auto from = [](CGFloat top) { return CGRect{0, top, 640, 100}; };
    constexpr double moves = 0.21, interrupted = 0.1, jumps = 0;
    const struct {
        std::optional<CGRect> captions;
        double seconds;
        CGRect card;
    } steps[] = {{from(260), moves, {100, 20, 440, 232}},
                 {from(280), moves, {100, 20, 440, 252}},
                 {from(240), interrupted, {100, 20, 440, 216.8}},
                 {{}, moves, {100, 20, 440, 320}},
                 {from(200), moves, {100, 8, 440, 184}}, // too low with the edge where it was
                 {from(-40), moves, {100, 68, 440, 284}},
                 {{}, moves, {100, 20, 440, 320}}, // too high with the edge where it was
                 {from(250), jumps, {100, 20, 440, 222}}};
    for (const auto& t : steps) {
        picture();
        const CGRect before = card.frame();
        setMotionSetting(t.seconds == jumps ? MotionSetting::reduced : MotionSetting::full);
        window.setCaptionArea(t.captions);
        EXPECT_EQ(window.needsRender(), t.seconds == jumps);
        EXPECT_EQ(card.frame(), t.seconds == jumps ? t.card : before);
        for (int frame = 1; frame <= t.seconds * 60; ++frame) {
            host.advance(1.0 / 60);
            const auto partial = picture();
            window.invalidate();
            ASSERT_TRUE(partial == picture()) << frame;
        }
        EXPECT_EQ(card.frame(), t.card) << t.card.size.height;
    }
    host.resize({568, 320}, 1); // a resize doesn't move it
    EXPECT_EQ(card.frame(), (CGRect{64, 8, 440, 234}));
}

} // namespace
} // namespace tesmar
