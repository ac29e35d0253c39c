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

    // UTF-8; empty at the start.
    const std::string& text() const { return text_; }
    void setText(std::string text);
    // The 17-point system font at the start and when null is set.
    const Ref<UIFont>& font() const { return font_; }
    void setFont(const Ref<UIFont>& font);
    // Black at the start and when null is set.
    const Ref<UIColor>& textColor() const { return textColor_; }
    void setTextColor(const Ref<UIColor>& color);
    // Left at the start.
    void setTextAlignment(NSTextAlignment alignment);

    // Text that does not fit ends in an ellipsis; it is centred vertically.
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
    void contentChanged();

    std::string text_;
    Ref<UIFont> font_;
    Ref<UIColor> textColor_;
    NSTextAlignment alignment_ = NSTextAlignment::left;
    mutable TextLayout layout_;
};

} // namespace tesmar
