#include "tools/drive/Place.h"

#include "tesmar/platform/ui/UIWindow.h"

namespace tesmar::drive {
namespace {

constexpr std::string_view kCard = "card";
// A smaller rest is a rounding error rather than something to see, in points.
constexpr CGFloat kLeastVisible = 0.01;
// As in hit testing.
constexpr double kLeastAlpha = 0.01;

// The card shows nothing outside itself, though it does not clip: its shadow lies there.
bool clips(const UIView& view) {
    return view.clipsToBounds() || view.accessibilityIdentifier() == kCard;
}

void collect(UIView& view, std::vector<Place>& places) {
    if (!view.accessibilityIdentifier().empty()) {
        places.push_back({&view});
        if (dynamic_cast<const UIStepper*>(&view))
            for (const auto half : {UIStepperHalf::decrement, UIStepperHalf::increment})
                places.push_back({&view, half});
    }
    for (const auto& child : view.subviews())
        collect(*child, places);
}

} // namespace

std::string Place::identifier() const {
    return view->accessibilityIdentifier() + std::string(UIStepper::identifierSuffix(half));
}

CGRect Place::bounds() const {
    const auto* stepper = dynamic_cast<const UIStepper*>(view);
    return stepper && half != UIStepperHalf::none ? stepper->halfRect(half) : view->bounds();
}

CGRect Place::frame() const {
    return view->convertRectTo(bounds(), nullptr);
}

CGRect Place::visibleFrame() const {
    const UIWindow* const window = view->window();
    if (!window)
        return {};
    CGRect visible = CGRectIntersection(frame(), window->bounds());
    for (const UIView* v = view; v; v = v->superview()) {
        if (v->isHidden() || v->alpha() < kLeastAlpha)
            return {};
        if (v != view && clips(*v))
            visible = CGRectIntersection(visible, v->convertRectTo(v->bounds(), nullptr));
    }
    const bool isThere =
        visible.size.width >= kLeastVisible && visible.size.height >= kLeastVisible;
    return isThere ? visible : CGRect{};
}

Place placeNamed(UIView& root, std::string_view identifier) {
    if (UIView* const view = root.viewWithIdentifier(identifier))
        return {view};
    const auto [stepper, half] = UIStepper::halfWithIdentifier(root, identifier);
    return {stepper, half};
}

std::vector<Place> namedPlaces(UIView& root) {
    std::vector<Place> places;
    collect(root, places);
    return places;
}

} // namespace tesmar::drive
