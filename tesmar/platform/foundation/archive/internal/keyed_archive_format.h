// The layout of a keyed archive, as its reader and its writer share it.
//
// The archive is a dictionary with a flat table of objects; everything refers into that table by
// UID. Number 0 is the null object. An object is a plain value (text, a number, bytes) or a record:
// a dictionary of its encoded values and, under "$class", the UID of its class, which is a
// dictionary of the class's name and of the names from it up to the root class.
#pragma once

#include "tesmar/platform/foundation/archive/internal/property_list.h"

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

// An archive is a few values, and whoever reads one waits for it: no archive may exceed these.
inline constexpr PropertyListLimits kArchiveLimits{.bytes = 96 << 10, .values = 6144};
// Objects within objects.
inline constexpr int kDeepestArchive = 250;
// Objects that are reached from the root, shared ones each time.
inline constexpr std::size_t kMostObjectsReached = 16 << 10;

} // namespace tesmar::keyed_archive_format
