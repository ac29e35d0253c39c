#include "tesmar/model/PanelAppearance.h"

namespace tesmar {

Ref<UIFont> PanelAppearance::smallFont() const {
    const auto font = CCConstants::font() ? CCConstants::font() : UIFont::systemFontOfSize(17);
    return font->fontWithSize(font->pointSize() * textScale);
}

} // namespace tesmar
