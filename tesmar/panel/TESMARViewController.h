// The caption settings panel: the only class of the library that a host drives.
//
//     auto panel = make<TESMARViewController>();
//     panel->setDelegate(host);                 // is notified of every change
//     panel->setCCEnabled(captionsAreOn);       // the state that the switch shows
//     panel->setRememberChangedStyle(true);     // save the style for the next start
//     window->presentViewController(panel, true);
//
// The viewer turns captions on or off and chooses colours, opacities, font and size. The panel
// edits one style dictionary (see CCConstants) and notifies the delegate. Main thread only: in a
// build with assertions, a call from another thread is a fatal error.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/model/TESMARStyleListener.h"
#include "tesmar/panel/TESMARViewControllerDelegate.h"
#include "tesmar/platform/ui/UIScrollView.h"
#include "tesmar/platform/ui/UIStepper.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/platform/ui/UIViewController.h"
#include "tesmar/widgets/ColorPicker.h"
#include "tesmar/widgets/FontPicker.h"

#include <functional>
#include <memory>

namespace tesmar {

class OwnTexts;
struct StyleStore;

class TESMAR_API TESMARViewController : public UIViewController, public UIScrollViewDelegate {
    TESMAR_CLASS

  public:
    TESMARViewController();

    bool initWithNibName(const std::optional<std::string>& nibName,
                         const Ref<NSBundle>& bundle) override;
    bool initWithCoder(NSCoder& coder) override;

    // --- For the host ---------------------------------------------------------------------------
    // The panel itself goes through the accessors that can be overridden.

    // The colour of the root view: always clear. The presentation card behind it makes the panel
    // legible.
    const Ref<UIColor>& viewBackgroundColor() const { return viewBackgroundColor_; }

    // Seconds from the last interaction until the panel dismisses itself; initially -1. Zero, a
    // negative value or NaN: never. A new interval applies from the next interaction.
    virtual double autoHideInterval() const { return autoHideInterval_; }
    virtual void setAutoHideInterval(double interval);

    // Whether the panel stays open while a screen reader observes its window (see
    // UIWindow::setAccessibilityObserver); initially true. Applies from the next interaction.
    bool autoHideWaitsForReaders() const { return autoHideWaitsForReaders_; }
    void setAutoHideWaitsForReaders(bool waits) { autoHideWaitsForReaders_ = waits; }

    // Whether every change that the viewer makes is saved (see TESMARConfig); initially false.
    virtual bool rememberChangedStyle() const { return rememberChangedStyle_; }
    virtual void setRememberChangedStyle(bool remember);

    // Where this panel's style is kept, instead of TESMARConfig's store and preferences: each
    // appearance takes what `load` returns (null: the default), each change that the viewer makes
    // is given to `save`, whatever rememberChangedStyle says, and is then reported to the delegate.
    // For captions of their own per panel, or a style that the host keeps. Called on the main
    // thread; the dictionaries are copied. Two empty functions, the initial state, for none; one is
    // a fatal error. Exceptions pass to whoever presents, or handles the viewer's event.
    void setStyleStore(std::function<Ref<NSDictionary>()> load,
                       std::function<void(const Ref<NSDictionary>& style)> save);

    // Whether the panel shows a style that another panel has saved, or another thread or process
    // (see TESMARConfig::addStyleListener), as soon as the main thread is told of it; initially
    // false. The delegate is not notified: a host whose captions follow too has a listener.
    bool followsSharedStyle() const { return followsSharedStyle_; }
    void setFollowsSharedStyle(bool follows);

    // Why the last change was not saved, a text for developers; empty if it was, and before the
    // first save. A delegate may ask while it is notified of the change. The next save tries again.
    const std::string& saveFailure() const { return saveFailure_; }

    // Owned by the panel, initially null. A delegate that owns the panel makes a cycle, which
    // setting null breaks; a TESMARBorrowedDelegate avoids it. The message "setDelegate:" also
    // takes any NSObject that publishes the delegate's three selectors. The message "delegate"
    // returns nothing unless the delegate is an NSObject.
    virtual Ref<TESMARViewControllerDelegate> delegate() const { return delegate_; }
    virtual void setDelegate(const Ref<TESMARViewControllerDelegate>& delegate);

