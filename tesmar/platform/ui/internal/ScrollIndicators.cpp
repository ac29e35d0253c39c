#include "tesmar/platform/ui/internal/ScrollIndicators.h"

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIScrollView.h"

#include <algorithm>

namespace tesmar {
namespace {

// Points.
constexpr CGFloat kThickness = 3;
constexpr CGFloat kMargin = 3;
constexpr CGFloat kShortest = 24;
constexpr double kFade = 0.4; // seconds

} // namespace

ScrollIndicators::ScrollIndicators(UIScrollView& view)
    : view_(view), alpha_(
                       0, [this] { damage(); }, [this] { return canBeSeen(); }) {}

void ScrollIndicators::show() {
    alpha_.jumpTo(1);
}

void ScrollIndicators::hide() {
    alpha_.jumpTo(0);
}

void ScrollIndicators::fade() {
    alpha_.moveTo(0, kFade);
}

bool ScrollIndicators::canBeSeen() const {
    const bool none =
        rect(LayoutAxis::vertical).isEmpty() && rect(LayoutAxis::horizontal).isEmpty();
    return !none && view_.isOnScreen();
}

// Empty when the axis has no indicator or nothing to scroll to.
CGRect ScrollIndicators::rect(LayoutAxis axis) const {
    const bool vertical = axis == LayoutAxis::vertical;
    const bool enabled =
        vertical ? view_.showsVerticalScrollIndicator() : view_.showsHorizontalScrollIndicator();
    if (!enabled || !view_.canScroll(axis))
        return {};
    const CGRect visible = view_.bounds();
    const CGFloat extent = vertical ? visible.size.height : visible.size.width;
    const UIEdgeInsets& inset = view_.contentInset();
    const CGSize size = view_.contentSize();
    const CGFloat content =
        vertical ? size.height + inset.top + inset.bottom : size.width + inset.left + inset.right;
    const CGFloat offset = vertical ? visible.minY() + inset.top : visible.minX() + inset.left;
    const CGFloat track = std::max(0.0, extent - 2 * kMargin);
    const CGFloat length = std::min(track, std::max(kShortest, track * extent / content));
    const CGFloat at =
        kMargin + (track - length) * std::clamp(offset / (content - extent), 0.0, 1.0);
    return vertical ? CGRect{visible.maxX() - kThickness, visible.minY() + at, kThickness, length}
                    : CGRect{visible.minX() + at, visible.maxY() - kThickness, length, kThickness};
}

void ScrollIndicators::draw() const {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || alpha_.value() <= 0)
        return;
    context->setRGBFillColor(0, 0, 0, 0.45 * alpha_.value());
    for (const auto axis : {LayoutAxis::vertical, LayoutAxis::horizontal})
        if (const CGRect bar = rect(axis); !bar.isEmpty())
            context->fillRoundedRect(context->snapped(bar), kThickness / 2);
}

void ScrollIndicators::setNeedsDisplay() {
    if (alpha_.value() > 0)
        damage();
}

void ScrollIndicators::damage() {
    for (const auto axis : {LayoutAxis::vertical, LayoutAxis::horizontal})
        if (const CGRect bar = rect(axis); !bar.isEmpty())
            view_.setNeedsDisplayInRect(CGRectInset(bar, -1, -1));
}

} // namespace tesmar
