// Whatever a host does in whatever call, the panel stays sound: every call that a host gets, times
// everything that it might do there.
#include "panel_fixture.h"
#include "soundness.h"

#include <functional>
#include <stdexcept>

namespace tesmar {
namespace {

struct HostError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Writes down the calls that a host gets, and acts in the first one of a kind.
struct Ears {
    void hear(const std::string& call) {
        calls += call + " ";
        if (call == where && action)
            std::exchange(action, {})();
    }
    std::string calls;
    std::string where;
    std::function<void()> action;
};

// A panel of the host's own kind.
class HostPanel : public TESMARViewController {
  public:
    void setupView() override {
        TESMARViewController::setupView();
        ears->hear("setupView");
    }
    void viewWillAppear(bool animated) override {
        TESMARViewController::viewWillAppear(animated);
        ears->hear("willAppear");
    }
    void viewDidAppear(bool animated) override {
        TESMARViewController::viewDidAppear(animated);
        ears->hear("didAppear");
    }
    void viewDidDisappear(bool animated) override {
        TESMARViewController::viewDidDisappear(animated);
        ears->hear("didDisappear");
    }
    void selfDismiss() override {
        TESMARViewController::selfDismiss();
        ears->hear("selfDismiss");
    }
    void scrollViewDidScroll(UIScrollView&) override {
        if (!ears->calls.ends_with("scroll "))
            ears->hear("scroll");
    }
    void scrollViewWillBeginDragging(UIScrollView& view) override {
        TESMARViewController::scrollViewWillBeginDragging(view);
        ears->hear("willDrag");
    }
    void scrollViewDidEndDragging(UIScrollView& view, bool willDecelerate) override {
        TESMARViewController::scrollViewDidEndDragging(view, willDecelerate);
        ears->hear(willDecelerate ? "didThrow" : "didDrag");
    }
    void scrollViewDidEndDecelerating(UIScrollView&) override { ears->hear("didStop"); }

