#include "tesmar/platform/ui/UIScrollView.h"

#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

// A finger that rests this long before its lift throws nothing. Seconds.
constexpr double kRestBeforeLift = 0.1;
// A pause this long ends a burst of wheel events. Seconds.
constexpr double kWheelPause = 0.15;
// A wheel turns in notches, over which the content glides; a trackpad's events are smaller than
// this, and followed exactly. Points.
constexpr CGFloat kSmallestNotch = 16;
// One direction is clear when the other is less than this part of it.
constexpr double kClearDirection = 0.5;

} // namespace

// The motion after a drag, in the host's time.
class UIScrollView::Glide : public FrameClient {
  public:
    explicit Glide(UIScrollView& view) : view_(&view) {}
    void leave() { view_ = nullptr; }
    bool frame(double now) override { return view_ && view_->glideStep(now); }

  private:
    UIScrollView* view_;
};

Class& UIScrollView::classObject() {
    static Class type("UIScrollView", &UIView::classObject(), allocator<UIScrollView>());
    return type;
}

UIScrollView::UIScrollView() : indicatorAlpha_(0, [this] { damageIndicators(); }) {
    setClipsToBounds(true);
}

UIScrollView::~UIScrollView() {
    if (gliding_)
        gliding_->leave();
    NSRunLoop::mainRunLoop().cancel(wheelEnd_);
}

// --- Content ------------------------------------------------------------------------------------

void UIScrollView::setContentSize(CGSize size) {
    size = finiteRect({{}, size}).size;
    if (size == contentSize_)
        return;
    contentSize_ = size;
    setNeedsLayout();
}

void UIScrollView::layoutSubviews() {
    configureMotion();
    // A smaller content, or a larger view, must not leave the content past its end.
    if (!dragging_ && !gliding_) {
        const CGPoint now = contentOffset();
        const CGSize room = scrollRoom();
        setBoundsOrigin({std::clamp(now.x, 0.0, room.width), std::clamp(now.y, 0.0, room.height)});
        syncMotion();
    }
}

CGSize UIScrollView::scrollRoom() const {
    return {std::max(0.0, contentSize_.width - frame().size.width),
            std::max(0.0, contentSize_.height - frame().size.height)};
}

void UIScrollView::configureMotion() {
    const CGSize room = scrollRoom();
    x_.setRange(0, room.width);
    x_.setExtent(frame().size.width);
    y_.setRange(0, room.height);
    y_.setExtent(frame().size.height);
}

void UIScrollView::syncMotion() {
    x_.jumpTo(contentOffset().x);
    y_.jumpTo(contentOffset().y);
}

UIScrollView* UIScrollView::enclosing(UIView* view) {
    for (; view; view = view->superview())
        if (auto* scroll = dynamic_cast<UIScrollView*>(view))
            return scroll;
    return nullptr;
}

bool UIScrollView::canScroll(LayoutAxis axis) const {
    // Less than half a point is a rounding matter, not something to scroll to.
    const CGSize room = scrollRoom();
    return scrollEnabled_ && (axis == LayoutAxis::horizontal ? room.width : room.height) >= 0.5;
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated) {
    offset = {finiteCoordinate(offset.x), finiteCoordinate(offset.y)};
    configureMotion();
    if (animated && window() && motionSetting() == MotionSetting::full) {
        const double now = NSRunLoop::mainRunLoop().now();
        x_.moveTo(offset.x, now);
        y_.moveTo(offset.y, now);
        startGliding();
        return;
    }
    stopGliding();
    x_.jumpTo(offset.x);
    y_.jumpTo(offset.y);
    showOffset();
}

void UIScrollView::scrollRectToVisible(const CGRect& anyRect, bool animated) {
    const CGRect rect = finiteRect(anyRect);
    const auto nearest = [](CGFloat at, CGFloat extent, CGFloat low, CGFloat high) {
        return high - low >= extent || low < at ? low : high > at + extent ? high - extent : at;
    };
    const CGRect shown = bounds();
    const CGSize room = scrollRoom();
    const CGFloat x = nearest(shown.minX(), shown.size.width, rect.minX(), rect.maxX());
    const CGFloat y = nearest(shown.minY(), shown.size.height, rect.minY(), rect.maxY());
    setContentOffset({std::clamp(x, 0.0, room.width), std::clamp(y, 0.0, room.height)}, animated);
}

