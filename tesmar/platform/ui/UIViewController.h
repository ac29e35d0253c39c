// Owns a view, is notified when it appears and disappears, and can be presented over a window's
// content. Main thread only.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/ui/UIView.h"

#include <functional>
#include <optional>
#include <string>

namespace tesmar {

class NSBundle;
class PresentationStack;
struct UIAccessibleElement;

enum class UIModalPresentationStyle {
    card,       // the view is on a rounded card over what the host draws below
    fullScreen, // the view fills the window's safe area, on paper; where there is room, the paper
                // keeps clear of the captions
};

class TESMAR_API UIViewController : public NSObject {
    TESMAR_CLASS

  public:
    using Completion = std::function<void()>;

    UIViewController();
    ~UIViewController() override;

    // `nibName` is the interface file that loadView reads, in `bundle` (null: the main bundle);
    // without one loadView makes a plain view.
    virtual bool initWithNibName(const std::optional<std::string>& nibName,
                                 const Ref<NSBundle>& bundle);
    // Reads "nibName".
    bool initWithCoder(NSCoder& coder) override;
    bool init() override { return initWithNibName(std::nullopt, nullptr); }

    // Loads the view at the first call. Passes exceptions of loadView on; the next call then loads
    // again.
    const Ref<UIView>& view();
    void setView(const Ref<UIView>& view);
    bool isViewLoaded() const { return view_ != nullptr; }

    // Makes the view: from the interface file, or a plain one. An override calls setView, or this
    // function; one that sets no view is a fatal error.
    virtual void loadView();
    virtual void viewDidLoad() {}
    // Called before and after each layout of the view and its descendants, whenever a size, a
    // constraint or setNeedsLayout() requires one. The first may still change constraints; the
    // second finds the new frames, and its changes are laid out at once. Only called while the view
    // is the root of a layout (see UIView::layoutIfNeeded), as that of a controller on a window is.
    virtual void viewWillLayoutSubviews() {}
    virtual void viewDidLayoutSubviews() {}
    // Called in this order, at most once per appearance; an interrupted appearance skips those not
    // yet reached.
    // A full-screen controller that is presented above makes those below disappear and, when it is
    // dismissed, appear again; a card does not.
    virtual void viewWillAppear(bool /*animated*/) {}
    virtual void viewDidAppear(bool /*animated*/) {}
    virtual void viewWillDisappear(bool /*animated*/) {}
    virtual void viewDidDisappear(bool /*animated*/) {}
    // Called before the window handles a key other than back, while this controller is the topmost:
    // for example to restart an idle timer. An override may do anything, including dismissing the
    // controller.
    virtual void willHandleKey() {}
    // A key has shown or moved the focus, or the next frame has found the focused control gone and
    // the focus elsewhere. `identifier` is that of UIFocus. An override may do anything.
    virtual void focusDidMove(const std::string& /*identifier*/) {}
    // The identifier, as of UIFocus, where the focus starts each time the controller is presented;
    // an empty or unknown one means the first place in reading order.
    virtual std::string initialFocus() const { return {}; }

    // For the host to call when the process runs out of memory.
    virtual void didReceiveMemoryWarning() {}

    // The size, in points, that a card should have; std::nullopt, the default, for all of the room.
    // Called after the view has been laid out in that room, so that an override may measure its
    // subviews, and again when the room or the constraints of the view have changed.
    virtual std::optional<CGSize> preferredContentSize() { return std::nullopt; }

    // Called while this controller is presented, after the first layout of its view and whenever
    // the window's size, safe area or caption area (UIWindow::avoidedArea) has changed. An override
    // may change constraints, which count before the next frame.
    virtual void surroundingsDidChange() {}

    // Completes what a view of this controller told assistive technologies about itself (see
    // UIView::describe): names it, for example. Called for every visible view, and with view() for
    // the controller as a dialog.
    virtual void describe(const UIView& /*view*/, UIAccessibleElement& /*element*/) {}
    // A screen reader's bridge begins or ceases to observe the window that presents the controller.
    virtual void accessibilityObserverChanged() {}

    // Initially a card. A change counts from the next presentation on.
    UIModalPresentationStyle modalPresentationStyle() const { return style_; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { style_ = style; }

    // Presents `controller` over this one, which must be a window's root controller or presented
    // itself; otherwise, or when `controller` is presented already, it only reports a diagnostic. A
    // controller that is being dismissed is presented again from where it is. The window owns it
    // until it is dismissed. `completion` runs after viewDidAppear. Null is ignored.
    void presentViewController(const Ref<UIViewController>& controller, bool animated,
                               Completion completion = {});
    // Dismisses the controller that this one presents or, when there is none, this one, together
    // with everything presented above it. Does nothing when neither is presented, or when the
    // dismissal is under way already. `completion` runs after viewDidDisappear.
    void dismissViewControllerAnimated(bool animated, Completion completion = {});
    // Null when there is none.
    Ref<UIViewController> presentedViewController() const;
    Ref<UIViewController> presentingViewController() const;
    bool isBeingDismissed() const;

  private:
    friend class PresentationStack;

    void adoptView(const Ref<UIView>& view);

    Ref<UIView> view_;
    bool loading_ = false;
    std::optional<std::string> nibName_;
    Ref<NSBundle> bundle_;
    UIModalPresentationStyle style_ = UIModalPresentationStyle::card;
    PresentationStack* stack_ = nullptr; // while this is a window's root, or is presented
};

} // namespace tesmar
