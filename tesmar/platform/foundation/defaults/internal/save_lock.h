#pragma once

#include "tesmar/platform/foundation/defaults/internal/file_access.h"
#include "tesmar/platform/foundation/defaults/internal/open_file.h"

#include <chrono>

namespace tesmar {

// Excludes other processes from saving, by a kernel lock on a file of its own, which stays when the
// lock is released and lasts no longer than its holder.
class SaveLock {
  public:
    // Waits for the lock until the deadline. `files` and the directory must outlive it.
    SaveLock(FileSystem& files, int directory, std::string name,
             std::chrono::steady_clock::time_point deadline);
    SaveLock(const SaveLock&) = delete;
    SaveLock& operator=(const SaveLock&) = delete;
    ~SaveLock();

    // False, with the reason in errno, if it was never had, or if the lock file was removed or
    // replaced, so that another process may hold the lock on a new one.
    bool isHeld();
    // Gives the lock file the access of the file that it protects: who may save that one has to be
    // able to open this one. Failures are ignored.
    void share(FileAccess access);

  private:
    void open();
    bool lock(std::chrono::steady_clock::time_point deadline);
    void release();

    FileSystem& files_;
    const int directory_;
    const std::string name_;
    OpenFile file_;
    bool isLocked_ = false;
};

} // namespace tesmar
