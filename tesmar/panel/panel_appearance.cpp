// What the host sets of the panel's look, before or while the panel is shown.
#include "tesmar/controls/internal/adaptation.h"
#include "tesmar/model/texts/internal/OwnTexts.h"
#include "tesmar/panel/TESMARViewController.h"
#include "tesmar/panel/internal/panel_style.h"
#include "tesmar/platform/foundation/internal/main_thread.h"
#include "tesmar/platform/ui/UIWindow.h"

namespace tesmar {
namespace {

constexpr double kLargestTextScale = 2;
// The distances between the label, the switch and the reset button, and from the edges.
constexpr CGFloat kHeaderGaps = 4 * 20;
// Of the width that the content has with short labels; weaker than the size of labels.
constexpr UILayoutPriority kContentWidthPriority = 700;

template <class T>
T* part(UIView& root, const char* name) {
    return dynamic_cast<T*>(root.viewWithIdentifier(name));
}

// When the label and the button do not fit beside each other, both become smaller at the same rate.
std::vector<Ref<NSLayoutConstraint>> shareOfHeader(UIView& root, UILabel& label, UIButton& reset,
                                                   const UISwitch& captionsSwitch) {
    const CGFloat button = reset.intrinsicContentSize().width;
    const CGFloat share = button / (button + label.intrinsicContentSize().width);
    const CGFloat fixed = kHeaderGaps + captionsSwitch.intrinsicContentSize().width;
    return {NSLayoutConstraint::constraintWithItem(
        refTo(&reset), NSLayoutAttribute::width, NSLayoutRelation::lessThanOrEqual, refTo(&root),
        NSLayoutAttribute::width, share, -share * fixed)};
}

void replace(UIView& view, std::vector<Ref<NSLayoutConstraint>>& present,
             std::vector<Ref<NSLayoutConstraint>> next) {
    view.removeConstraints(present);
    view.addConstraints(next);
    present = std::move(next);
}

} // namespace

std::string_view TESMARViewController::setLanguage(std::string_view tag) {
    assertMainThread("TESMARViewController::setLanguage");
    const auto& language = TESMARTexts::closestLanguage(tag);
    appearance_.texts = language.texts;
    ownTexts_ = nullptr;
    applyAppearance();
    return language.tag;
}

void TESMARViewController::setTexts(const TESMARTexts& texts) {
    assertMainThread("TESMARViewController::setTexts");
    auto own = std::make_shared<const OwnTexts>(texts); // before the old one, which it may copy
    appearance_.texts = &own->texts();
    ownTexts_ = std::move(own);
    applyAppearance();
}

void TESMARViewController::setMirroring(TESMARMirroring mirroring) {
    assertMainThread("TESMARViewController::setMirroring");
    appearance_.mirroring = mirroring;
    applyAppearance();
}

void TESMARViewController::setTextScale(double scale) {
    assertMainThread("TESMARViewController::setTextScale");
    appearance_.textScale = finite(scale, 1, kLargestTextScale, 1);
    applyAppearance();
}

void TESMARViewController::setContrast(TESMARContrast contrast) {
    assertMainThread("TESMARViewController::setContrast");
    appearance_.contrast = contrast;
    applyAppearance();
}

void TESMARViewController::applyAppearance() {
    appearanceIsSet_ = true;
    if (!isViewLoaded())
        return;
    UIView& root = *view();
    root.setSemanticContentAttribute(semanticAttribute(appearance_));
    for (const char* const name : {"topSeparator", "separator", "bottomSeparator"})
        if (auto* separator = part<UIView>(root, name))
            separator->setBackgroundColor(separatorColor(appearance_.contrast));
    applyToHeader(root);
    if (auto* scrollView = part<UIScrollView>(root, "containerScrollView"))
        applyToContent(*scrollView);
    if (UIWindow* const window = root.window())
        window->setNeedsLayout(); // the card's size may change
}

void TESMARViewController::applyAppearanceTo(UILabel& label, std::string_view text) const {
    applyLabelAppearance(label, text, appearance_);
}

void TESMARViewController::applyAppearanceTo(UIStepper& stepper) const {
    applyStepperAppearance(stepper, appearance_);
}

void TESMARViewController::applyToHeader(UIView& root) {
    auto* const label = part<UILabel>(root, "CCLabel");
    auto* const reset = part<UIButton>(root, "resetButton");
    if (!label || !reset)
        return;
    label->setText(std::string(appearance_.texts->closedCaptions));
    label->setFont(captionsLabelFont(appearance_.textScale));
    label->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    reset->setTitle(std::string(appearance_.texts->reset), UIControlStateNormal);
    reset->titleLabel()->setFont(resetTitleFont(appearance_.textScale));
    reset->titleLabel()->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    replace(root, headerAdaptation_, shareOfHeader(root, *label, *reset, *CCSwitch_));
}

void TESMARViewController::applyToContent(UIScrollView& scrollView) {
    const bool mirrors = appearance_.mirroring == TESMARMirroring::panel;
    scrollView.setSemanticContentAttribute(mirrors ? UISemanticContentAttribute::unspecified
                                                   : UISemanticContentAttribute::forceLeftToRight);
    textColorPicker_->titleLabel()->setText(std::string(appearance_.texts->textColorTitle));
    textColorPicker_->applyAppearance(appearance_);
    backgroundColorPicker_->titleLabel()->setText(
        std::string(appearance_.texts->backgroundColorTitle));
    backgroundColorPicker_->applyAppearance(appearance_);
    fontPicker_->applyAppearance(appearance_);
    for (const auto& stepper : {textColorOpacityStepper_, backgroundColorOpacityStepper_})
        applyAppearanceTo(*stepper);

    auto* const textOpacity = part<UILabel>(scrollView, "textColorOpacityLabel");
    auto* const backgroundOpacity = part<UILabel>(scrollView, "backgroundColorOpacityLabel");
    auto* const fontLabel = part<UILabel>(scrollView, "fontPicker.fontLabel");
    auto* const sizeLabel = part<UILabel>(scrollView, "fontPicker.sizeLabel");
    if (!textOpacity || !backgroundOpacity || !fontLabel || !sizeLabel)
        return;
    applyAppearanceTo(*textOpacity, appearance_.texts->textOpacityTitle);
    applyAppearanceTo(*backgroundOpacity, appearance_.texts->backgroundOpacityTitle);

    // Long labels first take the room on their leading side, then make the content wider.
    for (const auto& constraint : scrollView.layoutConstraints()) {
        const bool placesLabel = constraint->firstItem().get() == textOpacity &&
                                 constraint->firstAttribute() == NSLayoutAttribute::leading;
        const bool isContentWidth =
            constraint->firstAttribute() == NSLayoutAttribute::width &&
            constraint->secondAttribute() == NSLayoutAttribute::notAnAttribute;
        if (placesLabel || isContentWidth)
            constraint->setPriority(placesLabel ? kPlacePriority : kContentWidthPriority);
    }
    auto content = leadingInPlaceOfLeft(scrollView, appearance_);
    for (const char* const format : {"[font]->=8-[opacity]->=0-|", "[size]->=8-[opacity]"})
        for (auto& constraint :
             NSLayoutConstraint::constraintsWithVisualFormat(format, NSLayoutFormatNone, {},
                                                             {{"font", refTo(fontLabel)},
                                                              {"size", refTo(sizeLabel)},
                                                              {"opacity", refTo(textOpacity)}}))
            content.push_back(std::move(constraint));
    replace(scrollView, contentAdaptation_, std::move(content));
}

} // namespace tesmar
