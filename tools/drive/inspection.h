// What a test can see of a view.
#pragma once

#include "tools/drive/Place.h"
#include "tools/drive/answers.h"

namespace tesmar::drive {

// id, frame and visible; and, where they apply, enabled, selected, on, value, minimum, maximum,
// text, font and color.
Json describe(const Place& place);

} // namespace tesmar::drive
