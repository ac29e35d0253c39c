// The preferences file as it stands on the disk, and the one way of changing it.
#pragma once

#include "tesmar/platform/foundation/archive/internal/property_list.h"
#include "tesmar/platform/foundation/defaults/internal/file_system.h"

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
        unusable,   // no regular file, or one that cannot be read
    };
    State state = absent;
    PropertyList::Dictionary entries; // empty unless parsed
    struct stat status = {};          // from before it was read; unset when absent or unusable
};

// Never waits, whatever stands at `path`.
PreferencesFile readPreferencesFile(FileSystem& files, const std::string& path);

// Values to set by key; nothing removes the key.
using PreferencesChanges = std::map<std::string, std::optional<PropertyList>, std::less<>>;

// Changes these keys of the file and no others. True when the result is safely on the disk. False:
// the file is as it was, or, when only the last step failed, complete.
//
// Savers exclude one another by a kernel lock on `<file>.lock`, which ends with its holder; none
// waits for longer than two seconds. The new file is written as `<file>.tmp[.n]`, which a saver
// that died may leave behind and the next one removes, and takes the old one's place, mode and,
// where this process may give it, owner by a rename. A symbolic link at `path` stays: the file is
// what it leads to. One that does not parse is first linked to a free name `<file>.corrupt[.n]`;
// where that is not possible, nothing is saved.
bool savePreferences(FileSystem& files, const std::string& path, const PreferencesChanges& changes);

} // namespace tesmar
