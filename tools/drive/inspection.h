// The state of a view as JSON.
#pragma once

#include "tools/drive/Place.h"
#include "tools/drive/json_values.h"

namespace tesmar::drive {

// The keys id, frame and visible; and, where they apply, enabled, selected, on, value, minimum,
// maximum, text, font and color.
Json describe(const Place& place);

} // namespace tesmar::drive
