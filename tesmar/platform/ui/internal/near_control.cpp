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

struct Span {
    CGFloat origin, extent;
};

// The shown part of a span, enlarged on both sides like UIControl::touchRect(). What is still
// missing then is added where the rest is cut off.
Span enlarged(Span shown, Span whole) {
    const CGFloat margin = std::max(0.0, (UIControl::kTouchTarget - whole.extent) / 2);
    const CGFloat missing = std::max(0.0, UIControl::kTouchTarget - shown.extent - 2 * margin);
    const bool isCutBefore = shown.origin > whole.origin;
    const bool isCutAfter = shown.origin + shown.extent < whole.origin + whole.extent;
    const CGFloat before = isCutBefore == isCutAfter ? missing / 2 : isCutBefore ? missing : 0;
    return {shown.origin - margin - before, shown.extent + 2 * margin + missing};
}

// Where a finger reaches a target of which only a part is shown.
CGRect reachOf(const CGRect& shown, const CGRect& whole) {
    const Span x = enlarged({shown.minX(), shown.size.width}, {whole.minX(), whole.size.width});
    const Span y = enlarged({shown.minY(), shown.size.height}, {whole.minY(), whole.size.height});
    return {x.origin, y.origin, x.extent, y.extent};
}

bool isReached(const UIControl& control, CGPoint onSurface, const CGRect& clip) {
    const CGPoint point = control.convertPointFrom(onSurface, nullptr);
    if (clip.contains(onSurface))
        return control.touchRect().contains(point);
    const CGRect target = control.convertRectTo(control.touchTarget(point), nullptr);
    const CGRect shown = CGRectIntersection(target, clip);
    return !shown.isEmpty() && reachOf(shown, target).contains(onSurface);
}

// `clip`, on the surface, is what the views above show of this one. A control that is cut off by it
// takes touches on and around the part that is shown, and none while nothing of it is.
void search(UIView& view, CGPoint onSurface, CGRect clip, Nearest& nearest) {
    if (!view.takesTouches())
        return;
    const CGRect shown = CGRectIntersection(view.convertRectTo(view.bounds(), nullptr), clip);
    if (auto* control = dynamic_cast<UIControl*>(&view); control && control->isEnabled() &&
                                                         isLeafControl(view) && !shown.isEmpty() &&
                                                         isReached(*control, onSurface, clip)) {
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
