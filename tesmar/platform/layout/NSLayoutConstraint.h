// A linear relation between attributes of one or two items of a tree:
//
//     first.attribute  (= | <= | >=)  multiplier * second.attribute + constant
//
// It takes effect once it is added to an item of the same tree, usually the closest common ancestor
// of the two. Priorities range from 0 (no effect) to 1000 (required). A higher priority wins over
// any number of lower ones. If required constraints conflict, the one added last is violated, by as
// little as possible.
//
// Leading and trailing follow the reading direction of the items' closest common ancestor (which
// may be one of them): in a right-to-left one they mean right and left, and positive constants
// point to the left.
//
// References to items are weak: a constraint on a destroyed item has no effect. Lengths are points.
// Main thread only.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/foundation/NSObject.h"
#include "tesmar/platform/layout/LayoutItem.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tesmar {

enum class NSLayoutAttribute {
    notAnAttribute,
    left,
    right,
    top,
    bottom,
    leading,
    trailing,
    width,
    height,
    centerX,
    centerY,
    lastBaseline,
};

enum class NSLayoutRelation { lessThanOrEqual, equal, greaterThanOrEqual };

using UILayoutPriority = double;
inline constexpr UILayoutPriority UILayoutPriorityRequired = 1000;
inline constexpr UILayoutPriority UILayoutPriorityDefaultHigh = 750;
inline constexpr UILayoutPriority UILayoutPriorityDefaultLow = 250;
inline constexpr UILayoutPriority UILayoutPriorityFittingSizeLevel = 50;

// How the views of a visual format are aligned, across the format's direction. Bits to combine
// with |.
enum NSLayoutFormatOptions : unsigned {
    NSLayoutFormatNone = 0,
    NSLayoutFormatAlignAllLeft = 2,
    NSLayoutFormatAlignAllRight = 4,
    NSLayoutFormatAlignAllTop = 8,
    NSLayoutFormatAlignAllBottom = 16,
    NSLayoutFormatAlignAllLeading = 32,
    NSLayoutFormatAlignAllTrailing = 64,
    NSLayoutFormatAlignAllCenterX = 512,
    NSLayoutFormatAlignAllCenterY = 1024,
    NSLayoutFormatAlignAllLastBaseline = 2048,
};
constexpr NSLayoutFormatOptions operator|(NSLayoutFormatOptions a, NSLayoutFormatOptions b) {
    return static_cast<NSLayoutFormatOptions>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr NSLayoutFormatOptions operator&(NSLayoutFormatOptions a, NSLayoutFormatOptions b) {
    return static_cast<NSLayoutFormatOptions>(static_cast<unsigned>(a) & static_cast<unsigned>(b));
}

class TESMAR_API NSLayoutConstraint : public NSObject {
    TESMAR_CLASS

  public:
    // The names that a visual format may use for numbers and for views.
    using Metrics = std::map<std::string, double, std::less<>>;
    using Views = std::map<std::string, std::shared_ptr<LayoutItem>, std::less<>>;

    // `second` is null and `secondAttribute` notAnAttribute for a width or height that is compared
    // with `constant` alone. The multiplier is clamped to +-10,000, the constant to
    // +-10,000,000; NaN counts as 0. The new constraint is required.
    static Ref<NSLayoutConstraint>
    constraintWithItem(const std::shared_ptr<LayoutItem>& first, NSLayoutAttribute attribute,
                       NSLayoutRelation relation, const std::shared_ptr<LayoutItem>& second,
                       NSLayoutAttribute secondAttribute, double multiplier, CGFloat constant);

    // Returns the constraints that a visual format describes, in reading order, followed by those
    // of the options. A format is a row or column of views, written as a picture of it:
    //
    //     format  =  [ "H:" | "V:" ]  [ "|" gap ]  view  { gap view }  [ gap "|" ]
    //     gap     =  ""  |  "-"  |  "-" length "-"  |  "-" "(" length { "," length } ")" "-"
    //     view    =  "[" name [ "(" length { "," length } ")" ] "]"
    //     length  =  [ "==" | "<=" | ">=" ]  ( number | name )  [ "@" ( number | name ) ]
    //     number  =  [ "-" ] digits [ "." digits ]
    //
    // There are no spaces. The direction is horizontal by default. "|" is the present parent of the
    // view next to it. An empty gap makes the views touch; "-" alone is the standard space, 8
    // points between views and 20 to the parent. A name in a length is a metric or, inside a view's
    // brackets, a view, whose width or height is meant. A priority, 0 to 1000, follows "@". A
    // negative number in a gap needs parentheses or a relation in front.
    //
    // Fatal errors, which show the format and the offset: a format that does not parse or is longer
    // than 16 KiB, an unknown name, a "|" next to a view without a parent, a priority out of range,
    // and an option that aligns along the format's own direction.
    static std::vector<Ref<NSLayoutConstraint>>
    constraintsWithVisualFormat(std::string_view format,
                                NSLayoutFormatOptions options = NSLayoutFormatNone,
                                const Metrics& metrics = {}, const Views& views = {});

    // Null if there is no such item or it has been destroyed.
    std::shared_ptr<LayoutItem> firstItem() const { return first_.lock(); }
    std::shared_ptr<LayoutItem> secondItem() const { return second_.lock(); }
    NSLayoutAttribute firstAttribute() const { return firstAttribute_; }
    NSLayoutAttribute secondAttribute() const { return secondAttribute_; }
    NSLayoutRelation relation() const { return relation_; }
    double multiplier() const { return multiplier_; }

    // The setters below take effect at the next layout of the items' tree.
    CGFloat constant() const { return constant_; }
    void setConstant(CGFloat constant);
    // Clamped to 0 to 1000; NaN counts as 1000.
    UILayoutPriority priority() const { return priority_; }
    void setPriority(UILayoutPriority priority);
    // An inactive constraint has no effect until it is active again. Initially active.
    bool isActive() const { return active_; }
    void setActive(bool active);

    // For diagnostics: "label.leading = panel.leading + 20 (required)".
    std::string description() const;

  private:
    void notifyItems() const;

    std::weak_ptr<LayoutItem> first_;
    std::weak_ptr<LayoutItem> second_;
    NSLayoutAttribute firstAttribute_ = NSLayoutAttribute::notAnAttribute;
    NSLayoutAttribute secondAttribute_ = NSLayoutAttribute::notAnAttribute;
    NSLayoutRelation relation_ = NSLayoutRelation::equal;
    bool active_ = true;
    double multiplier_ = 1;
    CGFloat constant_ = 0;
    UILayoutPriority priority_ = UILayoutPriorityRequired;
};

} // namespace tesmar
