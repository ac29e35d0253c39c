// Translates a tree of items and its constraints into numbers: reads the tree into a solver, and
// returns where the solution puts each item. Lengths are points.
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
    struct Node {
        LayoutItem* item;
        int parent; // -1 for the root
        int depth;
        bool frameIsFixed;
        bool contentIsConstrained = false;
        bool fixedFrameIsUsed = false; // by a constraint
        CGRect fixedFrame{};
        // Along each axis; -1 if the value is fixed.
        std::array<Variable, 2> position{-1, -1};
        std::array<Variable, 2> extent{-1, -1};
        std::array<Variable, 2> contentExtent{-1, -1}; // of items whose edges are content
    };

    // Reads the tree. The root's size is a parameter of solve().
    void read(LayoutItem& root);
    // Reads the tree with the root's size as a variable, which should be close to `target`. The
    // parameter of solve() is ignored.
    void readForFitting(LayoutItem& root, CGSize target);
    void solve(CGSize rootSize) { solver_.solve({rootSize.width, rootSize.height}); }

    // In tree order, the root first, as of the last reading.
    const std::vector<Node>& nodes() const { return nodes_; }
    // Only for a node whose frame is not fixed.
    CGRect frame(const Node& node) const;
    // Only for a node whose content is constrained.
    CGSize contentSize(const Node& node) const;
    // Only after readForFitting().
    CGSize rootSize() const;

    // Whether a fixed frame that constraints refer to has changed since the last reading.
    bool fixedFramesHaveChanged() const;

    // The required relations that the present solution violates. Their numbers stay the same until
    // the next reading.
    std::span<const int> conflicts() const { return solver_.conflicts(); }
    std::string describeConflict(int conflict) const;
    // One message for each constraint that could not be used.
    const std::vector<std::string>& ignoredConstraints() const { return ignoredConstraints_; }

  private:
    // The origin of a relation: a constraint, or, if that is null, the content size of a node.
    struct Source {
        Ref<NSLayoutConstraint> constraint;
        int node;
    };
    // One side of a relation, as positions in the coordinate system of the node `space`.
    struct Side {
        int node;
        int space;
        bool edgesAreContent; // if node == space: the edges of its content, not of its frame
        bool isMirrored;      // x grows from the right edge of the space to the left
    };
    enum class RootSize { parameter, variable };

    void clear();
    void addNode(LayoutItem& item, int parent, RootSize rootSize);
    void addRelations();
    void addConstraint(const Ref<NSLayoutConstraint>& constraint);
    const char* reasonToIgnore(const NSLayoutConstraint& constraint) const;
    void addFitting(CGSize target);
    void addIntrinsicSize(int node);
    void addTieBreaks();

    int indexOf(const LayoutItem* item) const;
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
    std::vector<std::string> ignoredConstraints_;
    LinearExpression expression_; // of the relation that is being added
};

} // namespace tesmar
