#include "tesmar/platform/ui/internal/PresentationStack.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/CardView.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kAppearing = 0.30;          // seconds
constexpr double kDismissing = 0.22;         // seconds
constexpr double kReturning = 0.20;          // seconds
constexpr CGFloat kRise = 40;                // how far a card moves, in points
constexpr CGFloat kPullThatDismisses = 0.25; // of the card's height
constexpr CGFloat kFlick = 500;              // points per second

} // namespace

void PresentationStack::abandon() noexcept {
    const auto abandoned = std::move(stack_);
    stack_.clear();
    for (const auto& presentation : abandoned) {
        presentation->stage = Stage::removed;
        presentation->progress.reset();
        presentation->pulled.reset();
        presentation->place.reset();
        presentation->controller->stack_ = nullptr;
    }
}

void PresentationStack::setRoot(UIViewController& controller, Root root) {
    controller.stack_ = root == Root::attached ? this : nullptr;
}

// --- Presenting ---------------------------------------------------------------------------------

// By value: a callback may clear the host's references.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void PresentationStack::present(Ref<UIViewController> controller, Ref<UIViewController> presenter,
                                bool animated, UIViewController::Completion completion) {
    const auto window = refTo(&window_);
    double startsAt = 0;
    if (const auto present = find(*controller)) {
        if (present->stage != Stage::dismissing) {
            diagnostic("a controller that is presented already cannot be presented");
            return;
        }
        // It is being dismissed: finish that now, and start from its present position.
        startsAt = present->progress->value();
        finishDismissal(present);
        if (find(*controller))
            return;
    }
    const auto presentation = std::make_shared<Presentation>();
    presentation->controller = controller;
    presentation->presenter = presenter;
    presentation->style = controller->modalPresentationStyle();
    presentation->animated = animated;
    presentation->completion = std::move(completion);
    presentation->progress = std::make_unique<Transition>(
        startsAt, [this, p = presentation.get()] { showProgress(*p); });
    presentation->pulled =
        std::make_unique<Transition>(0, [this, p = presentation.get()] { showProgress(*p); });
    stack_.push_back(presentation);
    controller->stack_ = this;
    FirstException all;
    const bool returned = all.run([&] { appear(presentation); });
    if (!returned && presentation->stage == Stage::appearing) {
        // Do not leave it half presented.
        const auto hidden = hiddenBy(presentation);
        uncover(hidden, animated, all);
        all.run([&] { remove(presentation); });
        uncovered(hidden, animated, all);
    }
    all.rethrow();
}

// Down to the next one that fills the window: that one hid those below it before. One that is being
// dismissed hides them no longer.
std::vector<PresentationStack::Shared>
PresentationStack::hiddenBy(const Shared& presentation) const {
    const auto fills = [](const Shared& p) {
        return p->style == UIModalPresentationStyle::fullScreen;
    };
    auto first = std::find(stack_.begin(), stack_.end(), presentation);
    if (first == stack_.end() || !fills(presentation))
        return {};
    std::vector<Shared> hidden;
    while (first != stack_.begin()) {
        hidden.insert(hidden.begin(), *--first);
        if (fills(*first) && (*first)->stage != Stage::dismissing)
            break;
    }
    return hidden;
}

void PresentationStack::cover(const Shared& presentation) {
    for (const auto& below : hiddenBy(presentation))
        if (below->container)
            window_.cancelTouchesIn(*below->container);
    for (const auto& below : hiddenBy(presentation)) {
        if (presentation->stage != Stage::appearing)
            return;
        const bool isShown = below->stage == Stage::appearing || below->stage == Stage::shown;
        if (!isShown || below->isToldHidden())
            continue;
        below->cover = Cover::covering;
        below->controller->viewWillDisappear(presentation->animated);
    }
}

void PresentationStack::covered(const Shared& presentation) {
    for (const auto& below : hiddenBy(presentation))
        if (presentation->stage == Stage::shown && below->cover == Cover::covering) {
            below->cover = Cover::covered;
            if (below->container)
                below->container->setHidden(true); // also where the one above leaves a margin
            below->controller->viewDidDisappear(presentation->animated);
        }
}

void PresentationStack::uncover(const std::vector<Shared>& hidden, bool animated,
                                FirstException& all) {
    for (const auto& below : hidden)
        if (below->isToldHidden() && !below->leaves && below->stage != Stage::removed) {
            below->cover = Cover::uncovering;
            if (below->container)
                below->container->setHidden(false);
            all.run([&] { below->controller->viewWillAppear(animated); });
        }
}

void PresentationStack::uncovered(const std::vector<Shared>& hidden, bool animated,
                                  FirstException& all) {
    for (const auto& below : hidden)
        if (below->cover == Cover::uncovering) {
            below->cover = Cover::none;
            if (below->stage == Stage::shown && !below->leaves)
                all.run([&] { below->controller->viewDidAppear(animated); });
        }
}

