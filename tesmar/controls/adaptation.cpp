#include "tesmar/controls/internal/adaptation.h"

namespace tesmar {
namespace {

constexpr CGFloat kStrongDividerWhite = 0.4;
constexpr CGFloat kWidestLabel = 160; // at a text scale of 1, in points

} // namespace

void applyLabelAppearance(UILabel& label, std::string_view text,
                          const PanelAppearance& appearance) {
    label.setText(std::string(text));
    label.setFont(appearance.smallFont());
    label.setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    label.removeConstraints(std::vector(label.layoutConstraints()));
    label.addConstraintsWithVisualFormats({{"[label(<=widest)]"}}, {{"label", refTo(&label)}},
                                          {{"widest", kWidestLabel * appearance.textScale}});
}

void applyStepperAppearance(UIStepper& stepper, const PanelAppearance& appearance) {
    const bool isStrong = appearance.contrast == TESMARContrast::high;
    stepper.setSemanticContentAttribute(semanticAttribute(appearance));
    stepper.setDividerTintColor(isStrong ? UIColor::colorWithWhite(kStrongDividerWhite, 1)
                                         : nullptr);
}

std::vector<Ref<NSLayoutConstraint>> leadingInPlaceOfLeft(const UIView& view,
                                                          const PanelAppearance& appearance) {
    const bool mirrors = appearance.mirroring == TESMARMirroring::panel;
    std::vector<Ref<NSLayoutConstraint>> leading;
    for (const auto& constraint : view.layoutConstraints()) {
        if (constraint->firstAttribute() != NSLayoutAttribute::left ||
            constraint->secondAttribute() != NSLayoutAttribute::left)
            continue;
        constraint->setActive(!mirrors);
        if (mirrors)
            leading.push_back(NSLayoutConstraint::constraintWithItem(
                constraint->firstItem(), NSLayoutAttribute::leading, NSLayoutRelation::equal,
                constraint->secondItem(), NSLayoutAttribute::leading, 1, constraint->constant()));
    }
    return leading;
}

} // namespace tesmar
