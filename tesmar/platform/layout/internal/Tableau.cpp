// Taking relations in, expanding definitions and evaluating; the simplex method is in simplex.cpp.
#include "tesmar/platform/layout/internal/Tableau.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

// Definitions up to this length are put into those that refer to them.
constexpr std::size_t kShort = 4;
// How many unknowns are tried when a relation is solved for one that is not negative.
constexpr std::size_t kMostCandidates = 8;

// expression = 0 solved for one of its variables.
LinearExpression solvedFor(Variable variable, LinearExpression expression) {
    const auto term = std::find_if(expression.terms.begin(), expression.terms.end(),
                                   [&](const Term& t) { return t.variable == variable; });
    const double coefficient = term->coefficient;
    expression.terms.erase(term);
    expression.scale(-1 / coefficient);
    return expression;
}

} // namespace

void Tableau::reset(const Parameters& parameters, std::size_t expectedVariables) {
    parameters_ = parameters;
    unknowns_.clear();
    rows_.clear();
    columns_.clear();
    costs_.clear();
    charged_.clear();
    cost_ = {};
    // The scratch too: what threw in the middle has not put it to rest.
    sums_.clear();
    summed_.clear();
    summedOrder_.clear();
    visited_.clear();
    order_.clear();
    path_.clear();
    rowsWithFrozen_.clear();
    steps_.clear();
    stepTerms_.clear();
    unknowns_.reserve(expectedVariables);
    rows_.reserve(expectedVariables);
    columns_.reserve(expectedVariables);
    costs_.reserve(expectedVariables);
    sums_.reserve(expectedVariables);
}

Variable Tableau::addVariable(Domain domain) {
    unknowns_.push_back({domain == Domain::free ? Role::undefined : Role::nonbasic});
    columns_.emplace_back();
    costs_.push_back(0);
    sums_.push_back(0);
    summed_.push_back(0);
    visited_.push_back(0);
    return static_cast<Variable>(unknowns_.size()) - 1;
}

Variable Tableau::addError() {
    const Variable error = addVariable(Domain::notNegative);
    addCost(error, 1);
    return error;
}

std::optional<Affine> Tableau::addEquality(const LinearExpression& expression, Strength strength) {
    LinearExpression relation = expression;
    Variable unknown = freshVariable(relation);
    if (unknown < 0) {
        relation = expanded(expression);
        if (relation.terms.empty())
            return relation.constant;
        unknown = undefinedVariable(relation);
    }
    const std::size_t eligible = relation.terms.size();
    if (strength == Strength::soft) {
        relation.terms.push_back({addError(), -1});
        relation.terms.push_back({addError(), 1});
    }
    if (unknown >= 0) {
        define(unknown, std::move(relation));
    } else if (!eliminate(relation, eligible)) {
        // It cannot hold with the others as they stand: what it lacks becomes an error to minimise.
        const double sign = relation.constant.at(parameters_) >= 0 ? -1 : 1;
        if (strength == Strength::hard)
            relation.terms.push_back({addError(), sign});
        const Variable error =
            relation.terms[sign < 0 ? eligible : relation.terms.size() - 1].variable;
        makeBasic(error, solvedFor(error, std::move(relation)));
    }
    return std::nullopt;
}

std::optional<Affine> Tableau::addInequality(const LinearExpression& expression,
                                             Strength strength) {
    LinearExpression relation = expression;
    Variable unknown = freshVariable(relation);
    if (unknown < 0) {
        relation = expanded(expression);
        if (relation.terms.empty())
            return relation.constant;
        unknown = undefinedVariable(relation);
    }
    const std::size_t eligible = relation.terms.size();
    const Variable surplus = addVariable(Domain::notNegative);
    relation.terms.push_back({surplus, -1});
    if (strength == Strength::soft)
        relation.terms.push_back({addError(), 1});
    if (unknown >= 0) {
        define(unknown, std::move(relation));
    } else if (relation.constant.at(parameters_) >= -kFeasibilityTolerance) {
        makeBasic(surplus, solvedFor(surplus, std::move(relation)));
    } else if (!eliminate(relation, eligible)) {
        if (strength == Strength::hard)
            relation.terms.push_back({addError(), 1});
        const Variable error = relation.terms.back().variable;
        makeBasic(error, solvedFor(error, std::move(relation)));
    }
    return std::nullopt;
}

