// An on/off switch, 51 × 31 points, whose thumb is at the trailing end when it is on. A tap toggles
// it, a drag moves its thumb; the thumb stretches under the finger. It sends
// UIControlEventValueChanged when a finger that has changed it lifts; setOn() sends no event.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/ui/UIControl.h"

#include <memory>

namespace tesmar {

class Transition;

class TESMAR_API UISwitch : public UIControl {
    TESMAR_CLASS

  public:
    static constexpr CGSize kSize{51, 31};

    UISwitch();
    ~UISwitch() override;

    // Only the origin of `frame` counts; the size is kSize.
    bool initWithFrame(CGRect frame) override;
    // Reads, besides the control's keys, "on" and "thumbTintColor".
    bool initWithCoder(NSCoder& coder) override;

    bool isOn() const { return on_; }
    // Initially off. With animation the thumb slides; isOn() changes at once.
    void setOn(bool on, bool animated);
    void setOn(bool on) { setOn(on, false); }

    void describe(UIAccessibleElement& element) const override;
    // The colour of the thumb; null, the initial value, means white. The track's colours are fixed.
    const Ref<UIColor>& thumbTintColor() const { return thumbTintColor_; }
    void setThumbTintColor(const Ref<UIColor>& color);

    std::vector<UIFocusCell> focusCells() const override;
    CGSize intrinsicContentSize() const override { return kSize; }
    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override { return {2, 2, 4, 2}; }

  protected:
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;
    void stateChanged() override;

  private:
    void moveThumb(bool animated);
    CGRect placed(CGRect part) const;

    bool on_ = false;
    bool shownOn_ = false; // the thumb's position, or where it is sliding
    bool dragged_ = false; // the finger has moved the thumb across since it landed
    Ref<UIColor> thumbTintColor_;
    std::unique_ptr<Transition> position_; // of the thumb: 0 off … 1 on
    std::unique_ptr<Transition> stretch_;  // of the thumb: 0 round … 1 stretched
};

} // namespace tesmar
