// Computes the frames of a tree of items from its constraints. An engine serves one root; it keeps
// the solved system, so that a layout after only the root's size has changed is cheap. Main thread
// only.
//
// The root's size is given. Everything below it is determined, in order of precedence, by required
// constraints, constraints by priority, the items' intrinsic sizes (hugging and compression), and,
// item by item in tree order, the smallest width and height and the position closest to 0. So the
// result is always finite and always the same. Frames are not rounded to pixels.
//
// Constraints that conflict, or that refer to items outside the tree or destroyed ones, are
// reported by diagnostic(), once until the system changes.
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

    // Makes the next layout() read the tree again. Must be called after items, constraints,
    // intrinsic sizes, priorities or fixed frames have changed, and before an item leaves the tree
    // or is destroyed.
    void invalidate();

    // Sets the frames and content sizes below `root` that have changed, in tree order, parents
    // first. The setters may change the tree (and call invalidate()), call layout(), or destroy the
    // engine; the pass then starts again or ends early.
    void layout(LayoutItem& root);

    // Returns the size, in points, that `root` would have if it were as close to `target` as its
    // content allows: the smallest for a target of (0, 0), the largest for a large one. Changes no
    // frame and reports no diagnostics.
    static CGSize fittingSize(LayoutItem& root, CGSize target);

  private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace tesmar
