// The primal simplex method: the present solution is feasible at all times, and each pivot keeps it
// so while the objective decreases.
#include "tesmar/platform/layout/internal/Tableau.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tesmar {
namespace {

bool isBefore(const Term& term, Variable variable) {
    return term.variable < variable;
}

std::vector<Term>::const_iterator find(Variable variable, const std::vector<Term>& terms) {
    const auto place = std::lower_bound(terms.begin(), terms.end(), variable, isBefore);
    return place != terms.end() && place->variable == variable ? place : terms.end();
}

} // namespace

double Tableau::coefficient(Variable variable, int row) const {
    const auto& terms = rows_[row].expression.terms;
    const auto term = find(variable, terms);
    return term == terms.end() ? 0 : term->coefficient;
}

void Tableau::addToObjective(Variable variable) {
    if (variables_[variable].role == Role::nonbasic) {
        addReducedCost(variable, 1);
    } else if (variables_[variable].role == Role::basic) {
        const LinearExpression& expression = rowOf(variable).expression;
        for (const Term& term : expression.terms)
            addReducedCost(term.variable, term.coefficient);
        objectiveConstant_.add(expression.constant, 1);
    }
}

Affine Tableau::minimise() {
    // After half of the pivots the fast rule is probably cycling, and Bland's rule takes over. The
    // limit only guards against rounding errors.
    const std::size_t maxPivots = 64 + 8 * (rows_.size() + objectiveVariables_.size());
    for (std::size_t pivots = 0; pivots < maxPivots; ++pivots) {
        const PivotRule rule =
            pivots > maxPivots / 2 ? PivotRule::lowestIndex : PivotRule::largestCoefficient;
        const Variable entering = enteringVariable(rule);
        if (entering < 0)
            break;
        const int row = leavingRow(entering, rule);
        if (row >= 0) {
            pivot(entering, row);
        } else { // the objective has a minimum, so this is a rounding error
            fixAtZero(entering);
            removeFixedTerms();
        }
    }
    for (const Variable variable : objectiveVariables_) {
        if (std::abs(std::exchange(reducedCosts_[variable], 0)) > kReducedCostTolerance &&
            variables_[variable].role == Role::nonbasic)
            fixAtZero(variable);
    }
    removeFixedTerms();
    objectiveVariables_.clear();
    return std::exchange(objectiveConstant_, {});
}

// Returns a nonbasic variable with a negative reduced cost, or -1 if the solution is optimal.
Variable Tableau::enteringVariable(PivotRule rule) const {
    Variable best = -1;
    double lowest = -kReducedCostTolerance;
    for (const Variable variable : objectiveVariables_) {
        if (!(reducedCosts_[variable] < -kReducedCostTolerance))
            continue;
        if (rule == PivotRule::lowestIndex ? best < 0 || variable < best
                                           : reducedCosts_[variable] < lowest) {
            best = variable;
            lowest = reducedCosts_[variable];
        }
    }
    return best;
}

// The ratio test: returns the row whose owner reaches 0 first as `entering` increases, or -1 if
// none does. The rule breaks ties.
int Tableau::leavingRow(Variable entering, PivotRule rule) const {
    int best = -1;
    double nearest = std::numeric_limits<double>::infinity();
    double steepest = 0;
    for (const int row : columns_[entering]) {
        const double slope = -coefficient(entering, row);
        if (!(slope >= kPivotTolerance))
            continue;
        const double limit = std::max(value(row), 0.0) / slope;
        const bool ties = limit == nearest;
        const bool winsTie = rule == PivotRule::lowestIndex
                                 ? best >= 0 && rows_[row].owner < rows_[best].owner
                                 : slope > steepest;
        if (limit < nearest || (ties && winsTie)) {
            best = row;
            nearest = limit;
            steepest = slope;
        }
    }
    return best;
}

// The entering variable takes over the row and becomes basic; the row's owner becomes nonbasic.
void Tableau::pivot(Variable entering, int row) {
    const Variable leaving = std::exchange(rows_[row].owner, entering);
    // leaving = expression  becomes  entering = replacement
    LinearExpression replacement = std::exchange(rows_[row].expression, {});
    const auto term = find(entering, replacement.terms);
    const double coefficient = term->coefficient;
    replacement.terms.erase(term);
    replacement.scale(-1 / coefficient);
    const auto place =
        std::lower_bound(replacement.terms.begin(), replacement.terms.end(), leaving, isBefore);
    replacement.terms.insert(place, {leaving, 1 / coefficient});

    variables_[leaving].role = Role::nonbasic;
    variables_[leaving].row = -1;
    variables_[entering].role = Role::basic;
    variables_[entering].row = row;
    columns_[leaving].assign(1, row);
    substitute(entering, replacement);
    rows_[row].expression = std::move(replacement);
}

// Replaces a nonbasic variable in all rows and in the objective.
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
    if (const double cost = std::exchange(reducedCosts_[variable], 0); cost != 0) {
        for (const Term& term : replacement.terms)
            addReducedCost(term.variable, cost * term.coefficient);
        objectiveConstant_.add(replacement.constant, cost);
    }
}

// target += factor * source, where target is the expression of `row`. Rows are often long and what
// is added to them short, with new variables, which come last: so terms move only behind inserted
// ones.
void Tableau::addScaled(LinearExpression& target, const LinearExpression& source, double factor,
                        int row) {
    target.constant.add(source.constant, factor);
    std::vector<Term>& terms = target.terms;
    inserted_.clear();
    bool cancels = false;
    auto place = terms.begin();
    for (const Term& added : source.terms) {
        const double change = factor * added.coefficient;
        place = std::lower_bound(place, terms.end(), added.variable, isBefore);
        if (place != terms.end() && place->variable == added.variable) {
            place->coefficient += change;
            cancels = cancels || std::abs(place->coefficient) <= kCoefficientTolerance;
        } else if (std::abs(change) > kCoefficientTolerance) {
            columns_[added.variable].push_back(row);
            inserted_.push_back({added.variable, change});
        }
    }
    auto end = terms.size();
    terms.resize(end + inserted_.size());
    for (auto free = terms.end(); !inserted_.empty(); inserted_.pop_back()) {
        const auto last = terms.begin() + static_cast<std::ptrdiff_t>(end);
        const auto gap = std::lower_bound(terms.begin(), last, inserted_.back().variable, isBefore);
        free = std::move_backward(gap, last, free);
        *--free = inserted_.back();
        end = static_cast<std::size_t>(gap - terms.begin());
    }
    if (cancels)
        std::erase_if(
            terms, [](const Term& t) { return std::abs(t.coefficient) <= kCoefficientTolerance; });
}

void Tableau::addReducedCost(Variable variable, double coefficient) {
    if (reducedCosts_[variable] == 0)
        objectiveVariables_.push_back(variable);
    reducedCosts_[variable] += coefficient;
}

// Fixes a nonbasic variable. Rows still contain it until removeFixedTerms().
void Tableau::fixAtZero(Variable variable) {
    variables_[variable].role = Role::fixed;
    reducedCosts_[variable] = 0;
    for (const int row : std::exchange(columns_[variable], {})) {
        if (!std::exchange(rows_[row].hasFixedTerms, true))
            rowsWithFixedTerms_.push_back(row);
    }
}

void Tableau::removeFixedTerms() {
    for (const int row : rowsWithFixedTerms_) {
        rows_[row].hasFixedTerms = false;
        std::erase_if(rows_[row].expression.terms, [&](const Term& term) {
            return variables_[term.variable].role == Role::fixed;
        });
    }
    rowsWithFixedTerms_.clear();
}

} // namespace tesmar
