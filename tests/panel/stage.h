// A host's whole dealings with a panel, in which a test may do whatever it likes in any call.
#pragma once

#include "panel_fixture.h"
#include "soundness.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIControl.h"

#include <functional>
#include <new>

namespace tesmar {

struct HostError : std::exception {};

// Writes down the calls that a host gets, and acts in the first one of a kind.
struct Ears {
    void hear(const std::string& call) {
        if (!calls.ends_with(call + " ")) // scrolling and drawing come in bursts
            calls += call + " ";
        if (call == where && action)
            std::exchange(action, {})();
    }
    std::string calls, where;
    std::function<void()> action;
};

// What a host has wired to one of the panel's controls.
class HostTarget : public NSObject {
    TESMAR_CLASS

  public:
    void operated() { ears->hear("operated"); }
    std::shared_ptr<Ears> ears;
};
inline Class& HostTarget::classObject() {
    static Class type("HostTarget", &NSObject::classObject(), allocator<HostTarget>(),
                      {method<&HostTarget::operated>("operated")});
    return type;
}

// A panel of the host's own kind.
struct HostPanel : TESMARViewController {
    using Base = TESMARViewController;
    void setupView() override {
        Base::setupView();
        target->ears = ears;
        as<UIControl>(ref(view()->viewWithIdentifier("resetButton")))
            ->addTarget(target, Selector("operated"), UIControlEventTouchUpInside);
        ears->hear("setupView");
    }
    void viewWillAppear(bool a) override { Base::viewWillAppear(a), ears->hear("willAppear"); }
    void viewDidAppear(bool a) override { Base::viewDidAppear(a), ears->hear("didAppear"); }
    void viewDidDisappear(bool a) override { Base::viewDidDisappear(a), ears->hear("hasGone"); }
    void selfDismiss() override { Base::selfDismiss(), ears->hear("selfDismiss"); }
    void scrollViewDidScroll(UIScrollView&) override { ears->hear("scroll"); }
    void scrollViewWillBeginDragging(UIScrollView& view) override {
        Base::scrollViewWillBeginDragging(view), ears->hear("willDrag");
    }
    void scrollViewDidEndDragging(UIScrollView& view, bool glides) override {
        Base::scrollViewDidEndDragging(view, glides), ears->hear(glides ? "didThrow" : "didDrag");
    }
    void scrollViewDidEndDecelerating(UIScrollView&) override { ears->hear("didStop"); }
    std::shared_ptr<Ears> ears = std::make_shared<Ears>();
    Ref<HostTarget> target = make<HostTarget>();
};

struct Delegate : TESMARViewControllerDelegate {
    explicit Delegate(std::shared_ptr<Ears> e) : ears(std::move(e)) {}
    void CCSwitchValueChanged(bool) override { ears->hear("switch"); }
    void CCStyleAttributesChanged(const Ref<NSDictionary>&) override { ears->hear("style"); }
    void CCViewControllerWillDisappear() override { ears->hear("willDisappear"); }
    const std::shared_ptr<Ears> ears;
};

// A view of the host's own, below the panel.
struct HostView : UIView {
    void draw(CGRect) override { ears->hear("draw"); }
    std::shared_ptr<Ears> ears;
};

struct Stage {
    static constexpr CGSize kSize{340, 300}; // the panel has to scroll

