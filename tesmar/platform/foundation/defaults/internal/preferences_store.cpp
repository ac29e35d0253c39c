#include "tesmar/platform/foundation/defaults/internal/preferences_store.h"

#include <chrono>
#include <fcntl.h>

namespace tesmar {
namespace {

using std::chrono::nanoseconds;

nanoseconds toDuration(const timespec& time) {
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

bool isSameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           toDuration(a.st_mtim) == toDuration(b.st_mtim) &&
           toDuration(a.st_ctim) == toDuration(b.st_ctim);
}

// File times are coarse and inodes are reused, so a file that changed shortly before it was read
// may change again with the same status.
bool isSettled(const struct stat& status, nanoseconds readAt) {
    constexpr nanoseconds kCoarsestClock = std::chrono::seconds(2);
    return toDuration(status.st_ctim) + kCoarsestClock < readAt;
}

} // namespace

void PreferencesStore::setPath(std::string path) {
    if (path == path_)
        return;
    path_ = std::move(path);
    status_.reset();
}

std::optional<PropertyList> PreferencesStore::value(std::string_view key) {
    if (const auto change = unsaved_.find(key); change != unsaved_.end())
        return change->second;
    refresh();
    const PropertyList* value = saved_.find(key);
    return value ? std::optional(*value) : std::nullopt;
}

void PreferencesStore::setValue(std::optional<PropertyList> value, std::string_view key) {
    unsaved_.insert_or_assign(std::string(key), std::move(value));
}

bool PreferencesStore::synchronize() {
    failure_.clear();
    if (unsaved_.empty())
        return true;
    failure_ = path_.empty() ? "there is no path" : savePreferences(files_, path_, unsaved_);
    if (!failure_.empty())
        return false;
    unsaved_.clear();
    status_.reset();
    return true;
}

void PreferencesStore::refresh() {
    struct stat now;
    if (status_ && files_.stat(AT_FDCWD, path_, now) == 0 && isSameFile(*status_, now))
        return;
    const nanoseconds readAt = std::chrono::system_clock::now().time_since_epoch();
    PreferencesFile file = path_.empty() ? PreferencesFile() : readPreferencesFile(files_, path_);
    saved_ = std::move(file.entries);
    const bool isKnown =
        file.state == PreferencesFile::parsed || file.state == PreferencesFile::unparsable;
    status_.reset();
    if (isKnown && isSettled(file.status, readAt))
        status_ = file.status;
}

} // namespace tesmar
