// The focus of a window: handles its keys, and shows where the focus is.
#pragma once

#include "tesmar/platform/ui/UIKey.h"
#include "tesmar/platform/ui/internal/focus/FocusRing.h"
#include "tesmar/platform/ui/internal/focus/KeyRepeats.h"
#include "tesmar/platform/ui/internal/focus/focus_places.h"

#include <optional>
#include <string_view>
#include <vector>

namespace tesmar {

class TouchDispatcher;
class UIViewController;

// The focus is in the window's topmost controller. It is hidden until a key is used; then the first
// key only shows it. Made at the first key.
class KeyFocus {
  public:
    // `window` owns both this and `touches`.
    KeyFocus(UIWindow& window, const TouchDispatcher& touches);

    // Any key but back, for the topmost controller, which is not being dismissed. `time` in seconds
    // of the host's clock. Returns whether the key was used: an arrow beyond the edge is only with
    // UIEdgeKeys::taken. Calls the controller and the control, which may do anything.
    bool key(UIKey key, UIKeyRepeat repeat, double time, const Ref<UIViewController>& controller,
             UIEdgeKeys edge);
    // Shows the focus on the place with this identifier; returns false if there is none.
    bool moveTo(std::string_view identifier, const Ref<UIViewController>& controller);
    // A finger has landed: hides the ring. The finger's control gets the focus.
    void touchLanded();
    // Before each frame: keeps the ring on its control, or on another one if that is gone; of which
    // the controller is told.
    void follow();
    void draw() const { ring_.draw(); }
    // Of what is drawn, in window coordinates; empty while the ring is hidden.
    CGRect extent() const { return ring_.extent(); }

    // Nothing before the first key, and while the controller has no place for the focus.
    std::optional<UIFocus> focus();

  private:
    bool isIn(const UIViewController* controller) const;
    bool isCurrent(const UIViewController& controller) const;
    void startIn(const Ref<UIViewController>& controller);
    void leave();
    void put(const FocusPlace& place);
    bool hasMovedTo(const FocusPlace& place) const;
    std::size_t locate(const std::vector<FocusPlace>& places, const FocusGrid& grid,
                       const UIViewController& controller) const;
    std::optional<ShownCell> shown() const;
    void adoptTouch();
    void showOn(const FocusPlace& place, const std::vector<FocusPlace>& all,
                UIViewController& controller);
    static UIFocusTarget stepTarget(UIView& from, UIKey key);
    void operate(const UIFocusTarget& target, const UIViewController& controller);
    bool stayUsable(UIViewController& controller);

    UIWindow& window_;
    const TouchDispatcher& touches_;
    FocusRing ring_;
    KeyRepeats repeats_;

    WeakRef<UIViewController> controller_;
    WeakRef<UIView> container_; // that the controller's view was presented in
    WeakRef<UIView> view_;      // with the focus
    std::size_t index_ = 0;     // of its cell
    std::string identifier_;
    CGPoint middle_;     // of the cell when it was last looked at; see FocusPlace::cell
    CGFloat column_ = 0; // that up and down keep to
    bool isPlaced_ = false;
    bool isShown_ = false;
    bool adoptsTouch_ = true; // a finger may have landed since the last key
};

} // namespace tesmar
