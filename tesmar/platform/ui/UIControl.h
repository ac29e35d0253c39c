// A view that the user operates and that tells its targets about it.
#pragma once

#include "tesmar/platform/foundation/selector.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

// Bits; a control may be in several states at once.
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
    // A finger within this distance of the bounds still counts as being on the control, in points.
    static constexpr CGFloat kTrackingMargin = 70;
    // A finger needs at least this much room, in points; smaller controls take touches around them.
    static constexpr CGFloat kTouchTarget = 44;

    // Reads, beside the view's keys, "enabled" and "selected".
    bool initWithCoder(NSCoder& coder) override;

    bool isEnabled() const { return enabled_; }
    virtual void setEnabled(bool enabled);
    virtual bool isSelected() const { return selected_; }
    virtual void setSelected(bool selected);
    bool isHighlighted() const { return highlighted_; }
    virtual void setHighlighted(bool highlighted);
    unsigned state() const;

    // A finger is down on the control / and within the tracking margin.
    bool isTracking() const { return touch_ != nullptr; }
    bool isTouchInside() const { return touchInside_; }

    // When any of `events` is sent, performs `action` on `target` (see performAction). The target
    // is not owned; one that has died is skipped. Adding the same again changes nothing.
    void addTarget(const Ref<NSObject>& target, Selector action, unsigned events);
    // A null target stands for every target.
    void removeTarget(const NSObject* target, Selector action, unsigned events);
    // Performs the actions in the order of their adding. An action may do anything, destroying the
    // control included.
    void sendActionsForControlEvents(unsigned events);

    // Where a finger may land, in bounds coordinates: the bounds, grown to kTouchTarget.
    CGRect touchRect() const;

    void touchBegan(UITouch& touch) final;
    void touchMoved(UITouch& touch) final;
    void touchEnded(UITouch& touch) final;
    void touchCancelled(UITouch& touch) final;

  protected:
    // The hooks of a subclass that tracks in its own way. False ends the tracking.
    virtual bool beginTracking(UITouch&) { return true; }
    virtual bool continueTracking(UITouch&) { return true; }
    virtual void endTracking(UITouch&) {}
    virtual void cancelTracking() {}
    // A state that shows has changed.
    virtual void stateChanged() { setNeedsDisplay(); }
    // Highlights for a moment: the touch came and went before anyone could see it.
    void flashHighlight();
    void didMoveToWindow() override;

  private:
    struct Target {
        WeakRef<NSObject> target;
        const NSObject* identity;
        Selector action;
        unsigned events;
    };

    void forgetRemovedTargets();
    bool isWithinMargin(const UITouch& touch) const;
    void stopTracking();

    std::vector<Target> targets_;
    int sending_ = 0;
    const UITouch* touch_ = nullptr;
    double touchTime_ = 0;
    bool touchInside_ = false;
    bool enabled_ = true;
    bool selected_ = false;
    bool highlighted_ = false;
    bool flashing_ = false;
};

} // namespace tesmar
