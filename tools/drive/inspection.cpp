#include "tools/drive/inspection.h"

#include "tesmar/captions/TESMARCaptionView.h"
#include "tesmar/platform/ui/UIButton.h"
#include "tesmar/platform/ui/UISwitch.h"
#include "tesmar/widgets/ColorPicker.h"
#include "tesmar/widgets/FontPicker.h"

namespace tesmar::drive {
namespace {

void describeText(Json& json, const UILabel& label) {
    json["text"] = label.text();
    json["font"] = fromObject(label.font());
    json["color"] = fromObject(label.textColor());
}

void describeButton(Json& json, UIButton& button) {
    if (!button.titleForState(UIControlStateNormal).empty())
        describeText(json, *button.titleLabel());
}

void describeControl(Json& json, UIControl& control) {
    json["enabled"] = control.isEnabled();
    json["selected"] = control.isSelected();
    if (const auto* onOff = dynamic_cast<const UISwitch*>(&control)) {
        json["on"] = onOff->isOn();
    } else if (const auto* stepper = dynamic_cast<const UIStepper*>(&control)) {
        json["value"] = number(stepper->value());
        json["minimum"] = number(stepper->minimumValue());
        json["maximum"] = number(stepper->maximumValue());
    } else if (const auto* colors = dynamic_cast<const ColorPicker*>(&control)) {
        json["color"] = fromObject(colors->selectedColor());
    } else if (const auto* swatch = dynamic_cast<const ColorPickerButton*>(&control)) {
        json["color"] = fromObject(swatch->color());
    } else if (const auto* fonts = dynamic_cast<const FontPicker*>(&control)) {
        json["font"] = fromObject(fonts->selectedFont());
    } else if (auto* button = dynamic_cast<UIButton*>(&control)) {
        describeButton(json, *button);
    }
}

} // namespace

Json describe(const Place& place) {
    Json json{{"id", place.identifier()},
              {"frame", rounded(place.frame())},
              {"visible", !place.visibleFrame().isEmpty()}};
    if (place.half != UIStepperHalf::none) {
        const auto& stepper = dynamic_cast<const UIStepper&>(*place.view);
        json["enabled"] = stepper.isEnabled() && stepper.canStep(place.half);
    } else if (auto* control = dynamic_cast<UIControl*>(place.view)) {
        describeControl(json, *control);
    } else if (const auto* captions = dynamic_cast<const TESMARCaptionView*>(place.view)) {
        json["text"] = captions->shownText();
    } else if (const auto* label = dynamic_cast<const UILabel*>(place.view)) {
        describeText(json, *label);
    } else if (const auto& background = place.view->backgroundColor()) {
        json["color"] = fromObject(background);
    }
    return json;
}

} // namespace tesmar::drive
