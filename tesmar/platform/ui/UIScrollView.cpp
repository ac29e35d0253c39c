#include "tesmar/platform/ui/UIScrollView.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/internal/ScrollIndicators.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"

#include <algorithm>
#include <utility>

namespace tesmar {

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
    indicators_->setNeedsDisplay();
    setNeedsLayout();
}

void UIScrollView::setContentOffset(CGPoint offset, bool animated) {
    tracking_->setOffset(offset, animated);
}

void UIScrollView::scrollRectToVisible(const CGRect& anyRect, bool animated) {
    const CGRect rect = finiteRect(anyRect);
    const auto nearest = [](CGFloat at, CGFloat extent, CGFloat low, CGFloat high) {
        return high - low >= extent || low < at ? low : high > at + extent ? high - extent : at;
    };
    const CGRect visible = bounds();
    const CGSize room = scrollRoom();
    const CGFloat x = nearest(visible.minX(), visible.size.width, rect.minX(), rect.maxX());
    const CGFloat y = nearest(visible.minY(), visible.size.height, rect.minY(), rect.maxY());
    setContentOffset({std::clamp(x, 0.0, room.width), std::clamp(y, 0.0, room.height)}, animated);
}

// The largest offset of content at rest, along each axis.
CGSize UIScrollView::scrollRoom() const {
    return {std::max(0.0, contentSize_.width - frame().size.width),
            std::max(0.0, contentSize_.height - frame().size.height)};
}

bool UIScrollView::canScroll(LayoutAxis axis) const {
    // Less than half a point is a rounding error rather than something to scroll to.
    const CGSize room = scrollRoom();
    return (axis == LayoutAxis::horizontal ? room.width : room.height) >= 0.5;
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
    const CGFloat before = std::exchange(anchor_, isRightToLeft ? scrollRoom().width : 0);
    if (anchor_ != before)
        setContentOffset({contentOffset().x + anchor_ - before, contentOffset().y}, false);
}

void UIScrollView::layoutSubviews() {
    anchorContent();
    tracking_->layoutChanged();
}

void UIScrollView::didMoveToWindow() {
    if (!window())
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

void UIScrollView::drawOverlay(CGRect) {
    indicators_->draw();
}

} // namespace tesmar
