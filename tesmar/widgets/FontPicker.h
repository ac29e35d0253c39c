// Chooses a font: its name (a FontNamePickerView) and its size (a stepper over the sizes that the
// catalogue gives for that name), under the labels "FONT" and "SIZE". Sends value-changed once for
// each step of the user. Writing selectedFont sends nothing.
#pragma once

#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/widgets/FontNamePickerView.h"

namespace tesmar {

class TESMAR_API FontPicker : public UIControl {
    TESMAR_CLASS

  public:
    // Ends with the picker at its own fitting size, at the origin.
    bool init() override;
    bool initWithCoder(NSCoder& coder) override;
    // Not supported: a fatal error.
    bool initWithFrame(CGRect frame) override;

    // The font that the two controls describe; null when no face bears the selected name. A size
    // index outside the name's list is a fatal error.
    virtual Ref<UIFont> selectedFont() const;
    // Selects the face's name, if it is listed, and the smallest offered size that is not below the
    // font's, else the largest. Null changes nothing.
    virtual void setSelectedFont(const Ref<UIFont>& font);

    virtual void fontNameChanged();
    virtual void fontSizeChanged();

    // Names the parts too ("<identifier>.size" …).
    void setAccessibilityIdentifier(std::string identifier) override;

  private:
    void makeControls();
    void setupView();

    Ref<FontNamePickerView> fontNamePicker_;
    Ref<UIStepper> sizeStepper_; // its value is an index into the name's sizes
};

} // namespace tesmar
