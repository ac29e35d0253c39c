#include "soundness.h"

#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"

namespace tesmar {
namespace {

void require(bool holds, const UIView& view, const char* what) {
    if (!holds)
        throw Unsound(view.layoutName() + ": " + what);
}

bool isPlace(CGPoint p) { // false for no number, too
    return std::abs(p.x) <= 2 * kLargestCoordinate && std::abs(p.y) <= 2 * kLargestCoordinate;
}

} // namespace

void requireLegalState(const UIView& view) {
    const CGRect& f = view.frame();
    require(f.size.width >= 0 && f.size.height >= 0 && isPlace(f.origin) &&
                isPlace({f.maxX(), f.maxY()}) && isPlace(view.bounds().origin) &&
                isPlace(view.translation()) && view.alpha() >= 0 && view.alpha() <= 1,
            view, "it stands nowhere");
    if (const auto* s = dynamic_cast<const UIStepper*>(&view))
        require(s->value() >= s->minimumValue() && s->value() <= s->maximumValue(), view,
                "its value is out of its range");
    for (const auto& child : view.subviews()) {
        require(child->superview() == &view, *child, "it does not know where it is");
        requireLegalState(*child);
    }
}

void requireRest(const UIView& view) {
    if (const auto* control = dynamic_cast<const UIControl*>(&view))
        require(!control->isTracking() && !control->isHighlighted(), view, "a ghost presses it");
    if (const auto* scroll = dynamic_cast<const UIScrollView*>(&view))
        require(!scroll->isDragging() && !scroll->isDecelerating(), view, "a ghost drags it");
    for (const auto& child : view.subviews())
        requireRest(*child);
}

void requireSamePicture(UIWindow& window, const std::vector<std::uint32_t>& pixels) {
    std::vector<std::uint32_t> whole(pixels.size());
    window.invalidate();
    window.render(whole.data(), static_cast<int>(window.pixelSize().width) * 4);
    require(whole == pixels, window, "what was repainted differs from a full repaint");
}

} // namespace tesmar
