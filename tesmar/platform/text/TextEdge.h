// The ways in which the edges of characters are drawn.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/graphics/UIColor.h"

#include <string_view>

namespace tesmar {

enum class TextEdge { none, raised, depressed, uniform, dropShadow };

inline Ref<UIColor> derivedEdgeColor(const UIColor& c) {
    return (0.2126 * c.red() + 0.7152 * c.green() + 0.0722 * c.blue()) < 0.2
               ? UIColor::whiteColor()
               : UIColor::blackColor();
}

} // namespace tesmar