// The newest undefined variable that no definition mentions: it can be defined by the relation as
// it stands, without expanding anything.
Variable Tableau::freshVariable(const LinearExpression& expression) const {
    for (auto term = expression.terms.rbegin(); term != expression.terms.rend(); ++term) {
        const Unknown& unknown = unknowns_[term->variable];
        if (unknown.role == Role::undefined && !unknown.mentioned &&
            std::abs(term->coefficient) >= kPivotTolerance)
            return term->variable;
    }
    return -1;
}

// The undefined variable with the largest coefficient, the newest of several.
Variable Tableau::undefinedVariable(const LinearExpression& expression) const {
    Variable best = -1;
    double largest = 0;
    for (const Term& term : expression.terms) {
        if (unknowns_[term.variable].role == Role::undefined &&
            std::abs(term.coefficient) >= largest) {
            best = term.variable;
            largest = std::abs(term.coefficient);
        }
    }
    return best;
}

void Tableau::define(Variable variable, LinearExpression relation) {
    Unknown& unknown = unknowns_[variable];
    LinearExpression expression = shortened(solvedFor(variable, std::move(relation)));
    for (const Term& term : expression.terms)
        unknowns_[term.variable].mentioned = true;
    unknown.role = Role::defined;
    unknown.row = static_cast<int>(rows_.size());
    rows_.push_back({.owner = variable, .expression = std::move(expression)});
}

// Solves "relation = 0" for one of its first `eligible` variables, if some can take the value that
// the relation asks for without making another negative. Of those, the one in the fewest rows.
bool Tableau::eliminate(const LinearExpression& relation, std::size_t eligible) {
    const double constant = relation.constant.at(parameters_);
    std::vector<std::pair<std::size_t, Term>> candidates;
    for (std::size_t i = 0; i < eligible; ++i) {
        const Term& term = relation.terms[i];
        if (std::abs(term.coefficient) >= kPivotTolerance &&
            -constant / term.coefficient >= -kFeasibilityTolerance)
            candidates.emplace_back(columns_[term.variable].size(), term);
    }
    const std::size_t tried = std::min(candidates.size(), kMostCandidates);
    std::partial_sort(candidates.begin(), candidates.begin() + static_cast<std::ptrdiff_t>(tried),
                      candidates.end(), [](const auto& a, const auto& b) {
                          return a.first != b.first ? a.first < b.first
                                                    : a.second.variable > b.second.variable;
                      });
    for (std::size_t i = 0; i < tried; ++i) {
        const Term& term = candidates[i].second;
        if (canRise(term.variable, -constant / term.coefficient)) {
            makeBasic(term.variable, solvedFor(term.variable, relation));
            return true;
        }
    }
    return false;
}

// Whether a nonbasic variable may take the value `amount` instead of 0, all else being equal.
bool Tableau::canRise(Variable variable, double amount) const {
    for (const int row : columns_[variable]) {
        const double after = value(row) + amount * coefficient(variable, row);
        if (!(after >= -kFeasibilityTolerance) && after < value(row))
            return false;
    }
    return true;
}

// Gives a nonbasic variable its own row.
void Tableau::makeBasic(Variable variable, LinearExpression expression) {
    substitute(variable, expression);
    const int row = static_cast<int>(rows_.size());
    Unknown& unknown = unknowns_[variable];
    unknown.role = Role::basic;
    unknown.row = row;
    for (const Term& term : expression.terms)
        columns_[term.variable].push_back(row);
    rows_.push_back({.owner = variable, .expression = std::move(expression)});
}

void Tableau::visit(Variable variable) {
    const auto enter = [this](Variable v) {
        if (unknowns_[v].row >= 0 && !std::exchange(visited_[v], 1))
            path_.emplace_back(v, 0);
    };
    // Depth first, without recursion: chains of definitions are as long as rows of boxes.
    enter(variable);
    while (!path_.empty()) {
        auto& [current, next] = path_.back();
        const Row& row = rowOf(current);
        if (next < row.expression.terms.size()) {
            enter(row.expression.terms[next++].variable);
        } else {
            order_.push_back(current);
            path_.pop_back();
        }
    }
}

