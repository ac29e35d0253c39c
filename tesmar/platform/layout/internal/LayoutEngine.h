// Finds the frames of a tree of items from its constraints. One engine serves one root, keeps what
// it has worked out, and does little when only the root's size has changed. Main thread.
//
// The root's size is given; everything below it follows from, in falling order: required
// constraints, constraints by priority, the items' wishes for their content (hugging and
// compression), and then, item by item in tree order, the smallest width and height and the
// position nearest to 0. So there is always one answer, the same every time, and it is always
// finite. Frames are exact, not rounded to pixels.
//
// What gives way (a required constraint in conflict, a constraint whose items are not in the tree
// or have died) goes to diagnostic(), once until the system changes.
#pragma once

#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"

#include <memory>

namespace tesmar {

class LayoutEngine {
  public:
    LayoutEngine();
    ~LayoutEngine();
    LayoutEngine(const LayoutEngine&) = delete;
    LayoutEngine& operator=(const LayoutEngine&) = delete;

    // Items, constraints, intrinsic sizes, priorities or given frames have changed. Must be called
    // before an item leaves the tree or dies; the next layout() reads the tree afresh.
    void invalidate();

    // Sets the frames (and content sizes) of the items below `root` that differ from what they are,
    // in tree order, parents first. An item's setter may change the tree (and call invalidate()),
    // lay out again, or destroy the engine: the pass then ends early or starts over.
    void layout(LayoutItem& root);

    // The size that `root` itself would take if nothing but a pull towards `target` gave it one:
    // the smallest that its content allows for a target of (0, 0), the largest for a large one.
    // Changes no frame and tells no diagnostics.
    static CGSize fittingSize(LayoutItem& root, CGSize target,
                              UILayoutPriority horizontal = UILayoutPriorityFittingSizeLevel,
                              UILayoutPriority vertical = UILayoutPriorityFittingSizeLevel);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace tesmar
