#include "invariants.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <algorithm>

namespace tesmar {
namespace {

void require(bool holds, const UIView& view, const char* violation) {
    if (!holds)
        throw InvariantViolated(view.layoutName() + ": " + violation);
}

bool isInRange(CGPoint p) { // false for NaN
    return std::abs(p.x) <= 2 * kLargestCoordinate && std::abs(p.y) <= 2 * kLargestCoordinate;
}

} // namespace

void requireValidState(const UIView& view) {
    const CGRect& f = view.frame();
    require(f.size.width >= 0 && f.size.height >= 0 && isInRange(f.origin) &&
                isInRange({f.maxX(), f.maxY()}) && isInRange(view.bounds().origin) &&
                isInRange(view.translation()) && view.alpha() >= 0 && view.alpha() <= 1,
            view, "its geometry is out of range");
    if (const auto* s = dynamic_cast<const UIStepper*>(&view))
        require(s->value() >= s->minimumValue() && s->value() <= s->maximumValue(), view,
                "its value is out of range");
    for (const auto& child : view.subviews()) {
        require(child->superview() == &view, *child, "its superview is another one");
        requireValidState(*child);
    }
}

void requireAtRest(const UIView& view) {
    if (const auto* control = dynamic_cast<const UIControl*>(&view))
        require(!control->isTracking() && !control->isHighlighted(), view, "it is still pressed");
    if (const auto* scroll = dynamic_cast<const UIScrollView*>(&view))
        require(!scroll->isDragging() && !scroll->isDecelerating(), view, "it still scrolls");
    for (const auto& child : view.subviews())
        requireAtRest(*child);
}

void requireIdle(const UIWindow& window) {
    requireAtRest(window);
    require(!NSRunLoop::mainRunLoop().nextDeadline(), window, "something is still scheduled");
}

void requireFullyPainted(UIWindow& window, std::span<const std::uint32_t> pixels) {
    std::vector<std::uint32_t> whole(pixels.size());
    window.invalidate();
    window.render(whole, static_cast<int>(window.pixelSize().width) * 4);
    require(std::ranges::equal(whole, pixels), window, "a partial repaint differs from a full one");
}

void dismissAll(UIWindow& window, const std::function<void(double)>& advance) {
    window.cancelTouches(0);
    while (const auto top = window.presentedViewController()) {
        top->dismissViewControllerAnimated(false);
        advance(1); // an animated dismissal may have begun before
    }
}

} // namespace tesmar
