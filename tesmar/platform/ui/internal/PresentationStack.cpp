#include "tesmar/platform/ui/internal/PresentationStack.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/CardView.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kArrival = 0.30;   // seconds
constexpr double kDeparture = 0.22; // seconds
constexpr CGFloat kRise = 40;       // points that a card travels

} // namespace

void PresentationStack::abandon() noexcept {
    const auto abandoned = std::move(stack_);
    stack_.clear();
    for (const auto& presentation : abandoned) {
        presentation->stage = Stage::gone;
        presentation->progress.reset();
        presentation->controller->stack_ = nullptr;
    }
}

void PresentationStack::setRoot(UIViewController& controller, Root root) {
    controller.stack_ = root == Root::stands ? this : nullptr;
}

// --- Presenting ---------------------------------------------------------------------------------

// The references are the stack's own: any call out may clear the host's.
void PresentationStack::present(Ref<UIViewController> controller, Ref<UIViewController> presenter,
                                bool animated, UIViewController::Completion completion) {
    const auto keepWindow = ref(&window_);
    double startsAt = 0;
    if (const auto present = find(*controller)) {
        if (present->stage != Stage::leaving) {
            diagnostic("a controller that is presented already cannot be presented");
            return;
        }
        // Still on its way out: it has left now, and comes back from where it stands.
        startsAt = present->progress->value();
        left(present);
        if (find(*controller))
            return;
    }
    const auto presentation = std::make_shared<Presentation>();
    presentation->controller = controller;
    presentation->presenter = presenter;
    presentation->animated = animated;
    presentation->completion = std::move(completion);
    presentation->progress = std::make_unique<Transition>(
        startsAt, [this, p = presentation.get()] { showProgress(*p); });
    stack_.push_back(presentation);
    controller->stack_ = this;
    try {
        arrive(presentation);
    } catch (...) {
        // What has not come to stand does not stay half presented.
        if (presentation->stage == Stage::arriving)
            takeAway(presentation);
        throw;
    }
}

// Every call out may dismiss what is just arriving.
void PresentationStack::arrive(const Shared& presentation) {
    const auto controller = presentation->controller;
    const bool animated = presentation->animated;
    const auto view = controller->view();
    if (presentation->stage != Stage::arriving)
        return;
    controller->viewWillAppear(animated);
    if (presentation->stage != Stage::arriving)
        return;

    if (controller->modalPresentationStyle() == UIModalPresentationStyle::card) {
        presentation->container = make<CardView>();
        presentation->container->setAccessibilityIdentifier("card");
    } else {
        presentation->container = make<ContainerView>();
    }
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    presentation->container->addSubview(view);
    showProgress(*presentation);
    window_.addSubview(presentation->container);
    layOut(presentation);
    window_.layoutIfNeeded();
    if (presentation->stage != Stage::arriving)
        return;
    const std::weak_ptr<Presentation> weak = presentation;
    presentation->progress->moveTo(1, animated ? kArrival : 0, [this, weak] {
        if (const auto p = weak.lock())
            arrived(p);
    });
}

void PresentationStack::arrived(const Shared& presentation) {
    if (presentation->stage != Stage::arriving)
        return;
    presentation->stage = Stage::shown;
    const auto completion = std::exchange(presentation->completion, {});
    presentation->controller->viewDidAppear(presentation->animated);
    if (completion)
        completion();
}

// --- Dismissing ---------------------------------------------------------------------------------

void PresentationStack::dismiss(const UIViewController& controller, bool animated,
                                UIViewController::Completion completion) {
    const auto target = find(controller);
    if (!target || target->stage == Stage::leaving)
        return;
    const auto keepWindow = ref(&window_);
    // What stands above goes first, and at once: nobody sees it once this one leaves.
    while (!stack_.empty() && stack_.back() != target) {
        const auto above = stack_.back();
        if (above->stage == Stage::leaving)
            left(above);
        else
            leave(above, false, {});
        if (target->stage == Stage::gone || target->stage == Stage::leaving)
            return;
    }
    leave(target, animated, std::move(completion));
}