void Tableau::visitAll() {
    for (const Row& row : rows_)
        visit(row.owner);
}

void Tableau::clearVisits() {
    for (const Variable variable : order_)
        visited_[variable] = 0;
    order_.clear();
}

void Tableau::addToSum(Variable variable, double coefficient) {
    sums_[variable] += coefficient;
    if (!std::exchange(summed_[variable], 1))
        summedOrder_.push_back(variable);
}

// Takes what has been added up and is still unknown, in ascending order of variables.
void Tableau::takeSum(std::vector<Term>& terms) {
    std::sort(summedOrder_.begin(), summedOrder_.end());
    for (const Variable variable : summedOrder_) {
        const double sum = std::exchange(sums_[variable], 0);
        summed_[variable] = 0;
        if (std::abs(sum) > kCoefficientTolerance && unknowns_[variable].role != Role::frozen)
            terms.push_back({variable, sum});
    }
    summedOrder_.clear();
}

// In terms of undefined and nonbasic variables alone.
LinearExpression Tableau::expanded(const LinearExpression& expression) {
    LinearExpression result;
    result.constant = expression.constant;
    for (const Term& term : expression.terms) {
        addToSum(term.variable, term.coefficient);
        visit(term.variable);
    }
    for (auto variable = order_.rbegin(); variable != order_.rend(); ++variable) {
        const double factor = std::exchange(sums_[*variable], 0);
        const LinearExpression& row = rowOf(*variable).expression;
        for (const Term& term : row.terms)
            addToSum(term.variable, factor * term.coefficient);
        result.constant.add(row.constant, factor);
    }
    clearVisits();
    takeSum(result.terms);
    return result;
}

// With short rows put in for their owners; the expression as it is if that makes it long.
LinearExpression Tableau::shortened(LinearExpression expression) {
    LinearExpression result;
    result.constant = expression.constant;
    for (const Term& term : expression.terms) {
        const int row = unknowns_[term.variable].row;
        const LinearExpression* inner = row < 0 ? nullptr : &rows_[row].expression;
        if (!inner || inner->terms.size() > kShort) {
            addToSum(term.variable, term.coefficient);
            continue;
        }
        for (const Term& innerTerm : inner->terms)
            addToSum(innerTerm.variable, term.coefficient * innerTerm.coefficient);
        result.constant.add(inner->constant, term.coefficient);
    }
    takeSum(result.terms);
    return result.terms.size() <= 2 * kShort ? result : std::move(expression);
}

std::vector<bool> Tableau::determined() {
    std::vector<bool> result(unknowns_.size());
    for (std::size_t i = 0; i < unknowns_.size(); ++i)
        result[i] = unknowns_[i].role == Role::frozen;
    visitAll();
    for (const Variable variable : order_) {
        const auto& terms = rowOf(variable).expression.terms;
        result[variable] = std::all_of(terms.begin(), terms.end(),
                                       [&](const Term& term) { return result[term.variable]; });
    }
    clearVisits();
    return result;
}

void Tableau::finish() {
    steps_.clear();
    stepTerms_.clear();
    visitAll();
    steps_.reserve(order_.size());
    for (const Variable variable : order_) {
        const Row& row = rowOf(variable);
        for (const Term& term : row.expression.terms) {
            if (unknowns_[term.variable].row >= 0)
                stepTerms_.push_back(term);
        }
        steps_.push_back({variable, stepTerms_.size(), row.expression.constant});
    }
    clearVisits();
}

bool Tableau::holdsFor(const Parameters& parameters) const {
    return std::all_of(rows_.begin(), rows_.end(), [&](const Row& row) {
        return unknowns_[row.owner].role != Role::basic ||
               row.expression.constant.at(parameters) >= -kFeasibilityTolerance;
    });
}

void Tableau::evaluate(const Parameters& parameters, std::vector<double>& values) const {
    values.assign(unknowns_.size(), 0);
    std::size_t at = 0;
    for (const Step& step : steps_) {
        double value = step.constant.at(parameters);
        for (; at < step.termsEnd; ++at)
            value += stepTerms_[at].coefficient * values[stepTerms_[at].variable];
        values[step.variable] = value;
    }
}

} // namespace tesmar
