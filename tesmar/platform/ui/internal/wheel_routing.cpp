#include "tesmar/platform/ui/internal/wheel_routing.h"

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/internal/ScrollTracking.h"

namespace tesmar {

void routeWheel(UIView* hit, CGPoint delta) {
    auto* scroll = UIScrollView::enclosing(hit);
    const auto moves = [&] {
        return (delta.x != 0 && scroll->canScroll(LayoutAxis::horizontal)) ||
               (delta.y != 0 && scroll->canScroll(LayoutAxis::vertical));
    };
    while (scroll && !moves())
        scroll = UIScrollView::enclosing(scroll->superview());
    if (scroll)
        ScrollTracking::of(*scroll).wheel(delta);
}

} // namespace tesmar
