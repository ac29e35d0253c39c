#include "tesmar/platform/layout/internal/LayoutSystem.h"

#include <utility>

namespace tesmar {
namespace {

constexpr LayoutAxis kAxes[] = {LayoutAxis::horizontal, LayoutAxis::vertical};

std::size_t index(LayoutAxis axis) {
    return axis == LayoutAxis::horizontal ? 0 : 1;
}

double along(LayoutAxis axis, CGPoint point) {
    return axis == LayoutAxis::horizontal ? point.x : point.y;
}

double along(LayoutAxis axis, CGSize size) {
    return axis == LayoutAxis::horizontal ? size.width : size.height;
}

bool followsReadingDirection(NSLayoutAttribute attribute) {
    return attribute == NSLayoutAttribute::leading || attribute == NSLayoutAttribute::trailing;
}

bool isExtent(NSLayoutAttribute attribute) {
    return attribute == NSLayoutAttribute::width || attribute == NSLayoutAttribute::height;
}

} // namespace

void LayoutSystem::read(LayoutItem& root) {
    clear();
    addNode(root, -1, RootSize::parameter);
    addRelations();
}

void LayoutSystem::readForFitting(LayoutItem& root, CGSize target) {
    clear();
    addNode(root, -1, RootSize::variable);
    addFitting(target);
    addRelations();
}

void LayoutSystem::clear() {
    solver_.clear();
    nodes_.clear();
    nodeByItem_.clear();
    sources_.clear();
    ignoredConstraints_.clear();
}

void LayoutSystem::addNode(LayoutItem& item, int parent, RootSize rootSize) {
    const int self = static_cast<int>(nodes_.size());
    const bool isRoot = parent < 0;
    nodeByItem_.emplace(&item, self);
    Node node{&item, parent, isRoot ? 0 : nodes_[parent].depth + 1,
              isRoot || item.layoutFrameIsFixed()};
    if (node.frameIsFixed)
        node.fixedFrame = finiteRect(item.layoutFrame());
    else
        node.position = {solver_.addVariable(), solver_.addVariable()};
    if (!node.frameIsFixed || (isRoot && rootSize == RootSize::variable))
        node.extent = {solver_.addExtent(), solver_.addExtent()};
    if (item.layoutEdgesAreContent())
        node.contentExtent = {solver_.addExtent(), solver_.addExtent()};
    nodes_.push_back(node);
    for (std::size_t i = 0; i < item.layoutChildCount(); ++i)
        addNode(item.layoutChild(i), self, rootSize);
}

void LayoutSystem::addRelations() {
    for (const Node& node : nodes_) {
        for (const auto& constraint : node.item->layoutConstraints())
            addConstraint(constraint);
    }
    for (std::size_t i = 0; i < nodes_.size(); ++i)
        addIntrinsicSize(static_cast<int>(i));
    addTieBreaks();
}

void LayoutSystem::addFitting(CGSize target) {
    for (const LayoutAxis axis : kAxes) {
        expression_.clear();
        addExtent(axis, 0, 1);
        expression_.constant.constant -= finite(along(axis, target), 0, kLargestCoordinate, 0);
        solver_.addConstraint(expression_, LayoutSolver::Relation::equal,
                              UILayoutPriorityFittingSizeLevel, static_cast<int>(sources_.size()));
    }
    sources_.push_back({nullptr, 0});
}

void LayoutSystem::addConstraint(const Ref<NSLayoutConstraint>& constraint) {
    if (!constraint->isActive())
        return;
    if (const char* reason = reasonToIgnore(*constraint)) {
        ignoredConstraints_.push_back("layout: ignoring " + constraint->description() + ": " +
                                      reason);
        return;
    }
    const NSLayoutAttribute attribute = constraint->firstAttribute();
    const NSLayoutAttribute secondAttribute = constraint->secondAttribute();
    const auto firstItem = constraint->firstItem();
    const int first = indexOf(firstItem.get());
    int second = first;
    if (secondAttribute != NSLayoutAttribute::notAnAttribute)
        second = indexOf(constraint->secondItem().get());
    const int space = closestCommonAncestor(first, second);
    const bool isMirrored =
        (followsReadingDirection(attribute) || followsReadingDirection(secondAttribute)) &&
        nodes_[space].item->layoutIsRightToLeft();

    // first - multiplier * second - constant, negated for lessThanOrEqual.
    const double sign = constraint->relation() == NSLayoutRelation::lessThanOrEqual ? -1 : 1;
    expression_.clear();
    addSide(attribute, {first, space, first != second, isMirrored}, sign);
    if (secondAttribute != NSLayoutAttribute::notAnAttribute)
        addSide(secondAttribute, {second, space, first != second, isMirrored},
                -sign * constraint->multiplier());
    expression_.constant.constant -= sign * constraint->constant();
    solver_.addConstraint(expression_,
                          constraint->relation() == NSLayoutRelation::equal
                              ? LayoutSolver::Relation::equal
                              : LayoutSolver::Relation::notNegative,
                          constraint->priority(), static_cast<int>(sources_.size()));
    sources_.push_back({constraint, first});
}

// Null if the constraint can be used.
const char* LayoutSystem::reasonToIgnore(const NSLayoutConstraint& constraint) const {
    const auto first = constraint.firstItem();
    const auto second = constraint.secondItem();
    const bool isBinary = constraint.secondAttribute() != NSLayoutAttribute::notAnAttribute;
    if (!first || (isBinary && !second))
        return "one of its items was destroyed";
    if (indexOf(first.get()) < 0 || (isBinary && indexOf(second.get()) < 0))
        return "one of its items is not in the tree";
    if (constraint.firstAttribute() == NSLayoutAttribute::notAnAttribute)
        return "it has no first attribute";
    if (!isBinary && !isExtent(constraint.firstAttribute()))
        return "a position must relate to a second item";
    return nullptr;
}

// Adds hugging and compression resistance.
void LayoutSystem::addIntrinsicSize(int self) {
    const Node& node = nodes_[self];
    for (const LayoutAxis axis : kAxes) {
        if (node.extent[index(axis)] < 0)
            continue;
        const auto preferred = node.item->layoutIntrinsicExtent(axis);
        if (!preferred)
            continue;
        expression_.clear();
        addExtent(axis, self, 1);
        expression_.constant.constant -= finite(*preferred, 0, kLargestCoordinate, 0);
        const int source = static_cast<int>(sources_.size());
        solver_.addConstraint(expression_, LayoutSolver::Relation::notNegative,
                              node.item->layoutCompressionPriority(axis), source);
        expression_.scale(-1);
        solver_.addConstraint(expression_, LayoutSolver::Relation::notNegative,
                              node.item->layoutHuggingPriority(axis), source);
        sources_.push_back({nullptr, self});
    }
}

void LayoutSystem::addTieBreaks() {
    for (const Node& node : nodes_) {
        for (const auto* variables : {&node.extent, &node.contentExtent}) {
            for (const Variable variable : *variables) {
                if (variable >= 0)
                    solver_.preferSmallest(variable);
            }
        }
        for (const Variable variable : node.position) {
            if (variable >= 0)
                solver_.preferNearZero(variable);
        }
    }
}

int LayoutSystem::indexOf(const LayoutItem* item) const {
    const auto found = nodeByItem_.find(item);
    return found == nodeByItem_.end() ? -1 : found->second;
}

int LayoutSystem::closestCommonAncestor(int a, int b) const {
    while (a != b) {
        int& deeper = nodes_[a].depth >= nodes_[b].depth ? a : b;
        deeper = nodes_[deeper].parent;
    }
    return a;
}

void LayoutSystem::addSide(NSLayoutAttribute attribute, const Side& side, double factor) {
    using enum NSLayoutAttribute;
    // The fractions go from 0, the left or top edge, to 1, the opposite edge.
    switch (attribute) {
    case notAnAttribute:
        return;
    case left:
        return addEdge(LayoutAxis::horizontal, 0, side, factor);
    case right:
        return addEdge(LayoutAxis::horizontal, 1, side, factor);
    case leading:
        return addEdge(LayoutAxis::horizontal, side.isMirrored ? 1 : 0, side, factor);
    case trailing:
        return addEdge(LayoutAxis::horizontal, side.isMirrored ? 0 : 1, side, factor);
    case centerX:
        return addEdge(LayoutAxis::horizontal, 0.5, side, factor);
    case top:
        return addEdge(LayoutAxis::vertical, 0, side, factor);
    case bottom:
        return addEdge(LayoutAxis::vertical, 1, side, factor);
    case centerY:
        return addEdge(LayoutAxis::vertical, 0.5, side, factor);
    case lastBaseline:
        if (const auto below = nodes_[side.node].item->layoutBaselineBelowCenter()) {
            addEdge(LayoutAxis::vertical, 0.5, side, factor);
            expression_.constant.constant += factor * finiteCoordinate(*below);
        } else {
            addEdge(LayoutAxis::vertical, 1, side, factor);
        }
        return;
    case width:
        return addExtent(LayoutAxis::horizontal, side.node, factor);
    case height:
        return addExtent(LayoutAxis::vertical, side.node, factor);
    }
}

void LayoutSystem::addEdge(LayoutAxis axis, double fraction, const Side& side, double factor) {
    const auto addSpaceExtent = [&](double f) {
        if (nodes_[side.space].contentExtent[index(axis)] >= 0)
            addContentExtent(axis, side.space, f);
        else
            addExtent(axis, side.space, f);
    };
    if (side.isMirrored && axis == LayoutAxis::horizontal) {
        // The distance from the right edge of the space.
        addSpaceExtent(factor);
        factor = -factor;
    }
    for (int node = side.node; node != side.space; node = nodes_[node].parent) {
        Node& step = nodes_[node];
        if (step.frameIsFixed) {
            expression_.constant.constant += factor * along(axis, step.fixedFrame.origin);
            step.fixedFrameIsUsed = true;
        } else {
            addVariable(step.position[index(axis)], factor);
        }
    }
    if (fraction == 0)
        return;
    if (side.node == side.space && side.edgesAreContent)
        addSpaceExtent(factor * fraction);
    else
        addExtent(axis, side.node, factor * fraction);
}

void LayoutSystem::addExtent(LayoutAxis axis, int self, double factor) {
    Node& node = nodes_[self];
    if (node.extent[index(axis)] >= 0) {
        addVariable(node.extent[index(axis)], factor);
    } else if (self == 0) {
        expression_.constant.slopes[index(axis)] += factor;
    } else {
        expression_.constant.constant += factor * along(axis, node.fixedFrame.size);
        node.fixedFrameIsUsed = true;
    }
}

void LayoutSystem::addContentExtent(LayoutAxis axis, int self, double factor) {
    nodes_[self].contentIsConstrained = true;
    addVariable(nodes_[self].contentExtent[index(axis)], factor);
}

void LayoutSystem::addVariable(Variable variable, double factor) {
    expression_.terms.push_back({variable, factor});
}

CGRect LayoutSystem::frame(const Node& node) const {
    return {solver_.value(node.position[0]), solver_.value(node.position[1]),
            solver_.value(node.extent[0]), solver_.value(node.extent[1])};
}

CGSize LayoutSystem::contentSize(const Node& node) const {
    return {solver_.value(node.contentExtent[0]), solver_.value(node.contentExtent[1])};
}

CGSize LayoutSystem::rootSize() const {
    const auto& extent = nodes_.front().extent;
    return {solver_.value(extent[0]), solver_.value(extent[1])};
}

bool LayoutSystem::fixedFramesHaveChanged() const {
    for (const Node& node : nodes_) {
        if (node.fixedFrameIsUsed && finiteRect(node.item->layoutFrame()) != node.fixedFrame)
            return true;
    }
    return false;
}

std::string LayoutSystem::describeConflict(int conflict) const {
    const Source& source = sources_[conflict];
    return "layout: cannot satisfy " +
           (source.constraint ? source.constraint->description()
                              : "the content size of " + nodes_[source.node].item->layoutName());
}

} // namespace tesmar
