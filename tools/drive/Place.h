// What an identifier names: a view, or one half of a stepper ("<stepper>.decrement").
#pragma once

#include "tesmar/platform/ui/UIStepper.h"

#include <string>
#include <string_view>
#include <vector>

namespace tesmar::drive {

struct Place {
    UIView* view = nullptr;
    UIStepperHalf half = UIStepperHalf::none; // of a stepper; none means all of the view

    std::string identifier() const;
    // In the view's own coordinates.
    CGRect bounds() const;
    // In window coordinates, points, as if nothing clipped it.
    CGRect frame() const;
    // What of the frame a viewer can see; empty outside a window.
    CGRect visibleFrame() const;
};

// The place of that name at or below `root`; its view is null when there is none.
Place placeNamed(UIView& root, std::string_view identifier);

// Every place at or below `root` that has a name, in tree order.
std::vector<Place> namedPlaces(UIView& root);

} // namespace tesmar::drive
