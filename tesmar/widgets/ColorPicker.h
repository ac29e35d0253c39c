// A title above one row of swatches, one for each colour of the palette. A tap on a swatch selects
// its colour and sends UIControlEventValueChanged. Setting selectedColor sends no event. The picker
// itself goes through its accessors, which can be overridden.
//
// Toolkit: may change with any version.
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

    // `title` is UTF-8.
    virtual bool initWithTitle(std::string_view title);
    // Leaves the title empty.
    bool initWithCoder(NSCoder& coder) override;
    // Not supported: a fatal error.
    bool initWithFrame(CGRect frame) override;

    // The colour that was set or tapped last, or null. Setting it selects the swatches whose colour
    // is equal, including colour space and alpha, and deselects all others.
    virtual const Ref<UIColor>& selectedColor() const { return selectedColor_; }
    virtual void setSelectedColor(const Ref<UIColor>& color);

    // In palette order. Setting the list neither adds the swatches as subviews nor connects their
    // actions. A swatch in it that is null or has no colour is a fatal error at the next selection.
    // A list that is set while swatches are being selected counts from the next selection on.
    virtual const std::vector<Ref<ColorPickerButton>>& colorButtons() const {
        return colorButtons_;
    }
    virtual void setColorButtons(std::vector<Ref<ColorPickerButton>> buttons);
    // Never null; setting null is a fatal error. Setting a label does not add it as a subview.
    virtual const Ref<UILabel>& titleLabel() const { return titleLabel_; }
    virtual void setTitleLabel(const Ref<UILabel>& label);

    // Sets the title's font, the order of the swatches and their contrast.
    void applyAppearance(const PanelAppearance& appearance);

    // The action of every swatch: selects its colour and sends UIControlEventValueChanged.
    virtual void colorButtonTouched(ColorPickerButton& button);

    bool isFocusGroup() const override { return true; }

    // Also names the title ("<identifier>.title") and the swatches ("<identifier>.0" …).
    void setAccessibilityIdentifier(std::string identifier) override;

  protected:
    void stateChanged() override {} // draws nothing itself

  private:
    virtual void setupView();
    void updateSelection();

    const CGFloat titleLabelHeight_ = 10;
    const CGFloat verticalSpacing_ = 8;
    const CGFloat colorButtonSize_ = 50; // no gaps between them
    Ref<UIColor> selectedColor_;
    std::vector<Ref<ColorPickerButton>> colorButtons_;
    Ref<UILabel> titleLabel_;
};

} // namespace tesmar
