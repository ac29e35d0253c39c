// Reads and changes the preferences file on the disk.
#pragma once

#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <fcntl.h>
#include <map>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace tesmar {

struct PreferencesFile {
    enum State {
        absent,
        parsed,
        unparsable, // or too large to be parsed
        unusable,   // not a regular file, or not readable
    };
    State state = absent;
    PropertyList::Dictionary entries; // empty unless parsed
    struct stat status = {};          // from before reading; unset if absent or unusable
};

// Never blocks, even on a pipe or a device. A relative path starts at `directory`; `flags` is 0, or
// O_NOFOLLOW if a link does not count as a file.
PreferencesFile readPreferencesFile(FileSystem& files, const std::string& path,
                                    int directory = AT_FDCWD, int flags = 0);

// Values to set, by key; no value removes the key.
using PreferencesChanges = std::map<std::string, std::optional<PropertyList>, std::less<>>;

// Changes these keys of the file and no others. Returns "" if the result is on the disk, else why
// saving failed: the file is unchanged, or, if only the last flush failed, complete.
//
// Processes exclude each other by a SaveLock on `<file>.lock`, and wait at most two seconds for it.
// The new file is written as `<file>.tmp.<random>` and renamed over the old one, with its access
// (see setAccess()); a first file is private, and belongs to the owner of the directory if
// permitted. A process that dies may leave its temporary file behind; the next save removes it.
// Symbolic links at `path` are followed as by openPreferencesDirectory(), and stay. A file that
// does not parse is first linked to a free name `<file>.corrupt[.n]`; if that fails, nothing is
// saved.
std::string savePreferences(FileSystem& files, const std::string& path,
                            const PreferencesChanges& changes);

} // namespace tesmar
