// What a view tells about the places in it that the focus can be on.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <cstddef>
#include <string_view>

namespace tesmar {

class UIView;

// One place for the focus. Selecting it touches the view in the middle of the rectangle.
struct UIFocusCell {
    CGRect rect;               // bounds coordinates, points
    std::string_view suffix{}; // of its name, after the view's identifier; static storage
    CGFloat cornerRadius = 6;  // of the rectangle that the ring surrounds, points
    bool operates = true;      // false: selecting it does nothing at present
};

enum class UIFocusStep { decrement, increment };

// A cell of a view, by its index in UIView::focusCells(). No cell while the view is null.
struct UIFocusTarget {
    Ref<UIView> view;
    std::size_t cell = 0;
};

} // namespace tesmar
