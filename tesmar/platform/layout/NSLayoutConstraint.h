// A linear relation between attributes of one or two items of a tree:
//
//     first.attribute  (= | <= | >=)  multiplier * second.attribute + constant
//
// It takes effect once it is added to an item that holds both (or is one of them). Priorities run
// from 0 to 1000, and a higher one wins outright over any number of lower ones. At 1000 the
// relation is required; where required ones conflict, the one added last gives way, as little as it
// can.
//
// Leading and trailing follow the reading direction of the first item: where it reads from right to
// left they mean right and left, and positive constants point to the left.
//
// The items are held weakly: a constraint whose item has died has no effect. Main thread.
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

// How the views of a visual format line up across its direction. Bits, to be combined with |.
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
    // Names that a format may use as numbers, and as views.
    using Metrics = std::map<std::string, double, std::less<>>;
    using Views = std::map<std::string, std::shared_ptr<LayoutItem>, std::less<>>;

    // `second` is null, with notAnAttribute, where a width or height relates to a number. Numbers
    // that are not finite count as 0. The priority is required.
    static Ref<NSLayoutConstraint>
    constraintWithItem(const std::shared_ptr<LayoutItem>& first, NSLayoutAttribute attribute,
                       NSLayoutRelation relation, const std::shared_ptr<LayoutItem>& second,
                       NSLayoutAttribute secondAttribute, double multiplier, CGFloat constant);

    // The constraints that a visual format (see visual_format.h) stands for, in its reading order,
    // those of the options last. `|` means the parent that the view next to it has now. A format
    // that does not parse or has more than 16 KiB, a name that is in neither map, and an option
    // that aligns along the format's own direction are fatal errors that show the format and the
    // place.
    static std::vector<Ref<NSLayoutConstraint>>
    constraintsWithVisualFormat(std::string_view format,
                                NSLayoutFormatOptions options = NSLayoutFormatNone,
                                const Metrics& metrics = {}, const Views& views = {});

    // Null when there is none or it has died.
    std::shared_ptr<LayoutItem> firstItem() const { return first_.lock(); }
    std::shared_ptr<LayoutItem> secondItem() const { return second_.lock(); }
    NSLayoutAttribute firstAttribute() const { return firstAttribute_; }
    NSLayoutAttribute secondAttribute() const { return secondAttribute_; }
    NSLayoutRelation relation() const { return relation_; }
    double multiplier() const { return multiplier_; }

    // Changes of these take effect at the next layout of the items' tree.
    CGFloat constant() const { return constant_; }
    void setConstant(CGFloat constant);
    // Held within 0 to 1000.
    UILayoutPriority priority() const { return priority_; }
    void setPriority(UILayoutPriority priority);
    // An inactive constraint stays where it was added, without effect. Starts active.
    bool isActive() const { return active_; }
    void setActive(bool active);

    // For diagnostics: "label.leading = panel.leading + 20 (required)".
    std::string description() const;

  private:
    void tellItems() const;

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
