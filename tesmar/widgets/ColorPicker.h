// A title above one row of swatches, one for each colour of the palette. The user taps one; the
// picker sends value-changed. Writing selectedColor sends nothing.
#pragma once

#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/widgets/ColorPickerButton.h"

#include <string_view>
#include <vector>

namespace tesmar {

class TESMAR_API ColorPicker : public UIControl {
    TESMAR_CLASS

  public:
    ColorPicker();

    // The whole picker, with that title.
    virtual bool initWithTitle(std::string_view title);
    // The whole picker, without a title.
    bool initWithCoder(NSCoder& coder) override;
    // Not available: a fatal error.
    bool initWithFrame(CGRect frame) override;

    // What was written or tapped last, or null. Every write rewrites which swatches are selected:
    // those whose colour equals it exactly, colour space and alpha included.
    virtual const Ref<UIColor>& selectedColor() const { return selectedColor_; }
    virtual void setSelectedColor(const Ref<UIColor>& color);

    // In palette order. Writing the list adds no views and wires nothing; the swatches in it must
    // have a colour.
    virtual const std::vector<Ref<ColorPickerButton>>& colorButtons() const {
        return colorButtons_;
    }
    virtual void setColorButtons(std::vector<Ref<ColorPickerButton>> buttons);
    virtual const Ref<UILabel>& titleLabel() const { return titleLabel_; }
    virtual void setTitleLabel(const Ref<UILabel>& label) { titleLabel_ = label; }

    // The action of every swatch: selects its colour, then tells the targets.
    virtual void colorButtonTouched(ColorPickerButton& button);

    // Names the title ("<identifier>.title") and the swatches ("<identifier>.0" …) too.
    void setAccessibilityIdentifier(std::string identifier) override;

  private:
    virtual void setupView();
    void updateSelection();

    const CGFloat titleLabelHeight_ = 10;
    const CGFloat verticalSpacing_ = 8;
    const CGFloat colorButtonSize_ = 50; // and the pitch of the row
    Ref<UIColor> selectedColor_;
    std::vector<Ref<ColorPickerButton>> colorButtons_;
    Ref<UILabel> titleLabel_;
};

} // namespace tesmar
