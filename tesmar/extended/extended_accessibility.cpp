// What screen readers are told of the rows of the extended panel.
#include "tesmar/extended/TESMARExtendedViewController.h"
#include "tesmar/extended/internal/TileRow.h"
#include "tesmar/platform/ui/UIAccessibility.h"

#include <array>
#include <charconv>

namespace tesmar {
namespace {

constexpr std::array kEdgeNames{&TESMARExtendedTexts::edgeNone, &TESMARExtendedTexts::edgeRaised,
                                &TESMARExtendedTexts::edgeDepressed,
                                &TESMARExtendedTexts::edgeUniform,
                                &TESMARExtendedTexts::edgeDropShadow};

} // namespace

void TESMARExtendedViewController::describe(const UIView& view, UIAccessibleElement& element) {
    TESMARViewController::describe(view, element);
    const TESMARExtendedTexts& texts = extendedTexts();
    const auto describeRow = [&](const Ref<TileRow>& row, std::string_view name,
                                 auto&& nameOfTile) {
        if (!row || !view.isDescendantOf(row.get()))
            return false;
        if (&view == row.get()) {
            element.role = UIAccessibleRole::group;
            element.name = name;
            element.actions.clear();
        } else if (&view == &row->titleLabel()) {
            element.role = UIAccessibleRole::heading;
            element.name = name;
        }
        for (std::size_t i = 0; i < row->tileCount(); ++i)
            if (&view == &row->tile(i))
                describeOption(element, name, nameOfTile(i), i, row->tileCount());
        return true;
    };
    if (describeRow(presets_, texts.presets, [&](std::size_t i) { return presetName(i); }) ||
        describeRow(edges_, texts.edge, [&](std::size_t i) { return texts.*kEdgeNames[i]; }))
        return;
    if (windowColorPicker_ && view.isDescendantOf(windowColorPicker_.get()))
        describeColorPicker(*windowColorPicker_, view, element, texts.windowColor);
    else if (windowOpacityStepper_ && &view == windowOpacityStepper_.get())
        describeOpacity(*windowOpacityStepper_, element, texts.windowOpacity);
    else if (windowOpacityLabel_ && &view == windowOpacityLabel_.get())
        element.role = UIAccessibleRole::none;
}

} // namespace tesmar
