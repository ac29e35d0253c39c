// A round colour swatch: a disc with a thin grey rim, on a larger light grey disc while it is
// selected. A tap does not select the swatch; its owner does.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/ui/UIButton.h"

namespace tesmar {

class TESMAR_API ColorPickerButton : public UIButton {
    TESMAR_CLASS

  public:
    bool initWithFrame(CGRect frame) override;
    // The colour is not decoded: it is null afterwards.
    bool initWithCoder(NSCoder& coder) override;

    // Drawn with its alpha. Initially null; drawing the swatch without a colour is a fatal error.
    virtual const Ref<UIColor>& color() const { return color_; }
    // Requests a redraw even if the value does not change; so does setSelected.
    virtual void setColor(const Ref<UIColor>& color);

    bool isSelected() const override { return UIButton::isSelected(); }
    void setSelected(bool selected) override;

    // Initially normal.
    void setContrast(TESMARContrast contrast);

    std::vector<UIFocusCell> focusCells() const override;
    // Paints the whole bounds, whatever `rect` is.
    void draw(CGRect rect) override;

  private:
    CGRect discRect() const;

    Ref<UIColor> color_;
    TESMARContrast contrast_ = TESMARContrast::normal;
};

} // namespace tesmar
