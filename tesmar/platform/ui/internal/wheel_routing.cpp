#include "tesmar/platform/ui/internal/wheel_routing.h"

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIWindow.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"

namespace tesmar {
namespace {

// The first scroll view at or below `view` in tree order, or null.
UIScrollView* firstScrollView(UIView& view) {
    if (auto* const scroll = dynamic_cast<UIScrollView*>(&view))
        return scroll;
    for (const auto& subview : view.subviews())
        if (UIScrollView* const scroll = firstScrollView(*subview))
            return scroll;
    return nullptr;
}

UIScrollView* contentOfCard(const UIWindow& window, UIView* view) {
    if (!view || view == &window)
        return nullptr;
    while (view->superview() != &window)
        view = view->superview();
    const bool isCard = view != window.rootViewController()->view().get();
    return isCard ? firstScrollView(*view) : nullptr;
}

// The nearest one at or above `scroll` that `delta` moves.
UIScrollView* movedBy(UIScrollView* scroll, CGPoint delta) {
    const auto moves = [&] {
        return (delta.x != 0 && scroll->canScroll(LayoutAxis::horizontal)) ||
               (delta.y != 0 && scroll->canScroll(LayoutAxis::vertical));
    };
    while (scroll && !moves())
        scroll = UIScrollView::enclosing(scroll->superview());
    return scroll;
}

} // namespace

void routeWheel(UIWindow& window, UIView* hit, CGPoint delta) {
    UIScrollView* const nearest = UIScrollView::enclosing(hit);
    UIScrollView* const start = nearest ? nearest : contentOfCard(window, hit);
    const CGPoint sideways{delta.y, 0};
    if (auto* const scroll = movedBy(start, delta))
        ScrollTracking::of(*scroll).wheel(delta);
    else if (auto* const other = delta.x == 0 ? movedBy(start, sideways) : nullptr)
        ScrollTracking::of(*other).wheel(sideways);
}

} // namespace tesmar
