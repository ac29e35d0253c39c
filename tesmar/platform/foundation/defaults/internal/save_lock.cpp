#include "tesmar/platform/foundation/defaults/internal/save_lock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>

namespace tesmar {

using Clock = std::chrono::steady_clock;

SaveLock::SaveLock(FileSystem& files, int directory, std::string name, Clock::time_point deadline)
    : files_(files), directory_(directory), name_(std::move(name)), file_(files) {
    do {
        release();
        open();
        // A lock on a file that was replaced before it could be locked excludes no other saver.
    } while (lock(deadline) && !isHeld() && errno == ESTALE && Clock::now() < deadline);
}

SaveLock::~SaveLock() {
    release();
}

void SaveLock::open() {
    constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;
    file_ = OpenFile(files_, directory_, name_, O_RDWR | kFlags);
    if (!file_.isOpen() && errno == EACCES) // enough but for network file systems
        file_ = OpenFile(files_, directory_, name_, O_RDONLY | kFlags);
    // Not O_CREAT alone: kernels refuse it for a file of another user in a sticky directory.
    if (!file_.isOpen() && errno == ENOENT)
        file_ = OpenFile(files_, directory_, name_, O_RDWR | O_CREAT | O_EXCL | kFlags, kPrivate);
    if (!file_.isOpen() && errno == EEXIST) // made by another process meanwhile
        file_ = OpenFile(files_, directory_, name_, O_RDWR | kFlags);
}

bool SaveLock::lock(Clock::time_point deadline) {
    constexpr auto kPause = std::chrono::milliseconds(2);
    while (file_.isOpen()) {
        isLocked_ = files_.flock(file_.descriptor(), LOCK_EX | LOCK_NB) == 0;
        if (isLocked_ || errno != EWOULDBLOCK || Clock::now() >= deadline)
            break;
        std::this_thread::sleep_for(kPause);
    }
    return isLocked_;
}

void SaveLock::release() {
    // Closing does not unlock if a child process has inherited the descriptor.
    if (isLocked_)
        files_.flock(file_.descriptor(), LOCK_UN);
    isLocked_ = false;
    file_.close();
}

bool SaveLock::isHeld() {
    struct stat locked, named;
    if (!isLocked_ || files_.fstat(file_.descriptor(), locked) != 0)
        return false;
    const bool isNamed = files_.stat(directory_, name_, named, AT_SYMLINK_NOFOLLOW) == 0;
    if (!isNamed && errno != ENOENT)
        return false;
    if (isNamed && locked.st_dev == named.st_dev && locked.st_ino == named.st_ino)
        return true;
    errno = ESTALE;
    return false;
}

void SaveLock::share(FileAccess access) {
    struct stat status;
    // Another file that somebody linked to this name keeps its access.
    if (files_.fstat(file_.descriptor(), status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_nlink != 1 || status.st_size != 0)
        return;
    std::erase_if(access.attributes, [](const auto& a) { return a.first != kAccessControlList; });
    setAccess(files_, file_.descriptor(), access);
}

} // namespace tesmar