    // The style being edited; initially empty, never null (setting null is a fatal error). Each
    // appearance of the panel replaces it by the saved style, or else the default. Setting it
    // updates the controls and does not notify the delegate; modifying the dictionary in place does
    // neither. A value of the wrong type is treated as missing, and left in the dictionary.
    virtual Ref<NSMutableDictionary> CCStyleAttributes() const { return styleAttributes_; }
    virtual void setCCStyleAttributes(const Ref<NSMutableDictionary>& attributes);

    // Sets the captions switch, without animation. Does not notify the delegate.
    virtual void setCCEnabled(bool enabled);

    // --- Every viewer: language and sight -------------------------------------------------------
    // Each applies at once, before or while the panel is shown. Until one of them is set, texts
    // that are too long are cut off; from then on they are first drawn smaller, down to 10 points.

    // Shows the panel in the language that is closest to `tag` (BCP 47; see TESMARTexts), and
    // returns the tag of that language: "en", the initial language, if there is no other. The
    // process's locale plays no part.
    std::string_view setLanguage(std::string_view tag);
    // Shows the host's own texts instead, of which the panel makes a copy.
    void setTexts(const TESMARTexts& texts);
    const TESMARTexts& texts() const { return *appearance_.texts; }
    // Initially TESMARMirroring::controls.
    void setMirroring(TESMARMirroring mirroring);
    // Enlarges labels, titles and font names, and moves apart what needs the room; the controls
    // keep their sizes. Clamped to 1 (initially, and for NaN) to 2.
    void setTextScale(double scale);
    double textScale() const { return appearance_.textScale; }
    // Initially TESMARContrast::normal.
    void setContrast(TESMARContrast contrast);
    TESMARContrast contrast() const { return appearance_.contrast; }

    // --- View life cycle ------------------------------------------------------------------------

    void loadView() override;
    void viewWillAppear(bool animated) override;
    void viewDidAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;
    // Gives the header a second row where large or long texts need one.
    void viewWillLayoutSubviews() override;
    void didReceiveMemoryWarning() override;
    // A key counts as an interaction, as a drag of the scroll view does.
    void willHandleKey() override;
    void focusDidMove(const std::string& identifier) override;
    // Where any panel of this process last had the focus.
    std::string initialFocus() const override;
    // In the panel's language.
    void describe(const UIView& view, UIAccessibleElement& element) override;
    void accessibilityObserverChanged() override;
    // Large enough to show all of the controls without scrolling.
    std::optional<CGSize> preferredContentSize() override;
    // Builds the panel in the root view. loadView calls it once.
    virtual void setupView();

    // --- Actions of the controls ----------------------------------------------------------------

    virtual void CCSwitchValueDidChange(UISwitch& sender);
    virtual void resetButtonTap();
    virtual void ccColorChanged();
    virtual void bgColorChanged();
    virtual void fontChanged();

    // Dismisses the panel, animated. The auto-hide timer calls it.
    virtual void selfDismiss();
    void scrollViewWillBeginDragging(UIScrollView& scrollView) override;
    void scrollViewDidEndDragging(UIScrollView& scrollView, bool willDecelerate) override;

  protected:
    // --- For subclasses that add rows and entries of the style ----------------------------------

    // Builds the panel around a font picker of a class of its own; never null.
    explicit TESMARViewController(Ref<FontPicker> fontPicker);

    // A view that a subclass adds to the panel.
    struct Row {
        std::string identifier; // of the view; empty leaves the view's own
        Ref<UIView> view;
        CGFloat gap = 10;   // to what is above the row, in points
        CGFloat indent = 0; // from the left edge of the controls, in points
    };
    enum class RowPlace {
        fixed,  // above the scrolling part, as wide as it
        first,  // above all controls of the scrolling part
        last,   // below them
        footer, // below the scrolling part, as wide as it
    };
    // Adds the rows, from top to bottom, to the panel that setupView() has built, below those that
    // were added in the same place before. Their sizes come from their constraints and contents. A
    // panel that has been laid out anew is a fatal error.
    void addRows(RowPlace place, const std::vector<Row>& rows);
    // The look of the section lines.
    static Ref<UIView> createSeparatorView();
    // Performs `action` (see UIControl::addTarget) on this controller.
    void wire(UIControl& control, unsigned events, std::string_view action);

