#include "tesmar/platform/ui/UIStepper.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/internal/weak_schedule.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

// Delays before the first and the next repeats of a half that is held down, in seconds.
constexpr double kFirstRepeat = 0.5;
constexpr double kRepeat = 0.15;
constexpr double kFastRepeat = 0.05;
constexpr int kRepeatsBeforeFast = 10;

// Values are clamped to ± this, so that adding a step of 1 still changes them.
constexpr double kLargestValue = 1e15;

double finiteValue(double value) {
    return finite(value, -kLargestValue, kLargestValue, 0);
}

} // namespace

Class& UIStepper::classObject() {
    static Class& type = *new Class("UIStepper", &UIControl::classObject(), allocator<UIStepper>());
    return type;
}

UIStepper::UIStepper() {
    setContentHuggingPriority(750, LayoutAxis::horizontal);
    setContentHuggingPriority(750, LayoutAxis::vertical);
}

bool UIStepper::initWithFrame(CGRect frame) {
    return UIControl::initWithFrame({frame.origin, kSize});
}

bool UIStepper::initWithCoder(NSCoder& coder) {
    if (!UIControl::initWithCoder(coder))
        return false;
    setMinimumValue(coder.decodeDouble("minimumValue").value_or(minimum_));
    setMaximumValue(coder.decodeDouble("maximumValue").value_or(maximum_));
    const double step = coder.decodeDouble("stepValue").value_or(step_);
    step_ = step > 0 && std::isfinite(step) ? finiteValue(step) : step_;
    setValue(coder.decodeDouble("value").value_or(value_));
    setWraps(coder.decodeBool("wraps").value_or(wraps_));
    autorepeat_ = coder.decodeBool("autorepeat").value_or(autorepeat_);
    continuous_ = coder.decodeBool("continuous").value_or(continuous_);
    return true;
}

// --- Value --------------------------------------------------------------------------------------

void UIStepper::setValue(double value) {
    value = std::clamp(finiteValue(value), minimum_, maximum_);
    value_ = value;
    updateLook();
}

void UIStepper::setMinimumValue(double minimum) {
    minimum_ = finiteValue(minimum);
    maximum_ = std::max(maximum_, minimum_);
    setValue(value_);
}

void UIStepper::setMaximumValue(double maximum) {
    maximum_ = finiteValue(maximum);
    minimum_ = std::min(minimum_, maximum_);
    setValue(value_);
}

void UIStepper::setStepValue(double step) {
    if (!(step > 0) || !std::isfinite(step))
        fatalError("UIStepper: the step must be a number greater than 0, not " +
                   std::to_string(step));
    step_ = finiteValue(step);
}

void UIStepper::setWraps(bool wraps) {
    wraps_ = wraps;
    updateLook();
}

bool UIStepper::canStep(UIStepperHalf half) const {
    if (half == UIStepperHalf::none || !isEnabled() || minimum_ == maximum_)
        return false;
    return wraps_ || (half == UIStepperHalf::increment ? value_ < maximum_ : value_ > minimum_);
}

void UIStepper::stepOnce(UIStepperHalf half) {
    if (!canStep(half))
        return;
    const bool up = half == UIStepperHalf::increment;
    double next = value_ + (up ? step_ : -step_);
    if (wraps_ && up && value_ >= maximum_)
        next = minimum_;
    else if (wraps_ && !up && value_ <= minimum_)
        next = maximum_;
    const double before = value_;
    setValue(next);
    unsentChange_ = unsentChange_ || value_ != before;
    if (continuous_ && std::exchange(unsentChange_, false))
        sendActionsForControlEvents(UIControlEventValueChanged);
}

// --- Halves -------------------------------------------------------------------------------------

CGRect UIStepper::halfRect(UIStepperHalf half) const {
    const CGRect b = bounds();
    const CGFloat width = b.size.width / 2;
    if (half == UIStepperHalf::none)
        return {};
    return {half == leftHalf() ? b.minX() : b.midX(), b.minY(), width, b.size.height};
}

UIStepperHalf UIStepper::leftHalf() const {
    return isRightToLeft() ? UIStepperHalf::increment : UIStepperHalf::decrement;
}

UIStepperHalf UIStepper::rightHalf() const {
    return isRightToLeft() ? UIStepperHalf::decrement : UIStepperHalf::increment;
}

UIStepperHalf UIStepper::halfNearest(CGPoint point) const {
    return point.x < bounds().midX() ? leftHalf() : rightHalf();
}

std::string_view UIStepper::identifierSuffix(UIStepperHalf half) {
    switch (half) {
    case UIStepperHalf::decrement:
        return ".decrement";
    case UIStepperHalf::increment:
        return ".increment";
    case UIStepperHalf::none:
        break;
    }
    return "";
}

