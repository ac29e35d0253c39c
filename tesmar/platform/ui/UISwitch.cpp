#include "tesmar/platform/ui/UISwitch.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UITouch.h"
#include "tesmar/platform/ui/internal/Transition.h"
#include "tesmar/platform/ui/internal/equal_objects.h"

#include <utility>

namespace tesmar {
namespace {

constexpr double kSlide = 0.2;    // seconds
constexpr double kStretch = 0.15; // seconds
constexpr CGFloat kThumb = 27;
constexpr CGFloat kInset = 2;
constexpr CGFloat kStretchBy = 6;
// The marks of the states, in the part of the track that the thumb leaves free.
constexpr CGRect kOnMark{11, 10, 2, 11};
constexpr CGRect kOffMark{34, 10, 11, 11};
constexpr CGFloat kMarkWidth = 2;

void setMixedFillColor(CGContext& context, const UIColor& a, const UIColor& b, double t,
                       double alpha) {
    const auto mix = [t](CGFloat x, CGFloat y) { return x + (y - x) * t; };
    context.setRGBFillColor(mix(a.red(), b.red()), mix(a.green(), b.green()),
                            mix(a.blue(), b.blue()), mix(a.alpha(), b.alpha()) * alpha);
}

} // namespace

Class& UISwitch::classObject() {
    static Class& type = *new Class("UISwitch", &UIControl::classObject(), allocator<UISwitch>());
    return type;
}

UISwitch::UISwitch() {
    const auto transition = [this] {
        return std::make_unique<Transition>(
            0, [this] { setNeedsDisplay(); }, [this] { return isOnScreen(); });
    };
    position_ = transition();
    stretch_ = transition();
    setContentHuggingPriority(750, LayoutAxis::horizontal);
    setContentHuggingPriority(750, LayoutAxis::vertical);
}

UISwitch::~UISwitch() = default;

bool UISwitch::initWithFrame(CGRect frame) {
    return UIControl::initWithFrame({frame.origin, kSize});
}

bool UISwitch::initWithCoder(NSCoder& coder) {
    if (!UIControl::initWithCoder(coder))
        return false;
    thumbTintColor_ = as<UIColor>(coder.decodeObject("thumbTintColor"));
    setOn(coder.decodeBool("on").value_or(false));
    return true;
}

void UISwitch::setOn(bool on, bool animated) {
    on_ = on;
    shownOn_ = on;
    moveThumb(animated);
}

void UISwitch::setThumbTintColor(const Ref<UIColor>& color) {
    if (!equalObjects(std::exchange(thumbTintColor_, color), color))
        setNeedsDisplay();
}

void UISwitch::moveThumb(bool animated) {
    const double target = shownOn_ ? 1 : 0;
    position_->moveTo(target, animated ? kSlide : 0);
}

void UISwitch::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    element.role = UIAccessibleRole::onOffSwitch;
    if (on_)
        element.states |= UIAccessibleStateOn;
}

bool UISwitch::beginTracking(UITouch&) {
    shownOn_ = on_;
    dragged_ = false;
    return true;
}

// The thumb follows the finger across the middle; isOn() changes only at the lift.
bool UISwitch::continueTracking(UITouch& touch) {
    const CGFloat right = touch.locationIn(*this).x - bounds().midX();
    const CGFloat forward = isRightToLeft() ? -right : right;
    const bool towardsOn = forward > kSize.width / 4;
    const bool towardsOff = forward < -kSize.width / 4;
    if ((towardsOn && !shownOn_) || (towardsOff && shownOn_)) {
        const CGFloat travelled = touch.location().x - touch.startLocation().x;
        if (std::abs(travelled) > kSize.width / 4 || dragged_) {
            dragged_ = true;
            shownOn_ = towardsOn;
            moveThumb(true);
        }
    }
    return true;
}

void UISwitch::endTracking(UITouch&) {
    if (!dragged_ && isTouchInside())
        shownOn_ = !on_;
    const bool changed = shownOn_ != on_;
    on_ = shownOn_;
    moveThumb(true);
    if (changed)
        sendActionsForControlEvents(UIControlEventValueChanged);
}

void UISwitch::cancelTracking() {
    shownOn_ = on_;
    moveThumb(true);
}

void UISwitch::stateChanged() {
    UIControl::stateChanged();
    stretch_->moveTo(isHighlighted() ? 1 : 0, kStretch);
}

std::vector<UIFocusCell> UISwitch::focusCells() const {
    return {{.rect = bounds(), .cornerRadius = kSize.height / 2}};
}

// `part` is where a part is in a switch that is read from left to right.
CGRect UISwitch::placed(CGRect part) const {
    if (isRightToLeft())
        part.origin.x = kSize.width - part.maxX();
    return part;
}

void UISwitch::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    static const auto& green = *new Ref<UIColor>(UIColor::colorWithRed(0.13, 0.60, 0.27, 1));
    static const auto& off = *new Ref<UIColor>(UIColor::colorWithRed(0.52, 0.52, 0.54, 1));
    static const auto& shade = *new Ref<UIColor>(UIColor::colorWithWhite(0, 0.35));
    const double at = position_->value();
    const CGFloat dim = isEnabled() ? 1 : 0.5;

    setMixedFillColor(*context, *off, *green, at, dim);
    context->fillRoundedRect({{0, 0}, kSize}, kSize.height / 2);

    // I and O tell the states apart without their colours.
    context->setRGBFillColor(1, 1, 1, at * dim);
    context->fillRect(context->snapped(placed(kOnMark)));
    context->setRGBFillColor(1, 1, 1, (1 - at) * dim);
    context->fillRoundedFrame(placed(kOffMark), kOffMark.size.height / 2, kMarkWidth);

    const CGFloat width = kThumb + kStretchBy * stretch_->value();
    const CGFloat x = kInset + (kSize.width - 2 * kInset - width) * at;
    const CGRect thumb = placed({x, kInset, width, kThumb});
    context->drawShadow(thumb, kThumb / 2, 3, {0, 1}, *shade);
    context->setFillColor(thumbTintColor_ ? *thumbTintColor_ : *UIColor::whiteColor());
    context->fillRoundedRect(thumb, kThumb / 2);
}

} // namespace tesmar
