// A shaped text, kept for measuring and redrawing. Lengths are points. One thread at a time.
//
// Layouts do not depend on the scale at which they are drawn. Drawing through clip rectangles gives
// the same pixels as drawing at once (see CGContext).
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/geometry/geometry.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

class CGContext;
class UIColor;
class UIFont;

enum class NSTextAlignment { left = 0, center = 1, right = 2 };

class TESMAR_API TextLayout {
  public:
    TextLayout();
    ~TextLayout();
    TextLayout(TextLayout&&) noexcept;
    TextLayout& operator=(TextLayout&&) noexcept;

    // Setting what is set already costs next to nothing; anything new is shaped when it is next
    // needed. Text is UTF-8: what is not valid is replaced by U+FFFD, and text beyond
    // kLargestText bytes is cut off.
    static constexpr std::size_t kLargestText = 64 * 1024;
    void setText(std::string_view text);
    const std::string& text() const;
    // 17-point system font at the start; null means that one.
    void setFont(const Ref<UIFont>& font);
    // Lines are broken at this width, and aligned in it. None (the start): as wide as the text.
    void setWidth(std::optional<CGFloat> width);
    // At most this many lines; what does not fit the last one ends in an ellipsis. 0: as many as
    // the text needs. 1 at the start: line breaks in the text are then drawn as spaces.
    void setLineCount(int lines);
    void setAlignment(NSTextAlignment alignment);

    // The text's own width (never beyond setWidth by more than one unbreakable cluster) and the
    // height of its lines. Not rounded.
    CGSize size() const;
    // From the top of the layout to the first line's baseline.
    CGFloat baseline() const;
    // Where there is ink, relative to the origin at which the layout is drawn; it may reach beyond
    // size() on every side. Empty when nothing is to be seen.
    CGRect inkBounds() const;
    // The box of each line, relative to the origin.
    std::vector<CGRect> lineBoxes() const;
    // Whether an ellipsis stands in for some of the text.
    bool isTruncated() const;

    // Draws with the top left corner of the layout at `origin`, brought to whole device pixels.
    void draw(CGContext& context, CGPoint origin, const UIColor& color) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tesmar