    std::shared_ptr<Ears> ears = std::make_shared<Ears>();
};

class Delegate : public TESMARViewControllerDelegate {
  public:
    explicit Delegate(std::shared_ptr<Ears> ears) : ears_(std::move(ears)) {}
    void CCSwitchValueChanged(bool) override { ears_->hear("switch"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { ears_->hear("style"); }
    void CCViewControllerWillDisappear() override { ears_->hear("willDisappear"); }

  private:
    std::shared_ptr<Ears> ears_;
};

// A view of the host's own, below the panel.
class HostView : public UIView {
  public:
    void draw(CGRect) override {
        if (!ears->calls.ends_with("draw "))
            ears->hear("draw");
    }
    std::shared_ptr<Ears> ears;
};

constexpr CGSize kSize{340, 300}; // the panel has to scroll

struct Stage {
    Stage() { replaceWindow(), replacePanel(); }

    void replaceWindow() {
        host = std::make_shared<HeadlessHost>(kSize);
        const auto view = makeWith<HostView>(&HostView::initWithFrame, CGRect({}, kSize));
        view->ears = ears;
        host->window()->rootViewController()->view()->addSubview(view);
    }
    void replacePanel() {
        auto fresh = make<HostPanel>();
        fresh->ears = ears;
        fresh->setDelegate(std::make_shared<Delegate>(ears));
        panel = fresh;
    }
    // What a host does when it has been told of an error: it goes on.
    template <class Deed>
    void carryOn(Deed deed) {
        try {
            deed(*std::shared_ptr(host));
        } catch (const HostError&) {
        }
        requireLegalState(*host->window());
    }
    void tap(const char* control) {
        carryOn([&](HeadlessHost& h) {
            if (const UIView* view = h.window()->viewWithIdentifier(control))
                h.tap(view->convertRectTo(view->bounds(), nullptr).center());
        });
        carryOn([](HeadlessHost& h) { h.advance(0.2); });
        carryOn([](HeadlessHost& h) { h.render(); });
    }
    // Presents, uses everything, and waits until the panel has gone.
    void play() {
        const auto hears = [e = ears](const char* call) { return [=] { e->hear(call); }; };
        setDiagnosticHandler([e = ears](std::string_view) { e->hear("diagnostic"); });
        panel->setAutoHideInterval(4);
        carryOn([&](HeadlessHost& h) {
            h.window()->presentViewController(panel, true, hears("presented"));
        });
        carryOn([](HeadlessHost& h) { h.advance(0.5); });
        for (const char* control : {"CCSwitch", "textColorPicker.1", "fontPicker.next",
                                    "textColorOpacityStepper", "resetButton"})
            tap(control);
        carryOn([](HeadlessHost& h) { h.drag({170, 200}, {0, -80}, 0.1); });
        carryOn([](HeadlessHost& h) { h.advance(3); });
        carryOn([](HeadlessHost& h) { h.touch(UITouchPhase::began, {170, 200}); });
        carryOn([](HeadlessHost& h) { h.touch(UITouchPhase::moved, {170, 230}); });
        carryOn([](HeadlessHost& h) { h.advance(0.3); });
        carryOn([](HeadlessHost& h) { h.touch(UITouchPhase::ended, {170, 230}); });
        carryOn([](HeadlessHost& h) { h.window()->wheel({170, 200}, {0, 9}, h.now()); });
        // A width that no panel fits into gives reason for a diagnostic.
        carryOn([](HeadlessHost& h) { h.resize({60, 300}, 1); });
        carryOn([](HeadlessHost& h) { h.render(); });
        carryOn([](HeadlessHost& h) { h.resize(kSize, 1); });
        carryOn([](HeadlessHost& h) { h.advance(6); });
        carryOn(
            [&](HeadlessHost&) { panel->dismissViewControllerAnimated(true, hears("dismissed")); });
        carryOn([](HeadlessHost& h) { h.advance(1); });
        carryOn([&](HeadlessHost& h) {
            h.window()->presentViewController(panel, false);
            panel->dismissViewControllerAnimated(true, hears("dismissed"));
        });
        carryOn([](HeadlessHost& h) { h.advance(1); });
        carryOn([](HeadlessHost& h) { h.render(); });
        setDiagnosticHandler({});
    }
    // The host puts everything away; nothing may be left.
    void clear() {
        const WeakRef<UIViewController> watched = panel;
        ears->action = {};
        panel->setDelegate(nullptr);
        while (const auto top = host->window()->presentedViewController()) {
            top->dismissViewControllerAnimated(false);
            host->advance(1);
        }
        host->window()->cancelTouches(0);
        panel.reset();
        host->advance(30);
        requireRest(*host->window());
        host->render();
        requireSamePicture(*host->window(), host->pixels());
        EXPECT_TRUE(watched.expired());
    }

    std::shared_ptr<Ears> ears = std::make_shared<Ears>();
    std::shared_ptr<HeadlessHost> host;
    Ref<TESMARViewController> panel;
};

using Action = std::function<void(Stage&)>;
const std::pair<const char*, Action> kActions[] = {
    {"throw", [](Stage&) { throw HostError("host"); }},
    {"dismiss", [](Stage& s) { s.panel->dismissViewControllerAnimated(true); }},
    {"dismiss at once", [](Stage& s) { s.panel->dismissViewControllerAnimated(false); }},
    {"present again", [](Stage& s) { s.host->window()->presentViewController(s.panel, true); }},
    {"present another",
     [](Stage& s) { s.host->window()->presentViewController(make<TESMARViewController>(), true); }},
    {"release the panel", [](Stage& s) { s.replacePanel(); }},
    {"destroy the window", [](Stage& s) { s.replaceWindow(); }},
    {"destroy both", [](Stage& s) { s.replaceWindow(), s.replacePanel(); }},
    {"resize",
     [](Stage& s) {
         s.host->resize({320, 480}, 2);
     }},
    {"clear the delegate", [](Stage& s) { s.panel->setDelegate(nullptr); }},
    {"assign a style",
     [](Stage& s) { s.panel->setCCStyleAttributes(make<NSMutableDictionary>()); }},
    {"set everything",
     [](Stage& s) {
         s.panel->setAutoHideInterval(0.01);
         s.panel->setRememberChangedStyle(true);
         s.panel->setCCEnabled(true);
         s.panel->setView(s.panel->view());
     }},
    {"reset", [](Stage& s) { s.panel->resetButtonTap(); }},
    {"remove the view", [](Stage& s) { s.panel->view()->removeFromSuperview(); }},
    {"lose the touches", [](Stage& s) { s.host->window()->cancelTouches(s.host->now()); }},
    {"touch",
     [](Stage& s) {
         s.host->tap({60, 150}), s.host->tap({250, 150}, 7);
     }},
    {"let time pass", [](Stage& s) { s.host->advance(10); }},
    {"draw", [](Stage& s) { s.host->window()->invalidate(), s.host->render(); }},
};
const char* const kCalls[] = {
    "setupView", "willAppear",  "didAppear",     "presented",    "switch",   "style",
    "willDrag",  "scroll",      "didThrow",      "didStop",      "didDrag",  "diagnostic",
    "draw",      "selfDismiss", "willDisappear", "didDisappear", "dismissed"};

class CallbacksTest : public PanelTest {};

TEST_F(CallbacksTest, AHostMayDoAnythingInAnyCall) {
    Stage sane;
    sane.play();
    const std::string usual = sane.ears->calls;
    for (const char* const where : kCalls)
        for (const auto& [name, action] : kActions) {
            if (where == std::string_view("draw") && name == std::string_view("resize"))
                continue; // it would take away the pixels that are being painted on
            SCOPED_TRACE(std::string(name) + " in " + where);
            try {
                Stage stage;
                stage.ears->where = where;
                stage.ears->action = [&, act = action] { act(stage); };
                stage.play();
                EXPECT_FALSE(stage.ears->action) << "it was never called";
                stage.clear();
                // The window is as good as new.
                stage.ears->calls.clear();
                stage.replacePanel();
                stage.host->resize(kSize, 1);
                stage.play();
                EXPECT_EQ(stage.ears->calls, usual);
                stage.clear();
            } catch (const std::exception& fault) {
                ADD_FAILURE() << fault.what();
            }
        }
}

// The style is saved before the delegate hears of it, and a delegate that throws changes neither.
TEST_F(CallbacksTest, SavesFirstThenTells) {
    Stage stage;
    stage.panel->setRememberChangedStyle(true);
    stage.host->window()->presentViewController(stage.panel, false);
    Ref<NSDictionary> stored;
    stage.ears->where = "style";
    stage.ears->action = [&] {
        stored = TESMARConfig::sessionClosedCaptureStyle();
        throw HostError("host");
    };
    EXPECT_THROW(tap(*stage.host, "textColorPicker.5"), HostError);
    ASSERT_TRUE(stored);
    EXPECT_TRUE(stored->isEqual(stage.panel->CCStyleAttributes().get()));
    EXPECT_TRUE(
        UIColor::redColor()->isEqual(stored->objectForKey(NSForegroundColorAttributeName).get()));
}

} // namespace
} // namespace tesmar
