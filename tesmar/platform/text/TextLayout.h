// Text with one font, broken into lines; shaped once, then measured and drawn many times. All
// lengths are in points. Only one thread at a time may use a layout; different threads may use
// different layouts.
//
// Measurements do not depend on the scale at which the text is drawn. As with shapes, drawing
// through several clips produces the same pixels as drawing at once (see CGContext).
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"
#include "tesmar/platform/text/NSLineBreakMode.h"
#include "tesmar/platform/text/NSTextAlignment.h"
#include "tesmar/platform/text/TextEdge.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class CGContext;
class UIColor;
class UIFont;

class TESMAR_API TextLayout {
  public:
    TextLayout();
    ~TextLayout();
    TextLayout(TextLayout&&) noexcept;
    TextLayout& operator=(TextLayout&&) noexcept;

    // Setting a property to the value that it has costs next to nothing; after any other change the
    // text is shaped again when it is next measured or drawn.

    // UTF-8; initially empty. Invalid bytes are replaced by U+FFFD, and text beyond kLargestText
    // bytes is cut off between characters. To bound the time for measuring and for drawing to about
    // 20 ms each, at most kMostShownCharacters are shown, and fewer if the font is larger than 488
    // points: 500 of them at 1000 points. An ellipsis replaces the others: the start or middle of
    // the text if that is truncated by the line break mode, else its end. Words of more than 128
    // characters are shaped in parts, without kerning and ligatures between these.
    static constexpr std::size_t kLargestText = 64 * 1024;
    static constexpr int kMostShownCharacters = 1024;
    void setText(std::string_view text);
    const std::string& text() const;
    // Initially the 17-point system font; null sets that one.
    void setFont(const Ref<UIFont>& font);
    // The width at which lines break, and in which they are aligned; clamped to 0…100,000, and NaN
    // counts as 0. Without one, the initial state, the layout is as wide as its longest line.
    void setWidth(std::optional<CGFloat> width);
    // The largest number of lines. 0 means no limit. Initially 1, in which case line breaks in the
    // text become spaces.
    void setLineCount(int lines);
    // How lines are fitted into the width, and what is left out if there are more lines than
    // allowed. Initially truncatingTail. Truncation needs a width and a limit of lines.
    void setLineBreakMode(NSLineBreakMode mode);
    void setAlignment(NSTextAlignment alignment);

    // The width of the longest line, which exceeds the width that was set only by a character that
    // cannot be broken, and the height of all lines. Not rounded.
    CGSize size() const;
    // The first line's baseline, measured down from the top.
    CGFloat baseline() const;
    // The area that draw() may touch, relative to its origin. It may extend beyond size() on every
    // side. Empty if nothing is visible.
    CGRect inkBounds() const;
    // One box for each line, relative to the origin.
    std::vector<CGRect> lineBoxes() const;
    // Whether an ellipsis replaces part of the text.
    bool isTruncated() const;

    // Draws with the top left corner at `origin`, which is rounded to whole device pixels.
    void draw(CGContext& context, CGPoint origin, const UIColor& color) const;

    // What drawEdge() may touch, at scales from 1.
    CGRect edgeBounds(TextEdge edge) const;
    // Draws the edge of the characters, over which draw() must then be called with a colour of
    // `textAlpha` (0 to 1) and the same state: the edge lies only beside the characters. For its
    // sizes see NSAttributedString.
    void drawEdge(CGContext& context, CGPoint origin, TextEdge edge, const UIColor& color,
                  CGFloat textAlpha) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tesmar
