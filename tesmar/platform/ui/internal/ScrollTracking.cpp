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
// A throw at this speed turns the page. Points per second.
constexpr double kPageVelocity = 100;

} // namespace

ScrollTracking::~ScrollTracking() {
    NSRunLoop::mainRunLoop().cancel(wheelEnd_);
}

ScrollTracking& ScrollTracking::of(UIScrollView& view) {
    return *view.tracking_;
}

// --- Offset -------------------------------------------------------------------------------------

void ScrollTracking::updateRange() {
    const auto range = view_.offsetRange();
    const CGSize visible = view_.frame().size;
    x_.setRange(range.lowest.x, range.highest.x);
    x_.setExtent(visible.width);
    x_.setBounces(view_.bounces());
    y_.setRange(range.lowest.y, range.highest.y);
    y_.setExtent(visible.height);
    y_.setBounces(view_.bounces());
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

void ScrollTracking::reveal(const CGRect& rect) {
    setOffset(view_.offsetShowing(rect), true, ScrollMotion::Pace::brisk);
}

void ScrollTracking::setOffset(CGPoint offset, bool animated, ScrollMotion::Pace pace) {
    const auto self = refTo(&view_);
    isAnimation_ = animated;
    moveTo(offset, animated, pace);
    if (animated && !isGliding()) // there at once
        if (const auto delegate = view_.delegate())
            delegate->scrollViewDidEndScrollingAnimation(view_);
}

void ScrollTracking::moveTo(CGPoint offset, bool animated, ScrollMotion::Pace pace) {
    offset = {finiteCoordinate(offset.x), finiteCoordinate(offset.y)};
    updateRange();
    if (animated) {
        const double now = NSRunLoop::mainRunLoop().now();
        x_.moveTo(offset.x, now, pace);
        y_.moveTo(offset.y, now, pace);
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
    view_.setBoundsOrigin(view_.offsetRange().clamped(view_.contentOffset()));
    adoptOffset();
}

void ScrollTracking::leaveWindow() {
    stopGliding();
    endWheelBurst();
    if (!dragging_)
        view_.setBoundsOrigin(view_.offsetRange().clamped(view_.contentOffset()));
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
    isAnimation_ = false;
    const auto release = [&](ScrollMotion& motion, LayoutAxis axis, double speed, AxisLock other) {
        if (lock_ == other)
            motion.endDrag(0, now);
        else if (view_.isPagingEnabled())
            motion.endDragAt(page(axis, speed), speed, now);
        else
            motion.endDrag(speed, now);
    };
    release(x_, LayoutAxis::horizontal, velocity.x, AxisLock::vertical);
    release(y_, LayoutAxis::vertical, velocity.y, AxisLock::horizontal);
    if (x_.isMoving() || y_.isMoving())
        startGliding();
}

// The offset of the page on which a drag along `axis` ends.
double ScrollTracking::page(LayoutAxis axis, double velocity) const {
    const bool across = axis == LayoutAxis::horizontal;
    const CGSize size = view_.frame().size;
    const double length = std::max(1.0, across ? size.width : size.height);
    const double at = (across ? x_ : y_).destination() / length;
    const double start = std::round((across ? dragStart_.x : dragStart_.y) / length);
    const double next = velocity > kPageVelocity    ? std::ceil(at)
                        : velocity < -kPageVelocity ? std::floor(at)
                                                    : std::round(at);
    return std::clamp(next, start - 1, start + 1) * length;
}

void ScrollTracking::beganDragging() {
    dragging_ = true;
    dragStart_ = view_.contentOffset();
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
    notifyWillDecelerate();
}

void ScrollTracking::notifyWillDecelerate() {
    if (isGliding() && !dragging_ && !isAnimation_)
        if (const auto delegate = view_.delegate())
            delegate->scrollViewWillBeginDecelerating(view_);
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
        scheduleWeakly(view_, kWheelPause, [](UIScrollView& view) { of(view).settleWheelBurst(); });
    NSRunLoop::mainRunLoop().cancel(std::exchange(wheelEnd_, end));
    if (!dragging_) {
        stopGliding();
        adoptOffset();
        beganDragging();
    }
    const bool isNotch = std::max(std::abs(delta.x), std::abs(delta.y)) >= kSmallestNotch;
    const CGPoint wanted{x_.destination() - finiteCoordinate(delta.x),
                         y_.destination() - finiteCoordinate(delta.y)};
    isAnimation_ = false;
    moveTo(view_.offsetRange().clamped(wanted), isNotch);
}

void ScrollTracking::settleWheelBurst() {
    const auto self = refTo(&view_);
    lock_ = AxisLock::none;
    if (dragging_ && view_.isPagingEnabled())
        glideFrom({}, NSRunLoop::mainRunLoop().now());
    endWheelBurst();
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
    const auto self = refTo(&view_);
    dragStart_ = view_.contentOffset();
    glideFrom({}, NSRunLoop::mainRunLoop().now());
    if (!isGliding())
        view_.indicators_->fade();
    notifyWillDecelerate();
}

bool ScrollTracking::mayGlide() const {
    return motionSetting() == MotionSetting::full && view_.isOnScreen();
}

void ScrollTracking::land() {
    const CGPoint rest = view_.offsetRange().clamped({x_.destination(), y_.destination()});
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
        const double start = now - NSRunLoop::mainRunLoop().frameInterval();
        x_.delayStart(start);
        y_.delayStart(start);
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
    const auto delegate = view_.delegate();
    if (moving || dragging_ || !delegate)
        return;
    if (isAnimation_)
        delegate->scrollViewDidEndScrollingAnimation(view_);
    else
        delegate->scrollViewDidEndDecelerating(view_);
}

} // namespace tesmar
