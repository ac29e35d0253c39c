// A host that uses a window with a panel at random: bytes decide which operations it calls, with
// which values, also from within callbacks of the panel.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace tesmar {

// Plays until `nextByte` returns nothing; then dismisses and releases everything, and uses a new
// panel in the same window. Throws InvariantViolated (invariants.h).
void playRandomSession(const std::function<std::optional<std::uint8_t>()>& nextByte);

} // namespace tesmar
