// Converts the values that the panel exchanges with its host to JSON and back:
//
//     colour       {"white":1,"alpha":0.5} or {"red":1,"green":0,"blue":0,"alpha":1}
//     font         {"name":"Courier","size":18}
//     other value  {"other":"…"}
//     dictionary   an object with any keys and such values
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/foundation/value.h"
#include "tesmar/platform/geometry/geometry.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tesmar::drive {

// Objects keep their keys in the order of insertion.
using Json = nlohmann::ordered_json;

// A whole number without a fraction (1, not 1.0); null for NaN and infinities.
Json number(double value);
// A time in seconds or a length in points, rounded to nine decimals: sums of frame times are
// inexact.
Json rounded(double value);
// [x, y, width, height], rounded like that.
Json rounded(const CGRect& rect);

// JSON null for a null reference.
Json fromObject(const Ref<NSObject>& object);
// JSON null for a null reference. The three entries of a caption style come first.
Json fromDictionary(const Ref<NSDictionary>& dictionary);
Json fromValue(const Value& value);

// Both throw a Fault that quotes the wrong part. Besides the forms above, values may be plain
// strings, numbers and Booleans.
Ref<NSMutableDictionary> toDictionary(const Json& json);
Value toArgument(const Json& json);

// On one line; invalid UTF-8 is replaced.
std::string serialize(const Json& json);

} // namespace tesmar::drive