// Every callback may dismiss the presentation.
void PresentationStack::appear(const Shared& presentation) {
    const auto controller = presentation->controller;
    const bool animated = presentation->animated;
    const auto view = controller->view();
    if (presentation->stage != Stage::appearing)
        return;
    cover(presentation);
    if (presentation->stage != Stage::appearing)
        return;
    controller->viewWillAppear(animated);
    if (presentation->stage != Stage::appearing)
        return;

    if (presentation->style == UIModalPresentationStyle::card) {
        presentation->container = make<CardView>();
        presentation->container->setAccessibilityIdentifier("card");
        presentation->place = std::make_unique<CardPlace>(
            window_, [p = presentation.get()] { moveCard(*p); },
            [p = presentation.get()] { return p->container->isOnScreen(); });
    } else {
        presentation->container = make<PaperView>();
    }
    view->setTranslatesAutoresizingMaskIntoConstraints(true);
    presentation->container->addSubview(view);
    showProgress(*presentation);
    window_.addSubview(presentation->container);
    layOut(presentation);
    window_.layoutIfNeeded();
    if (presentation->stage != Stage::appearing)
        return;
    const std::weak_ptr<Presentation> weak = presentation;
    presentation->progress->moveTo(1, animated ? kAppearing : 0, [this, weak] {
        if (const auto p = weak.lock())
            appeared(p);
    });
    if (animated)
        startMotion(presentation);
}

// Paints the card before the first frame of its motion, which would come late: painting takes
// longer than a frame where glyphs and shadows are drawn for the first time.
void PresentationStack::startMotion(const Shared& presentation) {
    if (!presentation->progress->isMoving())
        return;
    const auto container = presentation->container;
    container->setKeepsPicture(true);
    try {
        container->paintPictureAhead();
    } catch (...) { // NOLINT(bugprone-empty-catch): the frame paints it again, and throws there
    }
}

void PresentationStack::appeared(const Shared& presentation) {
    if (presentation->stage != Stage::appearing)
        return;
    const auto window = refTo(&window_);
    presentation->stage = Stage::shown;
    presentation->container->setKeepsPicture(false);
    const auto completion = std::exchange(presentation->completion, {});
    if (presentation->cover == Cover::none)
        presentation->controller->viewDidAppear(presentation->animated);
    covered(presentation);
    if (completion)
        completion();
}

// --- Dismissing ---------------------------------------------------------------------------------

void PresentationStack::dismiss(const UIViewController& controller, bool animated,
                                UIViewController::Completion completion) {
    const auto target = find(controller);
    if (!target || target->stage == Stage::dismissing)
        return;
    const auto window = refTo(&window_);
    for (auto p = stack_.rbegin(); p != stack_.rend(); ++p) {
        (*p)->leaves = true;
        if (*p == target)
            break;
    }
    // First those above, without animation.
    FirstException all;
    const auto isPresented = [](const Shared& p) {
        return p->stage != Stage::removed && p->stage != Stage::dismissing;
    };
    while (isPresented(target) && stack_.back() != target) {
        const auto above = stack_.back();
        all.run([&] {
            if (above->stage == Stage::dismissing)
                finishDismissal(above);
            else
                startDismissal(above, false, {});
        });
        if (above->stage != Stage::removed) // without memory
            break;
    }
    if (isPresented(target))
        all.run([&] { startDismissal(target, animated, std::move(completion)); });
    all.rethrow();
}

void PresentationStack::startDismissal(const Shared& presentation, bool animated,
                                       UIViewController::Completion completion) {
    presentation->stage = Stage::dismissing;
    presentation->animated = animated;
    presentation->completion = std::move(completion);
    // Continues even if callbacks throw. Without an animation, the dismissal ends at once.
    if (presentation->container)
        presentation->container->setUserInteractionEnabled(false);
    FirstException all;
    if (presentation->container)
        all.run([&] { window_.cancelTouchesIn(*presentation->container); });
    if (!presentation->isToldHidden())
        all.run([&] { presentation->controller->viewWillDisappear(animated); });
    uncover(hiddenBy(presentation), animated, all);
    all.run([&] { slideOut(presentation, animated); });
    if (presentation->stage == Stage::dismissing && !presentation->progress->isMoving())
        all.run([&] { finishDismissal(presentation); });
    all.rethrow();
}

void PresentationStack::slideOut(const Shared& presentation, bool animated) {
    if (presentation->stage != Stage::dismissing)
        return;
    const std::weak_ptr<Presentation> weak = presentation;
    const bool moves = animated && presentation->container;
    presentation->progress->moveTo(0, moves ? kDismissing : 0, [this, weak] {
        if (const auto p = weak.lock())
            finishDismissal(p);
    });
    if (moves)
        startMotion(presentation);
}

