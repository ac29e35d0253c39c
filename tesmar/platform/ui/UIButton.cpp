#include "tesmar/platform/ui/UIButton.h"

#include "tesmar/platform/foundation/archive/NSCoder.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"
#include "tesmar/platform/ui/internal/equal_objects.h"
#include "tesmar/platform/ui/internal/press_plate.h"

#include <algorithm>
#include <utility>

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
    setImageIn(images_, image, state);
}

void UIButton::setBackgroundImage(const Ref<UIImage>& image, unsigned state) {
    setImageIn(backgroundImages_, image, state);
}

Ref<UIImage> UIButton::backgroundImageForState(unsigned state) const {
    return forState(backgroundImages_, state);
}

void UIButton::setImageIn(std::map<unsigned, Ref<UIImage>>& images, const Ref<UIImage>& image,
                          unsigned state) {
    const auto shown = [&] {
        return std::pair(forState(images, this->state()), images.contains(this->state()));
    };
    const auto before = shown();
    images[state] = image;
    if (shown() == before)
        return;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
}

void UIButton::setContentEdgeInsets(const UIEdgeInsets& insets) {
    setInsets(contentInsets_, finiteInsets(insets));
}

void UIButton::setTitleEdgeInsets(const UIEdgeInsets& insets) {
    setInsets(titleInsets_, finiteInsets(insets));
}

void UIButton::setInsets(UIEdgeInsets& insets, const UIEdgeInsets& value) {
    if (std::exchange(insets, value) == value)
        return;
    invalidateIntrinsicContentSize();
    setNeedsLayout();
    setNeedsDisplay(); // the image
}

Ref<UIImage> UIButton::imageForState(unsigned state) const {
    return forState(images_, state);
}

void UIButton::setTintColor(const Ref<UIColor>& color) {
    if (!equalObjects(std::exchange(tintColor_, color), color))
        setNeedsDisplay();
}

void UIButton::setPressedLook(UIButtonPressedLook look) {
    pressedLook_ = look;
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
    const auto background = backgroundImageForState(state());
    const CGSize behind = background ? background->size() : CGSize{};
    const CGFloat width = title.width + picture.width + contentInsets_.left + contentInsets_.right;
    const CGFloat height = std::max(title.height + kTitlePadding, picture.height) +
                           contentInsets_.top + contentInsets_.bottom;
    return {std::max({kLeastWidth, width, behind.width}), std::max(height, behind.height)};
}

std::optional<CGFloat> UIButton::layoutBaselineBelowCenter() const {
    const auto baseline = titleLabel_ ? titleLabel_->layoutBaselineBelowCenter() : std::nullopt;
    const CGFloat down =
        contentInsets_.top - contentInsets_.bottom + titleInsets_.top - titleInsets_.bottom;
    return baseline ? std::optional(*baseline + down / 2) : std::nullopt;
}

void UIButton::layoutSubviews() {
    if (titleLabel_)
        titleLabel_->setLayoutFrame(
            CGRectInset(CGRectInset(bounds(), contentInsets_), titleInsets_));
}

UIView* UIButton::hitTest(CGPoint point) {
    // The title is part of the button.
    return UIView::hitTest(point) ? this : nullptr;
}

CGFloat UIButton::fade() const {
    const bool isPaler = isHighlighted() && pressedLook_ == UIButtonPressedLook::paler;
    return !isEnabled() ? 0.3 : isPaler ? 0.5 : 1;
}

void UIButton::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    if (const auto background = backgroundImageForState(state())) {
        context->setAlpha(backgroundImages_.contains(state()) ? 1 : fade());
        context->drawImage(*background, bounds());
    }
    if (const auto image = imageForState(state())) {
        const CGRect content = CGRectInset(bounds(), contentInsets_);
        const UIColor& tint = tintColor_ ? *tintColor_ : *UIColor::blackColor();
        context->setAlpha(fade());
        if (isHighlighted() && isEnabled() && pressedLook_ == UIButtonPressedLook::plate)
            drawPressPlate(*context, *this, content, tint);
        context->drawImage(*image, context->snapped(content.center(), image->size()), tint);
    }
}

} // namespace tesmar
