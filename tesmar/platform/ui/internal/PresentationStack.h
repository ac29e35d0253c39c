// The controllers that stand over a window's content, bottom to top, with their comings and goings.
#pragma once

#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/platform/ui/internal/CardView.h"
#include "tesmar/platform/ui/internal/Transition.h"

#include <memory>
#include <vector>

namespace tesmar {

class PresentationStack {
  public:
    explicit PresentationStack(UIWindow& window) : window_(window) {}
    // The window is about to go: nothing is presented any more, and nobody hears of it.
    void abandon() noexcept;

    // The window's own controller presents, though it is not presented itself.
    enum class Root { stands, leaves };
    void setRoot(UIViewController& controller, Root root);

    void present(Ref<UIViewController> controller, Ref<UIViewController> presenter, bool animated,
                 UIViewController::Completion completion);
    // With everything above it.
    void dismiss(const UIViewController& controller, bool animated,
                 UIViewController::Completion completion);

    // Null when there is none.
    Ref<UIViewController> top() const;
    Ref<UIViewController> presentedBy(const UIViewController& presenter) const;
    Ref<UIViewController> presenterOf(const UIViewController& controller) const;
    bool isLeaving(const UIViewController& controller) const;

    // The window has another size, or other areas to keep clear of.
    void layOut();

  private:
    enum class Stage { arriving, shown, leaving, gone };
    struct Presentation {
        Ref<UIViewController> controller;
        WeakRef<UIViewController> presenter;
        Ref<UIView> container;
        Stage stage = Stage::arriving;
        bool animated = false;
        UIViewController::Completion completion;
        std::unique_ptr<Transition> progress; // 0 away … 1 in place
        std::optional<CardWish> wish;
    };
    using Shared = std::shared_ptr<Presentation>;

    Shared find(const UIViewController& controller) const;
    void layOut(const Shared& presentation);
    void showProgress(Presentation& presentation);
    void arrive(const Shared& presentation);
    void arrived(const Shared& presentation);
    void leave(const Shared& presentation, bool animated, UIViewController::Completion completion);
    void moveAway(const Shared& presentation, bool animated);
    void left(const Shared& presentation);
    void takeAway(const Shared& presentation);

    UIWindow& window_;
    std::vector<Shared> stack_;
};

} // namespace tesmar