void PresentationStack::finishDismissal(const Shared& presentation) {
    if (presentation->stage != Stage::dismissing)
        return;
    const auto window = refTo(&window_);
    const auto controller = presentation->controller;
    const auto completion = std::exchange(presentation->completion, {});
    const auto hidden = hiddenBy(presentation);
    FirstException all;
    all.run([&] { remove(presentation); });
    uncovered(hidden, presentation->animated, all);
    if (presentation->cover != Cover::covered)
        all.run([&] { controller->viewDidDisappear(presentation->animated); });
    if (completion)
        all.run(completion);
    all.rethrow();
}

void PresentationStack::remove(const Shared& presentation) {
    presentation->stage = Stage::removed;
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

// --- Queries -----------------------------------------------------------------------------------

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

bool PresentationStack::isDismissing(const UIViewController& controller) const {
    const auto presentation = find(controller);
    return presentation && presentation->stage == Stage::dismissing;
}

Ref<UIViewController> PresentationStack::controllerIn(const UIView& container) const {
    for (const auto& presentation : stack_)
        if (presentation->container.get() == &container)
            return presentation->controller;
    return nullptr;
}

void PresentationStack::accessibilityObserverChanged() {
    for (const auto& presentation : std::vector(stack_))
        presentation->controller->accessibilityObserverChanged();
}

// --- Layout -------------------------------------------------------------------------------------

void PresentationStack::layOut() {
    for (std::size_t i = 0; i < stack_.size(); ++i)
        layOut(Shared(stack_[i])); // a diagnostic of a conflict may dismiss it
}

void PresentationStack::noteFrame() {
    for (const auto& presentation : stack_)
        if (presentation->place)
            presentation->place->noteSeen();
}

void PresentationStack::setNeedsDisplay() {
    for (const auto& presentation : stack_)
        if (presentation->container)
            presentation->container->setNeedsDisplay();
}

void PresentationStack::layOut(const Shared& presentation) {
    const auto controller = presentation->controller;
    if (!presentation->container || !controller->isViewLoaded())
        return;
    place(*presentation);
    const Surroundings now{window_.bounds().size, window_.safeAreaInsets(), window_.avoidedArea()};
    if (presentation->around == now)
        return;
    presentation->around = now;
    controller->view()->layoutIfNeeded();
    controller->surroundingsDidChange();
    if (presentation->container && controller->isViewLoaded())
        place(*presentation);
}

void PresentationStack::place(Presentation& presentation) {
    if (presentation.place) {
        presentation.place->update(*presentation.controller);
        moveCard(presentation);
    } else {
        const auto view = presentation.controller->view();
        presentation.container->setFrame(paperFrame(window_));
        view->setFrame(safePartOfPaper(window_, presentation.container->frame()));
    }
}

void PresentationStack::moveCard(Presentation& presentation) {
    if (!presentation.controller->isViewLoaded())
        return;
    presentation.container->setFrame(presentation.place->frame());
    presentation.controller->view()->setFrame(presentation.container->bounds());
}

void PresentationStack::showProgress(Presentation& presentation) {
    if (!presentation.container)
        return;
    const double progress = presentation.progress->value();
    presentation.container->setAlpha(progress);
    presentation.container->setTranslation(
        {0, (1 - progress) * kRise + presentation.pulled->value()});
}

// --- Dragging down ------------------------------------------------------------------------------

bool PresentationStack::startPull(const UIView& view) {
    if (stack_.empty() || window_.dragDown() == DragDown::ignored)
        return false;
    const Shared& top = stack_.back();
    const bool mayMove = top->style == UIModalPresentationStyle::card &&
                         top->stage == Stage::shown && view.isDescendantOf(top->container.get());
    if (mayMove)
        pulled_ = top;
    return mayMove;
}

void PresentationStack::pull(CGFloat distance) {
    const Shared card = pulled_.lock();
    if (card && card->stage == Stage::shown)
        card->pulled->jumpTo(std::max(0.0, distance));
}

void PresentationStack::endPull(CGFloat velocity) {
    const Shared card = pulled_.lock();
    if (!card || card->stage != Stage::shown)
        return;
    const CGFloat enough = card->container->frame().size.height * kPullThatDismisses;
    if (card == stack_.back() &&
        (velocity >= kFlick || (velocity > -kFlick && card->pulled->value() >= enough)))
        dismiss(*card->controller, true, {});
    else
        cancelPull();
}

void PresentationStack::cancelPull() {
    const Shared card = pulled_.lock();
    if (card && card->stage == Stage::shown)
        card->pulled->moveTo(0, kReturning);
}

} // namespace tesmar
