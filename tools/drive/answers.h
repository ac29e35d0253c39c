// What the panel deals in, as JSON and back.
//
//     colour       {"white":1,"alpha":0.5} or {"red":1,"green":0,"blue":0,"alpha":1}
//     font         {"name":"Courier","size":18}
//     other value  {"other":"…"}
//     dictionary   any keys, with such values
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/value.h"
#include "tesmar/platform/geometry/geometry.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tesmar::drive {

// Keys stay in the order in which they are written.
using Json = nlohmann::ordered_json;

// The value as it is: 1 rather than 1.0; null for what is no number.
Json number(double value);
// A time or a length, rounded to a billionth: sums of frame times are never quite round.
Json measure(double value);
Json measures(const CGRect& rect);

// Null for no object.
Json fromObject(const Ref<NSObject>& object);
// Null for no dictionary; the three entries of a caption style come first.
Json fromDictionary(const Ref<NSDictionary>& dictionary);
Json fromValue(const Value& value);

// These throw a Fault that shows what does not fit. Beside the forms above, plain texts, numbers
// and Booleans are values too.
Ref<NSMutableDictionary> toDictionary(const Json& json);
Value toArgument(const Json& json);

// On one line; text that is not UTF-8 is replaced.
std::string text(const Json& json);

} // namespace tesmar::drive
