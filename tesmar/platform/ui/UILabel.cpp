#include "tesmar/platform/ui/UILabel.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/internal/equal_objects.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

constexpr CGFloat kDefaultSize = 17;
// Smaller fonts differ from the label's by multiples of this, in points.
constexpr CGFloat kSizeStep = 0.5;

} // namespace

Class& UILabel::classObject() {
    static Class& type = *new Class("UILabel", &UIView::classObject(), allocator<UILabel>());
    return type;
}

UILabel::UILabel()
    : font_(UIFont::systemFontOfSize(kDefaultSize)), textColor_(UIColor::blackColor()) {
    setUserInteractionEnabled(false);
}

bool UILabel::initWithCoder(NSCoder& coder) {
    if (!UIView::initWithCoder(coder))
        return false;
    setUserInteractionEnabled(coder.decodeBool("userInteractionEnabled").value_or(false));
    text_ = coder.decodeString("text").value_or("");
    if (const auto font = as<UIFont>(coder.decodeObject("font")))
        font_ = font;
    if (const auto color = as<UIColor>(coder.decodeObject("textColor")))
        textColor_ = color;
    const long long alignment = coder.decodeInteger("textAlignment").value_or(0);
    if (alignment == 1 || alignment == 2)
        alignment_ = static_cast<NSTextAlignment>(alignment);
    const long long lines = coder.decodeInteger("numberOfLines").value_or(1);
    numberOfLines_ = static_cast<int>(std::clamp<long long>(lines, 0, INT_MAX));
    const long long mode = coder.decodeInteger("lineBreakMode").value_or(-1);
    if (mode >= 0 && mode <= static_cast<long long>(NSLineBreakMode::truncatingMiddle))
        lineBreakMode_ = static_cast<NSLineBreakMode>(mode);
    return true;
}

// Sets a property of the layout; the area of the old text and that of the new one need painting.
template <class T>
void UILabel::change(T& property, T value) {
    if (value == property)
        return;
    setNeedsDisplay();
    property = std::move(value);
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void UILabel::setText(std::string text) {
    change(text_, std::move(text));
}

void UILabel::setFont(const Ref<UIFont>& font) {
    const auto next = font ? font : UIFont::systemFontOfSize(kDefaultSize);
    if (!font_->isEqual(next.get()))
        change(font_, next);
}

void UILabel::setTextColor(const Ref<UIColor>& color) {
    const auto next = color ? color : UIColor::blackColor();
    if (textColor_->isEqual(next.get()))
        return;
    textColor_ = next;
    setNeedsDisplay();
}

void UILabel::setTextAlignment(NSTextAlignment alignment) {
    if (alignment == alignment_)
        return;
    setNeedsDisplay();
    alignment_ = alignment;
    setNeedsDisplay();
}

void UILabel::setMinimumFontSize(CGFloat size) {
    change(minimumFontSize_, finite(size, 0, UIFont::kLargestSize, 0));
}

void UILabel::setBaselineFont(const Ref<UIFont>& font) {
    if (!equalObjects(baselineFont_, font))
        change(baselineFont_, font);
}

void UILabel::setNumberOfLines(int lines) {
    change(numberOfLines_, std::max(lines, 0));
}

void UILabel::setLineBreakMode(NSLineBreakMode mode) {
    change(lineBreakMode_, mode);
}

void UILabel::setPreferredMaxLayoutWidth(CGFloat width) {
    width = finite(width, 0, kLargestCoordinate, 0);
    if (std::exchange(preferredMaxLayoutWidth_, width) != width)
        invalidateIntrinsicContentSize();
}

TextLayout& UILabel::currentLayout() const {
    layout_.setText(text_);
    layout_.setFont(font_);
    layout_.setAlignment(alignment_);
    layout_.setLineCount(numberOfLines_);
    layout_.setLineBreakMode(lineBreakMode_);
    return layout_;
}

TextLayout& UILabel::fittedLayout() const {
    const CGFloat width = frame().size.width;
    TextLayout& layout = currentLayout();
    layout.setWidth(width);
    if (numberOfLines_ != 1 || minimumFontSize_ <= 0 || minimumFontSize_ >= font_->pointSize() ||
        !layout.isTruncated())
        return layout;
    layout.setWidth(std::nullopt);
    const CGFloat fitting = font_->pointSize() * width / std::max(layout.size().width, 1.0);
    CGFloat size = std::floor(fitting / kSizeStep) * kSizeStep;
    do {
        size = std::max(size, minimumFontSize_);
        layout.setFont(font_->fontWithSize(size));
        layout.setWidth(width);
        size -= kSizeStep;
    } while (layout.isTruncated() && size >= minimumFontSize_);
    return layout;
}

void UILabel::describe(UIAccessibleElement& element) const {
    if (text_.empty())
        return;
    element.role = UIAccessibleRole::text;
    element.name = text_;
}

CGSize UILabel::intrinsicContentSize() const {
    if (text_.empty())
        return {0, 0};
    TextLayout& layout = currentLayout();
    const bool wraps = numberOfLines_ != 1 && preferredMaxLayoutWidth_ > 0;
    layout.setWidth(wraps ? std::optional(preferredMaxLayoutWidth_) : std::nullopt);
    const CGSize size = layout.size();
    return {std::ceil(size.width), std::ceil(size.height)};
}

std::optional<CGFloat> UILabel::layoutBaselineBelowCenter() const {
    const UIFont& font = baselineFont_ ? *baselineFont_ : *font_;
    return (font.ascender() + font.descender()) / 2;
}

// Before its first layout a label has no width.
bool UILabel::hasVisibleText() const {
    return !text_.empty() && frame().size.width > 0;
}

// The text is centred vertically, even when it is taller than the label.
CGFloat UILabel::topOf(const TextLayout& layout) const {
    const CGFloat height = frame().size.height;
    return baselineFont_ ? height / 2 + *layoutBaselineBelowCenter() - layout.baseline()
                         : (height - layout.size().height) / 2;
}

void UILabel::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context || !hasVisibleText())
        return;
    TextLayout& layout = fittedLayout();
    CGFloat top = topOf(layout);
    if (baselineFont_) {
        // The baseline is rounded to a pixel first, as the layout would round its top edge.
        const CGFloat scale = context->scale();
        const CGFloat baseline = context->snapped(CGRect{0, top + layout.baseline(), 0, 0}).minY();
        top = baseline - std::round(layout.baseline() * scale) / scale;
    }
    layout.draw(*context, {0, top}, *textColor_);
}

UIEdgeInsets UILabel::drawingOverflow() const {
    if (!hasVisibleText())
        return {};
    TextLayout& layout = fittedLayout();
    const CGSize size = frame().size;
    const CGRect ink = CGRectInset(layout.inkBounds().offsetBy({0, topOf(layout)}), -1,
                                   -1); // for antialiasing and rounding to pixels
    return {std::max(0.0, -ink.minY()), std::max(0.0, -ink.minX()),
            std::max(0.0, ink.maxY() - size.height), std::max(0.0, ink.maxX() - size.width)};
}

} // namespace tesmar
