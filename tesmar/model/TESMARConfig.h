// The caption style that is saved from one start of the application to the next: a keyed archive of
// the style dictionary, in the host's preferences (NSUserDefaults) under
// CCConstants::CCSessionStyleUserDefaultsKey().
//
// The class caches nothing: every read decodes the entry of the preferences, every write flushes
// them. Any thread, as long as no other thread modifies the dictionary that is being saved.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

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

    // The stored style, or else CCConstants::CCDefaultStyleAttributes() itself, which is shared.
    // Never null.
    static Ref<NSDictionary> sessionOrDefaultClosedCaptureStyle();
};

} // namespace tesmar
