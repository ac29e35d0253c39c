#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tesmar {
namespace {

// Occupies the numbers of closed standard streams while a file is opened, with descriptors that can
// be neither read nor written.
class ClosedStreams {
  public:
    ClosedStreams() {
        while (count_ < kStreams) {
            const int descriptor = ::open("/", O_PATH | O_CLOEXEC);
            if (descriptor >= kStreams)
                ::close(descriptor);
            if (descriptor < 0 || descriptor >= kStreams)
                break;
            descriptors_[count_++] = descriptor;
        }
    }
    ClosedStreams(const ClosedStreams&) = delete;
    ClosedStreams& operator=(const ClosedStreams&) = delete;
    ~ClosedStreams() {
        const int error = errno;
        while (count_ > 0)
            ::close(descriptors_[--count_]);
        errno = error;
    }

  private:
    static constexpr int kStreams = STDERR_FILENO + 1;
    int descriptors_[kStreams];
    int count_ = 0;
};

} // namespace

template <class Call>
auto FileSystem::attempt(std::string_view name, Call&& call) {
    constexpr int kMostAttempts = 100;
    decltype(call()) result = -1;
    for (int i = 0; i < kMostAttempts; ++i) {
        if (const int error = fault(name))
            errno = error;
        else
            result = call();
        if (result != -1 || errno != EINTR)
            break;
    }
    return result;
}

int FileSystem::fault(std::string_view) {
    return 0;
}

int FileSystem::open(int directory, const std::string& path, int flags, mode_t mode) {
    const ClosedStreams streams;
    return attempt("open", [&] {
        return ::openat(directory, path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
    });
}

int FileSystem::fstat(int file, struct stat& status) {
    return attempt("fstat", [&] { return ::fstat(file, &status); });
}

int FileSystem::stat(int directory, const std::string& path, struct stat& status, int flags) {
    return attempt("stat", [&] { return ::fstatat(directory, path.c_str(), &status, flags); });
}

ssize_t FileSystem::read(int file, char* bytes, std::size_t size) {
    return attempt("read", [&] { return ::read(file, bytes, size); });
}

ssize_t FileSystem::write(int file, std::string_view bytes) {
    return attempt("write", [&] { return ::write(file, bytes.data(), bytes.size()); });
}

int FileSystem::fchmod(int file, mode_t mode) {
    return attempt("fchmod", [&] { return ::fchmod(file, mode); });
}

int FileSystem::fchown(int file, uid_t owner, gid_t group) {
    return attempt("fchown", [&] { return ::fchown(file, owner, group); });
}

int FileSystem::chmod(int directory, const std::string& path, mode_t mode) {
    return attempt("chmod",
                   [&] { return ::fchmodat(directory, path.c_str(), mode, AT_SYMLINK_NOFOLLOW); });
}

ssize_t FileSystem::flistxattr(int file, char* names, std::size_t size) {
    return attempt("flistxattr", [&] { return ::flistxattr(file, names, size); });
}

ssize_t FileSystem::fgetxattr(int file, const std::string& name, char* value, std::size_t size) {
    return attempt("fgetxattr", [&] { return ::fgetxattr(file, name.c_str(), value, size); });
}

int FileSystem::fsetxattr(int file, const std::string& name, std::string_view value) {
    return attempt("fsetxattr",
                   [&] { return ::fsetxattr(file, name.c_str(), value.data(), value.size(), 0); });
}

int FileSystem::fremovexattr(int file, const std::string& name) {
    return attempt("fremovexattr", [&] { return ::fremovexattr(file, name.c_str()); });
}

int FileSystem::fsync(int file) {
    return attempt("fsync", [&] { return ::fsync(file); });
}

int FileSystem::close(int file) {
    const int error = fault("close");
    int result = ::close(file);
    if (error != 0) {
        errno = error;
        result = -1;
    }
    return result == -1 && errno == EINTR ? 0 : result;
}

int FileSystem::flock(int file, int operation) {
    return attempt("flock", [&] { return ::flock(file, operation); });
}

int FileSystem::mkdir(int directory, const std::string& path, mode_t mode) {
    return attempt("mkdir", [&] { return ::mkdirat(directory, path.c_str(), mode); });
}

int FileSystem::link(int directory, const std::string& from, const std::string& to) {
    return attempt("link",
                   [&] { return ::linkat(directory, from.c_str(), directory, to.c_str(), 0); });
}

int FileSystem::rename(int directory, const std::string& from, const std::string& to) {
    return attempt("rename",
                   [&] { return ::renameat(directory, from.c_str(), directory, to.c_str()); });
}

int FileSystem::unlink(int directory, const std::string& path) {
    return attempt("unlink", [&] { return ::unlinkat(directory, path.c_str(), 0); });
}

ssize_t FileSystem::readlink(int link, char* target, std::size_t size) {
    return attempt("readlink", [&] { return ::readlinkat(link, "", target, size); });
}

std::vector<std::string> FileSystem::names(int directory, std::string_view prefix) {
    std::vector<std::string> found;
    const int copy = open(directory, ".", O_RDONLY | O_DIRECTORY);
    DIR* const stream = copy < 0 ? nullptr : ::fdopendir(copy);
    if (!stream) {
        if (copy >= 0)
            close(copy);
        return found;
    }
    while (const dirent* entry = ::readdir(stream)) {
        if (std::string_view(entry->d_name).substr(0, prefix.size()) == prefix)
            found.emplace_back(entry->d_name);
    }
    ::closedir(stream);
    return found;
}

} // namespace tesmar
