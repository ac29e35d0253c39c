// The horizontal alignment of text, in a label or in the width that it is drawn in.
#pragma once

namespace tesmar {

enum class NSTextAlignment { left = 0, center = 1, right = 2 };

} // namespace tesmar
