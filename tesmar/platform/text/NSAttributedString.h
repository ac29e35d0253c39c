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

// The edge of the characters: an NSString, one of textEdgeName's. Missing or anything else: none.
//
// The outline, the sides and the rim in which the shadow fades are 1/20 and the shadow's distance
// 1/15 of the font size, and at least one device pixel; none exceeds 24 pixels. An edge lies
// outside the characters, so that it does not show through translucent text, follows the shape of
// coloured characters too, and is as opaque as its own colour: it remains when the text is
// transparent.
inline constexpr std::string_view TESMAREdgeAttributeName = "TESMAREdge";
// A UIColor. Missing: derivedEdgeColor of the text's colour.
inline constexpr std::string_view TESMAREdgeColorAttributeName = "TESMAREdgeColor";
// A UIColor for the box behind all lines, their backgrounds and edges. Missing or transparent: no
// box. It exceeds the lines by 1/3 of the font size to the left and right, and by 1/6 above and
// below; its corners have a radius of 1/5. size() does not include it.
inline constexpr std::string_view TESMARWindowColorAttributeName = "TESMARWindowColor";

class TESMAR_API NSAttributedString : public NSObject {
    TESMAR_CLASS

  public:
    // A value that is missing or of another class counts as black, no background or the 12-point
    // system font. The dictionary is copied; null counts as empty. Text as for TextLayout::setText.
    // At most `maximumLines` lines are shown, the last one with an ellipsis where some are left
    // out; 0 means all of them.
    static Ref<NSAttributedString>
    attributedString(std::string text, const Ref<NSDictionary>& attributes, int maximumLines = 0);

    const std::string& string() const { return text_; }
    const Ref<NSDictionary>& attributes() const { return attributes_; }

    // In points, with lines broken at `maxWidth` if there is one; not rounded.
    CGSize size(std::optional<CGFloat> maxWidth = std::nullopt) const;
    // Draws the text from the top of `r`, with lines broken at its width and the background colour
    // behind each of them; below that the window, above it the edges, and then the text. Lines
    // below the bottom of `r` are drawn too.
    void drawInRect(CGContext& context, const CGRect& r,
                    NSTextAlignment alignment = NSTextAlignment::left) const;

    // The area that drawInRect may touch, at scales from 1, relative to the rectangle's origin: the
    // lines with their backgrounds, edges and window. `width` is the rectangle's. Empty if nothing
    // is visible.
    CGRect drawingBounds(CGFloat width, NSTextAlignment alignment = NSTextAlignment::left) const;

    bool isEqual(const NSObject* other) const override;

  private:
    const TextLayout& layout(std::optional<CGFloat> width, NSTextAlignment alignment) const;

    std::string text_;
    Ref<NSDictionary> attributes_ = NSDictionary::dictionaryWithEntries({});
    int maximumLines_ = 0;
    mutable TextLayout layout_;
};

} // namespace tesmar
