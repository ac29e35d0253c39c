#include "tesmar/extended/internal/LegibilityHint.h"

#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/graphics/CGContext.h"
#include "tesmar/platform/graphics/UIGraphics.h"
#include "tesmar/platform/ui/UIAccessibility.h"

namespace tesmar {
namespace {

constexpr CGFloat kTextSize = 14; // points
constexpr CGFloat kRadius = 8;

// Black and the dark blue have 17 : 1 and 6 : 1 on the paper.
Ref<UIColor> paperColor() {
    return UIColor::colorWithRed(1, 0.953, 0.78, 1);
}
Ref<UIColor> actionColor() {
    return UIColor::colorWithRed(0.043, 0.341, 0.816, 1);
}

} // namespace

Class& LegibilityHint::classObject() {
    static Class& type = *new Class("LegibilityHint", &UIControl::classObject(), {});
    return type;
}

bool LegibilityHint::init() {
    if (!UIControl::init())
        return false;
    texts_ = &TESMARExtendedTexts::inLanguageOf(*PanelAppearance().texts);
    message_ = make<UILabel>();
    action_ = make<UILabel>();
    action_->setTextColor(actionColor());
    const NamedViews labels{{"message", message_}, {"action", action_}};
    for (const auto& [name, label] : labels) {
        label->setTranslatesAutoresizingMaskIntoConstraints(false);
        label->setUserInteractionEnabled(false);
        addSubview(label);
    }
    height_ = NSLayoutConstraint::constraintWithItem(refTo(this), NSLayoutAttribute::height,
                                                     NSLayoutRelation::equal, nullptr,
                                                     NSLayoutAttribute::notAnAttribute, 1, 0);
    addConstraint(height_);
    actionWidth_ = NSLayoutConstraint::constraintWithItem(action_, NSLayoutAttribute::width,
                                                          NSLayoutRelation::equal, nullptr,
                                                          NSLayoutAttribute::notAnAttribute, 1, 0);
    addConstraint(actionWidth_);
    addConstraintsWithVisualFormats(
        {{"|-10-[message]->=10-[action]-10-|", NSLayoutFormatAlignAllCenterY}}, labels);
    addConstraint(NSLayoutConstraint::constraintWithItem(
        message_, NSLayoutAttribute::centerY, NSLayoutRelation::equal, refTo(this),
        NSLayoutAttribute::centerY, 1, kGapAbove / 2));
    setHidden(true);
    applyAppearance(PanelAppearance(), *texts_);
    return true;
}

bool LegibilityHint::show(Legibility legibility) {
    if (legibility == legibility_)
        return false;
    legibility_ = legibility;
    const bool isShown = legibility != Legibility::good;
    setHidden(!isShown);
    height_->setConstant(isShown ? kHeight : 0);
    showText();
    return true;
}

void LegibilityHint::applyAppearance(const PanelAppearance& appearance,
                                     const TESMARExtendedTexts& texts) {
    texts_ = &texts;
    setSemanticContentAttribute(semanticAttribute(appearance));
    for (const auto& label : {message_, action_}) {
        label->setFont(UIFont::systemFontOfSize(kTextSize * appearance.textScale));
        label->setMinimumFontSize(PanelAppearance::kMinimumFontSize);
    }
    showText();
}

void LegibilityHint::showText() {
    const auto text = [&] {
        switch (legibility_) {
        case Legibility::invisibleText:
            return texts_->invisibleText;
        case Legibility::weakContrast:
            return texts_->weakContrast;
        case Legibility::tinyText:
            return texts_->tinyText;
        case Legibility::good:
            break;
        }
        return std::string_view();
    };
    message_->setText(std::string(text()));
    action_->setText(std::string(legibility_ == Legibility::good ? "" : texts_->mend));
    actionWidth_->setConstant(action_->intrinsicContentSize().width);
}

void LegibilityHint::describe(UIAccessibleElement& element) const {
    UIControl::describe(element);
    element.role = UIAccessibleRole::button;
    element.name = message_->text() + ": " + action_->text();
}

std::vector<UIFocusCell> LegibilityHint::focusCells() const {
    CGRect cell = bounds();
    cell.origin.y += kGapAbove;
    cell.size.height -= kGapAbove;
    return {{.rect = cell, .cornerRadius = kRadius}};
}

void LegibilityHint::draw(CGRect) {
    CGContext* const context = UIGraphicsGetCurrentContext();
    if (!context)
        return;
    const CGRect paper = focusCells().front().rect;
    context->setFillColor(*paperColor());
    context->fillRoundedRect(paper, kRadius);
    if (isHighlighted()) {
        context->setFillColor(*UIColor::colorWithWhite(0, 0.15));
        context->fillRoundedRect(paper, kRadius);
    }
}

} // namespace tesmar
