#include "tesmar/platform/ui/UIButton.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"

#include <algorithm>

namespace tesmar {
namespace {

constexpr CGFloat kTitleSize = 18;
constexpr CGFloat kTitlePadding = 12; // added to the title's height
constexpr CGFloat kLeastWidth = 30;

template <class T>
T forState(const std::map<unsigned, T>& values, unsigned state) {
    const auto own = values.find(state);
    const auto found = own != values.end() ? own : values.find(UIControlStateNormal);
    return found == values.end() ? T() : found->second;
}

} // namespace

Class& UIButton::classObject() {
    static Class& type = *new Class("UIButton", &UIControl::classObject(), allocator<UIButton>());
    return type;
}

Ref<UIButton> UIButton::buttonWithType(UIButtonType type) {
    auto button = make<UIButton>();
    if (type == UIButtonType::system)
        button->setTitleColor(UIColor::colorWithRed(0, 0.35, 0.85, 1), UIControlStateNormal);
    return button;
}

bool UIButton::initWithCoder(NSCoder& coder) {
    if (!UIControl::initWithCoder(coder))
        return false;
    if (const auto title = coder.decodeString("title"))
        titles_[UIControlStateNormal] = *title;
    if (const auto color = as<UIColor>(coder.decodeObject("titleColor")))
        titleColors_[UIControlStateNormal] = color;
    if (const auto image = as<UIImage>(coder.decodeObject("image")))
        images_[UIControlStateNormal] = image;
    tintColor_ = as<UIColor>(coder.decodeObject("tintColor"));
    showState();
    return true;
}

void UIButton::setTitle(std::string title, unsigned state) {
    titles_[state] = std::move(title);
    showState();
}

std::string UIButton::titleForState(unsigned state) const {
    return forState(titles_, state);
}

void UIButton::setTitleColor(const Ref<UIColor>& color, unsigned state) {
    titleColors_[state] = color;
    showState();
}

Ref<UIColor> UIButton::titleColorForState(unsigned state) const {
    const auto color = forState(titleColors_, state);
    return color ? color : UIColor::whiteColor();
}

void UIButton::setImage(const Ref<UIImage>& image, unsigned state) {
    images_[state] = image;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

Ref<UIImage> UIButton::imageForState(unsigned state) const {
    return forState(images_, state);
}

void UIButton::setTintColor(const Ref<UIColor>& color) {
    tintColor_ = color;
    setNeedsDisplay();
}

const Ref<UILabel>& UIButton::titleLabel() {
    if (!titleLabel_) {
        titleLabel_ = make<UILabel>();
        titleLabel_->setFont(UIFont::systemFontOfSize(kTitleSize));
        titleLabel_->setTextAlignment(NSTextAlignment::center);
        addSubview(titleLabel_);
    }
    return titleLabel_;
}

void UIButton::showState() {
    const std::string title = titleForState(state());
    if (titleLabel_ || !title.empty()) {
        titleLabel()->setText(title);
        titleLabel()->setTextColor(titleColorForState(state()));
        invalidateIntrinsicContentSize();
        setNeedsLayout();
    }
}

void UIButton::stateChanged() {
    UIControl::stateChanged();
    if (titleLabel_) {
        // Most states change only the colour; only a new title needs a new layout.
        if (titleLabel_->text() != titleForState(state()))
            showState();
        else
            titleLabel_->setTextColor(titleColorForState(state()));
    }
}

void UIButton::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    element.role = UIAccessibleRole::button;
    element.name = titleForState(state());
}

CGSize UIButton::intrinsicContentSize() const {
    const CGSize title = titleLabel_ ? titleLabel_->intrinsicContentSize() : CGSize{};
    const auto image = imageForState(state());
    const CGSize picture = image ? image->size() : CGSize{};
    return {std::max(kLeastWidth, title.width + picture.width),
            std::max(title.height + kTitlePadding, picture.height)};
}

std::optional<CGFloat> UIButton::layoutBaselineBelowCenter() const {
    return titleLabel_ ? titleLabel_->layoutBaselineBelowCenter() : std::nullopt;
}

void UIButton::layoutSubviews() {
    if (titleLabel_)
        titleLabel_->setLayoutFrame(bounds());
}

UIView* UIButton::hitTest(CGPoint point) {
    // The title is part of the button.
    return UIView::hitTest(point) ? this : nullptr;
}

void UIButton::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    const auto image = imageForState(state());
    if (!context || !image)
        return;
    const CGSize size = image->size();
    const CGRect b = bounds();
    const CGFloat faded = !isEnabled() ? 0.3 : isHighlighted() ? 0.5 : 1;
    const auto tint = tintColor_ ? tintColor_ : UIColor::blackColor();
    context->setAlpha(faded);
    context->drawImage(
        *image, {b.midX() - size.width / 2, b.midY() - size.height / 2, size.width, size.height},
        *tint);
}

} // namespace tesmar
