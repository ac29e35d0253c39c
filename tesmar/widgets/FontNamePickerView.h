// Shows one font name at a time, in its own face, between a button for the previous name and one
// for the next. Made from the interface file "FontNamePickerView". A step of the viewer sends
// UIControlEventValueChanged; selecting a name from code sends no event.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UILabel.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class TESMAR_API FontNamePickerView : public UIControl {
    TESMAR_CLASS

  public:
    // The name of the interface file.
    static const std::string& nibName();

    FontNamePickerView();

    // Outlets: weak references to subviews; null until the interface file connects them.
    Ref<UILabel> fontNameLabel() const { return fontNameLabel_.lock(); }
    void setFontNameLabel(const Ref<UILabel>& label) { fontNameLabel_ = label; }
    Ref<UIButton> prevButton() const { return prevButton_.lock(); }
    void setPrevButton(const Ref<UIButton>& button) { prevButton_ = button; }
    Ref<UIButton> nextButton() const { return nextButton_.lock(); }
    void setNextButton(const Ref<UIButton>& button) { nextButton_ = button; }

    // Connects the buttons and shows the selected name. A missing outlet is a fatal error.
    void awakeFromNib() override;

    // Replaces the list, which initially holds the system font's family name. Neither the selected
    // index nor the label changes, so call selectFontName next.
    virtual void updateFonts(const std::vector<std::string>& fontNames);
    // The name at the selected index; an index outside the list is a fatal error. The label shows
    // the name in the list even if this is overridden.
    virtual std::string selectedFontName() const;
    // Selects the first name in the list that equals `name` (see stringsAreEqual). A name that is
    // not in the list changes nothing.
    virtual void selectFontName(std::string_view name);
    // Shows `text` in the place of a font's name; an empty one shows the name again. Initially only
    // the system font has a text.
    void setShownText(const std::string& fontName, std::string_view text);
    // Sets the name's size, the room for it, the text for the system font, and where the chevrons
    // point.
    void applyAppearance(const PanelAppearance& appearance);
    // Selects the next or previous name and sends UIControlEventValueChanged. A step past an end,
    // which the disabled button prevents, is a fatal error.
    virtual void nextFont();
    virtual void prevFont();

    // An adjustable element under the label's identifier, with the shown name as its value and its
    // position in the list. Its steps are taps on the buttons.
    void describe(UIAccessibleElement& element) const override;
    bool perform(const UIAccessibleElement& element, UIAccessibleAction action) override;

    bool isFocusGroup() const override { return true; }
    UIFocusTarget focusStepTarget(UIFocusStep step) override;

  protected:
    void stateChanged() override {} // draws nothing itself

  private:
    void step(long by);
    const std::string& nameAtSelectedIndex() const;
    void updateButtonStates();
    void updateLabelText();

    std::vector<std::string> fontNames_;
    long selectedIndex_ = 0;
    std::map<std::string, std::string> shownTexts_; // by font name
    double textScale_ = 1;
    bool chevronsAreMirrored_ = false;
    WeakRef<UILabel> fontNameLabel_;
    WeakRef<UIButton> prevButton_;
    WeakRef<UIButton> nextButton_;
};

} // namespace tesmar
