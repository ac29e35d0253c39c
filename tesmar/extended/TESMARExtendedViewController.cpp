#include "tesmar/extended/TESMARExtendedViewController.h"

#include "tesmar/captions/internal/StyleAttributes.h"
#include "tesmar/extended/internal/ExtendedFontPicker.h"
#include "tesmar/extended/internal/LegibilityHint.h"
#include "tesmar/extended/internal/PanelPreview.h"
#include "tesmar/extended/internal/TileRow.h"
#include "tesmar/model/CCConstants.h"
#include "tesmar/panel/registration.h"
#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/foundation/scalars.h"
#include "tesmar/platform/text/NSAttributedString.h"
#include "tesmar/platform/ui/UIWindow.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr double kOpaqueSteps = 10; // of an opacity stepper

Ref<NSDictionary> copyOf(const NSDictionary& style) {
    return NSDictionary::dictionaryWithEntries(style.entries());
}

} // namespace

Class& TESMARExtendedViewController::classObject() {
    using Panel = TESMARExtendedViewController;
    static Class& type = *new Class(
        "TESMARExtendedViewController", &TESMARViewController::classObject(), allocator<Panel>(),
        {method<&Panel::presetChosen>("presetChosen"), method<&Panel::edgeChanged>("edgeChanged"),
         method<&Panel::windowColorChanged>("windowColorChanged"),
         method<&Panel::windowOpacityChanged>("windowOpacityChanged"),
         method<&Panel::undoButtonTap>("undoButtonTap"),
         method<&Panel::legibilityHintTap>("legibilityHintTap"),
         method<&Panel::resetButtonTap>("resetButtonTap")});
    return type;
}

TESMARExtendedViewController::TESMARExtendedViewController()
    : TESMARExtendedViewController((registerTESMAR(), make<ExtendedFontPicker>())) {}

TESMARExtendedViewController::TESMARExtendedViewController(Ref<ExtendedFontPicker> fontPicker)
    : TESMARViewController(fontPicker), extendedFontPicker_(std::move(fontPicker)) {
    registerClass(classObject());
}

TESMARExtendedViewController::~TESMARExtendedViewController() {
    if (shownPreview_) // the window has gone first
        shownPreview_->endSample();
}

// --- Properties of the host ---------------------------------------------------------------------

void TESMARExtendedViewController::setExtensions(TESMARExtension extensions) {
    if (isViewLoaded())
        diagnostic("TESMARExtendedViewController: the extensions of a panel whose view is "
                   "loaded cannot be changed");
    else
        extensions_ = extensions;
}

void TESMARExtendedViewController::setHostPresets(std::vector<TESMARStylePreset> presets) {
    if (isViewLoaded()) {
        diagnostic("TESMARExtendedViewController: the presets of a panel whose view is "
                   "loaded cannot be changed");
        return;
    }
    std::erase_if(presets, [](const auto& preset) { return !preset.style; });
    hostPresets_ = std::move(presets);
}

void TESMARExtendedViewController::setExtendedTexts(const TESMARExtendedTexts& texts) {
    ownTexts_ = &texts;
    if (isViewLoaded())
        applyExtendedAppearance();
}

const TESMARExtendedTexts& TESMARExtendedViewController::extendedTexts() const {
    return ownTexts_ ? *ownTexts_ : TESMARExtendedTexts::inLanguageOf(texts());
}

// --- The style and the controls -----------------------------------------------------------------

void TESMARExtendedViewController::setCCStyleAttributes(
    const Ref<NSMutableDictionary>& attributes) {
    const auto self = refTo(this);
    undoStyle_ = nullptr;
    TESMARViewController::setCCStyleAttributes(attributes);
    showExtendedStyle();
}

void TESMARExtendedViewController::didUpdateClosedCaptureStyle() {
    const auto self = refTo(this);
    undoStyle_ = std::exchange(nextUndoStyle_, nullptr);
    if (undoStyle_ && undoStyle_->isEqual(editedStyle().get()))
        undoStyle_ = nullptr; // a reset of the default
    showExtendedStyle();
    TESMARViewController::didUpdateClosedCaptureStyle();
}

void TESMARExtendedViewController::showExtendedStyle() {
    if (!isViewLoaded())
        return;
    const auto dictionary = editedStyle();
    const StyleAttributes style(*dictionary);
    if (edges_)
        edges_->setSelectedIndex(std::ranges::find(kOfferedEdges, style.edge) -
                                 kOfferedEdges.begin());
    if (windowColorPicker_) {
        const auto color = as<UIColor>(dictionary->objectForKey(TESMARWindowColorAttributeName));
        windowColorPicker_->setSelectedColor(color ? color->colorWithAlphaComponent(1) : nullptr);
        windowOpacityStepper_->setValue(color ? color->alpha() * kOpaqueSteps : 0);
    }
    showPreset(style);
    showUndo();
    if (hint_ && hint_->show(legibilityOf(*dictionary)))
        if (UIWindow* const window = view()->window())
            window->setNeedsLayout(); // the card's size may change
}

