// A view onto content larger than itself. A finger or a wheel drags the content; it glides on
// afterwards, and springs back at its ends. It does not zoom. Content that fits does not bounce,
// and the indicators have no insets of their own.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIView.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace tesmar {

class ScrollIndicators;
class ScrollTracking;
class UIScrollView;

// Called on the main thread, during touches, wheel events, frames of the run loop, or setters. A
// delegate may do anything, releasing the scroll view included.
class TESMAR_API UIScrollViewDelegate {
  public:
    virtual ~UIScrollViewDelegate();
    // The content offset has changed.
    virtual void scrollViewDidScroll(UIScrollView&) {}
    // A finger, or a burst of wheel events, starts to drag the content.
    virtual void scrollViewWillBeginDragging(UIScrollView&) {}
    // `willDecelerate`: the content glides on, and scrollViewDidEndDecelerating follows unless
    // another touch or a setter stops it.
    virtual void scrollViewDidEndDragging(UIScrollView&, bool /*willDecelerate*/) {}
    // After scrollViewDidEndDragging, or when a touch that stopped the content lifts.
    virtual void scrollViewWillBeginDecelerating(UIScrollView&) {}
    // Content that glided has come to rest.
    virtual void scrollViewDidEndDecelerating(UIScrollView&) {}
    // An animated setter has arrived, at once where nothing can move, unless a touch or another
    // setter has stopped it.
    virtual void scrollViewDidEndScrollingAnimation(UIScrollView&) {}
};

class TESMAR_API UIScrollView : public UIView {
    TESMAR_CLASS

  public:
    // A finger that moves at least this far drags, in points.
    static constexpr CGFloat kDragThreshold = 10;
    // How long a finger may rest on the content before the content gets its touch, in seconds.
    static constexpr double kContentTouchDelay = 0.150;

    UIScrollView();
    ~UIScrollView() override;

    // Not owned; null when there is none.
    Ref<UIScrollViewDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(const Ref<UIScrollViewDelegate>& delegate) { delegate_ = delegate; }

    // In points. Also set by constraints between subviews and the scroll view's edges.
    CGSize contentSize() const { return contentSize_; }
    void setContentSize(CGSize size);
    // Empty space around the content, in points; initially zero. Content at rest may show it, so
    // that the offset reaches from -left and -top on. Coordinates that are NaN or infinite are made
    // finite. Content that is at rest within the new ends does not move.
    const UIEdgeInsets& contentInset() const { return contentInset_; }
    void setContentInset(const UIEdgeInsets& inset);
    // The content point at the top left corner. Content starts at its left edge. In a superview
    // that is read from right to left it starts at its right edge, and keeps its distance from that
    // edge when content or view become wider or narrower.
    CGPoint contentOffset() const { return bounds().origin; }
    // Stops any motion. Without animation, the offset may lie past the ends and stays there until
    // the next layout; with animation, it is clamped to the ends. Coordinates that are NaN or
    // infinite are made finite.
    void setContentOffset(CGPoint offset, bool animated);
    // Scrolls the shortest distance that shows all of `rect` (content coordinates) within the
    // insets, or its start if it is larger than that.
    void scrollRectToVisible(const CGRect& rect, bool animated);

    // Both initially true.
    bool showsVerticalScrollIndicator() const { return showsVertical_; }
    void setShowsVerticalScrollIndicator(bool shows);
    bool showsHorizontalScrollIndicator() const { return showsHorizontal_; }
    void setShowsHorizontalScrollIndicator(bool shows);

    // Shows the indicators of the axes that scroll for a second, then fades them.
    void flashScrollIndicators();

    // The colour of what lies below the view. Content fades into it over 16 points at each edge
    // that hides some of it, so that it looks cut off. Null, the initial value: no fades.
    const Ref<UIColor>& edgeFadeColor() const { return edgeFadeColor_; }
    void setEdgeFadeColor(const Ref<UIColor>& color);

    // Initially true. False: fingers and throws move the content to its ends, but not past them.
    bool bounces() const { return bounces_; }
    void setBounces(bool bounces) { bounces_ = bounces; }
    // Initially false. True: after a drag the content comes to rest at a multiple of the view's
    // width or height, at most one page from where the drag began; after a burst of wheel events at
    // the nearest one. A setter may leave the content between pages.
    bool isPagingEnabled() const { return paging_; }
    void setPagingEnabled(bool enabled) { paging_ = enabled; }

    // True from the start of a drag (or burst of wheel events) to its end.
    bool isDragging() const;
    // Whether the content moves on its own, outside a drag.
    bool isDecelerating() const;
    // Whether a drag or wheel moves the content along `axis`.
    bool canScroll(LayoutAxis axis) const;

    // `view` itself or the nearest view above it that is a scroll view; null when there is none, or
    // `view` is null. Not owned.
    static UIScrollView* enclosing(UIView* view);

    void layoutSubviews() override;
    bool layoutEdgesAreContent() const override { return true; }
    void setLayoutContentSize(CGSize size) override { setContentSize(size); }

  protected:
    void didMoveToWindow() override;
    void drawOverlay(CGRect rect) override;

  private:
    friend class ScrollTracking;

    // The offsets between which content rests.
    struct OffsetRange {
        CGPoint lowest, highest;
        CGPoint clamped(CGPoint offset) const {
            return {std::clamp(offset.x, lowest.x, highest.x),
                    std::clamp(offset.y, lowest.y, highest.y)};
        }
    };
    OffsetRange offsetRange() const;
    // What scrollRectToVisible() scrolls to.
    CGPoint offsetShowing(const CGRect& rect) const;
    UIEdgeInsets hiddenContent() const;
    void contentEdgesChanged();
    void anchorContent();

    WeakRef<UIScrollViewDelegate> delegate_;
    CGSize contentSize_;
    CGFloat anchor_ = 0; // the horizontal offset of content that has not been scrolled
    UIEdgeInsets contentInset_;
    bool bounces_ = true;
    bool paging_ = false;
    bool showsVertical_ = true;
    bool showsHorizontal_ = true;
    Ref<UIColor> edgeFadeColor_;
    std::uint64_t flashTimer_ = 0; // ends a flash of the indicators; 0 before the first
    std::unique_ptr<ScrollIndicators> indicators_;
    std::unique_ptr<ScrollTracking> tracking_;
};

} // namespace tesmar
