// The thin bars that show which part of the content is seen; shown while it moves.
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIScrollView.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kThickness = 3;
constexpr CGFloat kMargin = 3;
constexpr CGFloat kShortest = 24;
constexpr double kFade = 0.4; // seconds

} // namespace

void UIScrollView::setShowsVerticalScrollIndicator(bool shows) {
    showsVertical_ = shows;
    setNeedsDisplay();
}

void UIScrollView::setShowsHorizontalScrollIndicator(bool shows) {
    showsHorizontal_ = shows;
    setNeedsDisplay();
}

CGRect UIScrollView::indicatorRect(LayoutAxis axis) const {
    const bool vertical = axis == LayoutAxis::vertical;
    if (!(vertical ? showsVertical_ : showsHorizontal_) || !canScroll(axis))
        return {};
    const CGRect shown = bounds();
    const CGFloat extent = vertical ? shown.size.height : shown.size.width;
    const CGFloat content = vertical ? contentSize().height : contentSize().width;
    const CGFloat offset = vertical ? shown.minY() : shown.minX();
    const CGFloat track = std::max(0.0, extent - 2 * kMargin);
    const CGFloat length = std::min(track, std::max(kShortest, track * extent / content));
    const CGFloat at =
        kMargin + (track - length) * std::clamp(offset / (content - extent), 0.0, 1.0);
    return vertical ? CGRect{shown.maxX() - kThickness, shown.minY() + at, kThickness, length}
                    : CGRect{shown.minX() + at, shown.maxY() - kThickness, length, kThickness};
}

void UIScrollView::drawOverlay(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || indicatorAlpha_.value() <= 0)
        return;
    context->setRGBFillColor(0, 0, 0, 0.45 * indicatorAlpha_.value());
    for (const auto axis : {LayoutAxis::vertical, LayoutAxis::horizontal})
        if (const CGRect bar = indicatorRect(axis); !bar.isEmpty())
            context->fillRoundedRect(context->snapped(bar), kThickness / 2);
}

void UIScrollView::damageIndicators() {
    for (const auto axis : {LayoutAxis::vertical, LayoutAxis::horizontal})
        setNeedsDisplayInRect(CGRectInset(indicatorRect(axis), -1, -1));
}

void UIScrollView::showIndicators() {
    indicatorAlpha_.jumpTo(1);
}

void UIScrollView::fadeIndicators() {
    if (window())
        indicatorAlpha_.moveTo(0, kFade);
    else
        indicatorAlpha_.jumpTo(0);
}

} // namespace tesmar
