// Fonts and colours of the panel's own views.
#pragma once

#include "tesmar/model/PanelAppearance.h"

namespace tesmar {

Ref<UIColor> separatorColor(TESMARContrast contrast);
// The system font where the named font is not installed.
Ref<UIFont> captionsLabelFont(double textScale);
Ref<UIFont> resetTitleFont(double textScale);

} // namespace tesmar
