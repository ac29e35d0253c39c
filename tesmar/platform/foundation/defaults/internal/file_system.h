// The system calls of the preferences store, so that a test can make any of them fail.
#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace tesmar {

// Each member makes the system call of its name, with its result and errno. Relative paths start at
// `directory`, a descriptor or AT_FDCWD. Calls that a signal interrupts are retried, up to 100
// times. Any thread.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    // Never returns a descriptor below 3: if the process has closed a standard stream, another
    // part of it may still write to that number.
    int open(int directory, const std::string& path, int flags, mode_t mode = 0);
    int fstat(int file, struct stat& status);
    int stat(int directory, const std::string& path, struct stat& status, int flags = 0);
    ssize_t read(int file, char* bytes, std::size_t size);
    ssize_t write(int file, std::string_view bytes);
    int fchmod(int file, mode_t mode);
    int fchown(int file, uid_t owner, gid_t group);
    int chmod(int directory, const std::string& path, mode_t mode); // not through a link
    ssize_t flistxattr(int file, char* names, std::size_t size);
    ssize_t fgetxattr(int file, const std::string& name, char* value, std::size_t size);
    int fsetxattr(int file, const std::string& name, std::string_view value);
    int fremovexattr(int file, const std::string& name);
    int fsync(int file);
    int close(int file); // never retried: an interrupted close has released the descriptor
    int flock(int file, int operation);
    int mkdir(int directory, const std::string& path, mode_t mode);
    int link(int directory, const std::string& from, const std::string& to);
    int rename(int directory, const std::string& from, const std::string& to);
    int unlink(int directory, const std::string& path);
    ssize_t readlink(int link, char* target, std::size_t size); // opened with O_PATH
    // The names in the directory that start with `prefix`, as far as it can be read.
    std::vector<std::string> names(int directory, std::string_view prefix);

  protected:
    // Called before each system call with its name. If not 0, the system call is skipped and fails
    // with the returned errno.
    virtual int fault(std::string_view call);

  private:
    template <class Call>
    auto attempt(std::string_view name, Call&& call);
};

} // namespace tesmar
