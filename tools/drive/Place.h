// The target of an identifier: a view, or one half of a stepper ("<stepper>.decrement").
#pragma once

#include "tesmar/platform/ui/UIStepper.h"

#include <string>
#include <string_view>
#include <vector>

namespace tesmar::drive {

struct Place {
    UIView* view = nullptr;
    UIStepperHalf half = UIStepperHalf::none; // none: the whole view

    std::string identifier() const;
    // In the view's own coordinates.
    CGRect bounds() const;
    // In window coordinates, in points, before clipping.
    CGRect frame() const;
    // The part of frame() that is neither clipped nor hidden; empty when the view is in no window.
    CGRect visibleFrame() const;
};

// Searches `root` and its descendants; the result's view is null when none has the identifier.
Place findPlace(UIView& root, std::string_view identifier);

// `root` and its descendants that have an identifier, with the halves of steppers, in tree order.
std::vector<Place> findPlaces(UIView& root);

} // namespace tesmar::drive
