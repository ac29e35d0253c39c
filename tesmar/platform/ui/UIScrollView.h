// A window onto content larger than itself. Dragged by a finger or a wheel; glides on, and springs
// back at the ends.
#pragma once

#include "tesmar/platform/ui/Motion.h"
#include "tesmar/platform/ui/ScrollMotion.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

class UIScrollView;

class UIScrollViewDelegate {
  public:
    virtual ~UIScrollViewDelegate() = default;
    virtual void scrollViewDidScroll(UIScrollView&) {}
    virtual void scrollViewWillBeginDragging(UIScrollView&) {}
    // `willDecelerate`: the content glides on.
    virtual void scrollViewDidEndDragging(UIScrollView&, bool /*willDecelerate*/) {}
    virtual void scrollViewDidEndDecelerating(UIScrollView&) {}
};

enum class UIScrollAxisLock { none, horizontal, vertical };

class TESMAR_API UIScrollView : public UIView {
    TESMAR_CLASS

  public:
    // A finger has to move this far before it drags, in points.
    static constexpr CGFloat kDragThreshold = 10;
    // How long a finger may rest on content before the content gets the touch, in seconds.
    static constexpr double kContentTouchDelay = 0.150;

    UIScrollView();
    ~UIScrollView() override;

    // Not owned.
    Ref<UIScrollViewDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(const Ref<UIScrollViewDelegate>& delegate) { delegate_ = delegate; }

    // Constraints to the scroll view's edges set it; so may code.
    CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size);
    // The content point shown at the top left corner.
    CGPoint contentOffset() const { return bounds().origin; }
    // Any offset, also past the ends; stops any motion. Animated, it is held within the ends.
    void setContentOffset(CGPoint offset, bool animated);
    // Scrolls as little as shows the rectangle (in content coordinates).
    void scrollRectToVisible(const CGRect& rect, bool animated);

    bool isScrollEnabled() const { return scrollEnabled_; }
    void setScrollEnabled(bool enabled) { scrollEnabled_ = enabled; }
    bool showsVerticalScrollIndicator() const { return showsVertical_; }
    void setShowsVerticalScrollIndicator(bool shows);
    bool showsHorizontalScrollIndicator() const { return showsHorizontal_; }
    void setShowsHorizontalScrollIndicator(bool shows);

    bool isDragging() const { return dragging_; }
    bool isDecelerating() const { return gliding_ != nullptr && !dragging_; }
    // Whether a drag or wheel moves the content along `axis`.
    bool canScroll(LayoutAxis axis) const;

    // `view` itself or the nearest view above it that is a scroll view; null when there is none, or
    // `view` is null. Not owned.
    static UIScrollView* enclosing(UIView* view);

    void layoutSubviews() override;
    bool layoutEdgesAreContent() const override { return true; }
    void setLayoutContentSize(CGSize size) override { setContentSize(size); }

    // --- Driven by the window -------------------------------------------------------------------

    // Whether a finger that has moved by `translation` drags this view now.
    bool wantsDrag(CGPoint translation) const;
    // The finger takes hold at `point` (window coordinates), having started towards `translation`.
    void beginDrag(CGPoint point, CGPoint translation, double time);
    void continueDrag(CGPoint point, double time);
    void endDrag(double time);
    // The finger was taken away: no gliding.
    void cancelDrag();
    // A finger has landed on moving content: it stands still. False when it stood still before.
    bool catchMotion();
    // One event of a wheel or trackpad: content moves by -delta. A burst of them is one drag.
    void wheel(CGPoint delta);

    // A caught motion is let go without a drag.
    void settle();

  protected:
    void didMoveToWindow() override;
    void drawOverlay(CGRect rect) override;

  private:
    class Glide;

    CGSize scrollRoom() const;
    void configureMotion();
    void syncMotion();
    void showOffset();
    void beganDragging();
    void release(CGPoint velocity, double time);
    void letGo(CGPoint velocity, double time);
    void endedDragging(bool willDecelerate);
    void endWheelBurst();
    void startGliding();
    void stopGliding();
    bool glideStep(double now);
    CGRect indicatorRect(LayoutAxis axis) const;
    void damageIndicators();
    void showIndicators();
    void fadeIndicators();

    WeakRef<UIScrollViewDelegate> delegate_;
    CGSize contentSize_;
    bool scrollEnabled_ = true;
    bool showsVertical_ = true;
    bool showsHorizontal_ = true;

    ScrollMotion x_;
    ScrollMotion y_;
    bool dragging_ = false;
    UIScrollAxisLock lock_ = UIScrollAxisLock::none;
    CGPoint grip_;     // where the finger took hold
    CGPoint velocity_; // of the finger, points per second
    CGPoint lastPoint_;
    double lastTime_ = 0;
    std::uint64_t wheelEnd_ = 0; // timer that ends a burst
    Ref<Glide> gliding_;
    Transition indicatorAlpha_;
};

} // namespace tesmar
