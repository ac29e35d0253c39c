// What the layout layer needs from an object that it places: a node in a tree of rectangles. Views
// implement this interface; the layout layer itself does not know views.
//
// Lengths are points in the parent's coordinate system. Layout changes items only through
// setLayoutFrame() and setLayoutContentSize(), and never changes the root. Main thread only.
//
// Toolkit: may change with any version.
#pragma once

#include "tesmar/platform/geometry/geometry.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tesmar {

class NSLayoutConstraint;

enum class LayoutAxis { horizontal, vertical };

class LayoutItem {
  public:
    virtual ~LayoutItem() = default;

    // Null for an item without a parent.
    virtual std::shared_ptr<LayoutItem> layoutParent() const = 0;
    // Children are in tree order, back to front.
    virtual std::size_t layoutChildCount() const = 0;
    virtual LayoutItem& layoutChild(std::size_t index) const = 0;
    // The constraints that were added to this item, in the order of adding.
    virtual const std::vector<std::shared_ptr<NSLayoutConstraint>>& layoutConstraints() const = 0;

    // True: layout treats the present frame as a constant (the item translates its autoresizing
    // mask). False: layout computes the frame.
    virtual bool layoutFrameIsFixed() const = 0;
    virtual CGRect layoutFrame() const = 0;

    // The preferred width or height of the content; nullopt without a preference. The priorities,
    // 0 to 1000, say how strongly the item resists becoming larger (hugging) or smaller
    // (compression) than that.
    virtual std::optional<CGFloat> layoutIntrinsicExtent(LayoutAxis axis) const = 0;
    virtual double layoutHuggingPriority(LayoutAxis axis) const = 0;
    virtual double layoutCompressionPriority(LayoutAxis axis) const = 0;
    // The distance from the vertical centre down to the baseline; nullopt if the bottom edge serves
    // as the baseline.
    virtual std::optional<CGFloat> layoutBaselineBelowCenter() const = 0;
    // True for a scroll view: constraints between its edges and its descendants define the size of
    // its content, not its frame.
    virtual bool layoutEdgesAreContent() const = 0;
    // Whether constraints between the item and its descendants place them from right to left.
    virtual bool layoutIsRightToLeft() const = 0;
    // Names the item in diagnostics.
    virtual std::string layoutName() const = 0;

    virtual void setLayoutFrame(const CGRect& frame) = 0;
    // Called only for items whose edges are content.
    virtual void setLayoutContentSize(CGSize size) = 0;

    // Called after a constraint that refers to this item has changed. The implementation calls
    // LayoutEngine::invalidate() for its tree and arranges for another layout.
    virtual void layoutNeedsUpdate() = 0;
};

} // namespace tesmar
