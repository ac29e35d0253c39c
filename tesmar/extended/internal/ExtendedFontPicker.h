// The panel's font picker with more sizes and with styles of fonts.
#pragma once

#include "tesmar/extended/TESMARExtendedTexts.h"
#include "tesmar/widgets/FontPicker.h"

namespace tesmar {

enum class OfferedSizes { panel, extended };
enum class OfferedFonts { panel, withStyles };

// The nine sizes, in points, from 50 to 200 % of the default, and the default itself. Script faces
// keep the proportion that they have in the panel's own sizes.
const std::vector<CGFloat>& offeredSizesForFont(std::string_view fontName);
CGFloat defaultSizeForFont(std::string_view fontName);

class ExtendedFontPicker : public FontPicker {
  public:
    // The caller then selects a font.
    void offer(OfferedSizes sizes, OfferedFonts fonts);
    // Names the styles of fonts.
    void setTexts(const TESMARExtendedTexts& texts);

  protected:
    // The default, the styles that this machine can show, and the other fonts of the panel.
    std::vector<std::string> offeredFontNames() const override;
    std::vector<CGFloat> offeredSizes(const std::string& fontName) const override;
    int sizeCount() const override;

  private:
    OfferedSizes sizes_ = OfferedSizes::panel;
    OfferedFonts fonts_ = OfferedFonts::panel;
};

} // namespace tesmar
