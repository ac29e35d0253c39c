// Accessible elements as JSON, and the names of their actions.
#pragma once

#include "tesmar/platform/ui/UIAccessibility.h"
#include "tools/drive/json_values.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tesmar::drive {

Json describe(const std::vector<UIAccessibleElement>& elements);

std::string_view nameOf(UIAccessibleAction action);
std::optional<UIAccessibleAction> actionNamed(std::string_view name);

} // namespace tesmar::drive
