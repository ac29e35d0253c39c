#include "fixture.h"

#include "tesmar/platform/ui/UIScrollView.h"

namespace tesmar {
namespace {

class Controller : public UIViewController {
  public:
    explicit Controller(std::string name = "") : name_(std::move(name)) {}
    void viewDidLoad() override { note("load"); }
    void viewWillAppear(bool) override { note("will"); }
    void viewDidAppear(bool) override { note("did"); }
    void viewWillDisappear(bool) override { note("willnot"); }
    void viewDidDisappear(bool) override { note("gone"); }

    std::string* log = nullptr;

  private:
    void note(const std::string& what) {
        if (log)
            *log += name_ + what + " ";
    }
    std::string name_;
};

class PresentationTest : public UITest {
  protected:
    Ref<Controller> controller(const std::string& name = "") {
        auto c = std::make_shared<Controller>(name);
        c->init();
        c->log = &log;
        return c;
    }
    std::string take() { return std::exchange(log, {}); }
    UIWindow& window() { return *host.window(); }

    std::string log;
};

TEST_F(PresentationTest, AppearsAndDisappearsInOrder) {
    const auto c = controller();
    window().presentViewController(c, true, [&] { log += "done "; });
    EXPECT_EQ(take(), "load will ");
    host.advance(1);
    EXPECT_EQ(take(), "did done ");
    EXPECT_EQ(c->presentingViewController(), window().rootViewController());
    c->dismissViewControllerAnimated(true, [&] { log += "done "; });
    c->dismissViewControllerAnimated(true); // already on its way
    EXPECT_EQ(take(), "willnot ");
    EXPECT_TRUE(c->isBeingDismissed());
    host.advance(1);
    EXPECT_EQ(take(), "gone done ");
    EXPECT_EQ(window().presentedViewController(), nullptr);
    c->dismissViewControllerAnimated(true); // not presented
    EXPECT_EQ(take(), "");
    EXPECT_EQ(NSRunLoop::mainRunLoop().nextDeadline(), std::nullopt);
}

TEST_F(PresentationTest, CanBeInterruptedAtAnyPoint) {
    const auto c = controller();
    window().presentViewController(c, true);
    host.advance(0.1);
    c->dismissViewControllerAnimated(true);
    host.advance(0.1);
    EXPECT_EQ(take(), "load will willnot ");
    window().presentViewController(c, true); // comes back from where it stands
    EXPECT_EQ(take(), "gone will ");
    host.advance(1);
    EXPECT_EQ(take(), "did ");
    setMotionSetting(MotionSetting::reduced);
    c->dismissViewControllerAnimated(true);
    window().presentViewController(c, true);
    EXPECT_EQ(take(), "willnot gone will did ");
}

TEST_F(PresentationTest, ControllersStack) {
    const auto a = controller("a."), b = controller("b.");
    window().presentViewController(a, false);
    window().presentViewController(b, false);
    EXPECT_EQ(b->presentingViewController(), a);
    take();
    window().key(UIKey::escape, host.now());
    host.advance(1);
    EXPECT_EQ(take(), "b.willnot b.gone ");
    window().presentViewController(b, false);
    take();
    window().rootViewController()->dismissViewControllerAnimated(
        false); // what it presents, and above
    EXPECT_EQ(take(), "b.willnot b.gone a.willnot a.gone ");
}

TEST_F(PresentationTest, ACardStandsClearOfCaptionsAndEdges) {
    struct Case {
        CGSize size;
        std::optional<CGRect> captions;
        UIEdgeInsets safe;
    };
    const Case cases[] = {{{568, 320}, {}, {}},
                          {{568, 320}, CGRect(0, 260, 568, 60), {}},
                          {{320, 568}, CGRect(0, 480, 320, 60), {20, 0, 20, 0}},
                          {{1024, 768}, CGRect(100, 600, 824, 100), {}},
                          {{640, 360}, CGRect(0, 0, 640, 50), {0, 44, 0, 44}}};
    const auto c = controller();
    const auto scroll = make<UIScrollView>();
    scroll->setTranslatesAutoresizingMaskIntoConstraints(false);
    const auto content = make<UIView>();
    content->setTranslatesAutoresizingMaskIntoConstraints(false);
    scroll->addSubview(content);
    c->view()->addSubview(scroll);
    const UIView::NamedViews views{{"scroll", scroll}, {"content", content}};
    c->view()->addConstraintsWithVisualFormats({{"|-20-[scroll]-20-|"}, {"V:|-60-[scroll]-15-|"}},
                                               views);
    scroll->addConstraintsWithVisualFormats({{"|[content(400)]|"}, {"V:|[content(300)]|"}}, views);
    window().presentViewController(c, false);
    for (const Case& t : cases) {
        window().setSize(t.size);
        window().setSafeAreaInsets(t.safe);
        window().setCaptionArea(t.captions);
        window().layoutIfNeeded();
        const CGRect card = window().viewWithIdentifier("card")->frame();
        const CGRect room = CGRectInset(window().bounds(), t.safe);
        EXPECT_TRUE(room.contains(card)) << t.size.width;
        EXPECT_LE(card.size.width, 440);
        EXPECT_LE(card.size.height, 375);
        EXPECT_GE(card.size.height, 180);
        if (t.captions) {
            EXPECT_TRUE(CGRectIntersection(card, *t.captions).isEmpty()) << t.size.width;
        }
    }
    // Captions that the card does not cover move nothing, and cost nothing.
    window().setSafeAreaInsets({});
    for (const CGFloat top : {768.0, 740.0, 735.0}) {
        window().setSize({1024, 768});
        window().setCaptionArea(CGRect(100, top, 824, 20));
        if (top < 768) {
            EXPECT_FALSE(window().needsRender()) << top;
        }
        host.resize({1024, 768}, 1), host.render();
        EXPECT_NEAR(window().viewWithIdentifier("card")->frame().midY(), 384, 1) << top;
    }
}

} // namespace
} // namespace tesmar
