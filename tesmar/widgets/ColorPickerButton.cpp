#include "tesmar/widgets/ColorPickerButton.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kDiscInset = 5;
constexpr CGFloat kRimWidth = 1;
constexpr CGFloat kSelectionWhite = 0.831;
// In high contrast the rim lies on the disc.
constexpr CGFloat kStrongRimWidth = 2;
constexpr CGFloat kStrongSelectionWhite = 0.4;

// Of the brightest component. A shade cannot be seen on a darker disc, so a press brightens it.
constexpr CGFloat kDark = 0.25;

bool isDark(const UIColor& color) {
    return std::max({color.red(), color.green(), color.blue()}) < kDark;
}

} // namespace

Class& ColorPickerButton::classObject() {
    static Class& type =
        *new Class("ColorPickerButton", &UIButton::classObject(), allocator<ColorPickerButton>(),
                   {method<&ColorPickerButton::color>("color"),
                    method<&ColorPickerButton::setColor>("setColor:"),
                    method<&ColorPickerButton::isSelected>("isSelected"),
                    method<&ColorPickerButton::setSelected>("setSelected:"),
                    method<&ColorPickerButton::draw>("drawRect:"),
                    method<&ColorPickerButton::initWithFrame>("initWithFrame:"),
                    method<&ColorPickerButton::initWithCoder>("initWithCoder:")});
    return type;
}

bool ColorPickerButton::initWithFrame(CGRect frame) {
    color_ = nullptr;
    return UIButton::initWithFrame(frame);
}

bool ColorPickerButton::initWithCoder(NSCoder& coder) {
    color_ = nullptr;
    return UIButton::initWithCoder(coder);
}

void ColorPickerButton::setColor(const Ref<UIColor>& color) {
    color_ = color;
    setNeedsDisplay();
}

void ColorPickerButton::setSelected(bool selected) {
    UIButton::setSelected(selected);
    setNeedsDisplay();
}

void ColorPickerButton::setContrast(TESMARContrast contrast) {
    contrast_ = contrast;
    setNeedsDisplay();
}

CGRect ColorPickerButton::discRect() const {
    return CGRectInset(bounds(), kDiscInset, kDiscInset);
}

std::vector<UIFocusCell> ColorPickerButton::focusCells() const {
    return {{.rect = bounds(), .cornerRadius = bounds().size.width / 2}};
}

void ColorPickerButton::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    static const auto& selection = *new const auto(UIColor::colorWithWhite(kSelectionWhite, 1));
    static const auto& pressed = *new const auto(UIColor::colorWithWhite(0, 0.25));
    static const auto& pressedDark = *new const auto(UIColor::colorWithWhite(1, 0.35));
    static const auto& strongSelection =
        *new const auto(UIColor::colorWithWhite(kStrongSelectionWhite, 1));
    const bool isStrong = contrast_ == TESMARContrast::high;
    if (isSelected()) {
        CGContextSetFillColorWithColor(*context, isStrong ? *strongSelection : *selection);
        CGContextFillEllipseInRect(*context, bounds());
    }
    CGContextSetStrokeColorWithColor(*context, *UIColor::grayColor());
    CGContextSetLineWidth(*context, kRimWidth);
    const Ref<UIColor> fill = color();
    if (!fill)
        fatalError("a ColorPickerButton was drawn before it was given a colour");
    CGContextSetFillColorWithColor(*context, *fill);
    // The fill covers the inner half of the rim: half a point of grey remains.
    CGContextStrokeEllipseInRect(*context, discRect());
    CGContextFillEllipseInRect(*context, discRect());
    if (isStrong) {
        CGContextSetStrokeColorWithColor(*context, *UIColor::blackColor());
        CGContextSetLineWidth(*context, kStrongRimWidth);
        CGContextStrokeEllipseInRect(
            *context, CGRectInset(discRect(), kStrongRimWidth / 2, kStrongRimWidth / 2));
    }

    // A finger covers most of the disc, so what shows the press covers all of it.
    if (isHighlighted()) {
        CGContextSetFillColorWithColor(*context, isDark(*fill) ? *pressedDark : *pressed);
        CGContextFillEllipseInRect(*context, discRect());
    }
}

} // namespace tesmar
