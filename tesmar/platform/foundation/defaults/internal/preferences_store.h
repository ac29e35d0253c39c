// The preferences file together with the changes that have not reached it yet. Not thread-safe.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/preferences_file.h"

namespace tesmar {

class PreferencesStore {
  public:
    // `files` must outlive the store.
    explicit PreferencesStore(FileSystem& files) : files_(files) {}

    // Empty: there is nowhere to read from or to save to.
    void setPath(std::string path);

    // Our unsaved change, else what the file holds at this moment.
    std::optional<PropertyList> value(std::string_view key);
    // Nothing removes.
    void setValue(std::optional<PropertyList> value, std::string_view key);
    // Saves what has changed, see savePreferences(). After a failure the changes stay unsaved.
    bool synchronize();

  private:
    // Reads the file again if it may have changed.
    void refresh();

    FileSystem& files_;
    std::string path_;
    PreferencesChanges unsaved_;
    PropertyList saved_ = PropertyList::Dictionary(); // as last read
    std::optional<struct stat>
        status_; // of the file as last read, when that tells it from any other
};

} // namespace tesmar
