// Text with one set of attributes for all of it. Immutable.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/TextLayout.h"

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

class CGContext;

// Keys of the attributes: a UIColor, a UIColor and a UIFont.
inline constexpr std::string_view NSForegroundColorAttributeName = "NSColor";
inline constexpr std::string_view NSBackgroundColorAttributeName = "NSBackgroundColor";
inline constexpr std::string_view NSFontAttributeName = "NSFont";

class TESMAR_API NSAttributedString : public NSObject {
    TESMAR_CLASS

  public:
    // A value that is missing or of another class counts as black, no background, the 12-point
    // system font. Null attributes are none. The dictionary is copied.
    static Ref<NSAttributedString> attributedString(std::string text,
                                                    const Ref<NSDictionary>& attributes);

    const std::string& string() const { return text_; }
    const Ref<NSDictionary>& attributes() const { return attributes_; }

    // The size of the text, broken into lines at `maxWidth`, in points; not rounded.
    CGSize size(std::optional<CGFloat> maxWidth = std::nullopt) const;
    // Draws the text from the top of `r`, broken at its width, with the background colour behind
    // each line. Lines that do not fit the height are drawn nevertheless.
    void drawInRect(CGContext& context, const CGRect& r,
                    NSTextAlignment alignment = NSTextAlignment::left) const;

    bool isEqual(const NSObject* other) const override;

  private:
    const TextLayout& layout(std::optional<CGFloat> width, NSTextAlignment alignment) const;

    std::string text_;
    Ref<NSDictionary> attributes_ = NSDictionary::dictionaryWithEntries({});
    mutable TextLayout layout_;
};

} // namespace tesmar
