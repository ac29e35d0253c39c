#include "tesmar/panel/TESMARViewController.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/model/TESMARConfig.h"
#include "tesmar/model/internal/style_store.h"
#include "tesmar/panel/internal/ObjectDelegate.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/NSBundle.h"
#include "tesmar/platform/foundation/NSRunLoop.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/internal/FirstException.h"
#include "tesmar/platform/foundation/internal/console.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/text/NSAttributedString.h"

namespace tesmar {
namespace {

// The value of an opacity stepper for an opacity of 1.
constexpr double kOpaqueSteps = 10;

// The identifier of the focused control.
std::string& lastFocus() {
    static std::string& identifier = *new std::string;
    return identifier;
}

} // namespace

Class& TESMARViewController::classObject() {
    using Panel = TESMARViewController;
    static Class& type = *new Class(
        "TESMARViewController", &UIViewController::classObject(), allocator<Panel>(),
        {method<&Panel::viewBackgroundColor>("viewBackgroundColor"),
         method<&Panel::autoHideInterval>("autoHideInterval"),
         method<&Panel::setAutoHideInterval>("setAutoHideInterval:"),
         method<&Panel::rememberChangedStyle>("rememberChangedStyle"),
         method<&Panel::setRememberChangedStyle>("setRememberChangedStyle:"),
         method<&Panel::delegateObject>("delegate"),
         method<&Panel::setDelegateObject>("setDelegate:"),
         method<&Panel::CCStyleAttributes>("CCStyleAttributes"),
         method<&Panel::setStyleObject>("setCCStyleAttributes:"),
         method<&Panel::setCCEnabled>("setCCEnabled:"),
         method<&Panel::loadView>("loadView"),
         method<&Panel::viewWillAppear>("viewWillAppear:"),
         method<&Panel::viewDidAppear>("viewDidAppear:"),
         method<&Panel::viewWillDisappear>("viewWillDisappear:"),
         method<&Panel::didReceiveMemoryWarning>("didReceiveMemoryWarning"),
         method<&Panel::setupView>("setupView"),
         method<&Panel::resetButtonTap>("resetButtonTap"),
         method<&Panel::ccColorChanged>("ccColorChanged"),
         method<&Panel::bgColorChanged>("bgColorChanged"),
         method<&Panel::fontChanged>("fontChanged"),
         method<&Panel::CCSwitchValueDidChange>("CCSwitchValueDidChange:"),
         method<&Panel::selfDismiss>("selfDismiss"),
         method<&Panel::scrollViewWillBeginDragging>("scrollViewWillBeginDragging:"),
         method<&Panel::scrollViewDidEndDragging>("scrollViewDidEndDragging:willDecelerate:"),
         method<&Panel::initWithNibName>("initWithNibName:bundle:"),
         method<&Panel::initWithCoder>("initWithCoder:")});
    return type;
}

// --- Construction -------------------------------------------------------------------------------

TESMARViewController::TESMARViewController()
    : TESMARViewController((registerTESMAR(), make<FontPicker>())) {}

TESMARViewController::TESMARViewController(Ref<FontPicker> fontPicker)
    : CCSwitch_((registerTESMAR(), make<UISwitch>())),
      textColorPicker_(makeWith<ColorPicker>(&ColorPicker::initWithTitle,
                                             CCConstants::Label::ColorPickerTextColor())),
      fontPicker_(std::move(fontPicker)),
      textColorOpacityStepper_(UIStepper::createStyledStepper()),
      backgroundColorPicker_(makeWith<ColorPicker>(
          &ColorPicker::initWithTitle, CCConstants::Label::ColorPickerBackgroundColor())),
      backgroundColorOpacityStepper_(UIStepper::createStyledStepper()) {}

bool TESMARViewController::initWithNibName(const std::optional<std::string>& nibName,
                                           const Ref<NSBundle>& bundle) {
    return UIViewController::initWithNibName(nibName, bundle);
}

bool TESMARViewController::initWithCoder(NSCoder& coder) {
    return UIViewController::initWithCoder(coder);
}

// --- Properties of the host ---------------------------------------------------------------------

void TESMARViewController::setAutoHideInterval(double interval) {
    assertMainThread("TESMARViewController::setAutoHideInterval");
    autoHideInterval_ = interval;
}

void TESMARViewController::setRememberChangedStyle(bool remember) {
    assertMainThread("TESMARViewController::setRememberChangedStyle");
    rememberChangedStyle_ = remember;
}

void TESMARViewController::setFollowsSharedStyle(bool follows) {
    assertMainThread("TESMARViewController::setFollowsSharedStyle");
    if (follows == followsSharedStyle_)
        return;
    followsSharedStyle_ = follows;
    styleListener_ = {};
    if (follows)
        styleListener_ = TESMARConfig::addStyleListener([this](const Ref<NSDictionary>& style) {
            const auto self = refTo(this);
            if (!style->isEqual(editedStyle().get()))
                setCCStyleAttributes(style->mutableCopy());
        });
}

void TESMARViewController::setStyleStore(std::function<Ref<NSDictionary>()> load,
                                         std::function<void(const Ref<NSDictionary>&)> save) {
    assertMainThread("TESMARViewController::setStyleStore");
    styleStore_ =
        makeStyleStore("TESMARViewController::setStyleStore", std::move(load), std::move(save));
}

// The previous delegate is released last: its destructor may call the panel.
void TESMARViewController::setDelegate(const Ref<TESMARViewControllerDelegate>& delegate) {
    assertMainThread("TESMARViewController::setDelegate");
    const auto replaced = std::exchange(delegate_, Ref<TESMARViewControllerDelegate>(delegate));
}

Ref<NSObject> TESMARViewController::delegateObject() const {
    const auto current = delegate();
    const auto adapter = std::dynamic_pointer_cast<ObjectDelegate>(current);
    return adapter ? adapter->object() : std::dynamic_pointer_cast<NSObject>(current);
}

void TESMARViewController::setDelegateObject(const Ref<NSObject>& object) {
    auto adopted = std::dynamic_pointer_cast<TESMARViewControllerDelegate>(object);
    if (object && !adopted) {
        if (!ObjectDelegate::fits(*object))
            runtime::valueMismatch("a delegate of the panel", object);
        adopted = std::make_shared<ObjectDelegate>(object);
    }
    setDelegate(adopted);
}

// --- The style and the controls -----------------------------------------------------------------

void TESMARViewController::setCCStyleAttributes(const Ref<NSMutableDictionary>& attributes) {
    assertMainThread("TESMARViewController::setCCStyleAttributes");
    if (!attributes)
        fatalError("TESMARViewController: CCStyleAttributes cannot be null");
    // A copy, since `attributes` may be a reference to the member itself.
    const auto replaced = std::exchange(styleAttributes_, Ref<NSMutableDictionary>(attributes));
    const auto style = editedStyle();
    showColor(*style, NSForegroundColorAttributeName, *textColorPicker_, *textColorOpacityStepper_);
    showColor(*style, NSBackgroundColorAttributeName, *backgroundColorPicker_,
              *backgroundColorOpacityStepper_);
    fontPicker_->setSelectedFont(as<UIFont>(style->objectForKey(NSFontAttributeName)));
}

void TESMARViewController::setStyleObject(NSMutableDictionary& attributes) {
    setCCStyleAttributes(refTo(&attributes));
}

Ref<NSMutableDictionary> TESMARViewController::editedStyle() const {
    auto style = CCStyleAttributes();
    if (!style)
        fatalError("TESMARViewController: CCStyleAttributes cannot be null");
    return style;
}

// The picker shows the opaque colour, the stepper its alpha.
void TESMARViewController::showColor(const NSDictionary& style, std::string_view key,
                                     ColorPicker& picker, UIStepper& stepper) {
    const auto color = as<UIColor>(style.objectForKey(key));
    picker.setSelectedColor(color ? color->colorWithAlphaComponent(1) : nullptr);
    stepper.setValue(color ? CGColorGetAlpha(*color) * kOpaqueSteps : kOpaqueSteps);
}

void TESMARViewController::ccColorChanged() {
    colorChanged(NSForegroundColorAttributeName, *textColorPicker_, *textColorOpacityStepper_);
}

void TESMARViewController::bgColorChanged() {
    colorChanged(NSBackgroundColorAttributeName, *backgroundColorPicker_,
                 *backgroundColorOpacityStepper_);
}

void TESMARViewController::colorChanged(std::string_view key, const ColorPicker& picker,
                                        const UIStepper& stepper) {
    const auto self = refTo(this); // the pending dismissal may be the only owner
    if (const auto& color = picker.selectedColor())
        editedStyle()->setObject(color->colorWithAlphaComponent(stepper.value() / kOpaqueSteps),
                                 key);
    else
        editedStyle()->removeObjectForKey(key);
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

void TESMARViewController::fontChanged() {
    const auto self = refTo(this);
    if (const auto font = fontPicker_->selectedFont())
        editedStyle()->setObject(font, NSFontAttributeName);
    else
        editedStyle()->removeObjectForKey(NSFontAttributeName);
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

void TESMARViewController::resetButtonTap() {
    const auto self = refTo(this);
    setCCStyleAttributes(CCConstants::CCDefaultStyleAttributes()->mutableCopy());
    announceReset();
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

void TESMARViewController::didUpdateClosedCaptureStyle() {
    const auto self = refTo(this);
    FirstException exception;
    if (rememberChangedStyle() || styleStore_ || sharedStyleStore())
        exception.run([&] { saveStyle(); });
    if (const auto listener = delegate())
        listener->CCStyleAttributesChanged(editedStyle());
    exception.rethrow();
}

void TESMARViewController::saveStyle() {
    saveFailure_ = "exception"; // in case one ends the save
    FirstException exception;
    if (const auto own = styleStore_) {
        tesmar::saveStyle(*own, editedStyle());
        saveFailure_.clear();
        return;
    }
    exception.run([&] { TESMARConfig::saveSessionClosedCaptureStyle(editedStyle()); });
    saveFailure_ = TESMARConfig::saveFailure(); // a listener to the style may have thrown
    exception.rethrow();
}

// --- The captions switch ------------------------------------------------------------------------

void TESMARViewController::setCCEnabled(bool enabled) {
    assertMainThread("TESMARViewController::setCCEnabled");
    CCSwitch_->setOn(enabled, false);
}

void TESMARViewController::CCSwitchValueDidChange(UISwitch& sender) {
    const auto self = refTo(this);
    printLine(sender.isOn() ? "Switch ON" : "Switch OFF");
    resetAutoHideTimer();
    if (const auto listener = delegate())
        listener->CCSwitchValueChanged(sender.isOn());
}

// --- View life cycle ----------------------------------------------------------------------------

void TESMARViewController::loadView() {
    UIViewController::loadView();
    if (!isViewLoaded())
        fatalError("TESMARViewController: there is no root view to build the panel in");
    view()->setBackgroundColor(viewBackgroundColor_);
    setupView();
    if (appearanceIsSet_)
        applyAppearance();
}

void TESMARViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    if (const auto scroll = refTo(scrollView()))
        scroll->setEdgeFadeColor(UIColor::whiteColor()); // the paper of presented controllers
    const auto own = styleStore_;
    const auto style =
        own ? styleOrDefault(*own) : TESMARConfig::sessionOrDefaultClosedCaptureStyle();
    setCCStyleAttributes(style->mutableCopy());
}

void TESMARViewController::viewDidAppear(bool animated) {
    UIViewController::viewDidAppear(animated);
    if (const auto scroll = refTo(scrollView()))
        scroll->flashScrollIndicators();
    resetAutoHideTimer();
}

void TESMARViewController::viewWillDisappear(bool animated) {
    UIViewController::viewWillDisappear(animated);
    if (const auto listener = delegate())
        listener->CCViewControllerWillDisappear();
}

void TESMARViewController::didReceiveMemoryWarning() {
    UIViewController::didReceiveMemoryWarning();
}

// --- Focus --------------------------------------------------------------------------------------

void TESMARViewController::focusDidMove(const std::string& identifier) {
    UIViewController::focusDidMove(identifier);
    lastFocus() = identifier;
}

std::string TESMARViewController::initialFocus() const {
    return lastFocus();
}

// --- Auto-hide ----------------------------------------------------------------------------------

void TESMARViewController::resetAutoHideTimer() {
    const auto self = refTo(this);
    NSRunLoop& loop = NSRunLoop::mainRunLoop();
    loop.cancelPreviousPerformRequests(*this);
    const double interval = autoHideInterval();
    if (interval > 0 && !waitsForReader()) // false for NaN
        loop.performSelectorAfterDelay(self, Selector("selfDismiss"), nullptr, interval);
}

void TESMARViewController::selfDismiss() {
    dismissViewControllerAnimated(true);
}

void TESMARViewController::willHandleKey() {
    const auto self = refTo(this);
    UIViewController::willHandleKey();
    if (const auto scroll = refTo(scrollView())) {
        scrollViewWillBeginDragging(*scroll);
        scrollViewDidEndDragging(*scroll, false);
    }
}

void TESMARViewController::scrollViewWillBeginDragging(UIScrollView&) {
    resetAutoHideTimer();
}

void TESMARViewController::scrollViewDidEndDragging(UIScrollView&, bool) {
    resetAutoHideTimer();
}

} // namespace tesmar
