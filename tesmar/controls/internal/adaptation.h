// How labels and their places follow the panel's appearance.
#pragma once

#include "tesmar/model/PanelAppearance.h"
#include "tesmar/platform/ui/UILabel.h"
#include "tesmar/platform/ui/UIStepper.h"

namespace tesmar {

// A label keeps its place while it has the room to; weaker than its size.
inline constexpr UILayoutPriority kPlacePriority = 600;

// Sets the text, the small font and the limits of a label. A text that is longer than the limit is
// drawn smaller.
void applyLabelAppearance(UILabel& label, std::string_view text, const PanelAppearance& appearance);

// Sets the reading direction and the colour of the divider.
void applyStepperAppearance(UIStepper& stepper, const PanelAppearance& appearance);

// Activates the view's own alignments of left edges, unless the appearance mirrors them. Returns
// what then replaces them: alignments of leading edges, which the caller adds.
std::vector<Ref<NSLayoutConstraint>> leadingInPlaceOfLeft(const UIView& view,
                                                          const PanelAppearance& appearance);

} // namespace tesmar
