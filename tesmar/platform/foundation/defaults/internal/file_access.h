// Who may read and write a file: owner, group, mode, access control list, extended attributes.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <map>
#include <optional>

namespace tesmar {

inline constexpr char kAccessControlList[] = "system.posix_acl_access";

struct FileAccess {
    uid_t owner;
    gid_t group;
    mode_t mode;
    std::map<std::string, std::string> attributes; // by name, kAccessControlList among them
};

// Nothing if it cannot be found out completely.
std::optional<FileAccess> accessOf(FileSystem& files, int file);

// Gives `file` this access. Where the process may not set the owner, the file stays its own; where
// it may not set the group either, group and others get only what both had. False, with the reason
// in errno, if anybody else could otherwise gain access, or an attribute would be lost.
bool setAccess(FileSystem& files, int file, const FileAccess& access);

} // namespace tesmar
