// Comparison of properties that may be null.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

namespace tesmar {

// True for two nulls too.
inline bool equalObjects(const Ref<NSObject>& a, const Ref<NSObject>& b) {
    return a == b || (a && a->isEqual(b.get()));
}

} // namespace tesmar
