// The plate behind a glyph that is pressed.
#pragma once

#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

// `part` of `view` (bounds coordinates) has the glyph in its middle. A plate that would reach past
// an edge of the content around it, where nothing can be scrolled into view, is narrower.
void drawPressPlate(CGContext& context, UIView& view, const CGRect& part, const UIColor& tint);

} // namespace tesmar
