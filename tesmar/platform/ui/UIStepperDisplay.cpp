// The look of steppers: their images, and symbols and a border in place of missing ones.
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/internal/press_plate.h"

#include <cmath>

namespace tesmar {
namespace {

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

void drawBars(CGContext& context, CGPoint center, UIStepperHalf half) {
    constexpr CGSize size{14, 14};
    constexpr CGFloat thickness = 1.5;
    const CGRect square = context.snapped(center, size);
    // Whole pixels on both sides leave a bar in the very middle.
    const CGFloat aside =
        std::floor((size.width - thickness) / 2 * context.scale()) / context.scale();
    context.fillRect(CGRectInset(square, 0, aside));
    if (half == UIStepperHalf::increment)
        context.fillRect(CGRectInset(square, aside, 0));
}

} // namespace

void UIStepper::setTintColor(const Ref<UIColor>& color) {
    tintColor_ = color;
    setNeedsDisplay();
}

void UIStepper::setImage(Images& images, const Ref<UIImage>& image, unsigned key) {
    images[key] = image;
    setNeedsDisplay();
}

void UIStepper::setIncrementImage(const Ref<UIImage>& image, unsigned state) {
    setImage(incrementImages_, image, state);
}
void UIStepper::setDecrementImage(const Ref<UIImage>& image, unsigned state) {
    setImage(decrementImages_, image, state);
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

void UIStepper::setDividerTintColor(const Ref<UIColor>& color) {
    dividerTintColor_ = color;
    setNeedsDisplay();
}

const UIColor& UIStepper::tint() const {
    static const auto& blue = *new Ref<UIColor>(UIColor::colorWithRed(0, 0.35, 0.85, 1));
    return tintColor_ ? *tintColor_ : *blue;
}

void UIStepper::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    drawBackground(*context);
    drawHalf(*context, UIStepperHalf::decrement);
    drawHalf(*context, UIStepperHalf::increment);
    drawDivider(*context);
}

void UIStepper::drawBackground(CGContext& context) {
    const CGRect b = bounds();
    if (const auto background = findOrNormal(backgroundImages_, state())) {
        context.drawImage(*background, b);
        return;
    }
    // A rounded border.
    context.setFillColor(tint());
    context.fillRoundedRect(b, 4);
    context.setFillColor(*UIColor::whiteColor());
    context.fillRoundedRect(CGRectInset(b, 1, 1), 3);
}

void UIStepper::drawHalf(CGContext& context, UIStepperHalf half) {
    const unsigned halfState = stateOf(half);
    const CGRect rect = halfRect(half);
    const CGPoint center = rect.center();
    if (halfState == UIControlStateHighlighted)
        drawPressPlate(context, *this, rect, tint());
    context.saveGState();
    context.setAlpha(halfState == UIControlStateDisabled ? 0.25 : 1);
    const bool up = half == UIStepperHalf::increment;
    if (const auto image = findOrNormal(up ? incrementImages_ : decrementImages_, halfState)) {
        context.drawImage(*image, context.snapped(center, image->size()), tint());
    } else {
        context.setFillColor(tint());
        drawBars(context, center, half);
    }
    context.restoreGState();
}

void UIStepper::drawDivider(CGContext& context) {
    const CGRect b = bounds();
    auto divider = dividerImageForStates(stateOf(leftHalf()), stateOf(rightHalf()));
    if (!divider)
        divider = dividerImageForStates(UIControlStateNormal, UIControlStateNormal);
    if (divider) {
        const CGRect place = context.snapped(b.center(), divider->size());
        if (dividerTintColor_)
            context.drawImage(*divider, place, *dividerTintColor_);
        else
            context.drawImage(*divider, place);
        return;
    }
    context.setFillColor(tint());
    context.fillRect(context.snapped(b.center(), {1, b.size.height}));
}

} // namespace tesmar
