// What must hold of a window whatever its host has done to it.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <stdexcept>

namespace tesmar {

struct Unsound : std::logic_error {
    using std::logic_error::logic_error;
};

// At any time: every frame, offset and value is finite and within its range, views and their
// superviews agree. Throws Unsound.
void requireLegalState(UIWindow& window);
// With no finger down and every motion over, nothing is held, highlighted or due.
void requireRest(UIWindow& window);
// `pixels`, kept up to date by render(), are what a full repaint gives, byte for byte.
void requireSamePicture(UIWindow& window, const std::vector<std::uint32_t>& pixels);

} // namespace tesmar
