// Finds the directory of the preferences file, so that a save works in that very directory,
// whatever happens to the path meanwhile.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/open_file.h"

namespace tesmar {

struct PreferencesDirectory {
    OpenFile directory; // for calls relative to it only (O_PATH); not open after a failure
    std::string name;   // of the file in it
};

// Follows the symbolic links at `path`, of which the last may dangle, and makes directories that
// are missing: private ones, whatever the umask, that belong to the owner of the directory above if
// permitted. A link in a sticky directory that everybody may write is followed only if it belongs
// to the user or to the owner of the directory, since anybody else may have planted it. The reason
// of a failure is in errno.
PreferencesDirectory openPreferencesDirectory(FileSystem& files, const std::string& path);

// Flushes a file or directory to the disk. True also if the file system cannot flush directories.
bool syncFile(FileSystem& files, int directory, const std::string& name);

} // namespace tesmar
