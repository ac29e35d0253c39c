// Notifications from the panel to the host.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"

namespace tesmar {

// Called on the main thread, while the panel handles the viewer's action. An implementation may do
// anything, including changing, dismissing and releasing the panel.
class TESMAR_API TESMARViewControllerDelegate {
  public:
    virtual ~TESMARViewControllerDelegate();

    // The viewer has turned captions on or off. The panel does not store that state; the host does.
    virtual void CCSwitchValueChanged(bool on) = 0;
    // The viewer has changed the style. `attributes` is the dictionary that the panel goes on
    // editing, not a copy; NSAttributedString takes it as it is.
    virtual void CCStyleAttributesChanged(const Ref<NSDictionary>& attributes) = 0;
    // The panel is about to be dismissed: by the host, the viewer or the auto-hide timer.
    virtual void CCViewControllerWillDisappear() = 0;
};

// Lends a delegate that the panel must not own: the object that owns the panel, for example, or one
// on the stack.
//
//     class Player : TESMARViewControllerDelegate {
//         Player() { panel_->setDelegate(borrowed_.delegate()); }
//         Ref<TESMARViewController> panel_ = make<TESMARViewController>();
//         TESMARBorrowedDelegate borrowed_{*this};
//     };
//
// The loan ends with this object: later calls of a panel have no effect. It must therefore be
// destroyed before the lent delegate is, as a member of it is. Main thread only.
class TESMAR_API TESMARBorrowedDelegate {
  public:
    // `lent` is not owned.
    explicit TESMARBorrowedDelegate(TESMARViewControllerDelegate& lent);
    ~TESMARBorrowedDelegate();
    TESMARBorrowedDelegate(const TESMARBorrowedDelegate&) = delete;
    TESMARBorrowedDelegate& operator=(const TESMARBorrowedDelegate&) = delete;

    // What any number of panels may own: it passes their calls on while the loan lasts. Never null.
    Ref<TESMARViewControllerDelegate> delegate() const;

  private:
    class Forwarder;

    const Ref<Forwarder> forwarder_;
};

} // namespace tesmar
