#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include "tesmar/platform/geometry/geometry.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr double kRequired = 1000;
// The tag of a residual that no single constraint causes.
constexpr int kNoTag = -1;

// Edges that should be equal can differ by rounding errors. Values within kSnapTolerance of a
// multiple of 1/kStepsPerPoint are rounded to it, so that they compare equal.
constexpr double kStepsPerPoint = 4096;
constexpr double kSnapTolerance = 1e-9;
// A double of this magnitude has no bits below one step, so adding and subtracting it rounds.
constexpr double kRoundingOffset = 0x1.8p52 / kStepsPerPoint;

double withoutRoundingErrors(double value) {
    const double rounded = (value + kRoundingOffset) - kRoundingOffset;
    const double tolerance = kSnapTolerance * std::max(1.0, std::abs(value));
    return std::abs(value - rounded) <= tolerance ? rounded : value;
}

// Sorts the terms from `begin` on by variable and adds up those of the same variable.
void normalise(std::vector<Term>& terms, std::size_t begin) {
    std::sort(terms.begin() + static_cast<std::ptrdiff_t>(begin), terms.end(),
              [](const Term& a, const Term& b) { return a.variable < b.variable; });
    std::size_t end = begin;
    for (std::size_t i = begin; i < terms.size();) {
        Term sum = terms[i++];
        for (; i < terms.size() && terms[i].variable == sum.variable; ++i)
            sum.coefficient += terms[i].coefficient;
        if (std::abs(sum.coefficient) > kCoefficientTolerance)
            terms[end++] = sum;
    }
    terms.resize(end);
}

} // namespace

void LayoutSolver::clear() {
    variables_.clear();
    terms_.clear();
    required_.clear();
    optional_.clear();
    preferSmallest_.clear();
    preferNearZero_.clear();
    constantRelations_.clear();
    built_ = false;
}

Variable LayoutSolver::add(Tableau::Domain domain) {
    variables_.push_back(domain);
    built_ = false;
    return static_cast<Variable>(variables_.size()) - 1;
}

void LayoutSolver::addConstraint(const LinearExpression& expression, Relation relation,
                                 double priority, int tag) {
    if (!(priority > 0))
        return;
    const std::size_t begin = terms_.size();
    terms_.insert(terms_.end(), expression.terms.begin(), expression.terms.end());
    normalise(terms_, begin);
    built_ = false;
    const Constraint constraint{begin, terms_.size(), expression.constant, priority, tag, relation};
    if (priority < kRequired)
        optional_.push_back(constraint);
    else if (terms_.size() == begin)
        constantRelations_.push_back({expression.constant, relation, tag});
    else
        required_.push_back(constraint);
}

void LayoutSolver::solve(const Parameters& parameters) {
    parameters_ = parameters;
    if (!built_ || !tableau_.isFeasibleFor(parameters) ||
        (order_ == Order::sparsestFirst && !allSatisfied(residuals_)))
        build();
    evaluate();
}

bool LayoutSolver::isSatisfied(const Residual& residual) const {
    const double value = residual.value.at(parameters_);
    return value >= -kFeasibilityTolerance &&
           (residual.relation == Relation::notNegative || value <= kFeasibilityTolerance);
}

bool LayoutSolver::allSatisfied(const std::vector<Residual>& residuals) const {
    return std::all_of(residuals.begin(), residuals.end(),
                       [this](const Residual& residual) { return isSatisfied(residual); });
}

void LayoutSolver::build() {
    built_ = false; // in case one of the steps throws
    // If all required relations can be satisfied, their order matters only for speed. Otherwise the
    // order decides which of them is violated.
    if (!solveRequired(Order::sparsestFirst))
        solveRequired(Order::asAdded);
    solvePriorities();
    applyTieBreaks();
    tableau_.compileEvaluation();
    built_ = true;
}

// Returns whether all required relations are satisfied.
bool LayoutSolver::solveRequired(Order order) {
    order_ = order;
    residuals_.clear();
    tableau_.reset(parameters_, variables_.size());
    for (const Tableau::Domain domain : variables_)
        tableau_.addVariable(domain);
    if (order == Order::asAdded) {
        for (const Constraint& constraint : required_) {
            addRequired(constraint);
            if (const Affine violation = tableau_.minimise(); !violation.isZero())
                residuals_.push_back({violation, Relation::equal, constraint.tag});
        }
        return false;
    }
    std::vector<const Constraint*> sorted;
    sorted.reserve(required_.size());
    for (const Constraint& constraint : required_)
        sorted.push_back(&constraint);
    std::stable_sort(sorted.begin(), sorted.end(), [](const Constraint* a, const Constraint* b) {
        if (a->relation != b->relation)
            return a->relation < b->relation;
        return a->relation == Relation::equal &&
               a->termsEnd - a->termsBegin < b->termsEnd - b->termsBegin;
    });
    for (const Constraint* constraint : sorted)
        addRequired(*constraint);
    residuals_.push_back({tableau_.minimise(), Relation::equal, kNoTag});
    return allSatisfied(residuals_);
}

std::optional<Affine> LayoutSolver::addToTableau(const Constraint& constraint,
                                                 Tableau::Strength strength) {
    const auto terms = terms_.begin();
    expression_.terms.assign(terms + static_cast<std::ptrdiff_t>(constraint.termsBegin),
                             terms + static_cast<std::ptrdiff_t>(constraint.termsEnd));
    expression_.constant = constraint.constant;
    return constraint.relation == Relation::equal ? tableau_.addEquality(expression_, strength)
                                                  : tableau_.addInequality(expression_, strength);
}

void LayoutSolver::addRequired(const Constraint& constraint) {
    if (const auto residual = addToTableau(constraint, Tableau::Strength::hard))
        residuals_.push_back({*residual, constraint.relation, constraint.tag});
}

void LayoutSolver::solvePriorities() {
    std::stable_sort(
        optional_.begin(), optional_.end(),
        [](const Constraint& a, const Constraint& b) { return a.priority > b.priority; });
    for (std::size_t i = 0; i < optional_.size(); ++i) {
        addToTableau(optional_[i], Tableau::Strength::soft);
        if (i + 1 == optional_.size() || optional_[i + 1].priority < optional_[i].priority)
            tableau_.minimise();
    }
}

void LayoutSolver::applyTieBreaks() {
    const std::vector<bool> sized = tableau_.determinedVariables();
    for (const Variable extent : preferSmallest_) {
        if (!sized[extent]) {
            tableau_.addToObjective(extent);
            tableau_.minimise();
        }
    }
    const std::vector<bool> placed = tableau_.determinedVariables();
    expression_.clear();
    for (const Variable variable : preferNearZero_) {
        if (!placed[variable]) {
            expression_.terms.assign(1, {variable, 1});
            tableau_.addEquality(expression_, Tableau::Strength::soft);
            tableau_.minimise();
        }
    }
}

void LayoutSolver::evaluate() {
    tableau_.evaluate(parameters_, values_);
    for (std::size_t i = 0; i < variables_.size(); ++i)
        values_[i] =
            withoutRoundingErrors(finite(values_[i], -kLargestCoordinate, kLargestCoordinate, 0));
    conflicts_.clear();
    for (const auto* residuals : {&constantRelations_, &residuals_}) {
        for (const Residual& residual : *residuals) {
            if (residual.tag != kNoTag && !isSatisfied(residual))
                conflicts_.push_back(residual.tag);
        }
    }
    std::sort(conflicts_.begin(), conflicts_.end());
    conflicts_.erase(std::unique(conflicts_.begin(), conflicts_.end()), conflicts_.end());
}

} // namespace tesmar
