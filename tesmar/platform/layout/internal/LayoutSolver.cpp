#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include "tesmar/platform/geometry/geometry.h"

#include <algorithm>
#include <cmath>

namespace tesmar {
namespace {

constexpr double kRequired = 1000;

// Sums and products of exact numbers come out exact to this many units in a point, with a dust of
// rounding that would keep equal edges from comparing equal.
constexpr double kUnitsInAPoint = 4096;
constexpr double kDust = 1e-9;
// A double of this size has no bits for less than a unit: adding it rounds.
constexpr double kRounder = 0x1.8p52 / kUnitsInAPoint;

double withoutDust(double value) {
    const double rounded = (value + kRounder) - kRounder;
    return std::abs(value - rounded) <= kDust * std::max(1.0, std::abs(value)) ? rounded : value;
}

// Brings the terms from `begin` on into ascending order, each variable once.
void normalise(std::vector<Term>& terms, std::size_t begin) {
    std::sort(terms.begin() + static_cast<std::ptrdiff_t>(begin), terms.end(),
              [](const Term& a, const Term& b) { return a.variable < b.variable; });
    std::size_t kept = begin;
    for (std::size_t i = begin; i < terms.size();) {
        Term sum = terms[i++];
        for (; i < terms.size() && terms[i].variable == sum.variable; ++i)
            sum.coefficient += terms[i].coefficient;
        if (std::abs(sum.coefficient) > kCoefficientTolerance)
            terms[kept++] = sum;
    }
    terms.resize(kept);
}

} // namespace

void LayoutSolver::clear() {
    variables_.clear();
    terms_.clear();
    required_.clear();
    optional_.clear();
    smallest_.clear();
    nearZero_.clear();
    constantChecks_.clear();
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
        constantChecks_.push_back({expression.constant, relation, tag});
    else
        required_.push_back(constraint);
}

void LayoutSolver::solve(const Parameters& parameters) {
    parameters_ = parameters;
    if (!built_ || !tableau_.holdsFor(parameters) ||
        (order_ == Order::sparsestFirst &&
         !std::all_of(checks_.begin(), checks_.end(), [&](const Check& c) { return holds(c); })))
        build();
    evaluate();
}

// A required relation that nothing ties any more must hold as it is.
bool LayoutSolver::holds(const Check& check) const {
    const double value = check.value.at(parameters_);
    return value >= -kFeasibilityTolerance &&
           (check.relation == Relation::notNegative || value <= kFeasibilityTolerance);
}

void LayoutSolver::build() {
    built_ = false; // until all of it is
    // Where all required relations can hold together their order makes no difference to the answer,
    // only to the work. Where they cannot, the order decides which gives way.
    if (!solveRequired(Order::sparsestFirst))
        solveRequired(Order::asAdded);
    solvePriorities();
    grantWishes();
    tableau_.finish();
    built_ = true;
}

// Answers whether all hold.
bool LayoutSolver::solveRequired(Order order) {
    order_ = order;
    checks_.clear();
    tableau_.reset(parameters_, variables_.size());
    for (const Tableau::Domain domain : variables_)
        tableau_.addVariable(domain);
    if (order == Order::asAdded) {
        for (const Constraint& constraint : required_) {
            addRequired(constraint);
            if (const Affine lack = tableau_.minimise(); !lack.isZero())
                checks_.push_back({lack, Relation::equal, constraint.tag});
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
    checks_.push_back({tableau_.minimise(), Relation::equal, -1});
    return std::all_of(checks_.begin(), checks_.end(), [&](const Check& c) { return holds(c); });
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
    if (const auto rest = addToTableau(constraint, Tableau::Strength::hard))
        checks_.push_back({*rest, constraint.relation, constraint.tag});
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

void LayoutSolver::grantWishes() {
    const std::vector<bool> known = tableau_.determined();
    for (const Variable extent : smallest_) {
        if (!known[extent]) {
            tableau_.charge(extent);
            tableau_.minimise();
        }
    }
    const std::vector<bool> placed = tableau_.determined();
    expression_.clear();
    for (const Variable variable : nearZero_) {
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
        values_[i] = withoutDust(finite(values_[i], -kLargestCoordinate, kLargestCoordinate, 0));
    conflicts_.clear();
    for (const auto* checks : {&constantChecks_, &checks_}) {
        for (const Check& check : *checks) {
            if (check.tag >= 0 && !holds(check))
                conflicts_.push_back(check.tag);
        }
    }
    std::sort(conflicts_.begin(), conflicts_.end());
    conflicts_.erase(std::unique(conflicts_.begin(), conflicts_.end()), conflicts_.end());
}

} // namespace tesmar
