// Finds the control for a touch a little outside its bounds.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

namespace tesmar {

class UIControl;
class UIView;

// Whether `view` is a control that contains no other controls: one that a finger can operate.
bool isLeafControl(const UIView& view);

// The visible, enabled leaf control at or below `root` whose touch rectangle contains `onSurface`
// (window coordinates); of several, the one whose bounds are nearest. Null when there is none. Not
// owned.
UIControl* nearestControl(UIView& root, CGPoint onSurface);

} // namespace tesmar
