// Compares collections that may hold one another.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <functional>

namespace tesmar {

// The result of `compare`, which compares the elements of the two collections. Within one
// comparison, also of collections that hold themselves or share elements, a pair of collections is
// compared once; where it turns up again it counts as equal. Collections nested deeper than 1,000
// levels are unequal. Any thread.
bool compareCollections(const NSObject& a, const NSObject& b, const std::function<bool()>& compare);

} // namespace tesmar
