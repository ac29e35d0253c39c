#include "tesmar/widgets/FontNamePickerView.h"

#include "tesmar/platform/foundation/internal/FirstException.h"

#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/ui/UIAccessibility.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kNameSize = 12;
// As in the interface file, in points: the view, and the name in it.
constexpr CGFloat kWidth = 172;
constexpr CGFloat kNameWidth = 104;
// The view is higher than the steppers beside it, whose lower edges are on its own. The names and
// the chevrons stay on the middle line of the steppers.
constexpr CGFloat kAboveSteppers = 2;

template <class T>
Ref<T> connected(const WeakRef<T>& outlet, const char* name) {
    auto view = outlet.lock();
    if (!view)
        fatalError(std::string("FontNamePickerView: the outlet \"") + name + "\" is not connected");
    return view;
}

} // namespace

Class& FontNamePickerView::classObject() {
    static Class& type =
        *new Class("FontNamePickerView", &UIControl::classObject(), allocator<FontNamePickerView>(),
                   {method<&FontNamePickerView::fontNameLabel>("fontNameLabel"),
                    method<&FontNamePickerView::setFontNameLabel>("setFontNameLabel:"),
                    method<&FontNamePickerView::prevButton>("prevButton"),
                    method<&FontNamePickerView::setPrevButton>("setPrevButton:"),
                    method<&FontNamePickerView::nextButton>("nextButton"),
                    method<&FontNamePickerView::setNextButton>("setNextButton:"),
                    method<&FontNamePickerView::awakeFromNib>("awakeFromNib"),
                    method<&FontNamePickerView::updateFonts>("updateFonts:"),
                    method<&FontNamePickerView::selectedFontName>("selectedFontName"),
                    method<&FontNamePickerView::selectFontName>("selectFontName:"),
                    method<&FontNamePickerView::nextFont>("nextFont"),
                    method<&FontNamePickerView::prevFont>("prevFont"),
                    method<&FontNamePickerView::initWithFrame>("initWithFrame:"),
                    method<&FontNamePickerView::initWithCoder>("initWithCoder:")},
                   {method<&FontNamePickerView::nibName>("nibName")});
    return type;
}

const std::string& FontNamePickerView::nibName() {
    static const std::string& name = *new const std::string("FontNamePickerView");
    return name;
}

FontNamePickerView::FontNamePickerView()
    : fontNames_{UIFont::systemFontFamily()},
      shownTexts_{{fontNames_.front(), std::string(CCConstants::Label::LabelFontNameDefault())}} {}

void FontNamePickerView::awakeFromNib() {
    UIControl::awakeFromNib();
    const auto self = refTo(this);
    connected(prevButton_, "prevButton")
        ->addTarget(self, Selector("prevFont"), UIControlEventTouchUpInside);
    connected(nextButton_, "nextButton")
        ->addTarget(self, Selector("nextFont"), UIControlEventTouchUpInside);
    for (const auto& button : {prevButton(), nextButton()}) {
        button->setContentEdgeInsets({kAboveSteppers, 0, 0, 0});
        button->setPressedLook(UIButtonPressedLook::plate);
    }
    updateLabelText();
}

void FontNamePickerView::updateFonts(const std::vector<std::string>& fontNames) {
    fontNames_ = fontNames;
    updateButtonStates();
}

void FontNamePickerView::applyAppearance(const PanelAppearance& appearance) {
    setSemanticContentAttribute(semanticAttribute(appearance));
    shownTexts_[UIFont::systemFontFamily()] = appearance.texts->defaultFont;
    textScale_ = appearance.textScale;
    connected(fontNameLabel_, "fontNameLabel")
        ->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    if (chevronsAreMirrored_ != appearance.isRightToLeft()) {
        chevronsAreMirrored_ = appearance.isRightToLeft();
        const auto previous = connected(prevButton_, "prevButton");
        const auto next = connected(nextButton_, "nextButton");
        const auto image = previous->imageForState(UIControlStateNormal);
        previous->setImage(next->imageForState(UIControlStateNormal), UIControlStateNormal);
        next->setImage(image, UIControlStateNormal);
    }
    for (const auto& constraint : layoutConstraints())
        if (constraint->firstItem().get() == this &&
            constraint->firstAttribute() == NSLayoutAttribute::width)
            constraint->setConstant(kWidth + kNameWidth * (textScale_ - 1));
    updateLabelText();
}

void FontNamePickerView::setShownText(const std::string& fontName, std::string_view text) {
    if (text.empty())
        shownTexts_.erase(fontName);
    else
        shownTexts_[fontName] = text;
    updateLabelText();
}

std::string FontNamePickerView::selectedFontName() const {
    return nameAtSelectedIndex();
}

const std::string& FontNamePickerView::nameAtSelectedIndex() const {
    if (selectedIndex_ < 0 || static_cast<std::size_t>(selectedIndex_) >= fontNames_.size())
        fatalError("FontNamePickerView: no font name at index " + std::to_string(selectedIndex_) +
                   " of " + std::to_string(fontNames_.size()));
    return fontNames_[static_cast<std::size_t>(selectedIndex_)];
}

void FontNamePickerView::selectFontName(std::string_view name) {
    for (std::size_t i = 0; i < fontNames_.size(); ++i) {
        if (!stringsAreEqual(fontNames_[i], name))
            continue;
        selectedIndex_ = static_cast<long>(i);
        updateLabelText();
        updateButtonStates();
        return;
    }
}

void FontNamePickerView::nextFont() {
    step(1);
}
void FontNamePickerView::prevFont() {
    step(-1);
}

UIFocusTarget FontNamePickerView::focusStepTarget(UIFocusStep step) {
    return {step == UIFocusStep::increment ? nextButton() : prevButton(), 0};
}

void FontNamePickerView::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    const auto label = fontNameLabel();
    if (!label)
        return;
    element.role = UIAccessibleRole::adjustable;
    element.identifier = label->accessibilityIdentifier();
    element.value = label->text();
    element.position = static_cast<int>(selectedIndex_) + 1;
    element.count = static_cast<int>(fontNames_.size());
    element.range = {double(element.position), 1, double(element.count), 1};
    element.actions = {UIAccessibleAction::decrease, UIAccessibleAction::increase};
}

bool FontNamePickerView::perform(const UIAccessibleElement&, UIAccessibleAction action) {
    const auto button = action == UIAccessibleAction::increase ? nextButton() : prevButton();
    return button && button->tap(button->bounds().center());
}

void FontNamePickerView::step(long by) {
    selectedIndex_ += by;
    // The buttons prevent a step past the ends, so update them even if updating the label throws.
    FirstException failure;
    failure.run([&] { updateLabelText(); });
    updateButtonStates();
    failure.rethrow();
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void FontNamePickerView::updateButtonStates() {
    connected(prevButton_, "prevButton")->setEnabled(selectedIndex_ >= 1);
    connected(nextButton_, "nextButton")
        ->setEnabled(selectedIndex_ < static_cast<long>(fontNames_.size()) - 1);
}

void FontNamePickerView::updateLabelText() {
    const std::string name = nameAtSelectedIndex();
    const auto label = connected(fontNameLabel_, "fontNameLabel");
    const auto shown = std::ranges::find_if(
        shownTexts_, [&](const auto& entry) { return stringsAreEqual(entry.first, name); });
    label->setText(shown == shownTexts_.end() ? name : shown->second);
    label->setFont(UIFont::fontWithName(name, kNameSize * textScale_));
    label->setBaselineFont(UIFont::systemFontOfSize(kNameSize * textScale_));
}

} // namespace tesmar
