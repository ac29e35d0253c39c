#include "tesmar/platform/ui/UIStepper.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/internal/weak_schedule.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

// A held half starts to repeat after the first delay, and goes faster after some repeats. Seconds.
constexpr double kFirstRepeat = 0.5;
constexpr double kRepeat = 0.15;
constexpr double kFastRepeat = 0.05;
constexpr int kRepeatsBeforeFast = 10;

// Values are held within this, so that sums of them stay exact enough to step by one.
constexpr double kLargestValue = 1e15;

double finiteValue(double value) {
    return finite(value, -kLargestValue, kLargestValue, 0);
}

Ref<UIImage> find(const std::map<unsigned, Ref<UIImage>>& images, unsigned key) {
    const auto found = images.find(key);
    return found == images.end() ? nullptr : found->second;
}

Ref<UIImage> findOrNormal(const std::map<unsigned, Ref<UIImage>>& images, unsigned state) {
    const auto own = find(images, state);
    return own ? own : find(images, UIControlStateNormal);
}

unsigned pairKey(unsigned left, unsigned right) {
    return left * 8 + right;
}

} // namespace

Class& UIStepper::classObject() {
    static Class type("UIStepper", &UIControl::classObject(), allocator<UIStepper>(),
                      {method<&UIStepper::value>("value"),
                       method<&UIStepper::setValue>("setValue:"),
                       method<&UIStepper::minimumValue>("minimumValue"),
                       method<&UIStepper::setMinimumValue>("setMinimumValue:"),
                       method<&UIStepper::maximumValue>("maximumValue"),
                       method<&UIStepper::setMaximumValue>("setMaximumValue:"),
                       method<&UIStepper::stepValue>("stepValue"),
                       method<&UIStepper::setStepValue>("setStepValue:"),
                       method<&UIStepper::wraps>("wraps"),
                       method<&UIStepper::setWraps>("setWraps:"),
                       method<&UIStepper::autorepeat>("autorepeat"),
                       method<&UIStepper::setAutorepeat>("setAutorepeat:"),
                       method<&UIStepper::isContinuous>("isContinuous"),
                       method<&UIStepper::setContinuous>("setContinuous:"),
                       method<&UIStepper::tintColor>("tintColor"),
                       method<&UIStepper::setTintColor>("setTintColor:"),
                       method<&UIStepper::incrementImageForState>("incrementImageForState:"),
                       method<&UIStepper::setIncrementImage>("setIncrementImage:forState:"),
                       method<&UIStepper::decrementImageForState>("decrementImageForState:"),
                       method<&UIStepper::setDecrementImage>("setDecrementImage:forState:"),
                       method<&UIStepper::backgroundImageForState>("backgroundImageForState:"),
                       method<&UIStepper::setBackgroundImage>("setBackgroundImage:forState:"),
                       method<&UIStepper::dividerImageForStates>(
                           "dividerImageForLeftSegmentState:rightSegmentState:"),
                       method<&UIStepper::setDividerImage>(
                           "setDividerImage:forLeftSegmentState:rightSegmentState:")});
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
    wraps_ = coder.decodeBool("wraps").value_or(wraps_);
    autorepeat_ = coder.decodeBool("autorepeat").value_or(autorepeat_);
    continuous_ = coder.decodeBool("continuous").value_or(continuous_);
    return true;
}

// --- Value --------------------------------------------------------------------------------------

void UIStepper::setValue(double value) {
    value = std::clamp(finiteValue(value), minimum_, maximum_);
    if (std::exchange(value_, value) != value)
        setNeedsDisplay();
}

void UIStepper::setMinimumValue(double minimum) {
    minimum_ = finiteValue(minimum);
    maximum_ = std::max(maximum_, minimum_);
    setNeedsDisplay();
    setValue(value_);
}