    void replaceWindow() {
        host = std::make_shared<HeadlessHost>(kSize);
        const auto view = makeWith<HostView>(&HostView::initWithFrame, CGRect({}, kSize));
        view->ears = ears;
        host->window()->rootViewController()->view()->addSubview(view);
    }
    void replacePanel() {
        const auto fresh = make<HostPanel>();
        fresh->ears = ears;
        fresh->setDelegate(std::make_shared<Delegate>(ears));
        fresh->setAutoHideInterval(4);
        fresh->setRememberChangedStyle(true);
        panel = fresh;
    }
    // A host that is told of an error goes on; what it shows is none the worse.
    template <class Deed>
    void carryOn(const Deed& deed) {
        const auto before = host;
        try {
            deed(*before);
            requireLegalState(*host->window());
            return;
        } catch (const HostError&) {
        } catch (const std::bad_alloc&) {
        }
        requireLegalState(*host->window());
        host->render();
        requireSamePicture(*host->window(), host->pixels());
    }
    void wait(double seconds) {
        carryOn([=](HeadlessHost& h) { h.advance(seconds); });
        carryOn([](HeadlessHost& h) { h.render(); });
    }
    CGPoint place(const char* control) const {
        const UIView* const view = host->window()->viewWithIdentifier(control);
        return view ? view->convertRectTo(view->bounds(), nullptr).center() : CGPoint{-99, -99};
    }
    void touch(UITouchPhase phase, CGPoint at) {
        carryOn([=](HeadlessHost& h) { h.touch(phase, at); });
    }
    // The host may act of its own accord, too.
    void moment(const char* name) {
        const void* const before = host.get();
        carryOn([=, this](HeadlessHost&) { ears->hear(name); });
        if (host.get() != before && panel->isViewLoaded())
            requireRest(*panel->view()); // its window went, and every finger with it
    }
    // Presents, uses everything, and waits until the panel has gone; twice dismisses it.
    void play() {
        const auto hears = [e = ears](const char* call) { return [=] { e->hear(call); }; };
        carryOn([&](auto&) {
            setDiagnosticHandler([e = ears](std::string_view) { e->hear("diagnostic"); });
        });
        moment("made");
        carryOn([&](auto& h) { h.window()->presentViewController(panel, true, hears("stands")); });
        wait(0.1);
        moment("arriving");
        wait(0.4);
        for (const char* control : {"CCSwitch", "textColorPicker.1", "fontPicker.next",
                                    "fontPicker.size", "textColorOpacityStepper", "resetButton"}) {
            carryOn([&](HeadlessHost& h) { h.tap(place(control)); });
            wait(0.2);
        }
        touch(UITouchPhase::began, place("CCSwitch"));
        moment("pressed");
        touch(UITouchPhase::cancelled, {});
        carryOn([](HeadlessHost& h) { h.drag({170, 200}, {0, -80}, 0.1); });
        moment("gliding");
        wait(3);
        touch(UITouchPhase::began, {170, 200});
        touch(UITouchPhase::moved, {170, 230});
        moment("dragging");
        wait(0.3);
        touch(UITouchPhase::ended, {170, 230});
        carryOn([](HeadlessHost& h) { h.window()->wheel({170, 200}, {0, 9}, h.now()); });
        moment("wheeled");
        for (const double width : {60.0, kSize.width}) { // the first gives reason for a diagnostic
            carryOn([=](HeadlessHost& h) { h.resize({width, kSize.height}, 1); });
            wait(0);
        }
        wait(6);
        for (const bool animated : {true, false}) {
            carryOn([&](auto& h) { h.window()->presentViewController(panel, animated); });
            carryOn([&](auto&) { panel->dismissViewControllerAnimated(true, hears("left")); });
            moment("leaving");
            wait(1);
        }
        setDiagnosticHandler({});
    }
    // The host puts everything away; nothing may be left.
    void clear() {
        const WeakRef<UIViewController> watched = panel;
        ears->action = {};
        if (panel)
            panel->setDelegate(nullptr);
        while (const auto top = host->window()->presentedViewController()) {
            top->dismissViewControllerAnimated(false);
            host->advance(1);
        }
        host->window()->cancelTouches(0);
        host->advance(30);
        if (panel)
            requireRest(*panel->view());
        panel.reset();
        requireRest(*host->window());
        EXPECT_FALSE(NSRunLoop::mainRunLoop().nextDeadline());
        host->render();
        requireSamePicture(*host->window(), host->pixels());
        EXPECT_TRUE(watched.expired());
    }

    std::shared_ptr<Ears> ears = std::make_shared<Ears>();
    std::shared_ptr<HeadlessHost> host;
    Ref<TESMARViewController> panel;
};

// How often the long form goes round where the short one does once.
inline int soakFactor() {
    const char* const factor = std::getenv("TESMAR_SOAK");
    return factor ? std::max(1, std::atoi(factor)) : 1;
}

} // namespace tesmar
