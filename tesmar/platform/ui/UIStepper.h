// A two-part control, 94 × 29 points, that decreases or increases a value by a step. The half that
// decreases it is the leading one.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/graphics/UIImage.h"
#include "tesmar/platform/ui/UIControl.h"

#include <map>
#include <string_view>
#include <utility>

namespace tesmar {

enum class UIStepperHalf { none, decrement, increment };

class TESMAR_API UIStepper : public UIControl {
    TESMAR_CLASS

  public:
    static constexpr CGSize kSize{94, 29};

    UIStepper();

    // Only the origin of `frame` counts; the size is kSize.
    bool initWithFrame(CGRect frame) override;
    // Reads, besides the control's keys, "minimumValue", "maximumValue", "stepValue", "value",
    // "wraps", "autorepeat" and "continuous".
    bool initWithCoder(NSCoder& coder) override;

    // Initially 0; clamped to the range (NaN becomes 0 first). Setting it sends no event.
    double value() const { return value_; }
    void setValue(double value);
    // Initially 0 and 100. A maximum below the minimum lowers the minimum, a minimum above the
    // maximum raises the maximum. Numbers beyond ±10^15 are clamped, NaN becomes 0.
    double minimumValue() const { return minimum_; }
    void setMinimumValue(double minimum);
    double maximumValue() const { return maximum_; }
    void setMaximumValue(double maximum);
    // Initially 1; setting a step that is not positive and finite is a fatal error.
    void setStepValue(double step);
    // Whether a step past one end continues at the other; initially false.
    void setWraps(bool wraps);
    // Whether a half that is held down keeps stepping; initially true.
    void setAutorepeat(bool autorepeat) { autorepeat_ = autorepeat; }
    // Whether value-changed is sent at every step (initially) or once when the touch ends.
    void setContinuous(bool continuous) { continuous_ = continuous; }

    // Colour of the symbols and of the default border; null, the initial value, means the default
    // blue.
    const Ref<UIColor>& tintColor() const { return tintColor_; }
    void setTintColor(const Ref<UIColor>& color);
    // Images by control state (UIControlState); a null image removes one. In a state without an
    // image the stepper shows the normal state's, and without that its own look.
    void setIncrementImage(const Ref<UIImage>& image, unsigned forState);
    void setDecrementImage(const Ref<UIImage>& image, unsigned forState);
    void setBackgroundImage(const Ref<UIImage>& image, unsigned forState);
    // The divider while the left half is in one state and the right half in another; the getter
    // returns null when none was set for these very states.
    Ref<UIImage> dividerImageForStates(unsigned left, unsigned right) const;
    void setDividerImage(const Ref<UIImage>& image, unsigned forLeftState, unsigned rightState);
    // Divider images are drawn in this colour; null, the initial value, means their own.
    void setDividerTintColor(const Ref<UIColor>& color);

    // Where a half is drawn and takes touches, in bounds coordinates; empty for none.
    CGRect halfRect(UIStepperHalf half) const;
    // The half on the side of `point` (bounds coordinates), which may lie outside the bounds.
    UIStepperHalf halfNearest(CGPoint point) const;
    CGRect touchTarget(CGPoint point) const override { return halfRect(halfNearest(point)); }
    // Tests and tools address a half by the stepper's accessibility identifier followed by this
    // suffix: ".decrement" or ".increment"; empty for none.
    static std::string_view identifierSuffix(UIStepperHalf half);
    // The stepper at or below `root`, and its half, that such an address names; null and none when
    // there is no such stepper. The stepper is not owned.
    static std::pair<UIStepper*, UIStepperHalf> halfWithIdentifier(UIView& root,
                                                                   std::string_view identifier);
    // Whether a tap on that half would step; false for none and for a disabled stepper.
    bool canStep(UIStepperHalf half) const;

    // An adjustable element with the number as its value; its parts are two buttons, "decrease" and
    // "increase", with the identifiers of the halves.
    void describe(UIAccessibleElement& element) const override;
    // A step is a tap on the half.
    bool perform(const UIAccessibleElement& element, UIAccessibleAction action) override;
    // Its halves.
    std::vector<UIFocusCell> focusCells() const override;
    UIFocusTarget focusStepTarget(UIFocusStep step) override;

    CGSize intrinsicContentSize() const override { return kSize; }
    void draw(CGRect rect) override;

    // --- Added by the caption library -----------------------------------------------------------

    // A black stepper without a border that makes one step per touch.
    static Ref<UIStepper> createStyledStepper();

  protected:
    bool beginTracking(UITouch& touch) override;
    bool continueTracking(UITouch& touch) override;
    void endTracking(UITouch& touch) override;
    void cancelTracking() override;
    void stateChanged() override { updateLook(); }

  private:
    using Images = std::map<unsigned, Ref<UIImage>>;

    // What the drawing depends on besides images and colours.
    struct Look {
        unsigned control; // bits of UIControlState
        unsigned decrement;
        unsigned increment;
        bool operator==(const Look&) const = default;
    };

    UIStepperHalf leftHalf() const;
    UIStepperHalf rightHalf() const;
    unsigned stateOf(UIStepperHalf half) const;
    Look look() const;
    // Every change of the state behind look() is followed by this.
    void updateLook();
    void stepOnce(UIStepperHalf half);
    void repeatLater(double delay);
    void repeat();
    void stopRepeating();
    void setImage(Images& images, const Ref<UIImage>& image, unsigned key);
    const UIColor& tint() const;
    void drawBackground(CGContext& context);
    void drawHalf(CGContext& context, UIStepperHalf half);
    void drawDivider(CGContext& context);

    double value_ = 0;
    double minimum_ = 0;
    double maximum_ = 100;
    double step_ = 1;
    bool wraps_ = false;
    bool autorepeat_ = true;
    bool continuous_ = true;
    Ref<UIColor> tintColor_;
    Ref<UIColor> dividerTintColor_;
    Images incrementImages_;
    Images decrementImages_;
    Images backgroundImages_;
    Images dividerImages_; // under left state * 8 + right state

    Look shownLook_{UIControlStateNormal, UIControlStateDisabled, UIControlStateNormal};
    UIStepperHalf pressed_ = UIStepperHalf::none; // where the finger landed
    bool fingerOnHalf_ = false;                   // the finger is still there
    int repeats_ = 0;                             // steps of the present touch by holding
    bool unsentChange_ = false;
    std::uint64_t repeatTimer_ = 0;
};

} // namespace tesmar
