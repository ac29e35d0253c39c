// What the host hears from the panel.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

namespace tesmar {

// All calls come on the main thread, from within the user's action. A listener may do anything in
// them: change, dismiss or let go of the panel included.
class TESMAR_API TESMARViewControllerDelegate {
  public:
    virtual ~TESMARViewControllerDelegate() = default;

    // The user has turned captions on or off. The panel only shows that state; it is the host's.
    virtual void CCSwitchValueChanged(bool on) = 0;
    // The user has changed the style. `attributes` is the panel's own live dictionary, fit to be
    // applied to captions as it is: whoever keeps it sees later changes, too.
    virtual void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) = 0;
    // The panel is about to go, for whatever reason.
    virtual void CCViewControllerWillDisappear() = 0;
};

} // namespace tesmar
