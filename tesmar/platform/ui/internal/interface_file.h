// Makes the objects of an interface file from its text.
#pragma once

#include "tesmar/platform/foundation/NSBundle.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

// New top-level objects in the order of the file, as UINib makes them; images come from `bundle`.
// If the text is invalid, returns std::nullopt and sets `problem`.
std::optional<std::vector<Ref<NSObject>>>
instantiateInterface(std::string_view text, const Ref<NSBundle>& bundle, std::string& problem);

} // namespace tesmar
