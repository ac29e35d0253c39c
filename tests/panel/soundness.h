// What must hold whatever a host has done. Each throws Unsound where it does not.
#pragma once

#include "tesmar/platform/ui/UIWindow.h"

#include <stdexcept>

namespace tesmar {

struct Unsound : std::logic_error {
    using std::logic_error::logic_error;
};

// At any time: frames, offsets and values are finite and in range; views know their superviews.
void requireLegalState(const UIView& view);
// With no finger down and every motion over, nothing is held or highlighted.
void requireRest(const UIView& view);
// `pixels`, kept up to date by render(), are what a full repaint gives, byte for byte.
void requireSamePicture(UIWindow& window, const std::vector<std::uint32_t>& pixels);

} // namespace tesmar
