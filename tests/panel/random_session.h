// A host gone wild: bytes decide what it does to a window with a panel, in any order, with any
// numbers, from within any call of the panel's. It ends with the bytes, puts everything away, looks
// for what is left behind, and uses a new panel in the same window. Throws Unsound (soundness.h).
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace tesmar {

// Answers how many events there were.
long playRandomSession(const std::function<std::optional<std::uint8_t>()>& nextByte);

} // namespace tesmar
