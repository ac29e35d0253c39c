// The user's preferences: values under string keys that outlive the process, in one file that other
// processes may read and write too.
//
// The file is a binary property list, `$XDG_CONFIG_HOME/<application identifier>/preferences.plist`
// (`$HOME/.config/...` without that variable), unless the host chooses another. A file that cannot
// be read or parsed, property lists in XML among them, reads as empty; before a save replaces one
// that does not parse, it is kept beside the new one as `preferences.plist.corrupt` (.corrupt.1 and
// so on, ten at most); where that cannot be done, nothing is saved.
//
// Any thread. Nothing here waits for longer than two seconds, prints, or touches state of the
// process.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"

#include <memory>
#include <string>
#include <string_view>

namespace tesmar {

class TESMAR_API NSUserDefaults : public NSObject {
    TESMAR_CLASS

  public:
    // The one store of the application.
    static Ref<NSUserDefaults> standardUserDefaults();

    // A fresh NSString, NSNumber, NSData, NSArray or NSDictionary: what was last set here, else
    // what the file holds now. Null when there is nothing under `key`, or only a value that none of
    // these classes can hold.
    Ref<NSObject> objectForKey(std::string_view key);

    // Takes a copy of `object`, made of the classes above; it reaches the file with the next
    // synchronize(). Null removes. An object that holds anything else, itself, or text that is not
    // UTF-8 changes nothing but gives a diagnostic.
    void setObject(const Ref<NSObject>& object, std::string_view forKey);
    void removeObjectForKey(std::string_view key);

    // Writes what was set and removed since the last successful save, and nothing else: every other
    // entry of the file stays as it is, whoever wrote it. True when all of it is on the disk (or
    // there was nothing to write). False when the save failed: the file is as it was before, or,
    // if only its confirmation failed, complete; what was set stays readable and is tried again by
    // the next call. Only one process saves at a time; another waits, for two seconds at most.
    bool synchronize();

    // The file itself; empty goes back to the default. Unsaved changes go with the next save to
    // wherever the file then is.
    void setPreferencesPath(std::string path);
    // Names the default file's directory. Empty (the start) means the main bundle's identifier;
    // so does a name that is no plain file name.
    void setApplicationIdentifier(std::string identifier);

    NSUserDefaults();
    ~NSUserDefaults() override;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
