// The controllers presented over a window's content, bottom to top, and their transitions.
#pragma once

#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/internal/CardPlace.h"
#include "tesmar/platform/ui/internal/CardView.h"
#include "tesmar/platform/ui/internal/Transition.h"

#include <memory>
#include <vector>

namespace tesmar {

class PresentationStack {
  public:
    explicit PresentationStack(UIWindow& window) : window_(window) {}
    // The window is being destroyed: forgets all controllers without notifying them.
    void abandon() noexcept;

    // While attached, the window's root controller presents others through this stack. It is not
    // in the stack itself.
    enum class Root { attached, detached };
    void setRoot(UIViewController& controller, Root root);

    void present(Ref<UIViewController> controller, Ref<UIViewController> presenter, bool animated,
                 UIViewController::Completion completion);
    // Dismisses everything above it first.
    void dismiss(const UIViewController& controller, bool animated,
                 UIViewController::Completion completion);

    // Null when there is none.
    Ref<UIViewController> top() const;
    Ref<UIViewController> presentedBy(const UIViewController& presenter) const;
    Ref<UIViewController> presenterOf(const UIViewController& controller) const;
    bool isDismissing(const UIViewController& controller) const;
    // The one whose view is in that subview of the window, or null.
    Ref<UIViewController> controllerIn(const UIView& container) const;

    // Tells every controller.
    void accessibilityObserverChanged();

    // Gives every presentation its frame; called when the window's size, safe area or caption area
    // have changed.
    void layOut();
    // The window has been painted as it is laid out.
    void noteFrame();
    void setNeedsDisplay();

    // --- Dragging down --------------------------------------------------------------------------

    // A finger on `view` drags the topmost controller's card from now on. Returns whether it may.
    bool startPull(const UIView& view);
    // Moves that card down by `distance`, in points.
    void pull(CGFloat distance);
    // The finger has let go, moving down with `velocity` in points per second: dismisses the
    // controller, or moves its card back. Back, too, if another was presented meanwhile.
    void endPull(CGFloat velocity);
    void cancelPull();

  private:
    enum class Stage { appearing, shown, dismissing, removed };
    // Whether full-screen controllers above hide this one, as far as the controller has been told.
    enum class Cover { none, covering, covered, uncovering };
    struct Surroundings {
        CGSize size;
        UIEdgeInsets safeArea;
        std::optional<CGRect> captions;
        bool operator==(const Surroundings&) const = default;
    };
    struct Presentation {
        Ref<UIViewController> controller;
        WeakRef<UIViewController> presenter;
        // As presented: the controller's may change meanwhile.
        UIModalPresentationStyle style = UIModalPresentationStyle::card;
        Ref<ContainerView> container;
        Stage stage = Stage::appearing;
        Cover cover = Cover::none;
        bool leaves = false; // is dismissed together with what is above it
        bool animated = false;
        UIViewController::Completion completion;
        std::unique_ptr<Transition> progress; // 0 dismissed … 1 in place
        std::unique_ptr<Transition> pulled;   // how far a finger has dragged the card, in points
        std::unique_ptr<CardPlace> place;     // of a card
        std::optional<Surroundings> around;   // that the controller knows of

        bool isToldHidden() const { return cover == Cover::covering || cover == Cover::covered; }
    };
    using Shared = std::shared_ptr<Presentation>;

    Shared find(const UIViewController& controller) const;
    void layOut(const Shared& presentation);
    void place(Presentation& presentation);
    static void moveCard(Presentation& presentation);
    void showProgress(Presentation& presentation);
    // Those below that `presentation`, if it fills the window, hides; bottom to top.
    std::vector<Shared> hiddenBy(const Shared& presentation) const;
    void cover(const Shared& presentation);
    void covered(const Shared& presentation);
    // Tells those that a presentation hid that they will appear and, once it has gone, that they
    // did.
    static void uncover(const std::vector<Shared>& hidden, bool animated, FirstException& all);
    static void uncovered(const std::vector<Shared>& hidden, bool animated, FirstException& all);
    void appear(const Shared& presentation);
    void appeared(const Shared& presentation);
    static void startMotion(const Shared& presentation);
    void startDismissal(const Shared& presentation, bool animated,
                        UIViewController::Completion completion);
    void slideOut(const Shared& presentation, bool animated);
    void finishDismissal(const Shared& presentation);
    void remove(const Shared& presentation);

    UIWindow& window_;
    std::vector<Shared> stack_;
    std::weak_ptr<Presentation> pulled_;
};

} // namespace tesmar
