#include "tesmar/platform/layout/NSLayoutConstraint.h"

#include "tesmar/platform/foundation/diagnostics.h"
#include "tesmar/platform/foundation/runtime.h"
#include "tesmar/platform/layout/internal/visual_format.h"

#include <charconv>

namespace tesmar {
namespace {

// Larger factors would magnify rounding errors beyond every coordinate.
constexpr double kLargestMultiplier = 1e4;

// Indexed by the enumerations.
constexpr const char* kAttributeNames[] = {"?",      "left",    "right",    "top",
                                           "bottom", "leading", "trailing", "width",
                                           "height", "centerX", "centerY",  "lastBaseline"};
constexpr const char* kRelationSigns[] = {"<=", "=", ">="};

const char* name(NSLayoutAttribute attribute) {
    return kAttributeNames[static_cast<std::size_t>(attribute)];
}

std::string number(double value) {
    char text[32];
    // Unlike printf and streams, independent of the decimal sign of the host's locale.
    const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 6);
    return std::string(text, end.ptr);
}

} // namespace

Class& NSLayoutConstraint::classObject() {
    static Class& type =
        *new Class("NSLayoutConstraint", &NSObject::classObject(), allocator<NSLayoutConstraint>());
    return type;
}

Ref<NSLayoutConstraint> NSLayoutConstraint::constraintWithItem(
    const std::shared_ptr<LayoutItem>& first, NSLayoutAttribute attribute,
    NSLayoutRelation relation, const std::shared_ptr<LayoutItem>& second,
    NSLayoutAttribute secondAttribute, double multiplier, CGFloat constant) {
    auto constraint = make<NSLayoutConstraint>();
    constraint->first_ = first;
    constraint->firstAttribute_ = attribute;
    constraint->relation_ = relation;
    constraint->second_ = second;
    constraint->secondAttribute_ = secondAttribute;
    constraint->multiplier_ = finite(multiplier, -kLargestMultiplier, kLargestMultiplier, 0);
    constraint->constant_ = finiteCoordinate(constant);
    return constraint;
}

std::vector<Ref<NSLayoutConstraint>>
NSLayoutConstraint::constraintsWithVisualFormat(std::string_view format,
                                                NSLayoutFormatOptions options,
                                                const Metrics& metrics, const Views& views) {
    auto result = constraintsFromVisualFormat(format, options, metrics, views);
    if (const auto* error = std::get_if<VisualFormatError>(&result))
        fatalError(describe(*error, format));
    return std::get<std::vector<Ref<NSLayoutConstraint>>>(std::move(result));
}

void NSLayoutConstraint::setConstant(CGFloat constant) {
    constant_ = finiteCoordinate(constant);
    notifyItems();
}

void NSLayoutConstraint::setPriority(UILayoutPriority priority) {
    priority_ = finite(priority, 0, UILayoutPriorityRequired, UILayoutPriorityRequired);
    notifyItems();
}

void NSLayoutConstraint::setActive(bool active) {
    active_ = active;
    notifyItems();
}

std::string NSLayoutConstraint::description() const {
    const auto first = firstItem();
    const auto second = secondItem();
    std::string text = (first ? first->layoutName() : "(destroyed)") + "." + name(firstAttribute_) +
                       " " + kRelationSigns[static_cast<std::size_t>(relation_)] + " ";
    if (secondAttribute_ == NSLayoutAttribute::notAnAttribute) {
        text += number(constant_);
    } else {
        if (multiplier_ != 1)
            text += number(multiplier_) + " * ";
        text += (second ? second->layoutName() : "(destroyed)") + "." + name(secondAttribute_);
        if (constant_ != 0)
            text += (constant_ < 0 ? " - " : " + ") + number(std::abs(constant_));
    }
    return text + (priority_ >= UILayoutPriorityRequired ? " (required)"
                                                         : " (priority " + number(priority_) + ")");
}

void NSLayoutConstraint::notifyItems() const {
    // A constraint has an effect only if both items are in one tree, so notifying one is enough.
    if (const auto item = firstItem())
        item->layoutNeedsUpdate();
}

} // namespace tesmar
