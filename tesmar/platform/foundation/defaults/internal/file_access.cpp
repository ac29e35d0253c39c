#include "tesmar/platform/foundation/defaults/internal/file_access.h"

#include <cerrno>
#include <climits>
#include <linux/limits.h>
#include <string_view>

namespace tesmar {
namespace {

std::optional<std::map<std::string, std::string>> attributesOf(FileSystem& files, int file) {
    std::map<std::string, std::string> attributes;
    std::string names(XATTR_LIST_MAX, '\0'), value;
    const ssize_t size = files.flistxattr(file, names.data(), names.size());
    if (size < 0) // without support there are none
        return errno == ENOTSUP ? std::optional(attributes) : std::nullopt;
    names.resize(static_cast<std::size_t>(size));
    for (std::size_t i = 0; i < names.size(); i += std::string_view(&names[i]).size() + 1) {
        value.resize(XATTR_SIZE_MAX);
        const ssize_t length = files.fgetxattr(file, &names[i], value.data(), value.size());
        if (length < 0)
            return std::nullopt;
        attributes[&names[i]] = value.substr(0, static_cast<std::size_t>(length));
    }
    return attributes;
}

bool setAttributes(FileSystem& files, int file, const FileAccess& access) {
    const auto present = attributesOf(files, file);
    if (!present)
        return false;
    // A list that the directory's default gave to the new file may admit more than the old one.
    if (present->count(kAccessControlList) != 0 &&
        access.attributes.count(kAccessControlList) == 0 &&
        files.fremovexattr(file, kAccessControlList) != 0)
        return false;
    for (const auto& [name, value] : access.attributes) {
        const auto same = present->find(name);
        if ((same == present->end() || same->second != value) &&
            files.fsetxattr(file, name, value) != 0)
            return false;
    }
    return true;
}

} // namespace

std::optional<FileAccess> accessOf(FileSystem& files, int file) {
    struct stat status;
    if (files.fstat(file, status) != 0)
        return std::nullopt;
    auto attributes = attributesOf(files, file);
    if (!attributes)
        return std::nullopt;
    return FileAccess{status.st_uid, status.st_gid, status.st_mode & ACCESSPERMS,
                      std::move(*attributes)};
}

bool setAccess(FileSystem& files, int file, const FileAccess& access) {
    struct stat now;
    if (files.fstat(file, now) != 0)
        return false;
    mode_t mode = access.mode;
    if ((now.st_uid != access.owner || now.st_gid != access.group) &&
        files.fchown(file, access.owner, access.group) != 0 && now.st_gid != access.group &&
        files.fchown(file, now.st_uid, access.group) != 0) {
        if (access.attributes.count(kAccessControlList) != 0)
            return false;
        const mode_t shared = (mode >> 3) & mode & S_IRWXO;
        mode = (mode & S_IRWXU) | shared << 3 | shared;
    }
    if (!setAttributes(files, file, access))
        return false;
    // Some file systems refuse every change of the mode, also where nothing would change.
    if (files.fstat(file, now) != 0)
        return false;
    return (now.st_mode & ACCESSPERMS) == mode || files.fchmod(file, mode) == 0;
}

} // namespace tesmar
