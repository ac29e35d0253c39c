// The order in which views are read.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <cstddef>
#include <vector>

namespace tesmar {

enum class ReadingOrder { leftToRight, rightToLeft };

// The indices of `frames`, row by row from the top, each row in that order. Frames of which one
// contains the middle height of the other are in one row.
std::vector<std::size_t> readingOrder(const std::vector<CGRect>& frames, ReadingOrder order);

} // namespace tesmar
