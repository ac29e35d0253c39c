// The caption style that is remembered from one start of the application to the next: one entry of
// the host's preferences (NSUserDefaults), under CCConstants::CCSessionStyleUserDefaultsKey(),
// holding a keyed archive of the style dictionary.
//
// Nothing is kept in memory: every read looks at the preferences, every write goes to them and is
// flushed at once. Any thread, as long as nobody changes what is being saved.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

namespace tesmar {

class TESMAR_API TESMARConfig : public NSObject {
    TESMAR_CLASS

  public:
    // The stored style, freshly decoded; null when there is none, or when what stands there is no
    // archive of a dictionary. Entries that decode are not judged: the dictionary may lack keys, or
    // hold other things under them.
    static Ref<NSDictionary> sessionClosedCaptureStyle();

    // Stores the style, or removes the stored one when `attributes` is null. Values without a
    // coding are left out. A flush that fails goes unreported: the value is kept in memory, and the
    // next save tries again.
    static void saveSessionClosedCaptureStyle(const Ref<NSDictionary>& attributes);

    // The stored style, else the shared CCConstants::CCDefaultStyleAttributes() itself; never null.
    static Ref<NSDictionary> sessionOrDefaultClosedCaptureStyle();
};

} // namespace tesmar