void UIScrollView::showOffset() {
    const CGPoint offset{x_.offset(), y_.offset()};
    if (offset == contentOffset())
        return;
    setBoundsOrigin(offset);
    if (const auto delegate = delegate_.lock())
        delegate->scrollViewDidScroll(*this);
}

// --- Dragging -----------------------------------------------------------------------------------

bool UIScrollView::wantsDrag(CGPoint translation) const {
    return (canScroll(LayoutAxis::horizontal) && std::abs(translation.x) >= kDragThreshold) ||
           (canScroll(LayoutAxis::vertical) && std::abs(translation.y) >= kDragThreshold);
}

void UIScrollView::beginDrag(CGPoint point, CGPoint translation, double time) {
    configureMotion();
    stopGliding();
    endWheelBurst();
    const CGPoint moved{std::abs(translation.x), std::abs(translation.y)};
    const bool across = canScroll(LayoutAxis::horizontal);
    const bool along = canScroll(LayoutAxis::vertical);
    lock_ = !along || (across && moved.y < moved.x * kClearDirection) ? UIScrollAxisLock::horizontal
            : !across || moved.x < moved.y * kClearDirection          ? UIScrollAxisLock::vertical
                                                                      : UIScrollAxisLock::none;
    syncMotion();
    x_.beginDrag();
    y_.beginDrag();
    // What the finger moved beyond the threshold moves the content: a flick may be one event long.
    const CGFloat farthest = std::max(across ? moved.x : 0, along ? moved.y : 0);
    const CGFloat held = farthest > 0 ? std::min(1.0, kDragThreshold / farthest) : 1;
    grip_ = {point.x - translation.x * (1 - held), point.y - translation.y * (1 - held)};
    lastPoint_ = point;
    lastTime_ = time;
    velocity_ = {};
    const auto kept = ref(this);
    beganDragging();
    continueDrag(point, time);
}

void UIScrollView::continueDrag(CGPoint point, double time) {
    if (!dragging_)
        return;
    const double elapsed = time - lastTime_;
    const CGPoint step = point - lastPoint_;
    if (elapsed > 0 && step != CGPoint()) {
        // Half of the old speed is kept: single events jitter.
        velocity_ = {(velocity_.x - step.x / elapsed) / 2, (velocity_.y - step.y / elapsed) / 2};
        lastTime_ = time;
        lastPoint_ = point;
    }
    // The content may have been laid out anew under the finger.
    configureMotion();
    const CGPoint moved = point - grip_;
    if (lock_ != UIScrollAxisLock::vertical && canScroll(LayoutAxis::horizontal))
        x_.dragBy(-moved.x);
    if (lock_ != UIScrollAxisLock::horizontal && canScroll(LayoutAxis::vertical))
        y_.dragBy(-moved.y);
    showOffset();
}

void UIScrollView::endDrag(double time) {
    if (!dragging_)
        return;
    const bool thrown = time - lastTime_ < kRestBeforeLift;
    release(thrown ? velocity_ : CGPoint{}, time);
}

void UIScrollView::cancelDrag() {
    if (dragging_)
        release({}, lastTime_);
}

void UIScrollView::release(CGPoint velocity, double time) {
    const auto kept = ref(this);
    FirstException all;
    all.run([&] { letGo(velocity, time); });
    all.run([&] { endedDragging(gliding_ != nullptr); });
    all.rethrow();
}

void UIScrollView::letGo(CGPoint velocity, double time) {
    const double now = std::max(time, NSRunLoop::mainRunLoop().now());
    x_.endDrag(lock_ == UIScrollAxisLock::vertical ? 0 : velocity.x, now);
    y_.endDrag(lock_ == UIScrollAxisLock::horizontal ? 0 : velocity.y, now);
    if (window() && (x_.isMoving() || y_.isMoving()))
        startGliding();
}

