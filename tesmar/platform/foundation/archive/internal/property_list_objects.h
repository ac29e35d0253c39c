// Property lists against the foundation's own objects.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/scalars.h"

#include <optional>

namespace tesmar {

// An integer or a real as a number, else nothing. Integers too large for long long are reals.
std::optional<NSNumber::Number> numberFromPropertyList(const PropertyList& list);

// A fresh object; values that are shared in `list` are shared objects. Null for types without a
// class (dates, UIDs, sets), for text that is not valid UTF-8, and for containers of such. Reals
// that are not finite become finite.
Ref<NSObject> objectFromPropertyList(const PropertyList& list);

// Nothing when `object` is, or holds, an object of another class than NSString, NSNumber, NSData,
// NSArray and NSDictionary, text that is not valid UTF-8, or itself, or when the result would be
// too large or too deep for readPropertyList.
std::optional<PropertyList> propertyListFromObject(const NSObject& object);

} // namespace tesmar
