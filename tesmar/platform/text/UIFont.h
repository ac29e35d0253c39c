// A font face at a size. Immutable; may be used by any thread.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

struct FontFace;

class TESMAR_API UIFont : public NSObject {
    TESMAR_CLASS

  public:
    // In points; larger sizes are reduced to this.
    static constexpr CGFloat kLargestSize = 1000;

    // Null if no face has exactly that name, or if the size is not finite and positive.
    static Ref<UIFont> fontWithName(std::string_view fontName, CGFloat size);
    // Never null; a size that is not finite and positive counts as 17.
    static Ref<UIFont> systemFontOfSize(CGFloat size);
    // The same face at another size; if that is not finite and positive, at this font's size.
    Ref<UIFont> fontWithSize(CGFloat size) const;

    // All families except the system font's, in ascending byte order.
    static std::vector<std::string> familyNames();
    // The face names of a family, in ascending byte order; empty for an unknown family. Each face
    // belongs to one family.
    static std::vector<std::string> fontNamesForFamilyName(std::string_view familyName);

    const std::string& fontName() const { return fontName_; }
    // The family that lists the face; the font's own name if the face is missing.
    std::string familyName() const;
    CGFloat pointSize() const { return pointSize_; }

    // In points, from the face's own tables. The descender is negative, and the line height is the
    // ascender minus the descender.
    CGFloat ascender() const;
    CGFloat descender() const;
    CGFloat lineHeight() const;

    // The 17-point system font.
    bool init() override;
    // A font whose face is missing keeps its name and size, and is drawn by the system font. False
    // if the name is empty, or if the size is not finite and positive.
    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // True for the same face name and size.
    bool isEqual(const NSObject* other) const override;

    // Added by the caption library: the fonts of CCConstants::CCFontsNameList() that are available
    // now, in the locale's order; the system font's family; and the sizes, in points, that the
    // panel offers for a font, the default ones unless it has its own (see CCConstants).
    static std::vector<std::string> CCSupportedFonts();
    static std::string systemFontFamily();
    static std::vector<CGFloat> fontSizesForFontName(std::string_view name);

    // For the text layer: the face that draws.
    const std::shared_ptr<const FontFace>& face() const { return face_; }

  private:
    static Ref<UIFont> create(std::string fontName, CGFloat size,
                              std::shared_ptr<const FontFace> face);

    std::string fontName_;
    CGFloat pointSize_ = 0;
    std::shared_ptr<const FontFace> face_;
};

} // namespace tesmar
