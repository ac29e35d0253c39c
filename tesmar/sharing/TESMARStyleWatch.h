// Tells the host's loop when another process may have changed the stored style.
//
//     TESMARStyleWatch watch; // then poll watch.descriptor() for reading, with your other events
//     const auto listener = TESMARConfig::addStyleListener([&](auto& style) { restyle(style); });
//     ...
//     watch.process();        // whenever the descriptor is readable
//
// It starts no thread and polls nothing: the system reports changes in the directory of the
// preferences file, or in the nearest one above it while that is missing. Also noticed: a file that
// is replaced or is a link, and a directory that appears, goes or is renamed. Not noticed: network
// file systems' changes by other machines, and the renaming of a directory further up. One thread
// at a time.
#pragma once

#include "tesmar/platform/foundation/export.h"

#include <memory>
#include <string>

namespace tesmar {

class TESMAR_API TESMARStyleWatch {
  public:
    // Watches the file that NSUserDefaults::preferencesPath() names now. What was changed before is
    // found by TESMARConfig::refresh().
    TESMARStyleWatch();
    ~TESMARStyleWatch();
    TESMARStyleWatch(const TESMARStyleWatch&) = delete;
    TESMARStyleWatch& operator=(const TESMARStyleWatch&) = delete;

    // Readable when process() has something to do; owned by the watch, closed when another program
    // is executed. -1 if the system cannot watch the file, from the start or since a call of
    // process(): the host then calls process() when it thinks fit.
    int descriptor() const;
    // Why the descriptor is -1, for developers; else empty.
    std::string failure() const;

    // Takes the system's reports and calls TESMARConfig::refresh(), which tells the listeners of
    // this thread if the style has changed. They may destroy the watch. Does not wait. When
    // directories came or went, the descriptor may become readable once more.
    void process();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tesmar
