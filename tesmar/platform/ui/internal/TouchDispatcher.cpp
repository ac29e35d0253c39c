#include "tesmar/platform/ui/internal/TouchDispatcher.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/PresentationStack.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"
#include "tesmar/platform/ui/internal/near_control.h"

#include <algorithm>

namespace tesmar {
namespace {

// How far the finger of a tap may move, in points.
constexpr CGFloat kTapSlack = 10;
// A drag down of a card counts as at least this long, in seconds.
constexpr double kShortestPull = 1.0 / 60;
// More than any user has; limits the memory when a host does not report every lift.
constexpr std::size_t kMostFingers = 32;

bool canScroll(const UIScrollView& view) {
    return view.canScroll(LayoutAxis::horizontal) || view.canScroll(LayoutAxis::vertical);
}

// A control that tracks a touch keeps it; any other view loses it to a drag.
bool keepsTouch(const UIView* view) {
    const auto* control = dynamic_cast<const UIControl*>(view);
    return control && control->isTracking() && isLeafControl(*control);
}

// How far the finger has moved a card.
CGFloat pulled(const UITouch& touch) {
    return touch.location().y - touch.startLocation().y - kTapSlack;
}

} // namespace

TouchDispatcher::TouchDispatcher(UIWindow& window, PresentationStack& presentations)
    : window_(window), presentations_(presentations) {
    fingers_.reserve(kMostFingers);
}

// The views have left the window, but scroll views with other owners must not stay dragged.
TouchDispatcher::~TouchDispatcher() {
    FirstException dropped;
    while (!fingers_.empty()) {
        const Shared finger = fingers_.back();
        const auto scroll = as<UIScrollView>(finger->scrollView.lock());
        const bool drags = finger->stage == Stage::dragging;
        forget(*finger);
        if (drags && scroll)
            dropped.run([&] { ScrollTracking::of(*scroll).cancelDrag(); });
    }
}

TouchDispatcher::Shared TouchDispatcher::find(std::int64_t id) const {
    for (const auto& finger : fingers_)
        if (finger->touch.id() == id)
            return finger;
    return nullptr;
}

void TouchDispatcher::forget(Finger& finger) {
    NSRunLoop::mainRunLoop().cancel(std::exchange(finger.deliveryTimer, 0));
    finger.stage = Stage::gone;
    std::erase_if(fingers_, [&](const auto& known) { return known.get() == &finger; });
}

bool TouchDispatcher::takesOutsideTaps() const {
    const auto top = window_.presentedViewController();
    return window_.outsideTap() == OutsideTap::dismisses && top && !top->isBeingDismissed();
}

bool TouchDispatcher::wants(CGPoint point) const {
    return window_.hitTest(point) || takesOutsideTaps();
}

bool TouchDispatcher::began(const UITouch& touch) {
    const double time = touch.timestamp();
    cancelled(touch.id(), time); // its lift was not reported
    while (fingers_.size() >= kMostFingers)
        cancel(Shared(fingers_.front()), time);
    UIView* const hit = window_.hitTest(touch.location());
    if (!hit && !takesOutsideTaps())
        return false;

    const auto finger = std::make_shared<Finger>(Finger{touch, Stage::waiting, {}, {}, 0, 0});
    fingers_.push_back(finger);
    if (!hit) {
        finger->stage = Stage::outside;
        return true;
    }
    finger->view = hit->weak_from_this();
    lastLanding_ = {finger->view, hit->convertPointFrom(touch.location(), nullptr)};
    for (UIScrollView* s = UIScrollView::enclosing(hit); s;
         s = UIScrollView::enclosing(s->superview()))
        if (ScrollTracking::of(*s).catchMotion()) {
            finger->stage = Stage::caught;
            finger->scrollView = s->weak_from_this();
            return true;
        }
    bool mayDrag = false;
    for (UIScrollView* s = UIScrollView::enclosing(hit); s;
         s = UIScrollView::enclosing(s->superview()))
        mayDrag = mayDrag || canScroll(*s);
    if (mayDrag)
        finger->deliveryTimer = NSRunLoop::mainRunLoop().schedule(
            UIScrollView::kContentTouchDelay, [this, finger] { deliver(finger); });
    else
        deliver(finger);
    return true;
}

void TouchDispatcher::deliver(const Shared& finger) {
    if (finger->stage != Stage::waiting)
        return;
    const auto window = refTo(&window_);
    finger->stage = Stage::delivered;
    NSRunLoop::mainRunLoop().cancel(std::exchange(finger->deliveryTimer, 0));
    const auto view = as<UIView>(finger->view.lock());
    if (!view || view->window() != &window_)
        return;
    // Delivery may be late: the touch begins where the finger landed.
    UITouch& touch = finger->touch;
    const CGPoint now = touch.location();
    touch.moveTo(touch.startLocation(), touch.timestamp());
    view->touchBegan(touch);
    if (finger->stage == Stage::delivered && touch.location() == touch.startLocation() &&
        now != touch.startLocation()) {
        touch.moveTo(now, touch.timestamp());
        view->touchMoved(touch);
    }
}

bool TouchDispatcher::startDrag(const Shared& finger) {
    const auto view = as<UIView>(finger->view.lock());
    if (!view || (finger->stage == Stage::delivered && keepsTouch(view.get())))
        return false;
    const CGPoint translation = finger->touch.location() - finger->touch.startLocation();
    for (UIScrollView* s = UIScrollView::enclosing(view.get()); s;
         s = UIScrollView::enclosing(s->superview())) {
        if (!ScrollTracking::of(*s).wantsDrag(translation) || s->isDragging() || !s->window())
            continue;
        const auto scroll = refTo(s);
        const bool wasDelivered = finger->stage == Stage::delivered;
        NSRunLoop::mainRunLoop().cancel(std::exchange(finger->deliveryTimer, 0));
        finger->stage = Stage::dragging;
        finger->scrollView = scroll;
        if (wasDelivered)
            view->touchCancelled(finger->touch);
        if (finger->stage == Stage::dragging)
            ScrollTracking::of(*scroll).beginDrag(finger->touch.location(), translation,
                                                  finger->touch.timestamp());
        return true;
    }
    return false;
}

// A card follows one finger at a time.
bool TouchDispatcher::startPull(const Shared& finger) {
    const auto view = as<UIView>(finger->view.lock());
    const CGPoint travelled = finger->touch.location() - finger->touch.startLocation();
    const bool isDown = travelled.y > kTapSlack && travelled.y > std::abs(travelled.x);
    if (!isDown || !view || keepsTouch(view.get()) || UIScrollView::enclosing(view.get()) ||
        std::ranges::any_of(fingers_, [](const auto& f) { return f->stage == Stage::pulling; }) ||
        !presentations_.startPull(*view))
        return false;
    finger->stage = Stage::pulling;
    finger->pullStart = finger->touch.timestamp();
    view->touchCancelled(finger->touch);
    if (finger->stage == Stage::pulling)
        presentations_.pull(pulled(finger->touch));
    return true;
}

void TouchDispatcher::endPull(const UITouch& touch, double start) {
    const CGFloat distance = pulled(touch);
    const double seconds = std::max(touch.timestamp() - start, kShortestPull);
    presentations_.pull(distance);
    presentations_.endPull(distance / seconds);
}

bool TouchDispatcher::moved(std::int64_t id, CGPoint point, double time) {
    const Shared finger = find(id);
    if (!finger)
        return false;
    finger->touch.moveTo(point, time);
    time = finger->touch.timestamp();
    switch (finger->stage) {
    case Stage::waiting:
    case Stage::caught:
        startDrag(finger);
        break;
    case Stage::delivered:
        if (!startDrag(finger) && !startPull(finger))
            if (const auto view = as<UIView>(finger->view.lock()))
                view->touchMoved(finger->touch);
        break;
    case Stage::dragging:
        if (const auto scroll = as<UIScrollView>(finger->scrollView.lock()))
            ScrollTracking::of(*scroll).continueDrag(point, time);
        break;
    case Stage::pulling:
        presentations_.pull(pulled(finger->touch));
        break;
    case Stage::outside:
    case Stage::gone:
        break;
    }
    return true;
}

// Ends the touch and notifies its receiver even if callbacks throw.
bool TouchDispatcher::ended(std::int64_t id, CGPoint point, double time) {
    const Shared finger = find(id);
    if (!finger)
        return false;
    const bool movedToLift = finger->touch.location() != point;
    finger->touch.moveTo(point, time);
    time = finger->touch.timestamp();
    FirstException all;
    if (finger->stage == Stage::waiting || finger->stage == Stage::caught)
        all.run([&] { startDrag(finger); }); // a flick that moved only at the lift
    all.run([&] { deliver(finger); });       // a quick tap is delivered only now
    const Stage stage = finger->stage;
    forget(*finger);

    const auto view = as<UIView>(finger->view.lock());
    const auto scroll = as<UIScrollView>(finger->scrollView.lock());
    const CGPoint travelled = point - finger->touch.startLocation();
    if (stage == Stage::delivered && view) {
        all.run([&] { view->touchEnded(finger->touch); });
    } else if (stage == Stage::dragging && scroll) {
        if (movedToLift)
            all.run([&] { ScrollTracking::of(*scroll).continueDrag(point, time); });
        all.run([&] { ScrollTracking::of(*scroll).endDrag(time); });
    } else if (stage == Stage::caught && scroll) {
        all.run([&] { ScrollTracking::of(*scroll).settle(); });
    } else if (stage == Stage::pulling) {
        all.run([&] { endPull(finger->touch, finger->pullStart); });
    } else if (stage == Stage::outside && std::hypot(travelled.x, travelled.y) <= kTapSlack) {
        if (const auto top = window_.presentedViewController())
            all.run([&] { top->dismissViewControllerAnimated(true); });
    }
    all.rethrow();
    return true;
}

bool TouchDispatcher::cancelled(std::int64_t id, double time) {
    const Shared finger = find(id);
    if (finger)
        cancel(finger, time);
    return finger != nullptr;
}

void TouchDispatcher::cancel(const Shared& finger, double time) {
    const Stage stage = finger->stage;
    forget(*finger);
    finger->touch.moveTo(finger->touch.location(), time);
    const auto view = as<UIView>(finger->view.lock());
    const auto scroll = as<UIScrollView>(finger->scrollView.lock());
    if (stage == Stage::delivered && view)
        view->touchCancelled(finger->touch);
    else if (stage == Stage::dragging && scroll)
        ScrollTracking::of(*scroll).cancelDrag();
    else if (stage == Stage::caught && scroll)
        ScrollTracking::of(*scroll).settle();
    else if (stage == Stage::pulling)
        presentations_.cancelPull();
}

void TouchDispatcher::cancelAll(double time) {
    const auto fingers = fingers_;
    FirstException all;
    for (const auto& finger : fingers)
        if (finger->stage != Stage::gone)
            all.run([&] { cancel(finger, time); });
    all.rethrow();
}

void TouchDispatcher::cancelInside(const UIView& root, double time) {
    const auto fingers = fingers_;
    FirstException all;
    for (const auto& finger : fingers) {
        const auto view = as<UIView>(finger->view.lock());
        const bool isTouch = finger->stage == Stage::waiting || finger->stage == Stage::delivered;
        if (isTouch && view && view->isDescendantOf(&root))
            all.run([&] { cancel(finger, time); });
    }
    all.rethrow();
}

} // namespace tesmar
