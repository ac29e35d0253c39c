// Whatever a host does in whatever call, the panel stays sound.
#include "panel_fixture.h"

#include <functional>
#include <stdexcept>

namespace tesmar {
namespace {

struct Stage {
    explicit Stage(CGSize size) : host(size) {}
    HeadlessHost host;
    Ref<TESMARViewController> panel = make<TESMARViewController>();
};

class Misbehaving : public TESMARViewControllerDelegate {
  public:
    void CCSwitchValueChanged(bool) override { act("switch"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>& style) override {
        seen = style;
        act("style");
    }
    void CCViewControllerWillDisappear() override { act("disappear"); }

    void act(const std::string& call) {
        ++calls;
        if (call == where && action)
            std::exchange(action, {})();
    }

    std::string where;
    std::function<void()> action;
    Ref<NSDictionary> seen;
    int calls = 0;
};

class CallbacksTest : public PanelTest {
  protected:
    // Presents, operates everything, dismisses.
    static void play(Stage& stage) {
        const auto window = stage.host.window();
        const auto panel = stage.panel;
        window->presentViewController(panel, true);
        stage.host.advance(0.5);
        for (const char* control : {"CCSwitch", "textColorPicker.5", "fontPicker.next",
                                    "resetButton", "backgroundColorPicker.1"}) {
            const UIView* view = window->viewWithIdentifier(control);
            if (view && view->window())
                stage.host.tap(view->convertRectTo(view->bounds(), nullptr).center());
        }
        stage.host.drag({200, 200}, {0, -60}, 0.2);
        panel->dismissViewControllerAnimated(true);
        stage.host.advance(3);
        stage.host.render();
    }
};

TEST_F(CallbacksTest, AHostMayDoAnythingInAnyCall) {
    setDiagnosticHandler([](std::string_view message) {
        EXPECT_NE(message.find("presented already"), std::string_view::npos) << message;
    });
    using Action = std::function<void(std::shared_ptr<Stage>)>;
    const std::pair<const char*, Action> actions[] = {
        {"dismiss", [](auto s) { s->panel->dismissViewControllerAnimated(true); }},
        {"dismiss at once", [](auto s) { s->panel->dismissViewControllerAnimated(false); }},
        {"present again", [](auto s) { s->host.window()->presentViewController(s->panel, true); }},
        {"clear the delegate", [](auto s) { s->panel->setDelegate(nullptr); }},
        {"release the panel", [](auto s) { s->panel = make<TESMARViewController>(); }},
        {"assign a style",
         [](auto s) { s->panel->setCCStyleAttributes(make<NSMutableDictionary>()); }},
        {"reset", [](auto s) { s->panel->resetButtonTap(); }},
        {"arm", [](auto s) { s->panel->setAutoHideInterval(0.01), s->panel->fontChanged(); }},
        {"resize",
         [](auto s) {
             s->host.resize({320, 480}, 2);
         }},
        {"remove the view", [](auto s) { s->panel->view()->removeFromSuperview(); }},
        {"recurse", [](auto s) { s->panel->ccColorChanged(); }},
        {"let time pass", [](auto s) { s->host.advance(10); }}};
    for (const char* where : {"switch", "style", "disappear"})
        for (const auto& [name, action] : actions) {
            SCOPED_TRACE(std::string(name) + " in " + where);
            const auto stage = std::make_shared<Stage>(CGSize{568, 400});
            const auto delegate = std::make_shared<Misbehaving>();
            delegate->where = where;
            delegate->action = [&, act = action] { act(stage); };
            stage->panel->setDelegate(delegate);
            stage->panel->setRememberChangedStyle(true);
            play(*stage);
            EXPECT_FALSE(delegate->action); // it was called
            EXPECT_GT(delegate->calls, 0);
            const auto panel = stage->panel;
            stage->panel->setDelegate(nullptr);
            panel->dismissViewControllerAnimated(false);
            stage->host.advance(20);
            EXPECT_EQ(panel->presentingViewController(), nullptr);
        }
}

TEST_F(CallbacksTest, AnExceptionPassesThroughAndLeavesThePanelWhole) {
    Stage stage({568, 400});
    const auto delegate = std::make_shared<Misbehaving>();
    stage.panel->setDelegate(delegate);
    stage.host.window()->presentViewController(stage.panel, false);
    delegate->where = "style";
    delegate->action = [] { throw std::runtime_error("host"); };
    EXPECT_THROW(tap(stage.host, "textColorPicker.5"), std::runtime_error);
    tap(stage.host, "textColorPicker.6");
    EXPECT_EQ(delegate->calls, 2);
    EXPECT_TRUE(stage.panel->CCStyleAttributes()
                    ->objectForKey(NSForegroundColorAttributeName)
                    ->isEqual(UIColor::blueColor().get()));
}

TEST_F(CallbacksTest, AnExceptionOnTheWayOutDoesNotKeepThePanel) {
    Stage stage({568, 400});
    const auto delegate = std::make_shared<Misbehaving>();
    stage.panel->setDelegate(delegate);
    stage.host.window()->presentViewController(stage.panel, false);
    delegate->where = "disappear";
    delegate->action = [] { throw std::runtime_error("host"); };
    EXPECT_THROW(stage.panel->dismissViewControllerAnimated(true), std::runtime_error);
    stage.host.advance(1);
    EXPECT_EQ(stage.host.window()->presentedViewController(), nullptr);
    // A completion that clears the reference by which the host presents again.
    auto panel = stage.panel;
    stage.host.window()->presentViewController(panel, false);
    panel->dismissViewControllerAnimated(true, [&] { panel.reset(); });
    stage.host.window()->presentViewController(panel, true);
    stage.host.advance(1);
    EXPECT_EQ(stage.host.window()->presentedViewController(), stage.panel);
}

// The style is saved before the delegate hears of it, and the dictionary it gets is the live one.
TEST_F(CallbacksTest, SavesFirstThenTells) {
    Stage stage({568, 400});
    const auto delegate = std::make_shared<Misbehaving>();
    stage.panel->setDelegate(delegate);
    stage.panel->setRememberChangedStyle(true);
    stage.host.window()->presentViewController(stage.panel, false);
    Ref<NSDictionary> stored;
    delegate->where = "style";
    delegate->action = [&] { stored = TESMARConfig::sessionClosedCaptureStyle(); };
    tap(stage.host, "textColorPicker.5");
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->isEqual(delegate->seen.get()));
    EXPECT_EQ(delegate->seen, stage.panel->CCStyleAttributes());
}

TEST_F(CallbacksTest, APanelReleasedAtAnyStageLeavesNothingBehind) {
    for (const double seconds : {0.0, 0.1, 0.29, 0.5, 2.0}) {
        Stage stage({568, 400});
        stage.panel->setAutoHideInterval(1);
        const WeakRef<TESMARViewController> watched = stage.panel;
        stage.host.window()->presentViewController(stage.panel, true);
        stage.host.advance(seconds);
        stage.panel.reset();
        EXPECT_EQ(watched.expired(), seconds >= 2); // the window keeps it until it has left
        stage.host.advance(5);
        EXPECT_TRUE(watched.expired()) << seconds;
    }
}

} // namespace
} // namespace tesmar
