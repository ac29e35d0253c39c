// One line that says what is hard to read, and a tap on which mends it. It has no height while
// there is nothing to say.
#pragma once

#include "tesmar/extended/TESMARExtendedTexts.h"
#include "tesmar/extended/internal/legibility.h"
#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/ui/UIControl.h"
#include "tesmar/platform/ui/UILabel.h"

namespace tesmar {

// Sends UIControlEventTouchUpInside.
class LegibilityHint : public UIControl {
    TESMAR_CLASS

  public:
    static constexpr CGFloat kGapAbove = 6; // points
    static constexpr CGFloat kHeight = kTouchTarget + kGapAbove;

    bool init() override;

    // Returns whether the hint has appeared, gone or changed.
    bool show(Legibility legibility);
    void applyAppearance(const PanelAppearance& appearance, const TESMARExtendedTexts& texts);

    // A button with the hint as its name.
    void describe(UIAccessibleElement& element) const override;
    std::vector<UIFocusCell> focusCells() const override;
    void draw(CGRect rect) override;

  private:
    void showText();

    Legibility legibility_ = Legibility::good;
    const TESMARExtendedTexts* texts_; // constant data
    Ref<UILabel> message_;
    Ref<UILabel> action_;
    Ref<NSLayoutConstraint> height_;
    Ref<NSLayoutConstraint> actionWidth_; // the message gives way
};

} // namespace tesmar
