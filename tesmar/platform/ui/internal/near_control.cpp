#include "tesmar/platform/ui/internal/near_control.h"

#include "tesmar/platform/ui/UIControl.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tesmar {
namespace {

CGFloat distance(CGPoint p, const CGRect& r) {
    const CGFloat dx = std::max({r.minX() - p.x, 0.0, p.x - r.maxX()});
    const CGFloat dy = std::max({r.minY() - p.y, 0.0, p.y - r.maxY()});
    return std::hypot(dx, dy);
}

bool containsControl(const UIView& view) {
    return std::any_of(view.subviews().begin(), view.subviews().end(), [](const auto& child) {
        return dynamic_cast<const UIControl*>(child.get()) || containsControl(*child);
    });
}

struct Nearest {
    UIControl* control = nullptr;
    CGFloat distance = std::numeric_limits<CGFloat>::infinity();
};

void search(UIView& view, CGPoint onSurface, Nearest& nearest) {
    if (!view.takesTouches())
        return;
    const CGPoint point = view.convertPointFrom(onSurface, nullptr);
    if (auto* control = dynamic_cast<UIControl*>(&view); control && control->isEnabled() &&
                                                         isLeafControl(view) &&
                                                         control->touchRect().contains(point)) {
        const CGFloat d = distance(point, view.bounds());
        if (d < nearest.distance)
            nearest = {control, d};
    }
    if (view.clipsToBounds() && !view.bounds().contains(point))
        return;
    for (const auto& child : view.subviews())
        search(*child, onSurface, nearest);
}

} // namespace

bool isLeafControl(const UIView& view) {
    return dynamic_cast<const UIControl*>(&view) && !containsControl(view);
}

UIControl* nearestControl(UIView& root, CGPoint onSurface) {
    Nearest nearest;
    search(root, onSurface, nearest);
    return nearest.control;
}

} // namespace tesmar
