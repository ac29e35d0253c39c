// A round colour swatch: a disc with a thin grey rim, and a light grey disc behind it while it is
// selected. Whoever owns it decides when that is; a tap selects nothing by itself.
#pragma once

#include "tesmar/platform/ui/UIButton.h"

namespace tesmar {

class TESMAR_API ColorPickerButton : public UIButton {
    TESMAR_CLASS

  public:
    bool initWithFrame(CGRect frame) override;
    // The colour is not part of the record.
    bool initWithCoder(NSCoder& coder) override;

    // Drawn as it is, its alpha included. Null at the start; drawing the swatch without a colour is
    // a fatal error.
    virtual const Ref<UIColor>& color() const { return color_; }
    // Every write redraws, also one of an equal value; likewise for setSelected.
    virtual void setColor(const Ref<UIColor>& color);

    bool isSelected() const override { return UIButton::isSelected(); }
    void setSelected(bool selected) override;

    // Always paints the whole bounds.
    void draw(CGRect rect) override;

  private:
    CGRect discRect() const;

    Ref<UIColor> color_;
};

} // namespace tesmar
