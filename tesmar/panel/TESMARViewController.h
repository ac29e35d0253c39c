// The caption settings panel: the one class that a host drives.
//
//     auto panel = make<TESMARViewController>();
//     panel->setDelegate(host);                 // hears every change
//     panel->setCCEnabled(captionsAreOn);       // what the switch shows
//     panel->setRememberChangedStyle(true);     // keep the style for the next start
//     window->presentViewController(panel, true);
//
// The viewer turns captions on or off and chooses colours, opacities, font and size; the panel
// edits one style dictionary (see CCConstants) and tells the delegate. Main thread only.
#pragma once

#include "tesmar/panel/TESMARViewControllerDelegate.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/widgets/ColorPicker.h"
#include "tesmar/widgets/FontPicker.h"

namespace tesmar {

class TESMAR_API TESMARViewController : public UIViewController, public UIScrollViewDelegate {
    TESMAR_CLASS

  public:
    TESMARViewController();

    bool initWithNibName(const std::optional<std::string>& nibName,
                         const Ref<NSBundle>& bundle) override;
    bool initWithCoder(NSCoder& coder) override;

    // --- For the host ---------------------------------------------------------------------------

    // Clear, for good: the card below the panel is what makes it legible.
    const Ref<UIColor>& viewBackgroundColor() const { return viewBackgroundColor_; }

    // Seconds after the last interaction at which the panel dismisses itself; -1 at the start. Not
    // greater than 0, or no number: never. A change counts from the next interaction on.
    double autoHideInterval() const { return autoHideInterval_; }
    void setAutoHideInterval(double interval);

    // Whether every change by the user is saved (see TESMARConfig); false at the start.
    bool rememberChangedStyle() const { return rememberChangedStyle_; }
    void setRememberChangedStyle(bool remember);

    // Owned. A host that also owns the panel breaks the cycle by clearing it. The delegate is a C++
    // object: callers by selector get nothing for one that is no NSObject.
    const Ref<TESMARViewControllerDelegate>& delegate() const { return delegate_; }
    void setDelegate(const Ref<TESMARViewControllerDelegate>& delegate);

    // The style being edited; empty at the start, and never null. Each appearance replaces it by
    // the remembered style, or the default. Assigning it shows it in the controls and tells nobody;
    // changing it in place does not even show. Values of other types count as missing, and stay.
    const Ref<NSMutableDictionary>& CCStyleAttributes() const { return styleAttributes_; }
    void setCCStyleAttributes(const Ref<NSMutableDictionary>& attributes);

    // Shows the host's captions state; tells nobody.
    virtual void setCCEnabled(bool enabled);

    // --- Life of the view -----------------------------------------------------------------------

    void loadView() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    void didReceiveMemoryWarning() override;
    // Large enough to show all of the controls without scrolling.
    std::optional<CGSize> preferredContentSize() override;
    // Builds the panel in the root view; called once by loadView.
    virtual void setupView();

    // --- Actions of the controls ----------------------------------------------------------------

    virtual void CCSwitchValueDidChange(UISwitch& sender);
    virtual void resetButtonTap();
    virtual void ccColorChanged();
    virtual void bgColorChanged();
    virtual void fontChanged();

    // Dismisses the panel; what the auto-hide timer calls.
    virtual void selfDismiss();
    void scrollViewWillBeginDragging(UIScrollView& scrollView) override;
    void scrollViewDidEndDragging(UIScrollView& scrollView, bool willDecelerate) override;

  private:
    void showColor(std::string_view key, ColorPicker& picker, UIStepper& stepper);
    void colorChanged(std::string_view key, const ColorPicker& picker, const UIStepper& stepper);
    void didUpdateClosedCaptureStyle();
    void resetAutoHideTimer();
    Ref<UIView> createScrollView();
    void wire(UIControl& control, unsigned events, std::string_view action);

    const Ref<UIColor> viewBackgroundColor_ = UIColor::clearColor();
    double autoHideInterval_ = -1;
    bool rememberChangedStyle_ = false;
    Ref<TESMARViewControllerDelegate> delegate_;
    Ref<NSMutableDictionary> styleAttributes_ = make<NSMutableDictionary>();

    const Ref<UISwitch> CCSwitch_;
    const Ref<ColorPicker> textColorPicker_;
    const Ref<FontPicker> fontPicker_;
    const Ref<UIStepper> textColorOpacityStepper_; // ten times the opacity
    const Ref<ColorPicker> backgroundColorPicker_;
    const Ref<UIStepper> backgroundColorOpacityStepper_;
};

} // namespace tesmar
