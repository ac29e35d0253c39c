#include "tesmar/widgets/ColorPicker.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

namespace tesmar {

Class& ColorPicker::classObject() {
    static Class type("ColorPicker", &UIControl::classObject(), allocator<ColorPicker>(),
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
    titleLabel_->setText(std::string(title));
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
    titleLabel_->setFrame({0, 0, width, titleLabelHeight_});
    addSubview(titleLabel_);

    CGFloat x = 0;
    for (const auto& color : palette) {
        auto button = makeWith<ColorPickerButton>(
            &ColorPickerButton::initWithFrame,
            CGRect(x, titleLabelHeight_ + verticalSpacing_, colorButtonSize_, colorButtonSize_));
        button->setColor(color);
        colorButtons_.push_back(button);
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

void ColorPicker::setSelectedColor(const Ref<UIColor>& color) {
    selectedColor_ = color;
    updateSelection();
}

void ColorPicker::updateSelection() {
    for (const auto& button : colorButtons_) {
        if (!button || !button->color())
            fatalError("a swatch of a ColorPicker has no colour");
        button->setSelected(button->color()->isEqual(selectedColor_.get()));
    }
}

void ColorPicker::setColorButtons(std::vector<Ref<ColorPickerButton>> buttons) {
    colorButtons_ = std::move(buttons);
}

void ColorPicker::colorButtonTouched(ColorPickerButton& button) {
    setSelectedColor(button.color());
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void ColorPicker::setAccessibilityIdentifier(std::string identifier) {
    titleLabel_->setAccessibilityIdentifier(identifier + ".title");
    for (std::size_t i = 0; i < colorButtons_.size(); ++i)
        colorButtons_[i]->setAccessibilityIdentifier(identifier + "." + std::to_string(i));
    UIControl::setAccessibilityIdentifier(std::move(identifier));
}

} // namespace tesmar
