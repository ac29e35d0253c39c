// A tree of items and its constraints as a system of numbers: reads the tree into a solver, and
// says where the solution puts each item.
#pragma once

#include "tesmar/platform/layout/LayoutItem.h"
#include "tesmar/platform/layout/NSLayoutConstraint.h"
#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace tesmar {

class LayoutSystem {
  public:
    // A pull of the root's own size towards a target, where that size is not given.
    struct Fitting {
        CGSize target;
        std::array<UILayoutPriority, 2> priority; // along each axis
    };

    struct Node {
        LayoutItem* item;
        int parent; // -1 for the root
        int depth;
        bool frameIsGiven;
        bool contentIsConstrained = false;
        bool givenFrameMatters = false; // a constraint refers to it
        CGRect givenFrame{};
        // Along each axis; -1 where the value is given.
        std::array<Variable, 2> position{-1, -1};
        std::array<Variable, 2> extent{-1, -1};
        std::array<Variable, 2> contentExtent{-1, -1}; // of items whose edges are content
    };

    // Reads the tree afresh. With a Fitting the root's size is unknown, else solve() is told it.
    void read(LayoutItem& root, const std::optional<Fitting>& fitting = {});
    void solve(CGSize rootSize) { solver_.solve({rootSize.width, rootSize.height}); }

    // In tree order, the root first. The items are those that were there at the last read().
    const std::vector<Node>& nodes() const { return nodes_; }
    // Of a node whose frame is not given.
    CGRect frame(const Node& node) const;
    // Of a node whose content is constrained.
    CGSize contentSize(const Node& node) const;
    // Where it was not given.
    CGSize rootSize() const;

    // Whether a given frame that constraints refer to is another now than when it was read.
    bool givenFramesHaveChanged() const;

    // The required relations that give way in this solution, as numbers that stay the same until
    // the next read().
    std::span<const int> conflicts() const { return solver_.conflicts(); }
    std::string describeConflict(int conflict) const;
    // What was wrong with constraints that were left out.
    const std::vector<std::string>& complaints() const { return complaints_; }

  private:
    // Where a required relation comes from: a constraint, or (null) an item's content.
    struct Source {
        Ref<NSLayoutConstraint> constraint;
        int node;
    };
    // One side of a relation. Positions are in the coordinates of `space`, mirrored where the
    // relation reads from right to left; of the space itself, the edges of the content may be
    // meant.
    struct Side {
        int node;
        int space;
        bool edgesAreContent;
        bool isMirrored;
    };

    void addNode(LayoutItem& item, int parent, bool sizeIsUnknown);
    void addConstraint(const Ref<NSLayoutConstraint>& constraint);
    const char* whyUnusable(const NSLayoutConstraint& constraint) const;
    void addFitting(const Fitting& fitting);
    void addContentWishes(int node);

    int nodeOf(const LayoutItem* item) const;
    int closestCommonAncestor(int a, int b) const;

    // These add to expression_.
    void addSide(NSLayoutAttribute attribute, const Side& side, double factor);
    void addEdge(LayoutAxis axis, double fraction, const Side& side, double factor);
    void addExtent(LayoutAxis axis, int node, double factor);
    void addContentExtent(LayoutAxis axis, int node, double factor);
    void addVariable(Variable variable, double factor);

    LayoutSolver solver_;
    std::vector<Node> nodes_;
    std::unordered_map<const LayoutItem*, int> nodeByItem_;
    std::vector<Source> sources_; // by conflict number
    std::vector<std::string> complaints_;
    LinearExpression expression_;
};

} // namespace tesmar
