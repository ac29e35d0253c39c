#include "tesmar/widgets/ColorPicker.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

namespace tesmar {

Class& ColorPicker::classObject() {
    static Class& type =
        *new Class("ColorPicker", &UIControl::classObject(), allocator<ColorPicker>(),
                   {method<&ColorPicker::selectedColor>("selectedColor"),
                    method<&ColorPicker::setSelectedColor>("setSelectedColor:"),
                    method<&ColorPicker::colorButtons>("colorButtons"),
                    method<&ColorPicker::setColorButtons>("setColorButtons:"),
                    method<&ColorPicker::titleLabel>("titleLabel"),
                    method<&ColorPicker::setTitleLabel>("setTitleLabel:"),
                    method<&ColorPicker::initWithTitle>("initWithTitle:"),
                    method<&ColorPicker::initWithCoder>("initWithCoder:"),
                    method<&ColorPicker::colorButtonTouched>("colorButtonTouched:"),
                    method<&ColorPicker::initWithFrame>("initWithFrame:")});
    return type;
}

ColorPicker::ColorPicker() : titleLabel_(make<UILabel>()) {
    titleLabel_->setFont(CCConstants::font());
}

bool ColorPicker::initWithTitle(std::string_view title) {
    if (!UIControl::initWithFrame({}))
        return false;
    setupView();
    titleLabel()->setText(std::string(title));
    return true;
}

bool ColorPicker::initWithCoder(NSCoder& coder) {
    if (!UIControl::initWithCoder(coder))
        return false;
    setupView();
    return true;
}

bool ColorPicker::initWithFrame(CGRect) {
    fatalError("use of unimplemented initializer 'init(frame:)' for class 'TESMAR.ColorPicker'");
}

void ColorPicker::setupView() {
    const auto& palette = CCConstants::paletteColors();
    const CGFloat width = colorButtonSize_ * static_cast<CGFloat>(palette.size());
    titleLabel()->setFrame({0, 0, width, titleLabelHeight_});
    addSubview(titleLabel());

    CGFloat x = 0;
    for (const auto& color : palette) {
        auto button = makeWith<ColorPickerButton>(
            &ColorPickerButton::initWithFrame,
            CGRect(x, titleLabelHeight_ + verticalSpacing_, colorButtonSize_, colorButtonSize_));
        button->setColor(color);
        auto buttons = colorButtons();
        buttons.push_back(button);
        setColorButtons(std::move(buttons));
        button->addTarget(refTo(this), Selector("colorButtonTouched:"),
                          UIControlEventTouchUpInside);
        addSubview(button);
        x += colorButtonSize_;
    }

    setTranslatesAutoresizingMaskIntoConstraints(false);
    const CGFloat height = colorButtonSize_ + titleLabelHeight_ + verticalSpacing_;
    addConstraintsWithVisualFormats(
        {{"[view(width)]"}, {"V:[view(height)]"}}, {{"view", refTo(this)}},
        {{"height", static_cast<float>(height)}, {"width", static_cast<float>(width)}});
}

void ColorPicker::applyAppearance(const PanelAppearance& appearance) {
    setSemanticContentAttribute(semanticAttribute(appearance));
    const CGFloat titleHeight = titleLabelHeight_ * appearance.textScale;
    const CGFloat width = titleLabel()->frame().size.width;
    titleLabel()->setFont(appearance.smallFont());
    titleLabel()->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    titleLabel()->setFrame({0, 0, width, titleHeight});

    const auto buttons = colorButtons();
    for (std::size_t i = 0; i < buttons.size(); ++i) {
        if (!buttons[i])
            continue;
        const CGFloat x = colorButtonSize_ * static_cast<CGFloat>(i);
        buttons[i]->setFrame({appearance.isRightToLeft() ? width - colorButtonSize_ - x : x,
                              titleHeight + verticalSpacing_, colorButtonSize_, colorButtonSize_});
        buttons[i]->setContrast(appearance.contrast);
    }
    for (const auto& constraint : layoutConstraints())
        if (constraint->firstAttribute() == NSLayoutAttribute::height)
            constraint->setConstant(titleHeight + verticalSpacing_ + colorButtonSize_);
}

void ColorPicker::setSelectedColor(const Ref<UIColor>& color) {
    selectedColor_ = color;
    updateSelection();
}

void ColorPicker::updateSelection() {
    const auto buttons = colorButtons(); // a copy: selecting a swatch may replace the list
    for (const auto& button : buttons) {
        const Ref<UIColor> color = button ? button->color() : nullptr;
        if (!color)
            fatalError("a swatch of a ColorPicker has no colour");
        const Ref<UIColor> selected = selectedColor();
        button->setSelected(color->isEqual(selected.get()));
    }
}

void ColorPicker::setColorButtons(std::vector<Ref<ColorPickerButton>> buttons) {
    colorButtons_.swap(buttons);
}

void ColorPicker::setTitleLabel(const Ref<UILabel>& label) {
    if (!label)
        fatalError("ColorPicker: titleLabel cannot be null");
    titleLabel_ = label;
}

void ColorPicker::colorButtonTouched(ColorPickerButton& button) {
    setSelectedColor(button.color());
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void ColorPicker::setAccessibilityIdentifier(std::string identifier) {
    titleLabel()->setAccessibilityIdentifier(identifier + ".title");
    std::size_t i = 0;
    for (const auto& button : std::vector(colorButtons())) {
        if (button)
            button->setAccessibilityIdentifier(identifier + "." + std::to_string(i));
        ++i;
    }
    UIControl::setAccessibilityIdentifier(std::move(identifier));
}

} // namespace tesmar
