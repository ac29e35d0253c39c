// The settings of the panel's look: language, reading direction, size of the texts, contrast.
#pragma once

#include "tesmar/model/TESMARTexts.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

enum class TESMARContrast {
    normal,
    high, // black rims around the colours; lines between controls and rings have 3 : 1 on the card
};

// What is mirrored in languages that are read from right to left.
enum class TESMARMirroring {
    // The header and each control in itself. The controls below the header stay where they are in
    // other languages.
    controls,
    panel, // the places of these controls as well
};

// Passed by the panel to its controls.
struct TESMAR_API PanelAppearance {
    // The smallest font in which a text that does not fit is drawn, in points.
    static constexpr CGFloat kMinimumFontSize = 10;

    const TESMARTexts* texts = TESMARTexts::languages().front().texts; // never null; not owned
    double textScale = 1;
    TESMARContrast contrast = TESMARContrast::normal;
    TESMARMirroring mirroring = TESMARMirroring::controls;

    bool isRightToLeft() const { return texts->direction == ReadingDirection::rightToLeft; }
    // The font of the small labels and titles in the scale; not null.
    Ref<UIFont> smallFont() const;
};

// For the views whose parts follow the reading direction.
inline UISemanticContentAttribute semanticAttribute(const PanelAppearance& appearance) {
    return appearance.isRightToLeft() ? UISemanticContentAttribute::forceRightToLeft
                                      : UISemanticContentAttribute::forceLeftToRight;
}

} // namespace tesmar
