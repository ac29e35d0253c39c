// A host's whole use of a panel, in which a test may perform any action in any call.
#pragma once

#include "invariants.h"
#include "panel_fixture.h"

#include <new>

namespace tesmar {

// The host's own subclass of the panel.
struct HostPanel : TESMARViewController {
    using Base = TESMARViewController;
    void setupView() override { Base::setupView(), log->record("setupView"); }
    void resetButtonTap() override { Base::resetButtonTap(), log->record("operated"); }
    void viewWillAppear(bool a) override { Base::viewWillAppear(a), log->record("willAppear"); }
    void viewDidAppear(bool a) override { Base::viewDidAppear(a), log->record("didAppear"); }
    void viewDidDisappear(bool a) override { Base::viewDidDisappear(a), log->record("didHide"); }
    void selfDismiss() override { Base::selfDismiss(), log->record("selfDismiss"); }
    void scrollViewDidScroll(UIScrollView&) override { log->record("scroll"); }
    void scrollViewWillBeginDragging(UIScrollView& view) override {
        Base::scrollViewWillBeginDragging(view), log->record("willDrag");
    }
    void scrollViewDidEndDragging(UIScrollView& view, bool glides) override {
        Base::scrollViewDidEndDragging(view, glides), log->record(glides ? "glide" : "didDrag");
    }
    void scrollViewDidEndDecelerating(UIScrollView&) override { log->record("didGlide"); }
    std::string initialFocus() const override { return "CCSwitch"; } // the same each time
    void willHandleKey() override { Base::willHandleKey(), log->record("key"); }
    void focusDidMove(const std::string& name) override {
        Base::focusDidMove(name), log->record("focus");
    }
    std::shared_ptr<CallLog> log;
};

// A view of the host's, below the panel. It stays blank in a frame in which it throws.
struct HostView : UIView {
    void draw(CGRect rect) override {
        log->record("draw");
        UIGraphicsGetCurrentContext()->fillRect(rect);
    }
    std::shared_ptr<CallLog> log;
};

struct HostScenario {
    static constexpr CGSize kSize{340, 300}; // smaller than the panel, which scrolls

    void replaceWindow() {
        host = std::make_shared<HeadlessHost>(kSize);
        const auto view = makeWith<HostView>(&HostView::initWithFrame, CGRect({}, kSize));
        view->log = log;
        host->window()->rootViewController()->view()->addSubview(view);
    }
    void replacePanel() {
        const auto replacement = make<HostPanel>();
        replacement->log = log;
        replacement->setDelegate(log);
        replacement->setAutoHideInterval(4);
        replacement->setRememberChangedStyle(true);
        panel = replacement;
    }
    std::function<void()> recording(const char* call) const {
        return [log = log, call] { log->record(call); };
    }
    void present(const Ref<UIViewController>& controller, bool animated = true) {
        host->window()->presentViewController(controller, animated, recording("presented"));
    }
    // The host catches an error and goes on; window and picture must still be valid.
    template <class Action>
    void perform(const Action& action) {
        const auto before = host;
        try {
            action(*before);
            requireValidState(*host->window());
            return;
        } catch (const HostError&) {
        } catch (const std::bad_alloc&) {
        }
        requireValidState(*host->window());
        host->render();
        requireFullyPainted(*host->window(), host->pixels());
    }
    void wait(double seconds) {
        perform([=](HeadlessHost& h) { h.advance(seconds); });
        perform([](HeadlessHost& h) { h.render(); });
    }
    void touch(UITouchPhase phase, CGPoint at) {
        perform([=](HeadlessHost& h) { h.touch(phase, at); });
    }
    // A moment outside any callback at which the host may act; then `seconds` pass.
    void moment(const char* name, double seconds = 0) {
        const void* const before = host.get();
        perform([=, this](HeadlessHost&) { log->record(name); });
        if (host.get() != before && panel->isViewLoaded())
            requireAtRest(*panel->view()); // its touches ended with its window
        wait(seconds);
    }
    // Presents the panel, uses every kind of control, and waits until the panel hides itself; then
    // presents and dismisses it twice.
    void play() {
        perform([&](auto&) { setDiagnosticHandler([r = recording("diagnostic")](auto) { r(); }); });
        moment("created");
        perform([&](auto&) { present(panel); });
        wait(0.1);
        moment("appearing", 0.4);
        for (const char* control : {"CCSwitch", "textColorPicker.1", "fontPicker.next",
                                    "fontPicker.size", "textColorOpacityStepper", "resetButton"}) {
            perform([&](HeadlessHost& h) { h.tap(centerOf(*h.window(), control)); });
            wait(0.2);
        }
        touch(UITouchPhase::began, centerOf(*host->window(), "CCSwitch"));
        moment("pressed");
        touch(UITouchPhase::cancelled, {});
        perform([](HeadlessHost& h) { h.drag({170, 200}, {0, -80}, 0.1); });
        moment("gliding", 3);
        touch(UITouchPhase::began, {170, 200});
        touch(UITouchPhase::moved, {170, 230});
        moment("dragging", 0.3);
        touch(UITouchPhase::ended, {170, 230});
        perform([](HeadlessHost& h) { h.window()->wheel({170, 200}, {0, 9}, h.now()); });
        moment("wheeled");
        for (const UIKey key : {UIKey::down, UIKey::down, UIKey::select, UIKey::increment})
            perform([=](HeadlessHost& h) { h.key(key); });
        moment("keys");
        for (const double width : {60.0, kSize.width}) { // the first causes a diagnostic
            perform([=](HeadlessHost& h) { h.resize({width, kSize.height}, 1); });
            wait(0);
        }
        wait(6);
        for (const bool animated : {true, false}) {
            perform([&](auto&) { present(panel, animated); });
            perform(
                [&](auto&) { panel->dismissViewControllerAnimated(true, recording("dismissed")); });
            moment("hiding", 1);
        }
        setDiagnosticHandler({});
    }
    // Dismisses and releases everything, and checks that nothing is left.
    void end() {
        const WeakRef<UIViewController> released = panel;
        log->action = {};
        dismissAll(*host->window(), [this](double seconds) { host->advance(seconds); });
        host->advance(30);
        if (panel)
            requireAtRest(*panel->view());
        panel.reset();
        requireIdle(*host->window());
        host->render();
        requireFullyPainted(*host->window(), host->pixels());
        EXPECT_TRUE(released.expired());
    }

    std::shared_ptr<CallLog> log = std::make_shared<CallLog>();
    std::shared_ptr<HeadlessHost> host;
    Ref<TESMARViewController> panel;
};

// The value of TESMAR_SOAK: how many times as long the long form of a test is.
inline int soakFactor() {
    const char* const factor = std::getenv("TESMAR_SOAK");
    return factor ? std::max(1, std::atoi(factor)) : 1;
}

} // namespace tesmar
