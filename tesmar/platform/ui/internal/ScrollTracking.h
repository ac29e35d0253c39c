// Moves the content of a scroll view: under a finger, by a wheel, by code, and on its own
// afterwards. Touch dispatch and wheel routing drive it. Main thread only.
#pragma once

#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/ui/internal/FrameTask.h"
#include "tesmar/platform/ui/internal/ScrollMotion.h"

#include <cstdint>

namespace tesmar {

class UIScrollView;

// Points are in window coordinates, unless a comment says otherwise; times are seconds of the
// host's clock. Most calls notify the view's delegate, which may do anything.
class ScrollTracking {
  public:
    // `view` owns this.
    explicit ScrollTracking(UIScrollView& view) : view_(view) {}
    ~ScrollTracking();
    ScrollTracking(const ScrollTracking&) = delete;
    ScrollTracking& operator=(const ScrollTracking&) = delete;

    static ScrollTracking& of(UIScrollView& view);

    // By a finger, or by a burst of wheel events.
    bool isDragging() const { return dragging_; }
    // The content moves on its own: thrown, springing back, or towards an animated offset.
    bool isGliding() const { return glide_.isRunning(); }

    // --- A finger -------------------------------------------------------------------------------

    // Whether a finger that has moved by `translation` drags the content now.
    bool wantsDrag(CGPoint translation) const;
    // The finger is at `point`, `translation` from where it landed. The part of the translation
    // beyond the threshold moves the content at once, since a flick may be a single event.
    void beginDrag(CGPoint point, CGPoint translation, double time);
    void continueDrag(CGPoint point, double time);
    // The content glides on at the finger's speed, or springs back from past an end.
    void endDrag(double time);
    // The finger was taken away: the content springs back, but does not glide on.
    void cancelDrag();
    // A finger has landed: stops gliding content. Returns whether the content was gliding.
    bool catchMotion();
    // The finger that caught the content has lifted without a drag: content past an end springs
    // back.
    void settle();

    // --- Wheel and code -------------------------------------------------------------------------

    // One event of a wheel or trackpad moves the content by -delta. A burst of events is one drag;
    // a finger that drags takes precedence.
    void wheel(CGPoint delta);
    // `offset` in content coordinates, possibly past the ends. Animated, it is clamped to the ends.
    // The delegate is told of the end of an animation.
    void setOffset(CGPoint offset, bool animated,
                   ScrollMotion::Pace pace = ScrollMotion::Pace::calm);
    // Shows `rect`, in content coordinates, as quickly as the focus moves.
    void reveal(const CGRect& rect);

    // --- The view -------------------------------------------------------------------------------

    // The view or its content has a new size: content at rest stays within its ends.
    void layoutChanged();
    // The view has left its window: motion stops at once. Content past an end jumps back to the
    // end.
    void leaveWindow();

  private:
    enum class AxisLock { none, horizontal, vertical };

    void updateRange();
    void adoptOffset();
    void applyOffset();
    void moveTo(CGPoint offset, bool animated, ScrollMotion::Pace pace = ScrollMotion::Pace::calm);
    double page(LayoutAxis axis, double velocity) const;
    void notifyWillDecelerate();
    void beganDragging();
    void endedDragging();
    void finishDrag(CGPoint velocity, double time);
    void glideFrom(CGPoint velocity, double time);
    void settleWheelBurst();
    void endWheelBurst();
    bool mayGlide() const;
    void startGliding();
    void land();
    void stopGliding();
    void glideStep(double now);

    UIScrollView& view_;
    ScrollMotion x_;
    ScrollMotion y_;
    bool dragging_ = false;
    AxisLock lock_ = AxisLock::none;
    CGPoint grip_;     // the finger's position that corresponds to the offset when the drag began
    CGPoint velocity_; // of the content offset, points per second
    CGPoint lastPoint_;
    double lastTime_ = 0;
    std::uint64_t wheelEnd_ = 0; // timer that ends a burst; 0 outside a burst
    CGPoint dragStart_;          // offset at the start of a drag
    FrameTask glide_;
    bool isAnimation_ = false;  // the glide is that of an animated setter
    bool isFirstFrame_ = false; // of the glide
};

} // namespace tesmar
