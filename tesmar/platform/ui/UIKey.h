// Keys of keyboards, remotes and game controllers, and the focus that they move.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <string>

namespace tesmar {

// What a key means, whatever device it is on.
enum class UIKey {
    up,
    down,
    left,
    right,
    next,      // Tab: the next group of controls
    previous,  // Shift+Tab
    select,    // Enter, Space, OK, a controller's A: operates the focused control
    back,      // Escape, Back, a controller's B: dismisses the topmost controller
    increment, // plus: steps the focused stepper or list
    decrement, // minus
    first,     // Home: the first control of the row
    last,      // End
};

// Whether the key has gone down just now, or is still held.
enum class UIKeyRepeat { pressed, repeated };

// What an arrow does that leads out of the presented view: nothing, or it is left to the host.
enum class UIEdgeKeys { taken, leftToHost };

// Where the focus is.
struct UIFocus {
    std::string identifier; // the view's accessibility identifier, and which part; may be empty
    CGRect frame;           // the part of the control that can be seen, in window coordinates
    bool isShown = false;   // by the ring
};

} // namespace tesmar