void UIScrollView::beganDragging() {
    dragging_ = true;
    showIndicators();
    if (const auto delegate = delegate_.lock())
        delegate->scrollViewWillBeginDragging(*this);
}

void UIScrollView::endedDragging(bool willDecelerate) {
    const auto kept = ref(this);
    dragging_ = false;
    if (!gliding_)
        fadeIndicators();
    if (const auto delegate = delegate_.lock())
        delegate->scrollViewDidEndDragging(*this, willDecelerate);
}

void UIScrollView::wheel(CGPoint delta) {
    // A finger that drags goes before the wheel.
    if (dragging_ && !wheelEnd_)
        return;
    const auto kept = ref(this);
    configureMotion();
    // The burst has its end before anybody hears of its beginning.
    const std::weak_ptr<NSObject> weak = weak_from_this();
    const auto end = NSRunLoop::mainRunLoop().schedule(kWheelPause, [weak] {
        if (const auto view = as<UIScrollView>(weak.lock()))
            view->endWheelBurst();
    });
    NSRunLoop::mainRunLoop().cancel(std::exchange(wheelEnd_, end));
    if (!dragging_) {
        stopGliding();
        syncMotion();
        beganDragging();
    }
    const bool isNotch = std::max(std::abs(delta.x), std::abs(delta.y)) >= kSmallestNotch;
    const CGPoint wanted{x_.destination() - finiteCoordinate(delta.x),
                         y_.destination() - finiteCoordinate(delta.y)};
    const CGSize room = scrollRoom();
    setContentOffset(
        {std::clamp(wanted.x, 0.0, room.width), std::clamp(wanted.y, 0.0, room.height)}, isNotch);
}

void UIScrollView::endWheelBurst() {
    if (!wheelEnd_)
        return;
    NSRunLoop::mainRunLoop().cancel(std::exchange(wheelEnd_, 0));
    if (dragging_)
        endedDragging(gliding_ != nullptr);
}

// --- Gliding ------------------------------------------------------------------------------------

bool UIScrollView::catchMotion() {
    if (!gliding_)
        return false;
    const auto kept = ref(this);
    stopGliding();
    showIndicators();
    return true;
}

// A caught motion is let go without a drag: content past an end goes back.
void UIScrollView::settle() {
    configureMotion();
    syncMotion();
    lock_ = UIScrollAxisLock::none;
    letGo({}, NSRunLoop::mainRunLoop().now());
    if (!gliding_)
        fadeIndicators();
}

void UIScrollView::startGliding() {
    if (motionSetting() == MotionSetting::reduced) {
        const CGSize room = scrollRoom();
        x_.jumpTo(std::clamp(x_.offset(), 0.0, room.width));
        y_.jumpTo(std::clamp(y_.offset(), 0.0, room.height));
        showOffset();
        return;
    }
    showIndicators();
    const auto glide = gliding_ ? gliding_ : std::make_shared<Glide>(*this);
    NSRunLoop::mainRunLoop().addFrameClient(glide);
    gliding_ = glide;
}

void UIScrollView::stopGliding() {
    if (!gliding_)
        return;
    std::exchange(gliding_, nullptr)->leave();
    x_.stop();
    y_.stop();
    fadeIndicators();
}

bool UIScrollView::glideStep(double now) {
    const auto kept = ref(this);
    configureMotion();
    const bool xMoves = x_.step(now);
    const bool yMoves = y_.step(now);
    const bool moving = xMoves || yMoves;
    if (!moving)
        stopGliding();
    showOffset();
    if (!moving && !dragging_) // else a wheel's glide within its burst, which ends by itself
        if (const auto delegate = delegate_.lock())
            delegate->scrollViewDidEndDecelerating(*this);
    return gliding_ != nullptr;
}

void UIScrollView::didMoveToWindow() {
    if (window())
        return;
    // Nobody sees it move any more: it comes to rest where it would have.
    stopGliding();
    endWheelBurst();
    if (!dragging_) {
        const CGSize room = scrollRoom();
        setBoundsOrigin({std::clamp(contentOffset().x, 0.0, room.width),
                         std::clamp(contentOffset().y, 0.0, room.height)});
    }
}

} // namespace tesmar
