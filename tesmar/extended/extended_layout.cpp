// The rows of the extended panel, and how they follow the panel's language and look.
#include "tesmar/captions/internal/StyleAttributes.h"
#include "tesmar/extended/TESMARExtendedViewController.h"
#include "tesmar/extended/internal/ExtendedFontPicker.h"
#include "tesmar/extended/internal/LegibilityHint.h"
#include "tesmar/extended/internal/PanelPreview.h"
#include "tesmar/extended/internal/TileRow.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"

#include <algorithm>
#include <utility>

namespace tesmar {
namespace {

constexpr double kMaximumOpacitySteps = 10;
constexpr CGFloat kUndoGap = 8; // to the switch, at least; the title becomes smaller for it
// The opacity stepper starts left of the controls, so that its symbol lines up with them.
constexpr CGFloat kStepperIndent = -15;
constexpr CGFloat kSectionGap = 15;
constexpr CGFloat kRowGap = 10;
constexpr CGFloat kStepperGap = 2;

// The presets that come with the panel, in the order of TESMARPresetStyles().
constexpr std::array kPresetNames{
    &TESMARExtendedTexts::defaultPreset, &TESMARExtendedTexts::whiteOnBlack,
    &TESMARExtendedTexts::blackOnWhite,  &TESMARExtendedTexts::yellowOnBlack,
    &TESMARExtendedTexts::yellowOnBlue,  &TESMARExtendedTexts::largeText};

// A white letter, whose edges are black.
Ref<NSDictionary> edgeSample(TextEdge edge) {
    return NSDictionary::dictionaryWithEntries(
        {{std::string(NSForegroundColorAttributeName), UIColor::whiteColor()},
         {std::string(NSFontAttributeName), UIFont::systemFontOfSize(24)},
         {std::string(TESMAREdgeAttributeName),
          NSString::stringWithString(std::string(textEdgeName(edge)))}});
}

} // namespace

std::string_view TESMARExtendedViewController::presetName(std::size_t index) const {
    if (index < kPresetNames.size())
        return extendedTexts().*kPresetNames[index];
    return hostPresets_[index - kPresetNames.size()].name;
}

void TESMARExtendedViewController::setupView() {
    TESMARViewController::setupView();
    if (offers(TESMARExtension::presets))
        addPresets();
    addEdgeAndWindow();
    panelPreview_ = make<PanelPreview>();
    addRows(RowPlace::fixed, {{.identifier = "", .view = panelPreview_, .gap = 0}});
    if (offers(TESMARExtension::undo))
        addUndoButton();
    if (offers(TESMARExtension::legibility)) {
        hint_ = make<LegibilityHint>();
        wire(*hint_, UIControlEventTouchUpInside, "legibilityHintTap");
        addRows(RowPlace::footer, {{.identifier = "legibilityHint", .view = hint_, .gap = 0}});
    }
    extendedFontPicker_->offer(
        offers(TESMARExtension::sizes) ? OfferedSizes::extended : OfferedSizes::panel,
        offers(TESMARExtension::fontStyles) ? OfferedFonts::withStyles : OfferedFonts::panel);
    applyExtendedAppearance();
    setCCStyleAttributes(editedStyle());
}

void TESMARExtendedViewController::addPresets() {
    presetStyles_ = TESMARPresetStyles();
    for (const auto& preset : hostPresets_)
        presetStyles_.push_back(preset.style);
    presets_ = makeWith<TileRow>(&TileRow::initWithTiles, extendedTexts().presetsTitle,
                                 StyleTile::Shape::rounded, presetStyles_.size());
    for (std::size_t i = 0; i < presetStyles_.size(); ++i)
        presets_->tile(i).setSample("Aa", *presetStyles_[i]);
    wire(*presets_, UIControlEventValueChanged, "presetChosen");
    addRows(RowPlace::first, {{.identifier = "preset", .view = presets_, .gap = kSectionGap}});
}

void TESMARExtendedViewController::addEdgeAndWindow() {
    std::vector<Row> rows;
    const auto addSeparator = [&] {
        const auto separator = createSeparatorView();
        separator->addConstraintsWithVisualFormats({{"V:[line(1)]"}}, {{"line", separator}});
        rows.push_back({.identifier = "", .view = separator, .gap = kRowGap});
        separators_.push_back(separator);
    };
    if (offers(TESMARExtension::edges)) {
        edges_ = makeWith<TileRow>(&TileRow::initWithTiles, extendedTexts().edgeTitle,
                                   StyleTile::Shape::disc, kOfferedEdges.size());
        for (std::size_t i = 0; i < kOfferedEdges.size(); ++i)
            edges_->tile(i).setSample("A", *edgeSample(kOfferedEdges[i]));
        wire(*edges_, UIControlEventValueChanged, "edgeChanged");
        addSeparator();
        rows.push_back({.identifier = "edgePicker", .view = edges_, .gap = kSectionGap});
    }
    if (offers(TESMARExtension::window)) {
        windowColorPicker_ =
            makeWith<ColorPicker>(&ColorPicker::initWithTitle, extendedTexts().windowColorTitle);
        windowOpacityLabel_ = UILabel::createStyledLabel();
        windowOpacityLabel_->setText(std::string(extendedTexts().windowOpacityTitle));
        windowOpacityStepper_ = UIStepper::createStyledStepper();
        windowOpacityStepper_->setMaximumValue(kMaximumOpacitySteps);
        wire(*windowColorPicker_, UIControlEventValueChanged, "windowColorChanged");
        wire(*windowOpacityStepper_, UIControlEventValueChanged, "windowOpacityChanged");
        addSeparator();
        rows.push_back(
            {.identifier = "windowColorPicker", .view = windowColorPicker_, .gap = kSectionGap});
        rows.push_back({.identifier = "windowColorOpacityLabel", .view = windowOpacityLabel_});
        rows.push_back({.identifier = "windowColorOpacityStepper",
                        .view = windowOpacityStepper_,
                        .gap = kStepperGap,
                        .indent = kStepperIndent});
    }
    addRows(RowPlace::last, rows);
    // As wide as the panel's own, which spans the content.
    if (UIView* const own = view()->viewWithIdentifier("separator"))
        for (const auto& separator : separators_)
            view()->addConstraint(NSLayoutConstraint::constraintWithItem(
                separator, NSLayoutAttribute::width, NSLayoutRelation::equal, refTo(own),
                NSLayoutAttribute::width, 1, 0));
}

void TESMARExtendedViewController::addUndoButton() {
    auto* const reset = dynamic_cast<UIButton*>(view()->viewWithIdentifier("resetButton"));
    if (!reset)
        return;
    undoButton_ = UIButton::buttonWithType(UIButtonType::custom);
    undoButton_->setAccessibilityIdentifier("undoButton");
    for (const unsigned state : {UIControlStateNormal, UIControlStateHighlighted})
        undoButton_->setTitleColor(reset->titleColorForState(state), state);
    undoButton_->setTranslatesAutoresizingMaskIntoConstraints(false);
    undoButton_->setHidden(true);
    wire(*undoButton_, UIControlEventTouchUpInside, "undoButtonTap");
    view()->addSubview(undoButton_);
    using enum NSLayoutAttribute;
    for (const auto edge : {trailing, centerY})
        view()->addConstraint(NSLayoutConstraint::constraintWithItem(
            undoButton_, edge, NSLayoutRelation::equal, refTo(reset), edge, 1, 0));
    if (UIView* const captionsSwitch = view()->viewWithIdentifier("CCSwitch"))
        view()->addConstraint(NSLayoutConstraint::constraintWithItem(
            undoButton_, leading, NSLayoutRelation::greaterThanOrEqual, refTo(captionsSwitch),
            trailing, 1, kUndoGap));
}

void TESMARExtendedViewController::showUndo() {
    UIView* const reset = undoButton_ ? view()->viewWithIdentifier("resetButton") : nullptr;
    if (!reset)
        return;
    undoButton_->setHidden(!canUndo());
    reset->setHidden(canUndo());
}

// --- The preview --------------------------------------------------------------------------------

void TESMARExtendedViewController::beginPreview() {
    endPreview();
    if (!preview_)
        return;
    shownPreview_ = preview_;
    shownPreview_->beginSample(sampleCaption());
    panelPreview_->follow(shownPreview_);
}

void TESMARExtendedViewController::endPreview() {
    if (const auto ended = std::exchange(shownPreview_, nullptr)) {
        ended->endSample();
        panelPreview_->follow(nullptr);
    }
}

void TESMARExtendedViewController::surroundingsDidChange() {
    TESMARViewController::surroundingsDidChange();
    const auto preferred = preferredContentSize();
    const UIView* const controls = view()->viewWithIdentifier("containerScrollView");
    if (!shownPreview_ || !preferred || !controls)
        return;
    // Without the preview itself, which may be why the panel is so large.
    const CGFloat preview = panelPreview_->height();
    const CGFloat later = hint_ && hint_->isHidden() ? LegibilityHint::kHeight : 0;
    panelPreview_->decide(
        {.size = {preferred->width, preferred->height - preview},
         .style = modalPresentationStyle(),
         .beside = view()->frame().size.height - controls->frame().size.height - preview + later});
}

// In the language of the panel's texts; English for texts of the host's own.
std::string_view TESMARExtendedViewController::sampleCaption() const {
    for (const auto& language : TESMARTexts::languages())
        if (language.texts == &texts())
            return TESMARSampleCaption(language.tag);
    return TESMARSampleCaption("en");
}

// --- Language and look --------------------------------------------------------------------------

void TESMARExtendedViewController::applyAppearance() {
    TESMARViewController::applyAppearance();
    if (isViewLoaded())
        applyExtendedAppearance();
}

void TESMARExtendedViewController::applyExtendedAppearance() {
    const TESMARExtendedTexts& texts = extendedTexts();
    extendedFontPicker_->setTexts(texts);
    if (const UIView* const own = view()->viewWithIdentifier("separator"))
        for (const auto& separator : separators_)
            separator->setBackgroundColor(own->backgroundColor());
    if (presets_) {
        presets_->applyAppearance(appearance());
        showPreset(StyleAttributes(*editedStyle()));
    }
    if (edges_) {
        edges_->setTitle(texts.edgeTitle);
        edges_->applyAppearance(appearance());
    }
    if (windowColorPicker_) {
        windowColorPicker_->titleLabel()->setText(std::string(texts.windowColorTitle));
        windowColorPicker_->applyAppearance(appearance());
        applyAppearanceTo(*windowOpacityLabel_, texts.windowOpacityTitle);
        applyAppearanceTo(*windowOpacityStepper_);
    }
    if (undoButton_) {
        undoButton_->setTitle(std::string(texts.undo), UIControlStateNormal);
        undoButton_->titleLabel()->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
        // A host may have removed the other button since.
        if (auto* reset = dynamic_cast<UIButton*>(view()->viewWithIdentifier("resetButton")))
            undoButton_->titleLabel()->setFont(reset->titleLabel()->font());
    }
    if (hint_)
        hint_->applyAppearance(appearance(), texts);
    if (shownPreview_) { // the same number of samples, but the last one counts
        shownPreview_->beginSample(sampleCaption());
        shownPreview_->endSample();
    }
}

} // namespace tesmar
