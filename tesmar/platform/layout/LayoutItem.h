// What the layout floor needs to know of a thing that it places: a box in a tree of boxes. Views
// implement it; the layout floor knows no views.
//
// Coordinates are points in the parent's coordinate system. The layout reads from an item and
// writes only the frames and content sizes of items below the root. Main thread.
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

    // Null when there is none.
    virtual std::shared_ptr<LayoutItem> layoutParent() const = 0;
    // In tree order, back to front.
    virtual std::size_t layoutChildCount() const = 0;
    virtual LayoutItem& layoutChild(std::size_t index) const = 0;
    // The constraints that were added to this item, in the order of adding.
    virtual const std::vector<std::shared_ptr<NSLayoutConstraint>>& layoutConstraints() const = 0;

    // True: the frame is given and the constraints must live with it (the item translates its
    // autoresizing mask). False: the frame is an unknown.
    virtual bool layoutFrameIsGiven() const = 0;
    virtual CGRect layoutFrame() const = 0;

    // The size that the content wants along an axis, or nothing when it has no wish.
    virtual std::optional<CGFloat> layoutIntrinsicExtent(LayoutAxis axis) const = 0;
    virtual double layoutHuggingPriority(LayoutAxis axis) const = 0;
    virtual double layoutCompressionPriority(LayoutAxis axis) const = 0;
    // How far the baseline lies below the vertical centre; nothing when the bottom edge stands in
    // for the baseline.
    virtual std::optional<CGFloat> layoutBaselineBelowCenter() const = 0;
    // True for a scroll view: constraints between its edges and its descendants define the size of
    // its content, not its frame.
    virtual bool layoutEdgesAreContent() const = 0;
    virtual bool layoutIsRightToLeft() const = 0;
    // What diagnostics call the item.
    virtual std::string layoutName() const = 0;

    virtual void setLayoutFrame(const CGRect& frame) = 0;
    // Only for items whose edges are content.
    virtual void setLayoutContentSize(CGSize size) = 0;

    // A constraint on this item has changed: whoever lays out the tree that the item is in must
    // call LayoutEngine::invalidate() and lay it out again.
    virtual void layoutNeedsUpdate() = 0;
};

} // namespace tesmar
