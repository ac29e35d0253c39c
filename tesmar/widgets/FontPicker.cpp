#include "tesmar/widgets/FontPicker.h"

#include "tesmar/controls/internal/adaptation.h"
#include "tesmar/controls/internal/own_bundle.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"

#include <cmath>

namespace tesmar {
namespace {

constexpr double kInitialSizeIndex = 2;
constexpr CGFloat kSizeLabelInset = 13; // lines the label up with the symbol below it

Ref<UILabel> captionLabel(std::string_view text) {
    auto label = make<UILabel>();
    label->setFont(CCConstants::font());
    label->setText(std::string(text));
    return label;
}

// Fatal before an initializer has made the part.
template <class Part>
Part& made(const Ref<Part>& part) {
    if (!part)
        fatalError("a FontPicker must be made by init or initWithCoder");
    return *part;
}

} // namespace

Class& FontPicker::classObject() {
    static Class& type = *new Class(
        "FontPicker", &UIControl::classObject(), allocator<FontPicker>(),
        {method<&FontPicker::selectedFont>("selectedFont"),
         method<&FontPicker::setSelectedFont>("setSelectedFont:"),
         method<&FontPicker::init>("init"), method<&FontPicker::initWithCoder>("initWithCoder:"),
         method<&FontPicker::fontNameChanged>("fontNameChanged"),
         method<&FontPicker::fontSizeChanged>("fontSizeChanged"),
         method<&FontPicker::initWithFrame>("initWithFrame:")});
    return type;
}

bool FontPicker::init() {
    makeControls();
    if (!UIControl::initWithFrame({}))
        return false;
    setupView();
    return true;
}

bool FontPicker::initWithCoder(NSCoder& coder) {
    makeControls();
    if (!UIControl::initWithCoder(coder))
        return false;
    setupView();
    return true;
}

bool FontPicker::initWithFrame(CGRect) {
    fatalError("use of unimplemented initializer 'init(frame:)' for class 'TESMAR.FontPicker'");
}

void FontPicker::makeControls() {
    registerClass(FontNamePickerView::classObject()); // its interface file names it
    fontNamePicker_ = as<FontNamePickerView>(
        FontNamePickerView::loadFromTESMARNib(FontNamePickerView::nibName(), TESMARBundle()));
    if (!fontNamePicker_)
        fatalError("interface file \"" + FontNamePickerView::nibName() +
                   ".xml\" holds no FontNamePickerView");
    sizeStepper_ = UIStepper::createStyledStepper();
}

void FontPicker::setupView() {
    const auto self = refTo(this);
    const auto fontLabel = captionLabel(CCConstants::Label::LabelFont());
    const auto sizeLabel = captionLabel(CCConstants::Label::LabelSize());
    fontLabel->setAccessibilityIdentifier(".fontLabel");
    sizeLabel->setAccessibilityIdentifier(".sizeLabel");

    updateOffers();
    fontNamePicker_->addTarget(self, Selector("fontNameChanged"), UIControlEventValueChanged);
    sizeStepper_->setMinimumValue(0);
    sizeStepper_->setValue(kInitialSizeIndex);
    sizeStepper_->addTarget(self, Selector("fontSizeChanged"), UIControlEventValueChanged);

    const NamedViews parts{{"fontLabel", fontLabel},
                           {"sizeLabel", sizeLabel},
                           {"fontNamePicker", fontNamePicker_},
                           {"sizeStepper", sizeStepper_}};
    for (const auto& [name, view] : parts) {
        view->sizeToFit();
        view->setTranslatesAutoresizingMaskIntoConstraints(false);
        addSubview(view);
    }
    setTranslatesAutoresizingMaskIntoConstraints(false);

    addConstraintsWithVisualFormats(
        {{"|-0-[fontNamePicker]->=20-[sizeStepper]-0-|", NSLayoutFormatAlignAllBottom},
         {"[sizeLabel]-53-|"},
         {"V:|-0-[fontLabel]-0-[fontNamePicker]->=0-|", NSLayoutFormatAlignAllLeft},
         {"V:|-0-[sizeLabel]-2-[sizeStepper]->=0-|"}},
        parts);

    setFrame({{0, 0}, systemLayoutSizeFittingSize(UILayoutFittingCompressedSize)});
    layoutIfNeeded();
}

void FontPicker::updateOffers() {
    made(fontNamePicker_).updateFonts(offeredFontNames());
    sizeStepper_->setMaximumValue(sizeCount() - 1);
}

std::vector<std::string> FontPicker::offeredFontNames() const {
    return UIFont::CCSupportedFonts();
}

std::vector<CGFloat> FontPicker::offeredSizes(const std::string& fontName) const {
    return UIFont::fontSizesForFontName(fontName);
}

UILabel* FontPicker::partLabel(const char* part) {
    return dynamic_cast<UILabel*>(viewWithIdentifier(accessibilityIdentifier() + "." + part));
}

void FontPicker::applyAppearance(const PanelAppearance& appearance) {
    setSemanticContentAttribute(semanticAttribute(appearance));
    made(fontNamePicker_).applyAppearance(appearance);
    applyStepperAppearance(made(sizeStepper_), appearance);
    NamedViews labels;
    for (const auto& [part, text] : {std::pair{"fontLabel", appearance.texts->fontTitle},
                                     std::pair{"sizeLabel", appearance.texts->sizeTitle}})
        if (UILabel* const label = partLabel(part)) {
            applyLabelAppearance(*label, text, appearance);
            labels[part] = refTo(label);
        }
    if (labels.size() == 2)
        placeLabels(appearance, labels);
}

// A size label that is longer than its stepper grows towards the font label.
void FontPicker::placeLabels(const PanelAppearance& appearance, const NamedViews& labels) {
    for (const auto& constraint : layoutConstraints())
        if (constraint->secondItem() == labels.at("sizeLabel") &&
            constraint->secondAttribute() == NSLayoutAttribute::trailing)
            constraint->setActive(false);
    auto placed = leadingInPlaceOfLeft(*this, appearance);
    placed.push_back(NSLayoutConstraint::constraintWithItem(
        labels.at("sizeLabel"), NSLayoutAttribute::leading, NSLayoutRelation::equal, sizeStepper_,
        NSLayoutAttribute::leading, 1, kSizeLabelInset));
    placed.back()->setPriority(kPlacePriority);
    for (auto& constraint : NSLayoutConstraint::constraintsWithVisualFormat(
             "[fontLabel]->=8-[sizeLabel]->=0-|", NSLayoutFormatNone, {},
             {labels.begin(), labels.end()}))
        placed.push_back(std::move(constraint));
    removeConstraints(adaptation_);
    addConstraints(placed);
    adaptation_ = std::move(placed);
}

Ref<UIFont> FontPicker::selectedFont() const {
    const std::string name = made(fontNamePicker_).selectedFontName();
    const auto size = selectedSize();
    if (!size)
        fatalError("FontPicker: no size at index " +
                   std::to_string(std::trunc(sizeStepper_->value())) + " of " +
                   std::to_string(offeredSizes(name).size()) + " for \"" + name + "\"");
    return UIFont::fontWithName(name, *size);
}

std::optional<CGFloat> FontPicker::selectedSize() const {
    const auto sizes = offeredSizes(made(fontNamePicker_).selectedFontName());
    const double index = std::trunc(sizeStepper_->value());
    if (!(index >= 0) || index >= static_cast<double>(sizes.size()))
        return std::nullopt;
    return sizes[static_cast<std::size_t>(index)];
}

void FontPicker::setSelectedFont(const Ref<UIFont>& font) {
    if (!font)
        return;
    made(fontNamePicker_).selectFontName(font->fontName());
    const auto sizes = offeredSizes(font->fontName());
    sizeStepper_->setValue(static_cast<double>(sizes.size()) - 1);
    for (std::size_t i = 0; i < sizes.size(); ++i)
        if (sizes[i] >= font->pointSize()) {
            sizeStepper_->setValue(static_cast<double>(i));
            break;
        }
}

void FontPicker::fontNameChanged() {
    sendActionsForControlEvents(UIControlEventValueChanged);
}
void FontPicker::fontSizeChanged() {
    sendActionsForControlEvents(UIControlEventValueChanged);
}

void FontPicker::setAccessibilityIdentifier(std::string identifier) {
    const auto name = [&](UIView* view, const char* part) {
        if (view)
            view->setAccessibilityIdentifier(identifier + "." + part);
    };
    name(viewWithIdentifier(accessibilityIdentifier() + ".fontLabel"), "fontLabel");
    name(viewWithIdentifier(accessibilityIdentifier() + ".sizeLabel"), "sizeLabel");
    name(sizeStepper_.get(), "size");
    name(made(fontNamePicker_).prevButton().get(), "prev");
    name(fontNamePicker_->nextButton().get(), "next");
    name(fontNamePicker_->fontNameLabel().get(), "name");
    UIControl::setAccessibilityIdentifier(std::move(identifier));
}

} // namespace tesmar
