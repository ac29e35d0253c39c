// Shows one font name at a time, in its own face, between a button for the previous name and one
// for the next. Made from the interface file "FontNamePickerView". The user steps; the view sends
// value-changed. Selecting from code sends nothing.
#pragma once

#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UILabel.h"

#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class TESMAR_API FontNamePickerView : public UIControl {
    TESMAR_CLASS

  public:
    static const std::string& nibName();

    FontNamePickerView();

    // Outlets: owned by the view hierarchy, null until the interface file connects them.
    Ref<UILabel> fontNameLabel() const { return fontNameLabel_.lock(); }
    void setFontNameLabel(const Ref<UILabel>& label) { fontNameLabel_ = label; }
    Ref<UIButton> prevButton() const { return prevButton_.lock(); }
    void setPrevButton(const Ref<UIButton>& button) { prevButton_ = button; }
    Ref<UIButton> nextButton() const { return nextButton_.lock(); }
    void setNextButton(const Ref<UIButton>& button) { nextButton_ = button; }

    // A missing outlet is a fatal error.
    void awakeFromNib() override;

    // Replaces the list; neither the selected place nor the label follows, so the caller selects a
    // name next.
    virtual void updateFonts(const std::vector<std::string>& fontNames);
    // The name in the selected place; a place outside the list is a fatal error.
    virtual std::string selectedFontName() const;
    // The first equal name (canonically equivalent texts are equal); a name that is not in the list
    // changes nothing.
    virtual void selectFontName(std::string_view name);
    // One step, then value-changed. A step past an end, which the disabled button prevents, is a
    // fatal error.
    virtual void nextFont();
    virtual void prevFont();

  private:
    void step(long by);
    void updateButtonStates();
    void updateLabelText();

    std::vector<std::string> fontNames_;
    long selectedIndex_ = 0;
    WeakRef<UILabel> fontNameLabel_;
    WeakRef<UIButton> prevButton_;
    WeakRef<UIButton> nextButton_;
};

} // namespace tesmar