std::pair<UIStepper*, UIStepperHalf> UIStepper::halfWithIdentifier(UIView& root,
                                                                   std::string_view identifier) {
    for (const auto half : {UIStepperHalf::decrement, UIStepperHalf::increment}) {
        const std::string_view suffix = identifierSuffix(half);
        if (!identifier.ends_with(suffix))
            continue;
        UIView* const view =
            root.viewWithIdentifier(identifier.substr(0, identifier.size() - suffix.size()));
        if (auto* stepper = dynamic_cast<UIStepper*>(view))
            return {stepper, half};
    }
    return {nullptr, UIStepperHalf::none};
}

std::vector<UIFocusCell> UIStepper::focusCells() const {
    const auto cellOf = [this](UIStepperHalf half) {
        auto cell = flatCell(halfRect(half), identifierSuffix(half));
        cell.operates = canStep(half);
        return cell;
    };
    return {cellOf(UIStepperHalf::decrement), cellOf(UIStepperHalf::increment)};
}

UIFocusTarget UIStepper::focusStepTarget(UIFocusStep step) {
    return {refTo(this), step == UIFocusStep::increment ? 1u : 0u};
}

unsigned UIStepper::stateOf(UIStepperHalf half) const {
    if (!canStep(half))
        return UIControlStateDisabled;
    const bool held = isHighlighted() && pressed_ == half && fingerOnHalf_;
    return held ? UIControlStateHighlighted : UIControlStateNormal;
}

UIStepper::Look UIStepper::look() const {
    return {state(), stateOf(UIStepperHalf::decrement), stateOf(UIStepperHalf::increment)};
}

void UIStepper::updateLook() {
    if (const Look now = look(); std::exchange(shownLook_, now) != now)
        setNeedsDisplay();
}

// --- Accessibility ------------------------------------------------------------------------------

void UIStepper::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    element.role = UIAccessibleRole::adjustable;
    element.range = {value_, minimum_, maximum_, step_};
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), value_).ptr;
    element.value.assign(digits.begin(), end);
    element.actions = {UIAccessibleAction::decrease, UIAccessibleAction::increase};
    for (const auto half : {UIStepperHalf::decrement, UIStepperHalf::increment}) {
        UIAccessibleElement part{UIAccessibleRole::button, std::string(identifierSuffix(half)),
                                 half == UIStepperHalf::decrement ? "decrease" : "increase"};
        part.frame = convertRectTo(halfRect(half), nullptr);
        part.actions = {UIAccessibleAction::press};
        part.states = canStep(half) ? 0u : UIAccessibleStateDisabled;
        element.children.push_back(std::move(part));
    }
}

bool UIStepper::perform(const UIAccessibleElement& element, UIAccessibleAction action) {
    auto half = UIStepperHalf::increment;
    if (action == UIAccessibleAction::decrease ||
        (action == UIAccessibleAction::press &&
         element.identifier.ends_with(identifierSuffix(UIStepperHalf::decrement))))
        half = UIStepperHalf::decrement;
    return canStep(half) && tap(halfRect(half).center());
}

// --- Touches ------------------------------------------------------------------------------------

bool UIStepper::beginTracking(UITouch& touch) {
    pressed_ = halfNearest(touch.locationIn(*this));
    fingerOnHalf_ = true;
    updateLook();
    repeats_ = 0;
    unsentChange_ = false;
    if (autorepeat_)
        repeatLater(kFirstRepeat);
    return true;
}

bool UIStepper::continueTracking(UITouch& touch) {
    const CGFloat margin = touch.trackingMargin();
    const CGRect near = CGRectInset(halfRect(pressed_), 0, -margin);
    const CGPoint point = touch.locationIn(*this);
    const CGFloat outer = pressed_ == leftHalf() ? -margin : 0;
    const CGRect reach{near.minX() + outer, near.minY(), near.size.width + margin,
                       near.size.height};
    fingerOnHalf_ = reach.contains(point);
    updateLook();
    return true;
}

void UIStepper::endTracking(UITouch& touch) {
    stopRepeating();
    continueTracking(touch);
    const auto self = refTo(this);
    if (fingerOnHalf_ && isTouchInside() && repeats_ == 0)
        stepOnce(pressed_);
    if (std::exchange(unsentChange_, false))
        sendActionsForControlEvents(UIControlEventValueChanged);
}

void UIStepper::cancelTracking() {
    stopRepeating();
    // Steps that were made by holding count.
    if (std::exchange(unsentChange_, false))
        sendActionsForControlEvents(UIControlEventValueChanged);
}

void UIStepper::repeatLater(double delay) {
    repeatTimer_ = scheduleWeakly(*this, delay, [](UIStepper& stepper) { stepper.repeat(); });
}

void UIStepper::repeat() {
    if (!isTracking())
        return;
    repeatLater(++repeats_ > kRepeatsBeforeFast ? kFastRepeat : kRepeat);
    if (fingerOnHalf_ && isTouchInside())
        stepOnce(pressed_);
    if (!canStep(pressed_))
        stopRepeating();
}

void UIStepper::stopRepeating() {
    NSRunLoop::mainRunLoop().cancel(std::exchange(repeatTimer_, 0));
}

} // namespace tesmar
