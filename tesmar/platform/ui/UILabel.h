// One line of read-only text. Takes no touches.
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

    // Reads, besides the view's keys, "text", "font", "textColor" and "textAlignment" (0 left, 1
    // centre, 2 right).
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
    // Text that is wider than the label is drawn in a smaller font, down to this size in points,
    // before it is cut off. 0, the initial value: never smaller.
    void setMinimumFontSize(CGFloat size);

    // A text, unless it is empty.
    void describe(UIAccessibleElement& element) const override;
    // The text is centred vertically; an ellipsis ends text that does not fit.
    void draw(CGRect rect) override;
    UIEdgeInsets drawingOverflow() const override;
    // The text's size rounded up to whole points; zero without text.
    CGSize intrinsicContentSize() const override;
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
    void contentChanged();

    std::string text_;
    Ref<UIFont> font_;
    Ref<UIColor> textColor_;
    NSTextAlignment alignment_ = NSTextAlignment::left;
    CGFloat minimumFontSize_ = 0;
    mutable TextLayout layout_;
};

} // namespace tesmar
