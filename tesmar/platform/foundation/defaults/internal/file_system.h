// The system calls of the preferences store, so that a test can make any of them fail.
#pragma once

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace tesmar {

// Each member makes the system call of its name, with its result and errno. Calls that a signal
// interrupts are retried, up to 100 times. Any thread.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    int open(const std::string& path, int flags, mode_t mode = 0);
    int fstat(int file, struct stat& status);
    int stat(const std::string& path, struct stat& status);
    ssize_t read(int file, char* bytes, std::size_t size);
    ssize_t write(int file, std::string_view bytes);
    int fchmod(int file, mode_t mode);
    int fchown(int file, uid_t owner, gid_t group);
    int fsync(int file);
    int close(int file); // never retried: an interrupted close has released the descriptor
    int flock(int file, int operation);
    int mkdir(const std::string& path, mode_t mode);
    int link(const std::string& from, const std::string& to);
    int rename(const std::string& from, const std::string& to);
    int unlink(const std::string& path);
    ssize_t readlink(const std::string& path, char* target, std::size_t size);

  protected:
    // Called before each system call with its name. If not 0, the system call is skipped and fails
    // with the returned errno.
    virtual int fault(std::string_view call);

  private:
    template <class Call>
    auto attempt(std::string_view name, Call&& call);
};

} // namespace tesmar
