// A face at a size. Immutable; any thread.
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
    // Sizes in points above this count as this.
    static constexpr CGFloat kLargestSize = 1000;

    // Null when no face bears exactly that name, or when the size is not finite and above zero.
    static Ref<UIFont> fontWithName(std::string_view fontName, CGFloat size);
    // Never null: a size that is not finite or not above zero counts as 17.
    static Ref<UIFont> systemFontOfSize(CGFloat size);
    // The same face at another size; sizes as in systemFontOfSize, with this font's size for 17.
    Ref<UIFont> fontWithSize(CGFloat size) const;

    // Every family but the system font's, and the names of a family's faces (none for a family that
    // does not exist), in ascending byte order. A face is listed under one family only.
    static std::vector<std::string> familyNames();
    static std::vector<std::string> fontNamesForFamilyName(std::string_view familyName);

    const std::string& fontName() const { return fontName_; }
    // The family under which the face is listed; the font's own name when the face is missing.
    std::string familyName() const;
    CGFloat pointSize() const { return pointSize_; }

    // Points, by the face's own tables. The descender is negative.
    CGFloat ascender() const;
    CGFloat descender() const;
    CGFloat lineHeight() const;

    // The 17-point system font.
    bool init() override;
    // A font whose face is not here keeps its name and size, and draws with the system font. False
    // for an empty name or a size that is not finite and above zero.
    bool initWithCoder(NSCoder& coder) override;
    bool encodeWithCoder(NSCoder& coder) const override;
    // The same face name and size.
    bool isEqual(const NSObject* other) const override;

    // Added by the caption library
    static std::vector<std::string> CCSupportedFonts();
    static std::string systemFontFamily();
    static std::vector<CGFloat> fontSizesForFontName(std::string_view name);

    // For the text floor: the face that draws.
    const std::shared_ptr<const FontFace>& face() const { return face_; }

  private:
    static Ref<UIFont> create(std::string fontName, CGFloat size,
                              std::shared_ptr<const FontFace> face);

    std::string fontName_;
    CGFloat pointSize_ = 0;
    std::shared_ptr<const FontFace> face_;
};

} // namespace tesmar
