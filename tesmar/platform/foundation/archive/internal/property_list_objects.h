// Converts property lists from and to the foundation's objects.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/scalars.h"

#include <optional>

namespace tesmar {

// The number of a Boolean, an integer or a real, else nullopt. Integers too large for long long
// become double. May be NaN or infinite.
std::optional<NSNumber::Number> numberFromPropertyList(const PropertyList& list);

// A new object; values that are shared in `list` become shared objects. Null for types without a
// class (null, dates, UIDs, sets), for text that is not valid UTF-8, and for containers that hold
// either. NaN becomes 0, infinity the largest finite number.
Ref<NSObject> objectFromPropertyList(const PropertyList& list);

// std::nullopt if `object` is or contains text that is not valid UTF-8, or an object of another
// class than NSString, NSNumber, NSData, NSArray and NSDictionary; if it contains itself; or if the
// result would exceed kPreferencesLimits.
std::optional<PropertyList> propertyListFromObject(const NSObject& object);

} // namespace tesmar
