// What keys of Qt mean to a window.
#pragma once

#include "tesmar/platform/ui/UIKey.h"

#include <QKeyEvent>

#include <optional>

namespace tesmar {

// Nothing for other keys, and while Control, Alt or Meta is down.
std::optional<UIKey> meaningOf(const QKeyEvent& event);

} // namespace tesmar
