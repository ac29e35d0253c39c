#include "tesmar/platform/ui/TouchDispatcher.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>

namespace tesmar {
namespace {

// A tap beside a card is one that stays put, in points.
constexpr CGFloat kTapSlack = 10;

UIScrollView* scrollViewAround(UIView* view) {
    for (; view; view = view->superview())
        if (auto* scroll = dynamic_cast<UIScrollView*>(view))
            return scroll;
    return nullptr;
}

bool canScroll(const UIScrollView& view) {
    return view.canScroll(LayoutAxis::horizontal) || view.canScroll(LayoutAxis::vertical);
}

// A control that follows the finger keeps it; a plain view gives it up to a drag.
bool keepsTouch(const UIView* view) {
    const auto* control = dynamic_cast<const UIControl*>(view);
    return control && control->isTracking() && isLeafControl(*control);
}

} // namespace

TouchDispatcher::~TouchDispatcher() {
    for (const auto& finger : fingers_)
        NSRunLoop::mainRunLoop().cancel(finger->deliveryTimer);
}

TouchDispatcher::Finger* TouchDispatcher::find(std::int64_t id) {
    for (const auto& finger : fingers_)
        if (finger->stage != Stage::free && finger->touch.id() == id)
            return finger.get();
    return nullptr;
}

TouchDispatcher::Finger& TouchDispatcher::freeFinger() {
    for (const auto& finger : fingers_)
        if (finger->stage == Stage::free)
            return *finger;
    fingers_.push_back(std::make_unique<Finger>());
    return *fingers_.back();
}

void TouchDispatcher::free(Finger& finger) {
    NSRunLoop::mainRunLoop().cancel(std::exchange(finger.deliveryTimer, 0));
    finger.stage = Stage::free;
    finger.view.reset();
    finger.scrollView.reset();
}

bool TouchDispatcher::began(std::int64_t id, CGPoint point, double time) {
    cancelled(id, time); // a finger cannot land twice: its lift was lost
    UIView* const hit = window_.hitTest(point);
    if (!hit && window_.outsideTap() == OutsideTap::ignored)
        return false;
    if (!hit && !window_.presentedViewController())
        return false;

    Finger& finger = freeFinger();
    finger.touch = UITouch(id, point, time);
    if (!hit) {
        finger.stage = Stage::outside;
        return true;
    }
    finger.view = hit->weak_from_this();
    for (UIScrollView* s = scrollViewAround(hit); s; s = scrollViewAround(s->superview()))
        if (s->catchMotion()) {
            finger.stage = Stage::caught;
            finger.scrollView = s->weak_from_this();
            return true;
        }
    bool mayDrag = false;
    for (UIScrollView* s = scrollViewAround(hit); s; s = scrollViewAround(s->superview()))
        mayDrag = mayDrag || canScroll(*s);
    finger.stage = Stage::waiting;
    if (!mayDrag) {
        deliver(finger);
        return true;
    }
    finger.deliveryTimer = NSRunLoop::mainRunLoop().schedule(UIScrollView::kContentTouchDelay,
                                                             [this, &finger] { deliver(finger); });
    return true;
}

void TouchDispatcher::deliver(Finger& finger) {
    if (finger.stage != Stage::waiting)
        return;
    NSRunLoop::mainRunLoop().cancel(std::exchange(finger.deliveryTimer, 0));
    finger.stage = Stage::delivered;
    const auto view = as<UIView>(finger.view.lock());
    if (!view || view->window() != &window_)
        return;
    // It landed where it landed, however late the view hears of it.
    const CGPoint now = finger.touch.location();
    finger.touch.moveTo(finger.touch.startLocation(), finger.touch.timestamp());
    view->touchBegan(finger.touch);
    if (now != finger.touch.location()) {
        finger.touch.moveTo(now, finger.touch.timestamp());
        view->touchMoved(finger.touch);
    }
}

bool TouchDispatcher::startDrag(Finger& finger) {
    const auto view = as<UIView>(finger.view.lock());
    if (!view || (finger.stage == Stage::delivered && keepsTouch(view.get())))
        return false;
    const CGPoint translation = finger.touch.location() - finger.touch.startLocation();
    for (UIScrollView* s = scrollViewAround(view.get()); s; s = scrollViewAround(s->superview())) {
        if (!s->wantsDrag(translation) || s->isDragging() || !s->window())
            continue;
        const auto scroll = ref(s);
        const bool wasDelivered = finger.stage == Stage::delivered;
        NSRunLoop::mainRunLoop().cancel(std::exchange(finger.deliveryTimer, 0));
        finger.stage = Stage::dragging;
        finger.scrollView = scroll;
        if (wasDelivered)
            view->touchCancelled(finger.touch);
        scroll->beginDrag(finger.touch.location(), translation, finger.touch.timestamp());
        return true;
    }
    return false;
}

bool TouchDispatcher::moved(std::int64_t id, CGPoint point, double time) {
    Finger* const finger = find(id);
    if (!finger)
        return false;
    finger->touch.moveTo(point, time);
    switch (finger->stage) {
    case Stage::waiting:
    case Stage::caught:
        startDrag(*finger);
        break;
    case Stage::delivered:
        if (!startDrag(*finger))
            if (const auto view = as<UIView>(finger->view.lock()))
                view->touchMoved(finger->touch);
        break;
    case Stage::dragging:
        if (const auto scroll = as<UIScrollView>(finger->scrollView.lock()))
            scroll->continueDrag(point, time);
        break;
    case Stage::outside:
    case Stage::free:
        break;
    }
    return true;
}

bool TouchDispatcher::ended(std::int64_t id, CGPoint point, double time) {
    Finger* const finger = find(id);
    if (!finger)
        return false;
    const bool movedToLift = finger->touch.location() != point;
    finger->touch.moveTo(point, time);
    if (finger->stage == Stage::waiting || finger->stage == Stage::caught)
        startDrag(*finger); // a flick whose only move is its lift
    const auto view = as<UIView>(finger->view.lock());
    const auto scroll = as<UIScrollView>(finger->scrollView.lock());
    const CGPoint travelled = point - finger->touch.startLocation();
    try {
        deliver(*finger); // a quick tap: the view gets all of it now
        if (finger->stage == Stage::delivered && view)
            view->touchEnded(finger->touch);
    } catch (...) {
        free(*finger);
        throw;
    }
    const Stage stage = finger->stage;
    free(*finger);

    if (stage == Stage::dragging && scroll) {
        if (movedToLift)
            scroll->continueDrag(point, time);
        scroll->endDrag(time);
    } else if (stage == Stage::caught && scroll) {
        scroll->settle();
    } else if (stage == Stage::outside && std::hypot(travelled.x, travelled.y) <= kTapSlack) {
        if (const auto top = window_.presentedViewController())
            top->dismissViewControllerAnimated(true);
    }
    return true;
}

bool TouchDispatcher::cancelled(std::int64_t id, double time) {
    Finger* const finger = find(id);
    if (!finger)
        return false;
    finger->touch.moveTo(finger->touch.location(), time);
    const Stage stage = finger->stage;
    const auto view = as<UIView>(finger->view.lock());
    const auto scroll = as<UIScrollView>(finger->scrollView.lock());
    // Free first: whoever hears of it may throw. The touch itself lasts as long as the dispatcher.
    free(*finger);
    if (stage == Stage::delivered && view)
        view->touchCancelled(finger->touch);
    if (stage == Stage::dragging && scroll)
        scroll->cancelDrag();
    else if (stage == Stage::caught && scroll)
        scroll->settle();
    return true;
}

void TouchDispatcher::cancelAll(double time) {
    for (std::size_t i = 0; i < fingers_.size(); ++i)
        if (fingers_[i]->stage != Stage::free)
            cancelled(fingers_[i]->touch.id(), time);
}

} // namespace tesmar
