#include "tesmar/platform/foundation/defaults/internal/preferences_directory.h"

#include "tesmar/platform/foundation/defaults/internal/file_access.h"

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace tesmar {
namespace {

std::string parentOf(const std::string& path) {
    const auto parent = std::filesystem::path(path).parent_path();
    return parent.empty() ? "." : parent.string();
}

// What the kernel does when it follows links itself, if so configured.
bool mayFollow(FileSystem& files, const std::string& path, const struct stat& link) {
    constexpr mode_t kShared = S_ISVTX | S_IWOTH;
    struct stat directory;
    if (files.stat(AT_FDCWD, parentOf(path), directory) != 0)
        return false;
    if ((directory.st_mode & kShared) != kShared || link.st_uid == ::geteuid() ||
        link.st_uid == directory.st_uid)
        return true;
    errno = EACCES;
    return false;
}

// The target of the symbolic links at `path`, which need not exist.
std::optional<std::string> resolved(FileSystem& files, std::string path) {
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        const OpenFile link(files, AT_FDCWD, path, O_PATH | O_NOFOLLOW);
        struct stat status;
        if (!link.isOpen())
            return errno == ENOENT ? std::optional(path) : std::nullopt;
        if (files.fstat(link.descriptor(), status) != 0)
            return std::nullopt;
        if (!S_ISLNK(status.st_mode))
            return path;
        char target[PATH_MAX];
        const ssize_t size = files.readlink(link.descriptor(), target, sizeof target);
        if (size < 0 || !mayFollow(files, path, status))
            return std::nullopt;
        path = std::filesystem::path(parentOf(path)) /
               std::string(target, static_cast<std::size_t>(size));
    }
    errno = ELOOP;
    return std::nullopt;
}

// Errors are ignored here: opening the directory, or making a file in it, fails next.
void makeDirectory(FileSystem& files, int parent, const std::string& name) {
    constexpr int kFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    if (files.mkdir(parent, name, S_IRWXU) != 0)
        return;
    OpenFile made(files, parent, name, kFlags);
    // The umask may deny access to the user too.
    if (!made.isOpen() && errno == EACCES && files.chmod(parent, name, S_IRWXU) == 0)
        made = OpenFile(files, parent, name, kFlags);
    struct stat above;
    if (made.isOpen() && files.fstat(parent, above) == 0)
        setAccess(files, made.descriptor(), {above.st_uid, above.st_gid, S_IRWXU, {}});
    syncFile(files, parent, ".");
}

OpenFile openDirectory(FileSystem& files, const std::string& path) {
    OpenFile directory(files, AT_FDCWD, path, O_PATH | O_DIRECTORY);
    if (directory.isOpen() || errno != ENOENT || parentOf(path) == path)
        return directory;
    OpenFile parent = openDirectory(files, parentOf(path));
    if (!parent.isOpen())
        return parent;
    const std::string name = std::filesystem::path(path).filename();
    makeDirectory(files, parent.descriptor(), name);
    return OpenFile(files, parent.descriptor(), name, O_PATH | O_DIRECTORY);
}

} // namespace

PreferencesDirectory openPreferencesDirectory(FileSystem& files, const std::string& path) {
    const auto target = resolved(files, path);
    std::string name = target ? std::filesystem::path(*target).filename().string() : "";
    if (target && name.empty())
        errno = EISDIR;
    if (name.empty())
        return {OpenFile(files), {}};
    return {openDirectory(files, parentOf(*target)), std::move(name)};
}

bool syncFile(FileSystem& files, int directory, const std::string& name) {
    const OpenFile file(files, directory, name, O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
    // Some file systems cannot flush directories and report EINVAL.
    return file.isOpen() && (files.fsync(file.descriptor()) == 0 || errno == EINVAL);
}

} // namespace tesmar
