#include "tesmar/platform/foundation/defaults/internal/file_system.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace tesmar {

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

int FileSystem::open(const std::string& path, int flags, mode_t mode) {
    return attempt("open",
                   [&] { return ::open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode); });
}

int FileSystem::fstat(int file, struct stat& status) {
    return attempt("fstat", [&] { return ::fstat(file, &status); });
}

int FileSystem::stat(const std::string& path, struct stat& status) {
    return attempt("stat", [&] { return ::stat(path.c_str(), &status); });
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

int FileSystem::mkdir(const std::string& path, mode_t mode) {
    return attempt("mkdir", [&] { return ::mkdir(path.c_str(), mode); });
}

int FileSystem::link(const std::string& from, const std::string& to) {
    return attempt("link", [&] { return ::link(from.c_str(), to.c_str()); });
}

int FileSystem::rename(const std::string& from, const std::string& to) {
    return attempt("rename", [&] { return ::rename(from.c_str(), to.c_str()); });
}

int FileSystem::unlink(const std::string& path) {
    return attempt("unlink", [&] { return ::unlink(path.c_str()); });
}

ssize_t FileSystem::readlink(const std::string& path, char* target, std::size_t size) {
    return attempt("readlink", [&] { return ::readlink(path.c_str(), target, size); });
}

} // namespace tesmar
