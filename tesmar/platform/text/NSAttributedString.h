// Text with one set of attributes for all of it. Immutable, but measuring and drawing use a cached
// layout: only one thread at a time may use a string.
#pragma once

#include "tesmar/platform/foundation/NSDictionary.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/TextLayout.h"

#include <optional>
#include <string>
#include <string_view>

namespace tesmar {

class CGContext;

// The keys of the attributes. Their values are a UIColor, a UIColor and a UIFont.
inline constexpr std::string_view NSForegroundColorAttributeName = "NSColor";
inline constexpr std::string_view NSBackgroundColorAttributeName = "NSBackgroundColor";
inline constexpr std::string_view NSFontAttributeName = "NSFont";
inline constexpr std::string_view TESMAREdgeAttributeName = "TESMAREdge";
inline constexpr std::string_view TESMAREdgeColorAttributeName = "TESMAREdgeColor";
inline constexpr std::string_view TESMARWindowColorAttributeName = "TESMARWindowColor";

class TESMAR_API NSAttributedString : public NSObject {
    TESMAR_CLASS

  public:
    // A value that is missing or of another class counts as black, no background or the 12-point
    // system font. The dictionary is copied; null counts as empty. Text as for TextLayout::setText.
    static Ref<NSAttributedString> attributedString(std::string text,
                                                    const Ref<NSDictionary>& attributes);

    const std::string& string() const { return text_; }
    const Ref<NSDictionary>& attributes() const { return attributes_; }

    // In points, with lines broken at `maxWidth` if there is one; not rounded.
    CGSize size(std::optional<CGFloat> maxWidth = std::nullopt) const;
    // Draws the text from the top of `r`, with lines broken at its width and the background colour
    // behind each of them. Lines below the bottom of `r` are drawn too.
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
