#include "tesmar/platform/ui/UIScrollView.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/internal/ScrollIndicators.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"
#include "tesmar/platform/ui/internal/equal_objects.h"
#include "tesmar/platform/ui/internal/scroll_fades.h"
#include "tesmar/platform/ui/internal/weak_schedule.h"

#include <algorithm>
#include <utility>

namespace tesmar {
namespace {

constexpr double kFlash = 1; // seconds that indicators show on their own

} // namespace

UIScrollViewDelegate::~UIScrollViewDelegate() = default;

Class& UIScrollView::classObject() {
    static Class& type =
        *new Class("UIScrollView", &UIView::classObject(), allocator<UIScrollView>());
    return type;
}

UIScrollView::UIScrollView()
    : indicators_(std::make_unique<ScrollIndicators>(*this)),
      tracking_(std::make_unique<ScrollTracking>(*this)) {
    setClipsToBounds(true);
}

UIScrollView::~UIScrollView() = default;

// --- Content ------------------------------------------------------------------------------------

void UIScrollView::setContentSize(CGSize size) {
    size = finiteRect({{}, size}).size;
    if (size == contentSize_)
        return;
    indicators_->setNeedsDisplay();
    contentSize_ = size;
    contentEdgesChanged();
}

void UIScrollView::setContentInset(const UIEdgeInsets& anyInset) {
    const UIEdgeInsets inset = finiteInsets(anyInset);
    if (inset == contentInset_)
        return;
    indicators_->setNeedsDisplay();
    contentInset_ = inset;
    contentEdgesChanged();
}

// What is drawn at the edges depends on how much they hide.
void UIScrollView::contentEdgesChanged() {
    indicators_->setNeedsDisplay();
    if (edgeFadeColor_)
        setNeedsDisplay();
    setNeedsLayout();
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated) {
    tracking_->setOffset(offset, animated);
}

void UIScrollView::scrollRectToVisible(const CGRect& rect, bool animated) {
    setContentOffset(offsetShowing(rect), animated);
}

CGPoint UIScrollView::offsetShowing(const CGRect& anyRect) const {
    const CGRect rect = finiteRect(anyRect);
    const auto nearest = [](CGFloat at, CGFloat extent, CGFloat low, CGFloat high) {
        return high - low >= extent || low < at ? low : high > at + extent ? high - extent : at;
    };
    const CGRect visible = bounds();
    const UIEdgeInsets& inset = contentInset_;
    const CGFloat x = nearest(visible.minX() + inset.left,
                              std::max(0.0, visible.size.width - inset.left - inset.right),
                              rect.minX(), rect.maxX());
    const CGFloat y = nearest(visible.minY() + inset.top,
                              std::max(0.0, visible.size.height - inset.top - inset.bottom),
                              rect.minY(), rect.maxY());
    return offsetRange().clamped({x - inset.left, y - inset.top});
}

UIScrollView::OffsetRange UIScrollView::offsetRange() const {
    const UIEdgeInsets& inset = contentInset_;
    const CGSize size = frame().size;
    const CGPoint lowest{-inset.left, -inset.top};
    return {lowest,
            {std::max(lowest.x, contentSize_.width + inset.right - size.width),
             std::max(lowest.y, contentSize_.height + inset.bottom - size.height)}};
}

bool UIScrollView::canScroll(LayoutAxis axis) const {
    // Less than half a point is a rounding error rather than something to scroll to.
    const OffsetRange range = offsetRange();
    const CGPoint room = range.highest - range.lowest;
    return (axis == LayoutAxis::horizontal ? room.x : room.y) >= 0.5;
}

UIScrollView* UIScrollView::enclosing(UIView* view) {
    for (; view; view = view->superview())
        if (auto* scroll = dynamic_cast<UIScrollView*>(view))
            return scroll;
    return nullptr;
}

// --- Motion -------------------------------------------------------------------------------------

bool UIScrollView::isDragging() const {
    return tracking_->isDragging();
}

bool UIScrollView::isDecelerating() const {
    return tracking_->isGliding() && !tracking_->isDragging();
}

void UIScrollView::anchorContent() {
    const bool isRightToLeft = superview() && superview()->isRightToLeft();
    const CGFloat before = std::exchange(anchor_, isRightToLeft ? offsetRange().highest.x : 0);
    if (anchor_ != before)
        setContentOffset({contentOffset().x + anchor_ - before, contentOffset().y}, false);
}

void UIScrollView::layoutSubviews() {
    anchorContent();
    tracking_->layoutChanged();
}

void UIScrollView::didMoveToWindow() {
    if (window())
        return;
    NSRunLoop::mainRunLoop().cancel(std::exchange(flashTimer_, 0));
    indicators_->hide();
    tracking_->leaveWindow();
}

// --- Indicators ---------------------------------------------------------------------------------

void UIScrollView::setShowsVerticalScrollIndicator(bool shows) {
    indicators_->setNeedsDisplay();
    showsVertical_ = shows;
    indicators_->setNeedsDisplay();
}

void UIScrollView::setShowsHorizontalScrollIndicator(bool shows) {
    indicators_->setNeedsDisplay();
    showsHorizontal_ = shows;
    indicators_->setNeedsDisplay();
}

void UIScrollView::flashScrollIndicators() {
    if (!indicators_->canBeSeen())
        return;
    const auto end = scheduleWeakly(*this, kFlash, [](UIScrollView& view) {
        if (!view.isDragging() && !view.isDecelerating())
            view.indicators_->fade();
    });
    NSRunLoop::mainRunLoop().cancel(std::exchange(flashTimer_, end));
    indicators_->show();
}

// --- Edges --------------------------------------------------------------------------------------

void UIScrollView::setEdgeFadeColor(const Ref<UIColor>& color) {
    if (!equalObjects(std::exchange(edgeFadeColor_, color), color))
        setNeedsDisplay();
}

// How far content reaches beyond each edge, in points; at most 0 where it ends.
UIEdgeInsets UIScrollView::hiddenContent() const {
    const OffsetRange range = offsetRange();
    const CGPoint before = contentOffset() - range.lowest, after = range.highest - contentOffset();
    return {before.y, before.x, after.y, after.x};
}

void UIScrollView::drawOverlay(CGRect) {
    if (edgeFadeColor_)
        drawEdgeFades(bounds(), hiddenContent(), *edgeFadeColor_);
    indicators_->draw();
}

} // namespace tesmar