void TESMARExtendedViewController::showPreset(const StyleAttributes& style) {
    if (!presets_)
        return;
    const auto same = std::ranges::find_if(presetStyles_, [&](const auto& preset) {
        return StyleAttributes(*preset).looksLike(style);
    });
    const bool isPreset = same != presetStyles_.end();
    const auto index = static_cast<std::size_t>(same - presetStyles_.begin());
    presets_->setSelectedIndex(isPreset ? std::optional(index) : std::nullopt);
    presets_->setTitle(extendedTexts().presetsTitle,
                       isPreset ? presetName(index) : extendedTexts().customPreset);
}

// --- Changes of the viewer ----------------------------------------------------------------------

void TESMARExtendedViewController::rememberForUndo() {
    if (offers(TESMARExtension::undo))
        nextUndoStyle_ = copyOf(*editedStyle());
}

void TESMARExtendedViewController::replaceStyle(const NSDictionary& style) {
    setCCStyleAttributes(style.mutableCopy());
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

void TESMARExtendedViewController::presetChosen() {
    const auto self = refTo(this);
    const auto index = presets_ ? presets_->selectedIndex() : std::nullopt;
    if (!index || *index >= presetStyles_.size())
        return;
    if (StyleAttributes(*presetStyles_[*index]).looksLike(StyleAttributes(*editedStyle()))) {
        resetAutoHideTimer(); // chosen already: nothing to report or to undo
        return;
    }
    rememberForUndo();
    replaceStyle(*presetStyles_[*index]);
}

void TESMARExtendedViewController::resetButtonTap() {
    rememberForUndo();
    TESMARViewController::resetButtonTap();
}

void TESMARExtendedViewController::undoButtonTap() {
    const auto self = refTo(this);
    const auto before = undoStyle_;
    if (!before)
        return;
    if (UIWindow* const window = isViewLoaded() ? view()->window() : nullptr)
        window->announce(std::string(extendedTexts().undone));
    replaceStyle(*before);
}

void TESMARExtendedViewController::edgeChanged() {
    const auto self = refTo(this);
    const auto index = edges_ ? edges_->selectedIndex() : std::nullopt;
    if (!index)
        return;
    const TextEdge edge = kOfferedEdges[*index];
    if (edge == TextEdge::none)
        editedStyle()->removeObjectForKey(TESMAREdgeAttributeName);
    else
        editedStyle()->setObject(NSString::stringWithString(std::string(textEdgeName(edge))),
                                 TESMAREdgeAttributeName);
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

void TESMARExtendedViewController::setWindow(const Ref<UIColor>& color) {
    const auto self = refTo(this);
    editedStyle()->setObject(color, TESMARWindowColorAttributeName);
    resetAutoHideTimer();
    didUpdateClosedCaptureStyle();
}

// A colour that is chosen for a transparent window would not be seen.
void TESMARExtendedViewController::windowColorChanged() {
    const auto color = windowColorPicker_ ? windowColorPicker_->selectedColor() : nullptr;
    if (!color)
        return;
    const double steps = windowOpacityStepper_->value();
    setWindow(color->colorWithAlphaComponent(steps > 0 ? steps / kOpaqueSteps : 1));
}

void TESMARExtendedViewController::windowOpacityChanged() {
    if (!windowColorPicker_)
        return;
    const auto color = windowColorPicker_->selectedColor();
    setWindow((color ? color : UIColor::blackColor())
                  ->colorWithAlphaComponent(windowOpacityStepper_->value() / kOpaqueSteps));
}

void TESMARExtendedViewController::legibilityHintTap() {
    const auto self = refTo(this);
    const auto mended = editedStyle()->mutableCopy();
    makeLegible(*mended);
    replaceStyle(*mended);
}

// --- View life cycle ----------------------------------------------------------------------------

void TESMARExtendedViewController::viewWillAppear(bool animated) {
    const auto self = refTo(this);
    TESMARViewController::viewWillAppear(animated);
    beginPreview();
}

void TESMARExtendedViewController::viewWillDisappear(bool animated) {
    const auto self = refTo(this);
    undoStyle_ = nullptr;
    showUndo();
    TESMARViewController::viewWillDisappear(animated);
}

void TESMARExtendedViewController::viewDidDisappear(bool animated) {
    const auto self = refTo(this);
    endPreview();
    TESMARViewController::viewDidDisappear(animated);
}

} // namespace tesmar