void UIStepper::setMaximumValue(double maximum) {
    maximum_ = finiteValue(maximum);
    minimum_ = std::min(minimum_, maximum_);
    setNeedsDisplay();
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
    setNeedsDisplay();
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

// --- Look ---------------------------------------------------------------------------------------

void UIStepper::setTintColor(const Ref<UIColor>& color) {
    tintColor_ = color;
    setNeedsDisplay();
}

void UIStepper::setImage(Images& images, const Ref<UIImage>& image, unsigned key) {
    images[key] = image;
    setNeedsDisplay();
}

Ref<UIImage> UIStepper::incrementImageForState(unsigned state) const {
    return find(incrementImages_, state);
}
void UIStepper::setIncrementImage(const Ref<UIImage>& image, unsigned state) {
    setImage(incrementImages_, image, state);
}
Ref<UIImage> UIStepper::decrementImageForState(unsigned state) const {
    return find(decrementImages_, state);
}
void UIStepper::setDecrementImage(const Ref<UIImage>& image, unsigned state) {
    setImage(decrementImages_, image, state);
}
Ref<UIImage> UIStepper::backgroundImageForState(unsigned state) const {
    return find(backgroundImages_, state);
}
void UIStepper::setBackgroundImage(const Ref<UIImage>& image, unsigned state) {
    setImage(backgroundImages_, image, state);
}
Ref<UIImage> UIStepper::dividerImageForStates(unsigned left, unsigned right) const {
    return find(dividerImages_, pairKey(left, right));
}
void UIStepper::setDividerImage(const Ref<UIImage>& image, unsigned left, unsigned right) {
    setImage(dividerImages_, image, pairKey(left, right));
}

CGRect UIStepper::halfRect(UIStepperHalf half) const {
    const CGRect b = bounds();
    const CGFloat width = b.size.width / 2;
    if (half == UIStepperHalf::none)
        return {};
    return {half == UIStepperHalf::decrement ? b.minX() : b.midX(), b.minY(), width, b.size.height};
}

UIStepperHalf UIStepper::halfNearest(CGPoint point) const {
    return point.x < halfRect(UIStepperHalf::increment).minX() ? UIStepperHalf::decrement
                                                               : UIStepperHalf::increment;
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

unsigned UIStepper::stateOf(UIStepperHalf half) const {
    if (!canStep(half))
        return UIControlStateDisabled;
    const bool held = isHighlighted() && pressed_ == half && (fingerOnHalf_ || !isTracking());
    return held ? UIControlStateHighlighted : UIControlStateNormal;
}

void UIStepper::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    static const auto blue = UIColor::colorWithRed(0, 0.35, 0.85, 1);
    const Ref<UIColor> tint = tintColor_ ? tintColor_ : blue;
    const CGRect b = bounds();

    if (const auto background = findOrNormal(backgroundImages_, state())) {
        context->drawImage(*background, b);
    } else {
        // The default look: a rounded border in the tint colour.
        context->setFillColor(*tint);
        context->fillRoundedRect(b, 4);
        context->setFillColor(*UIColor::whiteColor());
        context->fillRoundedRect(CGRectInset(b, 1, 1), 3);
    }
    drawHalf(*context, UIStepperHalf::decrement);
    drawHalf(*context, UIStepperHalf::increment);

    const unsigned left = stateOf(UIStepperHalf::decrement);
    const unsigned right = stateOf(UIStepperHalf::increment);
    auto divider = find(dividerImages_, pairKey(left, right));
    if (!divider)
        divider = find(dividerImages_, pairKey(UIControlStateNormal, UIControlStateNormal));
    if (divider) {
        const CGSize size = divider->size();
        context->drawImage(*divider, {b.midX() - size.width / 2, b.midY() - size.height / 2,
                                      size.width, size.height});
    } else {
        context->setFillColor(*tint);
        context->fillRect(context->snapped({b.midX() - 0.5, b.minY(), 1, b.size.height}));
    }
}

void UIStepper::drawHalf(CGContext& context, UIStepperHalf half) {
    static const auto blue = UIColor::colorWithRed(0, 0.35, 0.85, 1);
    const unsigned halfState = stateOf(half);
    const CGRect rect = halfRect(half);
    const CGPoint center = rect.center();
    const Ref<UIColor> tint = tintColor_ ? tintColor_ : blue;
    if (halfState == UIControlStateHighlighted) {
        context.setRGBFillColor(tint->red(), tint->green(), tint->blue(), 0.15);
        context.fillRoundedRect(CGRectInset(rect, 2, 1), 6);
    }
    context.saveGState();
    context.setAlpha(halfState == UIControlStateDisabled ? 0.25 : 1);
    const bool up = half == UIStepperHalf::increment;
    if (const auto image = findOrNormal(up ? incrementImages_ : decrementImages_, halfState)) {
        const CGSize size = image->size();
        context.drawImage(
            *image,
            {center.x - size.width / 2, center.y - size.height / 2, size.width, size.height},
            *tint);
    } else {
        context.setFillColor(*tint);
        context.fillRect(context.snapped({center.x - 7, center.y - 0.75, 14, 1.5}));
        if (up)
            context.fillRect(context.snapped({center.x - 0.75, center.y - 7, 1.5, 14}));
    }
    context.restoreGState();
}

// --- Touches ------------------------------------------------------------------------------------

bool UIStepper::beginTracking(UITouch& touch) {
    pressed_ = halfNearest(touch.locationIn(*this));
    fingerOnHalf_ = true;
    repeats_ = 0;
    unsentChange_ = false;
    if (autorepeat_)
        repeatLater(kFirstRepeat);
    return true;
}

bool UIStepper::continueTracking(UITouch& touch) {
    const CGRect near = CGRectInset(halfRect(pressed_), 0, -kTrackingMargin);
    const CGPoint point = touch.locationIn(*this);
    const CGFloat outer = pressed_ == UIStepperHalf::decrement ? -kTrackingMargin : 0;
    const CGRect reach{near.minX() + outer, near.minY(), near.size.width + kTrackingMargin,
                       near.size.height};
    if (std::exchange(fingerOnHalf_, reach.contains(point)) != fingerOnHalf_)
        setNeedsDisplay();
    return true;
}

void UIStepper::endTracking(UITouch& touch) {
    stopRepeating();
    continueTracking(touch);
    const auto kept = ref(this);
    if (fingerOnHalf_ && isTouchInside() && repeats_ == 0)
        stepOnce(pressed_);
    if (std::exchange(unsentChange_, false))
        sendActionsForControlEvents(UIControlEventValueChanged);
}

void UIStepper::cancelTracking() {
    stopRepeating();
    // Steps made by holding have been made; the owner must hear of them.
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
