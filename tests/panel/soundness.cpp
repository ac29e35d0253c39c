#include "soundness.h"

#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

#include <algorithm>

namespace tesmar {
namespace {

void require(bool holds, const UIView& view, const char* what) {
    if (!holds)
        throw Unsound(view.layoutName() + ": " + what);
}

bool isHeld(double value) {
    return std::abs(value) <= 2 * kLargestCoordinate; // false for no number, too
}

void requireLegal(const UIView& view) {
    const CGRect& f = view.frame();
    require(isHeld(f.minX()) && isHeld(f.minY()), view, "its frame stands nowhere");
    require(f.size.width >= 0 && f.size.height >= 0 && isHeld(f.maxX()) && isHeld(f.maxY()), view,
            "its frame has no size");
    require(isHeld(view.bounds().minX()) && isHeld(view.bounds().minY()) &&
                isHeld(view.translation().x) && isHeld(view.translation().y),
            view, "it is scrolled or moved to nowhere");
    require(view.alpha() >= 0 && view.alpha() <= 1, view, "its alpha is none");
    if (const auto* stepper = dynamic_cast<const UIStepper*>(&view))
        require(stepper->value() >= stepper->minimumValue() &&
                    stepper->value() <= stepper->maximumValue(),
                view, "its value is out of its range");
    for (const auto& child : view.subviews()) {
        require(child->superview() == &view, *child, "it does not know where it is");
        requireLegal(*child);
    }
}

void requireUnheld(const UIView& view) {
    if (const auto* control = dynamic_cast<const UIControl*>(&view))
        require(!control->isTracking() && !control->isHighlighted(), view, "a ghost presses it");
    if (const auto* scroll = dynamic_cast<const UIScrollView*>(&view))
        require(!scroll->isDragging() && !scroll->isDecelerating(), view, "a ghost drags it");
    for (const auto& child : view.subviews())
        requireUnheld(*child);
}

} // namespace

void requireLegalState(UIWindow& window) {
    requireLegal(window);
}

void requireRest(UIWindow& window) {
    requireUnheld(window);
    require(!NSRunLoop::mainRunLoop().nextDeadline(), window, "something is due at rest");
}

void requireSamePicture(UIWindow& window, const std::vector<std::uint32_t>& pixels) {
    std::vector<std::uint32_t> whole(pixels.size());
    window.invalidate();
    window.render(whole.data(), static_cast<int>(window.pixelSize().width) * 4);
    const auto differs = std::ranges::mismatch(whole, pixels).in1 - whole.begin();
    if (whole != pixels)
        throw Unsound("pixel " +
                      std::to_string(differs % static_cast<int>(window.pixelSize().width)) + "," +
                      std::to_string(differs / static_cast<int>(window.pixelSize().width)) +
                      " was repainted other than in a full repaint");
}

} // namespace tesmar
