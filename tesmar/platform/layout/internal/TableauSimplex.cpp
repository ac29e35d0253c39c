// The simplex method of the tableau: primal, since the present solution is always a valid one.
#include "tesmar/platform/layout/internal/Tableau.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tesmar {
namespace {

std::vector<Term>::const_iterator find(Variable variable, const std::vector<Term>& terms) {
    const auto place = std::lower_bound(terms.begin(), terms.end(), variable,
                                        [](const Term& t, Variable v) { return t.variable < v; });
    return place != terms.end() && place->variable == variable ? place : terms.end();
}

} // namespace

double Tableau::coefficient(Variable variable, int row) const {
    const auto& terms = rows_[row].expression.terms;
    const auto term = find(variable, terms);
    return term == terms.end() ? 0 : term->coefficient;
}

void Tableau::charge(Variable variable) {
    if (unknowns_[variable].role == Role::nonbasic) {
        addCost(variable, 1);
    } else if (unknowns_[variable].role == Role::basic) {
        const LinearExpression& expression = rowOf(variable).expression;
        for (const Term& term : expression.terms)
            addCost(term.variable, term.coefficient);
        cost_.add(expression.constant, 1);
    }
}

Affine Tableau::minimise() {
    // The largest saving first; should that go in circles, the rule that cannot. The bound is for
    // rounding errors alone.
    const std::size_t mostPivots = 64 + 8 * (rows_.size() + charged_.size());
    for (std::size_t pivots = 0; pivots < mostPivots; ++pivots) {
        const bool cautious = pivots > mostPivots / 2;
        const Variable entering = enteringVariable(cautious);
        if (entering < 0)
            break;
        const int row = leavingRow(entering, cautious);
        if (row >= 0) {
            pivot(entering, row);
        } else { // costs have a least value: only rounding says otherwise
            freeze(entering);
            dropFrozenTerms();
        }
    }
    for (const Variable variable : charged_) {
        if (std::abs(std::exchange(costs_[variable], 0)) > kCostTolerance &&
            unknowns_[variable].role == Role::nonbasic)
            freeze(variable);
    }
    dropFrozenTerms();
    charged_.clear();
    return std::exchange(cost_, {});
}

// The nonbasic variable whose rise saves the most (or, cautiously, the oldest that saves anything).
Variable Tableau::enteringVariable(bool cautious) const {
    Variable best = -1;
    double lowest = -kCostTolerance;
    for (const Variable variable : charged_) {
        if (!(costs_[variable] < -kCostTolerance))
            continue;
        if (cautious ? best < 0 || variable < best : costs_[variable] < lowest) {
            best = variable;
            lowest = costs_[variable];
        }
    }
    return best;
}

// The row whose owner reaches 0 first as `entering` rises; of several, the one with the largest
// coefficient (or, cautiously, with the oldest owner). -1 when there is none.
int Tableau::leavingRow(Variable entering, bool cautious) const {
    int best = -1;
    double nearest = std::numeric_limits<double>::infinity();
    double steepest = 0;
    for (const int row : columns_[entering]) {
        const double slope = -coefficient(entering, row);
        if (!(slope >= kPivotTolerance))
            continue;
        const double limit = std::max(value(row), 0.0) / slope;
        const bool ties = limit == nearest;
        const bool winsTie =
            cautious ? best >= 0 && rows_[row].owner < rows_[best].owner : slope > steepest;
        if (limit < nearest || (ties && winsTie)) {
            best = row;
            nearest = limit;
            steepest = slope;
        }
    }
    return best;
}

// The entering variable takes over the row; its owner becomes 0.
void Tableau::pivot(Variable entering, int row) {
    const Variable leaving = std::exchange(rows_[row].owner, entering);
    // leaving = expression  becomes  entering = replacement
    LinearExpression replacement = std::exchange(rows_[row].expression, {});
    const auto term = find(entering, replacement.terms);
    const double coefficient = term->coefficient;
    replacement.terms.erase(term);
    replacement.scale(-1 / coefficient);
    const auto place = std::lower_bound(replacement.terms.begin(), replacement.terms.end(), leaving,
                                        [](const Term& t, Variable v) { return t.variable < v; });
    replacement.terms.insert(place, {leaving, 1 / coefficient});

    unknowns_[leaving].role = Role::nonbasic;
    unknowns_[leaving].row = -1;
    unknowns_[entering].role = Role::basic;
    unknowns_[entering].row = row;
    columns_[leaving].assign(1, row);
    substitute(entering, replacement);
    rows_[row].expression = std::move(replacement);
}

// Puts `replacement` in for a nonbasic variable everywhere.
void Tableau::substitute(Variable variable, const LinearExpression& replacement) {
    for (const int row : std::exchange(columns_[variable], {})) {
        LinearExpression& expression = rows_[row].expression;
        const auto term = find(variable, expression.terms);
        if (term == expression.terms.end())
            continue;
        const double factor = term->coefficient;
        expression.terms.erase(term);
        addScaled(expression, replacement, factor, row);
    }
    if (const double cost = std::exchange(costs_[variable], 0); cost != 0) {
        for (const Term& term : replacement.terms)
            addCost(term.variable, cost * term.coefficient);
        cost_.add(replacement.constant, cost);
    }
}

// target += factor * source, for the expression of `row`.
void Tableau::addScaled(LinearExpression& target, const LinearExpression& source, double factor,
                        int row) {
    target.constant.add(source.constant, factor);
    if (source.terms.empty())
        return;
    merged_.clear();
    auto old = target.terms.cbegin();
    for (const Term& added : source.terms) {
        while (old != target.terms.cend() && old->variable < added.variable)
            merged_.push_back(*old++);
        double sum = factor * added.coefficient;
        if (old != target.terms.cend() && old->variable == added.variable)
            sum += old++->coefficient;
        else
            columns_[added.variable].push_back(row);
        if (std::abs(sum) > kCoefficientTolerance)
            merged_.push_back({added.variable, sum});
    }
    merged_.insert(merged_.end(), old, target.terms.cend());
    target.terms.assign(merged_.begin(), merged_.end());
}

void Tableau::addCost(Variable variable, double coefficient) {
    if (costs_[variable] == 0)
        charged_.push_back(variable);
    costs_[variable] += coefficient;
}

// From now on the (nonbasic) variable is 0. Rows keep it until dropFrozenTerms().
void Tableau::freeze(Variable variable) {
    unknowns_[variable].role = Role::frozen;
    costs_[variable] = 0;
    for (const int row : std::exchange(columns_[variable], {})) {
        if (!std::exchange(rows_[row].holdsFrozen, true))
            rowsWithFrozen_.push_back(row);
    }
}

void Tableau::dropFrozenTerms() {
    for (const int row : rowsWithFrozen_) {
        rows_[row].holdsFrozen = false;
        std::erase_if(rows_[row].expression.terms, [&](const Term& term) {
            return unknowns_[term.variable].role == Role::frozen;
        });
    }
    rowsWithFrozen_.clear();
}

} // namespace tesmar
