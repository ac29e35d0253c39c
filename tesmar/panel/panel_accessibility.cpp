// What screen readers are told of the panel, in its language.
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tesmar {
namespace {

// Labels that are the names of controls: these say them themselves.
constexpr std::array<std::string_view, 5> kControlLabels{
    "CCLabel", "textColorOpacityLabel", "backgroundColorOpacityLabel", "fontPicker.fontLabel",
    "fontPicker.sizeLabel"};

std::string digits(double number) {
    std::array<char, 32> text{};
    return {text.data(), std::to_chars(text.begin(), text.end(), number).ptr};
}

std::string filledIn(std::string_view format, double n, double m = 0) {
    std::string text(format);
    for (const auto& [place, number] : {std::pair("{n}", n), std::pair("{m}", m)})
        if (const auto at = text.find(place); at != std::string::npos)
            text.replace(at, std::string_view(place).size(), digits(number));
    return text;
}

std::string joined(std::string_view first, std::string_view second) {
    return std::string(first) + ", " + std::string(second);
}

// Of a colour of the palette; empty for another one.
std::string_view nameOf(const UIColor& color, const TESMARTexts& texts) {
    const std::array names{texts.magenta, texts.cyan, texts.white, texts.black,
                           texts.yellow,  texts.red,  texts.blue,  texts.green};
    const auto& palette = CCConstants::paletteColors();
    for (std::size_t i = 0; i < std::min(names.size(), palette.size()); ++i)
        if (palette[i]->isEqual(&color))
            return names[i];
    return {};
}

void describeStepper(UIAccessibleElement& element, std::string_view name, std::string value,
                     const TESMARTexts& texts) {
    element.name = name;
    element.value = std::move(value);
    for (auto& half : element.children) {
        const bool decrements =
            half.identifier == UIStepper::identifierSuffix(UIStepperHalf::decrement);
        half.name = joined(name, decrements ? texts.decrease : texts.increase);
    }
}

} // namespace

// Of the picker itself, its title or one of its swatches.
void TESMARViewController::describeColorPicker(const ColorPicker& picker, const UIView& view,
                                               UIAccessibleElement& element,
                                               std::string_view name) const {
    if (&view == &picker) {
        element.role = UIAccessibleRole::group;
        element.name = name;
        element.actions.clear();
        return;
    }
    if (&view == picker.titleLabel().get()) {
        element.role = UIAccessibleRole::heading;
        element.name = name;
        return;
    }
    const auto& buttons = picker.colorButtons();
    const auto swatch = std::ranges::find(buttons, &view, [](const auto& b) { return b.get(); });
    if (swatch == buttons.end() || !(*swatch)->color())
        return;
    describeOption(element, name, nameOf(*(*swatch)->color(), texts()),
                   static_cast<std::size_t>(swatch - buttons.begin()), buttons.size());
}

void TESMARViewController::describeOption(UIAccessibleElement& element, std::string_view name,
                                          std::string_view option, std::size_t index,
                                          std::size_t count) const {
    element.role = UIAccessibleRole::option;
    element.name = option.empty() ? std::string(name) : joined(name, option);
    element.position = static_cast<int>(index) + 1;
    element.count = static_cast<int>(count);
    element.value = filledIn(texts().position, element.position, element.count);
}

void TESMARViewController::describeOpacity(const UIStepper& stepper, UIAccessibleElement& element,
                                           std::string_view name) const {
    const double percent = std::round(stepper.value() * 10);
    describeStepper(element, name, filledIn(texts().percent, percent), texts());
}

void TESMARViewController::describe(const UIView& view, UIAccessibleElement& element) {
    UIViewController::describe(view, element);
    const TESMARTexts& texts = this->texts();
    if (element.role == UIAccessibleRole::dialog)
        element.name = texts.panel;
    else if (&view == CCSwitch_.get()) {
        element.name = texts.captionsSwitch;
        element.value = CCSwitch_->isOn() ? texts.on : texts.off;
    } else if (view.isDescendantOf(textColorPicker_.get()))
        describeColorPicker(*textColorPicker_, view, element, texts.textColor);
    else if (view.isDescendantOf(backgroundColorPicker_.get()))
        describeColorPicker(*backgroundColorPicker_, view, element, texts.backgroundColor);
    else if (&view == textColorOpacityStepper_.get())
        describeOpacity(*textColorOpacityStepper_, element, texts.textOpacity);
    else if (&view == backgroundColorOpacityStepper_.get())
        describeOpacity(*backgroundColorOpacityStepper_, element, texts.backgroundOpacity);
    else if (view.isDescendantOf(fontPicker_.get()))
        describeFont(view, element);
    if (std::ranges::find(kControlLabels, view.accessibilityIdentifier()) != kControlLabels.end())
        element.role = UIAccessibleRole::none;
}

// The stepper shows the nearest of its own sizes, which the style's font need not have.
std::optional<CGFloat> TESMARViewController::fontSize() const {
    const auto style = CCStyleAttributes();
    const auto font = style ? as<UIFont>(style->objectForKey(NSFontAttributeName)) : nullptr;
    return font ? std::optional(font->pointSize()) : fontPicker_->selectedSize();
}

void TESMARViewController::describeFont(const UIView& view, UIAccessibleElement& element) const {
    const TESMARTexts& texts = this->texts();
    if (view.superview() == fontPicker_.get() && element.role == UIAccessibleRole::adjustable) {
        if (!dynamic_cast<const UIStepper*>(&view)) {
            element.name = texts.font;
            const auto position = filledIn(texts.position, element.position, element.count);
            element.value = joined(element.value, position);
        } else if (const auto size = fontSize())
            describeStepper(element, texts.fontSize, filledIn(texts.points, *size), texts);
    }
    if (const auto* const names = dynamic_cast<const FontNamePickerView*>(view.superview())) {
        if (&view == names->prevButton().get())
            element.name = texts.previousFont;
        else if (&view == names->nextButton().get())
            element.name = texts.nextFont;
        else if (&view == names->fontNameLabel().get())
            element.role = UIAccessibleRole::none; // the value of the picker
    }
}

// --- Auto-hide ----------------------------------------------------------------------------------

bool TESMARViewController::waitsForReader() {
    const auto* const window = isViewLoaded() ? view()->window() : nullptr;
    return autoHideWaitsForReaders_ && window && window->hasAccessibilityObserver();
}

void TESMARViewController::accessibilityObserverChanged() {
    UIViewController::accessibilityObserverChanged();
    if (isViewLoaded() && view()->window() && !isBeingDismissed())
        resetAutoHideTimer();
}

void TESMARViewController::announceReset() {
    if (auto* const window = isViewLoaded() ? view()->window() : nullptr)
        window->announce(std::string(texts().resetDone));
}

} // namespace tesmar
