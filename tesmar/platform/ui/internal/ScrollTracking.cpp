#include "tesmar/platform/ui/internal/ScrollTracking.h"

#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/ui/Motion.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/internal/ScrollIndicators.h"
#include "tesmar/platform/ui/internal/weak_schedule.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

// A finger that rests this long, in seconds, before its lift does not throw the content.
constexpr double kRestBeforeLift = 0.1;
// A pause this long, in seconds, ends a burst of wheel events.
constexpr double kWheelPause = 0.15;
// A wheel turns in notches of at least this many points, over which the content glides. A trackpad
// sends smaller events, which the content follows exactly.
constexpr CGFloat kSmallestNotch = 16;
// A drag is locked to one axis when its movement along the other is less than this part of it.
constexpr double kClearDirection = 0.5;

} // namespace

ScrollTracking::~ScrollTracking() {
    NSRunLoop::mainRunLoop().cancel(wheelEnd_);
}

ScrollTracking& ScrollTracking::of(UIScrollView& view) {
    return *view.tracking_;
}

// --- Offset -------------------------------------------------------------------------------------

void ScrollTracking::updateRange() {
    const CGSize room = view_.scrollRoom();
    const CGSize visible = view_.frame().size;
    x_.setRange(0, room.width);
    x_.setExtent(visible.width);
    y_.setRange(0, room.height);
    y_.setExtent(visible.height);
}

void ScrollTracking::adoptOffset() {
    x_.jumpTo(view_.contentOffset().x);
    y_.jumpTo(view_.contentOffset().y);
}

void ScrollTracking::applyOffset() {
    const CGPoint offset{x_.offset(), y_.offset()};
    if (offset == view_.contentOffset())
        return;
    view_.setBoundsOrigin(offset);
    if (const auto delegate = view_.delegate())
        delegate->scrollViewDidScroll(view_);
}

CGPoint ScrollTracking::clampedOffset(CGPoint offset) const {
    const CGSize room = view_.scrollRoom();
    return {std::clamp(offset.x, 0.0, room.width), std::clamp(offset.y, 0.0, room.height)};
}

void ScrollTracking::setOffset(CGPoint offset, bool animated) {
    offset = {finiteCoordinate(offset.x), finiteCoordinate(offset.y)};
    updateRange();
    if (animated) {
        const double now = NSRunLoop::mainRunLoop().now();
        x_.moveTo(offset.x, now);
        y_.moveTo(offset.y, now);
        startGliding();
        return;
    }
    stopGliding();
    x_.jumpTo(offset.x);
    y_.jumpTo(offset.y);
    applyOffset();
}

void ScrollTracking::layoutChanged() {
    updateRange();
    if (dragging_ || isGliding())
        return;
    view_.setBoundsOrigin(clampedOffset(view_.contentOffset()));
    adoptOffset();
}

void ScrollTracking::leaveWindow() {
    stopGliding();
    endWheelBurst();
    if (!dragging_)
        view_.setBoundsOrigin(clampedOffset(view_.contentOffset()));
}

// --- Dragging -----------------------------------------------------------------------------------

bool ScrollTracking::wantsDrag(CGPoint translation) const {
    const auto wants = [&](LayoutAxis axis, CGFloat moved) {
        return view_.canScroll(axis) && std::abs(moved) >= UIScrollView::kDragThreshold;
    };
    return wants(LayoutAxis::horizontal, translation.x) ||
           wants(LayoutAxis::vertical, translation.y);
}

void ScrollTracking::beginDrag(CGPoint point, CGPoint translation, double time) {
    updateRange();
    stopGliding();
    endWheelBurst();
    const CGPoint moved{std::abs(translation.x), std::abs(translation.y)};
    const bool across = view_.canScroll(LayoutAxis::horizontal);
    const bool along = view_.canScroll(LayoutAxis::vertical);
    lock_ = !along || (across && moved.y < moved.x * kClearDirection) ? AxisLock::horizontal
            : !across || moved.x < moved.y * kClearDirection          ? AxisLock::vertical
                                                                      : AxisLock::none;
    adoptOffset();
    x_.beginDrag();
    y_.beginDrag();
    const CGFloat farthest = std::max(across ? moved.x : 0, along ? moved.y : 0);
    const CGFloat unused = // part of the translation that only reached the threshold
        farthest > 0 ? std::min(1.0, UIScrollView::kDragThreshold / farthest) : 1;
    grip_ = {point.x - translation.x * (1 - unused), point.y - translation.y * (1 - unused)};
    lastPoint_ = point;
    lastTime_ = time;
    velocity_ = {};
    const auto self = refTo(&view_);
    beganDragging();
    continueDrag(point, time);
}

void ScrollTracking::continueDrag(CGPoint point, double time) {
    if (!dragging_)
        return;
    const double elapsed = time - lastTime_;
    const CGPoint step = point - lastPoint_;
    if (elapsed > 0 && step != CGPoint()) {
        // Averaged with the speed so far: single events jitter.
        velocity_ = {(velocity_.x - step.x / elapsed) / 2, (velocity_.y - step.y / elapsed) / 2};
        lastTime_ = time;
        lastPoint_ = point;
    }
    updateRange(); // the layout may have changed during the drag
    const CGPoint moved = point - grip_;
    if (lock_ != AxisLock::vertical && view_.canScroll(LayoutAxis::horizontal))
        x_.dragBy(-moved.x);
    if (lock_ != AxisLock::horizontal && view_.canScroll(LayoutAxis::vertical))
        y_.dragBy(-moved.y);
    applyOffset();
}