void PresentationStack::leave(const Shared& presentation, bool animated,
                              UIViewController::Completion completion) {
    presentation->stage = Stage::leaving;
    presentation->animated = animated;
    presentation->completion = std::move(completion);
    // It leaves, whatever is thrown; without the memory for a motion, at once.
    FirstException all;
    all.run([&] { presentation->controller->viewWillDisappear(animated); });
    all.run([&] { moveAway(presentation, animated); });
    if (presentation->stage == Stage::leaving && !presentation->progress->isMoving())
        all.run([&] { left(presentation); });
    all.rethrow();
}

void PresentationStack::moveAway(const Shared& presentation, bool animated) {
    if (presentation->stage != Stage::leaving)
        return;
    const std::weak_ptr<Presentation> weak = presentation;
    const bool moves = animated && presentation->container;
    presentation->progress->moveTo(0, moves ? kDeparture : 0, [this, weak] {
        if (const auto p = weak.lock())
            left(p);
    });
}

void PresentationStack::left(const Shared& presentation) {
    if (presentation->stage != Stage::leaving)
        return;
    const auto keepWindow = ref(&window_);
    const auto controller = presentation->controller;
    const auto completion = std::exchange(presentation->completion, {});
    FirstException all;
    all.run([&] { takeAway(presentation); });
    all.run([&] { controller->viewDidDisappear(presentation->animated); });
    if (completion)
        all.run(completion);
    all.rethrow();
}

// The views hear that they have left the window.
void PresentationStack::takeAway(const Shared& presentation) {
    presentation->stage = Stage::gone;
    const auto controller = presentation->controller;
    controller->stack_ = nullptr;
    std::erase(stack_, presentation);
    const auto container = presentation->container;
    if (!container)
        return;
    FirstException all;
    all.run([&] { container->removeFromSuperview(); });
    if (controller->isViewLoaded() && controller->view()->superview() == container.get())
        all.run([&] { controller->view()->removeFromSuperview(); });
    all.rethrow();
}

// --- Questions ----------------------------------------------------------------------------------

PresentationStack::Shared PresentationStack::find(const UIViewController& controller) const {
    for (const auto& presentation : stack_)
        if (presentation->controller.get() == &controller)
            return presentation;
    return nullptr;
}

Ref<UIViewController> PresentationStack::top() const {
    return stack_.empty() ? nullptr : stack_.back()->controller;
}

Ref<UIViewController> PresentationStack::presentedBy(const UIViewController& presenter) const {
    for (const auto& presentation : stack_)
        if (presentation->presenter.lock().get() == &presenter)
            return presentation->controller;
    return nullptr;
}

Ref<UIViewController> PresentationStack::presenterOf(const UIViewController& controller) const {
    const auto presentation = find(controller);
    return presentation ? presentation->presenter.lock() : nullptr;
}

bool PresentationStack::isLeaving(const UIViewController& controller) const {
    const auto presentation = find(controller);
    return presentation && presentation->stage == Stage::leaving;
}

// --- Places -------------------------------------------------------------------------------------

void PresentationStack::layOut() {
    for (std::size_t i = 0; i < stack_.size(); ++i)
        layOut(Shared(stack_[i])); // whoever is told of a conflict may dismiss it
}

void PresentationStack::layOut(const Shared& presentation) {
    const auto controller = presentation->controller;
    if (!presentation->container || !controller->isViewLoaded())
        return;
    const Ref<UIView> content = controller->view();
    const bool card = controller->modalPresentationStyle() == UIModalPresentationStyle::card;
    presentation->container->setFrame(card ? cardFrame(window_, *content, presentation->wish)
                                           : window_.bounds());
    content->setFrame(presentation->container->bounds());
}

void PresentationStack::showProgress(Presentation& presentation) {
    if (!presentation.container)
        return;
    const double progress = presentation.progress->value();
    presentation.container->setAlpha(progress);
    presentation.container->setTranslation({0, (1 - progress) * kRise});
}

} // namespace tesmar
