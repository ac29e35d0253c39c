// The user's preferences: persistent values under string keys, in one file that several processes
// may read and write at once.
//
// The file is a binary property list, `$XDG_CONFIG_HOME/<application identifier>/preferences.plist`
// (`$HOME/.config/...` without that variable), unless the host chooses another. A file that cannot
// be read or parsed, such as a property list in XML, reads as empty. Before a save replaces a file
// that does not parse, the old file is kept as `preferences.plist.corrupt` (.corrupt.1 and so on,
// at most ten); if that fails, nothing is saved.
//
// A save leaves owner, group, mode, access control list and extended attributes of the file as they
// are. Where the process may not set the owner, the file becomes its user's; where anything else
// cannot be kept without admitting somebody else, the save fails. A first file is private.
//
// Any thread. No function waits longer than two seconds, prints, or changes process state. An
// ordinary file needs little stack; one with values 512 levels deep, the most that is accepted,
// needs up to 300 KiB to be read or saved.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <memory>
#include <string>
#include <string_view>

namespace tesmar {

class TESMAR_API NSUserDefaults : public NSObject {
    TESMAR_CLASS

  public:
    // The application's preferences; never destroyed.
    static Ref<NSUserDefaults> standardUserDefaults();

    // A new NSString, NSNumber, NSData, NSArray or NSDictionary with the value last set here, else
    // the one that the file holds now. Null if there is none, or one of another type.
    Ref<NSObject> objectForKey(std::string_view key);

    // Stores a copy of `object`, which consists of the classes above; the next synchronize() writes
    // it. Null removes the value. An object that holds another class, itself, or text that is not
    // UTF-8 is rejected with a diagnostic.
    void setObject(const Ref<NSObject>& object, std::string_view forKey);
    void removeObjectForKey(std::string_view key);

    // Writes the changes since the last successful save; all other entries of the file stay as they
    // are. True if the changes are on the disk, or if there were none. False, with a diagnostic
    // that gives the reason, if the save failed; the changes stay readable here, and the next call
    // tries again. The file is then unchanged, or, if only the final flush failed, complete. One
    // process saves at a time; others wait at most two seconds.
    bool synchronize();
    // Why the last call of synchronize(), on whichever thread, returned false: the step and the
    // system's reason. Empty if it returned true.
    std::string synchronizeFailure() const;

    // Sets the path of the file; empty restores the default. The next save writes unsaved changes
    // to the new path.
    void setPreferencesPath(std::string path);
    // The path that is read and written now; empty if there is no home directory and none was set.
    std::string preferencesPath() const;
    // Sets the directory name of the default path. The main bundle's identifier is used instead if
    // it is empty, the initial state, or not a plain file name.
    void setApplicationIdentifier(std::string identifier);

    NSUserDefaults();
    ~NSUserDefaults() override;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
