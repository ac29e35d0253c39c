#include "tools/drive/Place.h"

#include "tesmar/platform/ui/UIWindow.h"

namespace tesmar::drive {
namespace {

constexpr std::string_view kCard = "card";
// Points. A smaller remainder is a rounding error.
constexpr CGFloat kMinVisible = 0.01;
// Views below this alpha take no touches (see UIView::takesTouches).
constexpr double kMinAlpha = 0.01;

// The card does not clip, so that its shadow shows, but none of its content lies outside it.
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
        if (v->isHidden() || v->alpha() < kMinAlpha)
            return {};
        if (v != view && clips(*v))
            visible = CGRectIntersection(visible, v->convertRectTo(v->bounds(), nullptr));
    }
    const bool isVisible = visible.size.width >= kMinVisible && visible.size.height >= kMinVisible;
    return isVisible ? visible : CGRect{};
}

Place findPlace(UIView& root, std::string_view identifier) {
    if (UIView* const view = root.viewWithIdentifier(identifier))
        return {view};
    const auto [stepper, half] = UIStepper::halfWithIdentifier(root, identifier);
    return {stepper, half};
}

std::vector<Place> findPlaces(UIView& root) {
    std::vector<Place> places;
    collect(root, places);
    return places;
}

} // namespace tesmar::drive
