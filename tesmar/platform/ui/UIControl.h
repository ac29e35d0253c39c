// A view that the user operates, and that then sends actions to its targets.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/selector.h"
#include "tesmar/platform/ui/UIControlListener.h"
#include "tesmar/platform/ui/UIView.h"

#include <cstdint>

namespace tesmar {

// Bits: a control may be in several states at once.
enum UIControlState : unsigned {
    UIControlStateNormal = 0,
    UIControlStateHighlighted = 1,
    UIControlStateDisabled = 2,
    UIControlStateSelected = 4,
};

// Bits, to be combined.
enum UIControlEvents : unsigned {
    UIControlEventTouchDown = 1,
    UIControlEventTouchDragInside = 4,
    UIControlEventTouchDragOutside = 8,
    UIControlEventTouchDragEnter = 16,
    UIControlEventTouchDragExit = 32,
    UIControlEventTouchUpInside = 64,
    UIControlEventTouchUpOutside = 128,
    UIControlEventTouchCancel = 256,
    UIControlEventValueChanged = 4096,
    UIControlEventAllEvents = 0xFFFFFFFF,
};

class TESMAR_API UIControl : public UIView {
    TESMAR_CLASS

  public:
    // Smaller controls take touches in an area of this width and height, in points.
    static constexpr CGFloat kTouchTarget = 44;

    // Reads, besides the view's keys, "enabled" and "selected".
    bool initWithCoder(NSCoder& coder) override;

    // Initially true. Disabling cancels the touch in progress.
    bool isEnabled() const { return enabled_; }
    virtual void setEnabled(bool enabled);
    virtual bool isSelected() const { return selected_; }
    virtual void setSelected(bool selected);
    bool isHighlighted() const { return highlighted_; }
    virtual void setHighlighted(bool highlighted);
    // Bits of UIControlState.
    unsigned state() const;

    // Whether a finger is down on the control.
    bool isTracking() const { return touch_ != nullptr; }
    // Whether that finger is within the tracking margin, or the last one was when it lifted.
    bool isTouchInside() const { return touchInside_; }

    // Performs `action` on `target` (see performAction) whenever one of `events` is sent. The
    // target is not owned; one that has been destroyed is skipped. Adding the same target and
    // action again adds the events.
    void addTarget(const Ref<NSObject>& target, Selector action, unsigned events);
    // Stops sending `events`; a null target means every target.
    void removeTarget(const NSObject* target, Selector action, unsigned events);
    // Calls `function` with this control whenever one of `events` is sent, until the returned
    // object is destroyed. The function may release the control, which is destroyed after the
    // actions of the event. An empty function is a fatal error.
    [[nodiscard]] UIControlListener addListener(unsigned events,
                                                std::function<void(UIControl&)> function);
    // Performs the actions of all `events` (bits), in the order in which they were added. An action
    // may do anything, including releasing the control.
    void sendActionsForControlEvents(unsigned events);

    // The area in which a finger may land, in bounds coordinates: the bounds, enlarged to
    // kTouchTarget each way.
    CGRect touchRect() const;
    // The part of the control that a finger at `point` operates, both in bounds coordinates: by
    // default all of it. If superviews clip that part, what remains still takes touches in an area
    // of kTouchTarget each way.
    virtual CGRect touchTarget(CGPoint /*point*/) const { return bounds(); }

    // Touches and releases the control at a point of its bounds, whether or not that can be seen.
    // Returns false, and does nothing, when the control is disabled, not in a window or under a
    // finger.
    bool tap(CGPoint point);
    // States, and UIAccessibleAction::press; the role is left to subclasses.
    void describe(UIAccessibleElement& element) const override;
    // Taps the middle for UIAccessibleAction::press.
    bool perform(const UIAccessibleElement& element, UIAccessibleAction action) override;

    // One cell, unless the control contains other controls; a little flatter than the control, so
    // that the ring leaves titles above it free.
    std::vector<UIFocusCell> focusCells() const override;

    void touchBegan(UITouch& touch) final;
    void touchMoved(UITouch& touch) final;
    void touchEnded(UITouch& touch) final;
    void touchCancelled(UITouch& touch) final;

  protected:
    // A cell for a part of the control.
    static UIFocusCell flatCell(const CGRect& part, std::string_view suffix = {});
    // Overridden by controls that follow the finger. Returning false cancels the touch.
    virtual bool beginTracking(UITouch&) { return true; }
    virtual bool continueTracking(UITouch&) { return true; }
    virtual void endTracking(UITouch&) {}
    virtual void cancelTracking() {}
    // The enabled, selected or highlighted state has changed.
    virtual void stateChanged() { setNeedsDisplay(); }
    // Keeps the highlight for a moment after a touch that was too short to be seen.
    void flashHighlight();
    void didMoveToWindow() override;

  private:
    struct Target {
        WeakRef<NSObject> target;
        const NSObject* identity; // to compare with, even after its destruction
        Selector action;
        unsigned events;
    };

    void forgetRemovedTargets();
    bool isWithinMargin(const UITouch& touch) const;
    void stopTracking();

    std::vector<Target> targets_;
    int sending_ = 0; // depth of sendActionsForControlEvents
    const UITouch* touch_ = nullptr;
    double touchTime_ = 0;
    bool touchInside_ = false;
    bool enabled_ = true;
    bool selected_ = false;
    bool highlighted_ = false;
    std::uint64_t flashTimer_ = 0; // ends a flash; 0 outside one
};

} // namespace tesmar