    // The accessor's style, which must not be null: to be modified before the style is reported.
    Ref<NSMutableDictionary> editedStyle() const;
    // Reports a change that the viewer has made: saves the style if it is to be remembered, then
    // notifies the delegate. All controls of the panel end here. An override brings its own views
    // up to date, then calls this one, after which the controller may be gone.
    virtual void didUpdateClosedCaptureStyle();
    // An interaction of the viewer; controls that are wired to actions of their own call it.
    void resetAutoHideTimer();

    const PanelAppearance& appearance() const { return appearance_; }
    // Applies language and sight to the views that exist; called by each setter of these, and when
    // the panel is built after one of them was called. An override calls this one first.
    virtual void applyAppearance();
    // The same for controls like the panel's own, which a subclass adds.
    void applyAppearanceTo(UILabel& label, std::string_view text) const;
    void applyAppearanceTo(UIStepper& stepper) const;

    // For an override of describe(): what is told of controls like the panel's own. `name` is that
    // of the whole control.
    void describeColorPicker(const ColorPicker& picker, const UIView& view,
                             UIAccessibleElement& element, std::string_view name) const;
    void describeOpacity(const UIStepper& stepper, UIAccessibleElement& element,
                         std::string_view name) const;
    // One of `count` things to choose from, of which `index` counts from 0.
    void describeOption(UIAccessibleElement& element, std::string_view name,
                        std::string_view option, std::size_t index, std::size_t count) const;

  private:
    // The message "setCCStyleAttributes:", which null does not fit.
    void setStyleObject(NSMutableDictionary& attributes);
    // What the object runtime sees of the delegate.
    Ref<NSObject> delegateObject() const;
    void setDelegateObject(const Ref<NSObject>& object);
    void showColor(const NSDictionary& style, std::string_view key, ColorPicker& picker,
                   UIStepper& stepper);
    void colorChanged(std::string_view key, const ColorPicker& picker, const UIStepper& stepper);
    void saveStyle();
    bool waitsForReader();
    void describeFont(const UIView& view, UIAccessibleElement& element) const;
    std::optional<CGFloat> fontSize() const;
    void announceReset();
    Ref<UIView> createScrollView();
    UIScrollView* scrollView() const;
    void applyToHeader(UIView& root);
    void arrangeHeader(UIView& root, UILabel& label, UIButton& reset);
    void applyToContent(UIScrollView& scrollView);

    const Ref<UIColor> viewBackgroundColor_ = UIColor::clearColor();
    double autoHideInterval_ = -1;
    bool autoHideWaitsForReaders_ = true;
    bool rememberChangedStyle_ = false;
    std::string saveFailure_;
    std::shared_ptr<const StyleStore> styleStore_; // null without one of its own
    Ref<TESMARViewControllerDelegate> delegate_;
    Ref<NSMutableDictionary> styleAttributes_ = make<NSMutableDictionary>();

    PanelAppearance appearance_;
    bool appearanceIsSet_ = false; // by the host
    std::shared_ptr<const OwnTexts> ownTexts_;
    // The constraints that the appearance adds to the root view and to the scroll view.
    bool headerHasTwoRows_ = false;
    std::vector<Ref<NSLayoutConstraint>> headerAdaptation_;
    std::vector<Ref<NSLayoutConstraint>> contentAdaptation_;

    const Ref<UISwitch> CCSwitch_;
    const Ref<ColorPicker> textColorPicker_;
    const Ref<FontPicker> fontPicker_;
    const Ref<UIStepper> textColorOpacityStepper_; // its value is ten times the opacity
    const Ref<ColorPicker> backgroundColorPicker_;
    const Ref<UIStepper> backgroundColorOpacityStepper_;

    bool followsSharedStyle_ = false;
    TESMARStyleListener styleListener_; // unsubscribes before any other member is gone
};

} // namespace tesmar
