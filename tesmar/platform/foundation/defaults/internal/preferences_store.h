// The preferences file and the changes not yet written to it. Not thread-safe.
#pragma once

#include "tesmar/platform/foundation/defaults/internal/preferences_file.h"

namespace tesmar {

class PreferencesStore {
  public:
    // `files` must outlive the store.
    explicit PreferencesStore(FileSystem& files) : files_(files) {}

    // With an empty path, reading finds nothing and saving fails.
    void setPath(std::string path);

    // The unsaved change, else the value that the file holds now.
    std::optional<PropertyList> value(std::string_view key);
    // No value removes the key.
    void setValue(std::optional<PropertyList> value, std::string_view key);
    // Saves the changes, see savePreferences(). After a failure they stay unsaved.
    bool synchronize();
    // Why the last call of synchronize() failed; empty if it did not.
    const std::string& failure() const { return failure_; }
    const std::string& path() const { return path_; }

  private:
    // Reads the file again if it may have changed.
    void refresh();

    FileSystem& files_;
    std::string path_, failure_;
    PreferencesChanges unsaved_;
    PropertyList saved_ = PropertyList::Dictionary(); // as last read
    // Of the file as last read, if that suffices to recognise a change.
    std::optional<struct stat> status_;
};

} // namespace tesmar