void ScrollTracking::endDrag(double time) {
    if (!dragging_)
        return;
    const bool thrown = time - lastTime_ < kRestBeforeLift;
    finishDrag(thrown ? velocity_ : CGPoint{}, time);
}

void ScrollTracking::cancelDrag() {
    if (dragging_)
        finishDrag({}, lastTime_);
}

void ScrollTracking::finishDrag(CGPoint velocity, double time) {
    const auto self = refTo(&view_);
    FirstException all;
    all.run([&] { glideFrom(velocity, time); });
    all.run([&] { endedDragging(); });
    all.rethrow();
}

void ScrollTracking::glideFrom(CGPoint velocity, double time) {
    const double now = std::max(time, NSRunLoop::mainRunLoop().now());
    x_.endDrag(lock_ == AxisLock::vertical ? 0 : velocity.x, now);
    y_.endDrag(lock_ == AxisLock::horizontal ? 0 : velocity.y, now);
    if (x_.isMoving() || y_.isMoving())
        startGliding();
}

void ScrollTracking::beganDragging() {
    dragging_ = true;
    view_.indicators_->show();
    if (const auto delegate = view_.delegate())
        delegate->scrollViewWillBeginDragging(view_);
}

void ScrollTracking::endedDragging() {
    const auto self = refTo(&view_);
    const bool willDecelerate = isGliding();
    dragging_ = false;
    if (!willDecelerate)
        view_.indicators_->fade();
    if (const auto delegate = view_.delegate())
        delegate->scrollViewDidEndDragging(view_, willDecelerate);
}

// --- Wheel --------------------------------------------------------------------------------------

void ScrollTracking::wheel(CGPoint delta) {
    const bool fingerDrags = dragging_ && !wheelEnd_;
    if (fingerDrags)
        return;
    const auto self = refTo(&view_);
    updateRange();
    // Scheduled before the delegate is notified: the burst must end even if the delegate throws.
    const auto end =
        scheduleWeakly(view_, kWheelPause, [](UIScrollView& view) { of(view).endWheelBurst(); });
    NSRunLoop::mainRunLoop().cancel(std::exchange(wheelEnd_, end));
    if (!dragging_) {
        stopGliding();
        adoptOffset();
        beganDragging();
    }
    const bool isNotch = std::max(std::abs(delta.x), std::abs(delta.y)) >= kSmallestNotch;
    const CGPoint wanted{x_.destination() - finiteCoordinate(delta.x),
                         y_.destination() - finiteCoordinate(delta.y)};
    setOffset(clampedOffset(wanted), isNotch);
}

void ScrollTracking::endWheelBurst() {
    if (!wheelEnd_)
        return;
    NSRunLoop::mainRunLoop().cancel(std::exchange(wheelEnd_, 0));
    if (dragging_)
        endedDragging();
}

// --- Gliding ------------------------------------------------------------------------------------

bool ScrollTracking::catchMotion() {
    if (!isGliding())
        return false;
    const auto self = refTo(&view_);
    stopGliding();
    view_.indicators_->show();
    return true;
}

void ScrollTracking::settle() {
    updateRange();
    adoptOffset();
    lock_ = AxisLock::none;
    glideFrom({}, NSRunLoop::mainRunLoop().now());
    if (!isGliding())
        view_.indicators_->fade();
}

bool ScrollTracking::mayGlide() const {
    return motionSetting() == MotionSetting::full && view_.isOnScreen();
}

void ScrollTracking::land() {
    const CGPoint rest = clampedOffset({x_.destination(), y_.destination()});
    x_.jumpTo(rest.x);
    y_.jumpTo(rest.y);
}

void ScrollTracking::startGliding() {
    if (!mayGlide()) {
        land();
        stopGliding();
        applyOffset();
        return;
    }
    view_.indicators_->show();
    isFirstFrame_ = isFirstFrame_ || !isGliding();
    glide_.start([this](double now) { glideStep(now); });
}

void ScrollTracking::stopGliding() {
    if (!isGliding())
        return;
    glide_.stop();
    x_.stop();
    y_.stop();
    view_.indicators_->fade();
}

void ScrollTracking::glideStep(double now) {
    const auto self = refTo(&view_);
    updateRange();
    if (std::exchange(isFirstFrame_, false)) { // the host may have slept since the glide began
        x_.delayStart(now - NSRunLoop::kFrameInterval);
        y_.delayStart(now - NSRunLoop::kFrameInterval);
    }
    if (!mayGlide())
        land();
    const bool xMoves = x_.step(now);
    const bool yMoves = y_.step(now);
    const bool moving = xMoves || yMoves;
    if (!moving)
        stopGliding();
    applyOffset();
    // In a burst of wheel events the drag ends with the burst instead.
    if (!moving && !dragging_)
        if (const auto delegate = view_.delegate())
            delegate->scrollViewDidEndDecelerating(view_);
}

} // namespace tesmar
