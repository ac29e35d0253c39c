// Selects a font: its name (a FontNamePickerView) and its size (a stepper over the sizes that
// UIFont::fontSizesForFontName returns for the name), with the labels "FONT" and "SIZE". Each step
// of the viewer sends one UIControlEventValueChanged. Setting selectedFont sends no event.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/widgets/FontNamePickerView.h"

namespace tesmar {

class TESMAR_API FontPicker : public UIControl {
    TESMAR_CLASS

  public:
    // The picker gets its fitting size, at the origin. One that is used before its initializer is a
    // fatal error.
    bool init() override;
    bool initWithCoder(NSCoder& coder) override;
    // Not supported: a fatal error.
    bool initWithFrame(CGRect frame) override;

    // The font of the selected name and size; null when there is no face of that name. A size index
    // outside the sizes for that name is a fatal error.
    virtual Ref<UIFont> selectedFont() const;
    // The selected size, in points; std::nullopt where selectedFont() would be a fatal error.
    std::optional<CGFloat> selectedSize() const;
    // Selects the font's face name, if it is in the list, and the smallest offered size that is at
    // least the font's, or else the largest. Null changes nothing.
    virtual void setSelectedFont(const Ref<UIFont>& font);

    // Sets the labels' texts and font, the order of the parts and the look of the names.
    void applyAppearance(const PanelAppearance& appearance);

    // The actions of the two controls: both send UIControlEventValueChanged.
    virtual void fontNameChanged();
    virtual void fontSizeChanged();

    // Also names the parts: "<identifier>.name", ".prev", ".next", ".size", ".fontLabel" and
    // ".sizeLabel".
    void setAccessibilityIdentifier(std::string identifier) override;

  protected:
    // What the picker offers; an override counts from the initializer on. The sizes are in points
    // and ascend; there are at most sizeCount() of them for each name.
    virtual std::vector<std::string> offeredFontNames() const;
    virtual std::vector<CGFloat> offeredSizes(const std::string& fontName) const;
    virtual int sizeCount() const { return 6; }
    // Call when these have changed, then select a font: the selection may be none of the offers.
    void updateOffers();
    // Never null after the initializer.
    const Ref<FontNamePickerView>& fontNamePicker() const { return fontNamePicker_; }

    void stateChanged() override {} // draws nothing itself

  private:
    void makeControls();
    void setupView();
    UILabel* partLabel(const char* part);
    void placeLabels(const PanelAppearance& appearance, const NamedViews& labels);

    Ref<FontNamePickerView> fontNamePicker_;
    Ref<UIStepper> sizeStepper_;                      // its value is an index into the name's sizes
    std::vector<Ref<NSLayoutConstraint>> adaptation_; // to the appearance that was applied last
};

} // namespace tesmar
