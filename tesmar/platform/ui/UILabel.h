// Read-only text. Takes no touches. The font never shrinks to fit; a host sets another one.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/text/TextLayout.h"
#include "tesmar/platform/text/UIFont.h"
#include "tesmar/platform/ui/UIView.h"

namespace tesmar {

class TESMAR_API UILabel : public UIView {
    TESMAR_CLASS

  public:
    UILabel();

    // Reads, besides the view's keys, "text", "font", "textColor", "textAlignment" (0 left, 1
    // centre, 2 right), "numberOfLines" and "lineBreakMode" (the number of an NSLineBreakMode).
    bool initWithCoder(NSCoder& coder) override;

    // UTF-8; initially empty.
    const std::string& text() const { return text_; }
    void setText(std::string text);
    // Initially, and when null is set, the 17-point system font.
    const Ref<UIFont>& font() const { return font_; }
    void setFont(const Ref<UIFont>& font);
    // Initially, and when null is set, black.
    const Ref<UIColor>& textColor() const { return textColor_; }
    void setTextColor(const Ref<UIColor>& color);
    // Initially left.
    void setTextAlignment(NSTextAlignment alignment);
    // A single line that is wider than the label is drawn in a smaller font, down to this size in
    // points, before it is cut off. 0, the initial value: never smaller.
    void setMinimumFontSize(CGFloat size);
    // The font whose baseline the first line stands on, so that texts in several fonts replace each
    // other on one line; null, the initial value, means the label's own.
    void setBaselineFont(const Ref<UIFont>& font);

    // The largest number of lines; 0 means no limit, and negative numbers count as 0. Initially 1.
    int numberOfLines() const { return numberOfLines_; }
    void setNumberOfLines(int lines);
    // How text that does not fit is shown; initially truncatingTail.
    NSLineBreakMode lineBreakMode() const { return lineBreakMode_; }
    void setLineBreakMode(NSLineBreakMode mode);
    // The width, in points, at which lines break for the intrinsic size if there may be several; 0,
    // the initial value, means at line breaks in the text only. The drawn text always breaks at the
    // label's width, which does not change the intrinsic size by itself.
    CGFloat preferredMaxLayoutWidth() const { return preferredMaxLayoutWidth_; }
    void setPreferredMaxLayoutWidth(CGFloat width);

    // A text, unless it is empty.
    void describe(UIAccessibleElement& element) const override;
    // The text is centred vertically, and is not cut off where it is higher than the label.
    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override;
    // The text's size rounded up to whole points; zero without text.
    CGSize intrinsicContentSize() const override;
    // That of a single line in the centre, for several lines too.
    std::optional<CGFloat> layoutBaselineBelowCenter() const override;

    // --- Added by the caption library -----------------------------------------------------------

    // A label without text in the panel's small font.
    static Ref<UILabel> createStyledLabel();
    // The panel's small font; null when it is not installed.
    static Ref<UIFont> getDefaultFont();

  private:
    TextLayout& currentLayout() const;
    // The layout for drawing, in the present width.
    TextLayout& fittedLayout() const;
    bool hasVisibleText() const;
    // The distance of the layout from the label's upper edge.
    CGFloat topOf(const TextLayout& layout) const;
    template <class T>
    void change(T& property, T value);

    std::string text_;
    Ref<UIFont> font_;
    Ref<UIFont> baselineFont_;
    Ref<UIColor> textColor_;
    NSTextAlignment alignment_ = NSTextAlignment::left;
    CGFloat minimumFontSize_ = 0;
    int numberOfLines_ = 1;
    NSLineBreakMode lineBreakMode_ = NSLineBreakMode::truncatingTail;
    CGFloat preferredMaxLayoutWidth_ = 0;
    mutable TextLayout layout_;
};

} // namespace tesmar
