#include "tesmar/platform/ui/UIControl.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/internal/near_control.h"
#include "tesmar/platform/ui/internal/short_touch.h"
#include "tesmar/platform/ui/internal/weak_schedule.h"

#include <algorithm>
#include <new>
#include <utility>

namespace tesmar {
namespace {

// A highlight must last this long to be seen, in seconds.
constexpr double kFlash = 0.1;

} // namespace

Class& UIControl::classObject() {
    static Class& type = *new Class("UIControl", &UIView::classObject(), allocator<UIControl>());
    return type;
}

bool UIControl::initWithCoder(NSCoder& coder) {
    if (!UIView::initWithCoder(coder))
        return false;
    enabled_ = coder.decodeBool("enabled").value_or(enabled_);
    selected_ = coder.decodeBool("selected").value_or(selected_);
    return true;
}

void UIControl::setEnabled(bool enabled) {
    if (enabled == enabled_)
        return;
    const auto self = weak_from_this().lock(); // null in a constructor
    enabled_ = enabled;
    if (!enabled)
        stopTracking();
    stateChanged();
}

void UIControl::setSelected(bool selected) {
    if (selected == selected_)
        return;
    selected_ = selected;
    stateChanged();
}

void UIControl::setHighlighted(bool highlighted) {
    NSRunLoop::mainRunLoop().cancel(std::exchange(flashTimer_, 0));
    if (highlighted == highlighted_)
        return;
    highlighted_ = highlighted;
    stateChanged();
}

unsigned UIControl::state() const {
    return (highlighted_ ? UIControlStateHighlighted : 0u) |
           (enabled_ ? 0u : UIControlStateDisabled) | (isSelected() ? UIControlStateSelected : 0u);
}

void UIControl::addTarget(const Ref<NSObject>& target, Selector action, unsigned events) {
    assertMainThread("UIControl::addTarget");
    if (!target)
        return;
    forgetRemovedTargets();
    for (Target& known : targets_)
        if (known.identity == target.get() && known.action == action && !known.target.expired()) {
            known.events |= events;
            return;
        }
    targets_.push_back({target, target.get(), action, events});
}

void UIControl::removeTarget(const NSObject* target, Selector action, unsigned events) {
    assertMainThread("UIControl::removeTarget");
    for (Target& known : targets_)
        if ((!target || known.identity == target) && known.action == action)
            known.events &= ~events;
    forgetRemovedTargets();
}

void UIControl::forgetRemovedTargets() {
    if (sending_ == 0)
        std::erase_if(targets_,
                      [](const Target& t) { return t.events == 0 || t.target.expired(); });
}

void UIControl::sendActionsForControlEvents(unsigned events) {
    assertMainThread("UIControl::sendActionsForControlEvents");
    const auto self = refTo(this);
    struct Sending {
        explicit Sending(UIControl& control) : control_(control) { ++control_.sending_; }
        ~Sending() {
            --control_.sending_;
            control_.forgetRemovedTargets();
        }
        UIControl& control_;
    } const sending(*this);
    // By index and only the present targets: an action may add targets. Removed ones keep their
    // places until all actions are sent.
    const std::size_t count = targets_.size();
    for (std::size_t i = 0; i < count; ++i) {
        if (!(targets_[i].events & events))
            continue;
        const Selector action = targets_[i].action;
        if (const auto target = targets_[i].target.lock())
            performAction(*target, action, self);
    }
}

CGRect UIControl::touchRect() const {
    const CGRect b = bounds();
    const CGFloat dx = std::max(0.0, (kTouchTarget - b.size.width) / 2);
    const CGFloat dy = std::max(0.0, (kTouchTarget - b.size.height) / 2);
    return CGRectInset(b, -dx, -dy);
}

std::vector<UIFocusCell> UIControl::focusCells() const {
    if (!isLeafControl(*this))
        return {};
    return {flatCell(bounds())};
}

UIFocusCell UIControl::flatCell(const CGRect& part, std::string_view suffix) {
    constexpr CGFloat inset = 4; // points, less for a low control
    return {.rect = CGRectInset(part, 0, std::min(inset, part.size.height / 8)), .suffix = suffix};
}

bool UIControl::isWithinMargin(const UITouch& touch) const {
    const CGFloat margin = touch.trackingMargin();
    return CGRectInset(bounds(), -margin, -margin).contains(touch.locationIn(*this));
}

// --- Tracking: one finger at a time -------------------------------------------------------------

void UIControl::touchBegan(UITouch& touch) {
    if (touch_ || !enabled_)
        return;
    const auto self = refTo(this);
    touch_ = &touch;
    touchTime_ = touch.timestamp();
    touchInside_ = true;
    if (!beginTracking(touch)) {
        stopTracking();
        return;
    }
    setHighlighted(true);
    sendActionsForControlEvents(UIControlEventTouchDown);
}

void UIControl::touchMoved(UITouch& touch) {
    if (touch_ != &touch)
        return;
    const auto self = refTo(this);
    const bool wasInside = touchInside_;
    touchInside_ = isWithinMargin(touch);
    if (!continueTracking(touch)) {
        stopTracking();
        return;
    }
    if (touch_ != &touch)
        return;
    setHighlighted(touchInside_);
    if (wasInside != touchInside_)
        sendActionsForControlEvents(touchInside_ ? UIControlEventTouchDragEnter
                                                 : UIControlEventTouchDragExit);
    sendActionsForControlEvents(touchInside_ ? UIControlEventTouchDragInside
                                             : UIControlEventTouchDragOutside);
}

void UIControl::touchEnded(UITouch& touch) {
    if (touch_ != &touch)
        return;
    const auto self = refTo(this);
    const bool inside = isWithinMargin(touch);
    const bool unseen = touch.timestamp() - touchTime_ < kFlash && inside;
    touch_ = nullptr;
    touchInside_ = inside;
    // Settle the highlight before any callback.
    if (unseen && highlighted_ && window())
        flashHighlight();
    else
        setHighlighted(false);
    endTracking(touch);
    sendActionsForControlEvents(inside ? UIControlEventTouchUpInside
                                       : UIControlEventTouchUpOutside);
}

void UIControl::touchCancelled(UITouch& touch) {
    if (touch_ == &touch)
        stopTracking();
}

bool UIControl::tap(CGPoint point) {
    if (!enabled_ || touch_ || !window())
        return false;
    const auto self = refTo(this);
    shortTouch(*this, point, [&] { return window() != nullptr; });
    return true;
}

void UIControl::describe(UIAccessibleElement& element) const {
    if (!enabled_)
        element.states |= UIAccessibleStateDisabled;
    if (isSelected())
        element.states |= UIAccessibleStateSelected;
    element.actions = {UIAccessibleAction::press};
}

bool UIControl::perform(const UIAccessibleElement&, UIAccessibleAction action) {
    return action == UIAccessibleAction::press && tap(bounds().center());
}

void UIControl::stopTracking() {
    if (!touch_)
        return;
    const auto self = refTo(this);
    touch_ = nullptr;
    touchInside_ = false;
    setHighlighted(false);
    cancelTracking();
    sendActionsForControlEvents(UIControlEventTouchCancel);
}

void UIControl::flashHighlight() {
    try {
        const auto timer = scheduleWeakly(
            *this, kFlash, [](UIControl& control) { control.setHighlighted(false); });
        NSRunLoop::mainRunLoop().cancel(std::exchange(flashTimer_, timer));
    } catch (const std::bad_alloc&) {
        setHighlighted(false); // without the timer nothing would end it
    }
}

void UIControl::didMoveToWindow() {
    if (window())
        return;
    stopTracking();
    NSRunLoop::mainRunLoop().cancel(std::exchange(flashTimer_, 0));
    setHighlighted(false);
}

} // namespace tesmar
