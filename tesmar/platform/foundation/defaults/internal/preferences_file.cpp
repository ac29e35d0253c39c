#include "tesmar/platform/foundation/defaults/internal/preferences_file.h"

#include "tesmar/platform/foundation/defaults/internal/file_access.h"
#include "tesmar/platform/foundation/defaults/internal/open_file.h"
#include "tesmar/platform/foundation/defaults/internal/preferences_directory.h"
#include "tesmar/platform/foundation/defaults/internal/save_lock.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <random>
#include <sys/resource.h>
#include <system_error>

namespace tesmar {
namespace {

constexpr mode_t kPrivate = S_IRUSR | S_IWUSR;

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

// `path`, with the suffix ".i" if i > 0.
std::string numbered(const std::string& path, int i) {
    return i == 0 ? path : path + "." + std::to_string(i);
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

// Removes the files that interrupted saves left. One that cannot be removed, such as a file of
// another user in a sticky directory, does no harm.
void removeTemporaries(FileSystem& files, int directory, const std::string& prefix) {
    for (const std::string& name : files.names(directory, prefix)) {
        if (name.size() == prefix.size() || name[prefix.size()] == '.')
            files.unlink(directory, name);
    }
}

// An unpredictable name, which no other program can occupy in advance.
std::string temporaryName(const std::string& prefix) {
    std::random_device random;
    return prefix + "." + std::to_string(random()) + std::to_string(random());
}

// One try to save. Every function returns false after a failure and records it.
class Save {
  public:
    Save(FileSystem& files, const PreferencesDirectory& place, SaveLock& lock)
        : files_(files), directory_(place.directory.descriptor()), name_(place.name), lock_(lock) {}

    bool run(const PreferencesChanges& changes) {
        PreferencesFile file = readPreferencesFile(files_, name_, directory_, O_NOFOLLOW);
        if (file.state == PreferencesFile::unusable)
            return fail("the file cannot be read");
        if (file.state == PreferencesFile::unparsable && !keepCopy(file.status))
            return fail("a copy of the broken file cannot be kept");
        const auto access = wantedAccess(file);
        if (!access)
            return fail("the access to the file is not known");
        lock_.share(*access);
        apply(changes, file.entries);
        const std::string bytes = writePropertyList(std::move(file.entries));
        // Together with the entries of other programs it may exceed what can be read again.
        errno = EFBIG;
        return (readPropertyList(bytes) && isWithinFileSizeLimit(bytes.size()))
                   ? replace(bytes, *access)
                   : fail("the file would be too large");
    }
    const std::string& failure() const { return failure_; }

  private:
    bool fail(const char* what) {
        failure_ = std::string(what) + ": " + std::generic_category().message(errno);
        return false;
    }

    bool sync(const std::string& name) { return syncFile(files_, directory_, name); }

    // Links the file to a second name, flushed, so that it survives being replaced.
    bool keepCopy(const struct stat& status) {
        constexpr int kMostCopies = 10;
        for (int i = 0; i < kMostCopies; ++i) {
            const std::string copy = numbered(name_ + ".corrupt", i);
            const bool isLinked = files_.link(directory_, name_, copy) == 0;
            if (!isLinked && errno != EEXIST)
                return false;
            // An earlier save that failed may have linked this file already.
            struct stat linked;
            if (isLinked || (files_.stat(directory_, copy, linked, AT_SYMLINK_NOFOLLOW) == 0 &&
                             linked.st_dev == status.st_dev && linked.st_ino == status.st_ino))
                return sync(copy) && sync(".");
        }
        return false;
    }

    // The old file's, so that saving neither takes it from its user nor shows it to others.
    std::optional<FileAccess> wantedAccess(const PreferencesFile& file) {
        if (file.state != PreferencesFile::absent) {
            const OpenFile old(files_, directory_, name_, O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
            return old.isOpen() ? accessOf(files_, old.descriptor()) : std::nullopt;
        }
        struct stat above;
        if (files_.fstat(directory_, above) != 0)
            return std::nullopt;
        return FileAccess{above.st_uid, above.st_gid, kPrivate, {}};
    }

    bool replace(std::string_view bytes, const FileAccess& access) {
        const std::string prefix = name_ + ".tmp";
        removeTemporaries(files_, directory_, prefix);
        const std::string temporary = temporaryName(prefix);
        OpenFile file(files_, directory_, temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW,
                      kPrivate);
        if (!file.isOpen())
            return fail("a temporary file cannot be made");
        const bool isReplaced = write(file, bytes, access) && rename(temporary);
        if (!isReplaced) {
            files_.unlink(directory_, temporary);
            return false;
        }
        return sync(".") || fail("the directory cannot be flushed");
    }

    bool write(OpenFile& file, std::string_view bytes, const FileAccess& access) {
        if (!setAccess(files_, file.descriptor(), access))
            return fail("the access to the file cannot be kept");
        return (writeAll(files_, file.descriptor(), bytes) &&
                files_.fsync(file.descriptor()) == 0 && file.close()) ||
               fail("the file cannot be written");
    }

    bool rename(const std::string& temporary) {
        if (!lock_.isHeld())
            return fail("the lock was taken away");
        return files_.rename(directory_, temporary, name_) == 0 ||
               fail("the file cannot be replaced");
    }

    FileSystem& files_;
    const int directory_;
    const std::string& name_;
    SaveLock& lock_;
    std::string failure_;
};

} // namespace

PreferencesFile readPreferencesFile(FileSystem& files, const std::string& path, int directory,
                                    int flags) {
    PreferencesFile result;
    const auto unusable = [&result] {
        result = {};
        result.state = PreferencesFile::unusable;
        return result;
    };
    // Checked before opening: opening a device can have side effects.
    if (files.stat(directory, path, result.status, flags ? AT_SYMLINK_NOFOLLOW : 0) != 0) {
        if (errno != ENOENT)
            return unusable();
        result.status = {};
        return result;
    }
    if (!S_ISREG(result.status.st_mode))
        return unusable();
    const OpenFile file(files, directory, path, O_RDONLY | O_NONBLOCK | flags);
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

std::string savePreferences(FileSystem& files, const std::string& path,
                            const PreferencesChanges& changes) {
    const auto fail = [](const char* what) {
        return what + (": " + std::generic_category().message(errno));
    };
    const auto place = openPreferencesDirectory(files, path);
    if (!place.directory.isOpen())
        return fail("the directory cannot be opened");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (true) {
        SaveLock lock(files, place.directory.descriptor(), place.name + ".lock", deadline);
        if (!lock.isHeld())
            return fail("the lock cannot be had");
        Save save(files, place, lock);
        const bool isSaved = save.run(changes);
        // If the lock file was replaced meanwhile, a holder of the new one may have read the file
        // before this save, and replaced it since.
        if (lock.isHeld())
            return isSaved ? "" : save.failure();
        if (std::chrono::steady_clock::now() >= deadline)
            return fail("the lock was taken away");
    }
}

} // namespace tesmar
