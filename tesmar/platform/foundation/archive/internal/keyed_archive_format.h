// The layout of a keyed archive, shared by its reader and its writer.
//
// The archive is a dictionary with a flat table of objects. A UID is an index into that table; 0 is
// the null object. An object is a plain value (text, a number, bytes) or a record: a dictionary of
// its encoded values and, for "$class", the UID of its class. A class is a dictionary of its name
// and the names from it up to the root class.
#pragma once

#include "tesmar/platform/foundation/archive/internal/property_list.h"

#include <algorithm>

namespace tesmar::keyed_archive_format {

inline constexpr const char* kArchiverKey = "$archiver";
inline constexpr const char* kArchiverName = "NSKeyedArchiver";
inline constexpr const char* kVersionKey = "$version";
inline constexpr long long kVersion = 100000;
inline constexpr const char* kTopKey = "$top";
inline constexpr const char* kRootKey = "root";
inline constexpr const char* kObjectsKey = "$objects";
inline constexpr const char* kNull = "$null";
inline constexpr PropertyList::UID kNullUID{0};
inline constexpr const char* kClassKey = "$class";
inline constexpr const char* kClassNameKey = "$classname";
inline constexpr const char* kClassChainKey = "$classes";

// The most bytes that an object takes in our archives. Writer and reader spend the same, so an
// archive that was read can be written again and read once more.
inline std::size_t recordCost(std::size_t values = 0) {
    return 16 * std::max<std::size_t>(values, 8); // at least as much as for 8 values
}
inline std::size_t listCost(std::size_t elements) {
    return 16 * elements; // without the elements themselves
}
inline std::size_t scalarCost(std::size_t bytes = 0) {
    return 24 + 2 * bytes; // text may be written as UTF-16
}
// The cost of a scalar besides its bytes: one value, one level below the object that holds it.
inline constexpr DecodeBudget::Cost kScalarObject{.values = 1, .depth = 1};
// Half of the longest archive. The other half is room for the classes.
inline constexpr std::size_t kMostObjectBytes = kArchiveLimits.bytes / 2;

} // namespace tesmar::keyed_archive_format
