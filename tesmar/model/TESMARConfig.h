// The caption style that is saved from one start of the application to the next: a keyed archive of
// the style dictionary, in the host's preferences (NSUserDefaults) under
// CCConstants::CCSessionStyleUserDefaultsKey().
//
// The class caches nothing: every read decodes the entry of the preferences, every write flushes
// them. Any thread, as long as no other thread modifies the dictionary that is being saved.
//
// The order of precedence at each appearance of a panel, and wherever else a style is needed:
//
//  1. the style of the host's source (setStyleSource), if there is a source and it returns one
//  2. the stored style: that of the host's store (setStyleStore) if it has one, else the
//  preferences'
//  3. the default, CCConstants::CCDefaultStyleAttributes()
#pragma once

#include "tesmar/model/TESMARStyleListener.h"
#include "tesmar/platform/foundation/NSDictionary.h"

#include <functional>
#include <string>

namespace tesmar {

class TESMAR_API TESMARConfig : public NSObject {
    TESMAR_CLASS

  public:
    // The stored style, decoded into a new dictionary; null when there is none, or when the entry
    // is not an archive of a dictionary. The result is not validated: keys may be missing, and
    // values may have other types.
    static Ref<NSDictionary> sessionClosedCaptureStyle();

    // Stores the style, or removes the stored one when `attributes` is null, and flushes the
    // preferences in every case. Values without a coding are left out. A style too large to be
    // archived (see NSKeyedArchiver) is not stored; the previous one remains. If the flush fails,
    // the preferences keep the value in memory, and the next save tries again. Both are reported by
    // a diagnostic, and by saveFailure().
    static void saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes);
    // Why the last save of this process, on whichever thread, did not put its style on the disk: a
    // text for developers. Empty if it did, or if there was none.
    static std::string saveFailure();

    // The style of the source, as a new dictionary; else the stored one; else
    // CCConstants::CCDefaultStyleAttributes() itself, which is shared. Never null.
    static Ref<NSDictionary> sessionOrDefaultClosedCaptureStyle();

    // --- A style from outside -------------------------------------------------------------------

    // A style of the system's or of an account's, or null for none. Called on any thread that asks
    // for the style, by several at once; within it, its thread gets the stored style or the
    // default. An exception passes to the caller of sessionOrDefaultClosedCaptureStyle().
    using StyleSource = std::function<Ref<NSDictionary>()>;
    // Sets the source; an empty one, the initial state, removes it. A call of the previous one may
    // still be running on another thread. A source that always returns a style hides what the
    // viewer has stored; one for the first start returns null if there is a
    // sessionClosedCaptureStyle(). When a source has something new to return, call refresh().
    static void setStyleSource(StyleSource source);

    // Keeps the stored style with the host, instead of in the preferences, of which nothing is then
    // read or written: for a database, an account, or the life of the process. `load` returns what
    // `save` was last given, or null; it is copied. `save` gets a copy, or null to forget the
    // style. Every change in a panel is then saved, whatever its rememberChangedStyle. Two empty
    // functions, the initial state, are no store; one is a fatal error. Both are called on any
    // thread that asks for or saves the style; within them, their thread gets and saves the
    // preferences' style. An exception passes to the caller of the read or the save. A panel may
    // have a store of its own: TESMARViewController::setStyleStore.
    static void setStyleStore(std::function<Ref<NSDictionary>()> load,
                              std::function<void(const Ref<NSDictionary>& style)> save);

    // --- Changes by others ----------------------------------------------------------------------

    // Calls `function` on the current thread whenever sessionOrDefaultClosedCaptureStyle() has
    // changed, with the new style, which must not be modified: at once after a save on this thread,
    // and in refresh() for changes by other threads and processes. It may do anything, even save;
    // it is told each style once. If it throws, the save or refresh() throws after all others have
    // been told. An empty function is a fatal error. The thread unsubscribes before it ends.
    [[nodiscard]] static TESMARStyleListener
    addStyleListener(std::function<void(const Ref<NSDictionary>& style)> function);
    // Reads the preferences again, and tells the listeners of the current thread if the style has
    // changed. Call it when another thread or process may have saved: see TESMARStyleWatch.
    static void refresh();
};

} // namespace tesmar
