#include "tesmar/platform/foundation/defaults/internal/preferences_file.h"

#include "tesmar/platform/foundation/defaults/internal/open_file.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <thread>

namespace tesmar {
namespace {

constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;

std::string parentOf(const std::string& path) {
    const auto parent = std::filesystem::path(path).parent_path();
    return parent.empty() ? "." : parent.string();
}

// The bytes of the open file; nothing if reading fails. Reads one byte beyond the limit, so that
// the parser rejects a longer file.
std::optional<std::string> readAll(FileSystem& files, int descriptor) {
    constexpr std::size_t kMost = kPreferencesLimits.bytes + 1;
    constexpr std::size_t kChunk = 64 << 10;
    std::string bytes;
    while (bytes.size() < kMost) {
        const std::size_t before = bytes.size();
        const std::size_t chunk = std::min(kChunk, kMost - before);
        bytes.resize(before + chunk);
        const ssize_t count = files.read(descriptor, bytes.data() + before, chunk);
        if (count < 0)
            return std::nullopt;
        bytes.resize(before + static_cast<std::size_t>(count));
        if (count == 0)
            break;
    }
    return bytes;
}

// The target of the symbolic links at `path`, which need not exist.
std::optional<std::string> resolved(FileSystem& files, std::string path) {
    constexpr int kMostLinks = 40;
    for (int i = 0; i < kMostLinks; ++i) {
        char target[PATH_MAX];
        const ssize_t size = files.readlink(path, target, sizeof target);
        if (size < 0)
            return errno == EINVAL || errno == ENOENT ? std::optional(path) : std::nullopt;
        path = std::filesystem::path(parentOf(path)) /
               std::string(target, static_cast<std::size_t>(size));
    }
    return std::nullopt;
}

// `path`, with the suffix ".i" if i > 0.
std::string numbered(const std::string& path, int i) {
    return i == 0 ? path : path + "." + std::to_string(i);
}

bool sync(FileSystem& files, const std::string& path) {
    const OpenFile file(files, path, O_RDONLY | O_NONBLOCK);
    // Some file systems cannot flush directories and report EINVAL.
    return file.isOpen() && (files.fsync(file.descriptor()) == 0 || errno == EINVAL);
}

// Errors are ignored here: creating a file in the directory fails next.
void makeDirectories(FileSystem& files, const std::string& path) {
    int result = files.mkdir(path, S_IRWXU);
    if (result != 0 && errno == ENOENT && parentOf(path) != path) {
        makeDirectories(files, parentOf(path));
        result = files.mkdir(path, S_IRWXU);
    }
    if (result == 0)
        sync(files, parentOf(path));
}

class Lock {
  public:
    Lock(FileSystem& files, const std::string& path)
        : files_(files), file_(files, path, O_RDWR | O_CREAT | O_NONBLOCK, kPrivate) {
        constexpr auto kLongestWait = std::chrono::seconds(2);
        constexpr auto kPause = std::chrono::milliseconds(2);
        const auto deadline = std::chrono::steady_clock::now() + kLongestWait;
        while (file_.isOpen()) {
            isHeld_ = files_.flock(file_.descriptor(), LOCK_EX | LOCK_NB) == 0;
            if (isHeld_ || errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline)
                return;
            std::this_thread::sleep_for(kPause);
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() {
        // Closing does not unlock if a child process has inherited the descriptor.
        if (isHeld_)
            files_.flock(file_.descriptor(), LOCK_UN);
    }
    bool isHeld() const { return isHeld_; }

  private:
    FileSystem& files_;
    OpenFile file_;
    bool isHeld_ = false;
};

// Links the file to a second name, flushed, so that it survives being replaced.
bool keepCopy(FileSystem& files, const std::string& path, const struct stat& status) {
    constexpr int kMostCopies = 10;
    for (int i = 0; i < kMostCopies; ++i) {
        const std::string copy = numbered(path + ".corrupt", i);
        const bool isLinked = files.link(path, copy) == 0;
        if (!isLinked && errno != EEXIST)
            return false;
        // An earlier save that failed may have linked this file already.
        struct stat linked;
        if (isLinked || (files.stat(copy, linked) == 0 && linked.st_dev == status.st_dev &&
                         linked.st_ino == status.st_ino))
            return sync(files, copy) && sync(files, parentOf(path));
    }
    return false;
}

void apply(const PreferencesChanges& changes, PropertyList::Dictionary& entries) {
    for (const auto& [key, value] : changes) {
        const auto isKey = [&key = key](const auto& entry) {
            return *entry.key.template get<std::string>() == key;
        };
        const auto first = std::find_if(entries.begin(), entries.end(), isKey);
        auto rest = first;
        if (value && first == entries.end()) {
            entries.push_back({key, *value});
            continue;
        }
        if (value) {
            first->value = *value;
            ++rest;
        }
        entries.erase(std::remove_if(rest, entries.end(), isKey), entries.end());
    }
}

bool writeAll(FileSystem& files, int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = files.write(descriptor, bytes);
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// Writing beyond the limit of the process raises SIGXFSZ, which would end the process.
bool isWithinFileSizeLimit(std::size_t size) {
    rlimit limit;
    return ::getrlimit(RLIMIT_FSIZE, &limit) != 0 || size <= limit.rlim_cur;
}

// Writes and flushes a new file with the mode and owner of `replaced`.
bool writeNewFile(FileSystem& files, const std::string& path, std::string_view bytes,
                  const PreferencesFile& replaced) {
    OpenFile file(files, path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kPrivate);
    if (!file.isOpen())
        return false;
    mode_t mode = kPrivate;
    if (replaced.state != PreferencesFile::absent) {
        mode = replaced.status.st_mode & ACCESSPERMS;
        // A program that runs as root must not take the file from its user. Without root this
        // fails, and the file belongs to the user who saves.
        files.fchown(file.descriptor(), replaced.status.st_uid, replaced.status.st_gid);
    }
    return files.fchmod(file.descriptor(), mode) == 0 &&
           writeAll(files, file.descriptor(), bytes) && files.fsync(file.descriptor()) == 0 &&
           file.close();
}

// A free name for the temporary file. Removes files that interrupted saves left; skips a name that
// cannot be freed, such as a directory or a file of another user in a sticky directory.
std::string temporaryBeside(FileSystem& files, const std::string& path) {
    constexpr int kMostNames = 3;
    std::string first;
    for (int i = 0; i < kMostNames; ++i) {
        const std::string name = numbered(path + ".tmp", i);
        const bool isFree = files.unlink(name) == 0 || errno == ENOENT;
        if (isFree && first.empty())
            first = name;
    }
    return first;
}

bool replaceFile(FileSystem& files, const std::string& path, std::string_view bytes,
                 const PreferencesFile& replaced) {
    const std::string temporary = temporaryBeside(files, path);
    if (temporary.empty() || !isWithinFileSizeLimit(bytes.size()))
        return false;
    if (!writeNewFile(files, temporary, bytes, replaced) || files.rename(temporary, path) != 0) {
        files.unlink(temporary);
        return false;
    }
    return sync(files, parentOf(path));
}

} // namespace

PreferencesFile readPreferencesFile(FileSystem& files, const std::string& path) {
    PreferencesFile result;
    const auto unusable = [&result] {
        result = {};
        result.state = PreferencesFile::unusable;
        return result;
    };
    // Checked before opening: opening a device can have side effects.
    if (files.stat(path, result.status) != 0) {
        if (errno != ENOENT)
            return unusable();
        result.status = {};
        return result;
    }
    if (!S_ISREG(result.status.st_mode))
        return unusable();
    const OpenFile file(files, path, O_RDONLY | O_NONBLOCK);
    if (!file.isOpen() || files.fstat(file.descriptor(), result.status) != 0 ||
        !S_ISREG(result.status.st_mode))
        return unusable();
    const auto bytes = readAll(files, file.descriptor());
    if (!bytes)
        return unusable();
    const auto list = readPropertyList(*bytes);
    const auto* root = list ? list->get<PropertyList::Dictionary>() : nullptr;
    result.state = root ? PreferencesFile::parsed : PreferencesFile::unparsable;
    if (root)
        result.entries = *root;
    return result;
}

bool savePreferences(FileSystem& files, const std::string& path,
                     const PreferencesChanges& changes) {
    const auto target = resolved(files, path);
    if (!target)
        return false;
    makeDirectories(files, parentOf(*target));
    const Lock lock(files, *target + ".lock");
    if (!lock.isHeld())
        return false;

    PreferencesFile file = readPreferencesFile(files, *target);
    if (file.state == PreferencesFile::unusable ||
        (file.state == PreferencesFile::unparsable && !keepCopy(files, *target, file.status)))
        return false;
    apply(changes, file.entries);
    const std::string bytes = writePropertyList(std::move(file.entries));
    // Together with the entries of other programs it may exceed what can be read again.
    if (!readPropertyList(bytes))
        return false;
    return replaceFile(files, *target, bytes, file);
}

} // namespace tesmar
