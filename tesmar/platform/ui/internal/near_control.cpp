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

// The rectangle of this size or larger around the same centre.
CGRect enlarged(const CGRect& r, CGFloat least) {
    return CGRectInset(r, std::min(0.0, (r.size.width - least) / 2),
                       std::min(0.0, (r.size.height - least) / 2));
}

// `clip`, on the surface, is what the views above show of this one. A control that is cut off by it
// takes touches on and around the part that is shown, and none while nothing of it is.
void search(UIView& view, CGPoint onSurface, CGRect clip, Nearest& nearest) {
    if (!view.takesTouches())
        return;
    const CGRect shown = CGRectIntersection(view.convertRectTo(view.bounds(), nullptr), clip);
    const CGPoint point = view.convertPointFrom(onSurface, nullptr);
    if (auto* control = dynamic_cast<UIControl*>(&view);
        control && control->isEnabled() && isLeafControl(view) && !shown.isEmpty() &&
        control->touchRect().contains(point) &&
        (clip.contains(onSurface) ||
         enlarged(shown, UIControl::kTouchTarget).contains(onSurface))) {
        const CGFloat d = distance(onSurface, shown);
        if (d < nearest.distance)
            nearest = {control, d};
    }
    if (view.clipsToBounds())
        clip = shown;
    if (!clip.isEmpty())
        for (const auto& child : view.subviews())
            search(*child, onSurface, clip, nearest);
}

} // namespace

bool isLeafControl(const UIView& view) {
    return dynamic_cast<const UIControl*>(&view) && !containsControl(view);
}

UIControl* nearestControl(UIView& root, CGPoint onSurface) {
    Nearest nearest;
    search(root, onSurface, CGRectInset({}, -kLargestCoordinate, -kLargestCoordinate), nearest);
    return nearest.control;
}

} // namespace tesmar
