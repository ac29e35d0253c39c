// Adding relations, expanding definitions and evaluating; TableauSimplex.cpp has the simplex
// method.
#include "tesmar/platform/layout/internal/Tableau.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tesmar {
namespace {

// Rows with up to this many terms are inlined into definitions that refer to their owners.
constexpr std::size_t kMaxInlinedTerms = 4;
// How many variables makeFeasibleVariableBasic() tries.
constexpr std::size_t kMaxCandidates = 8;

// Returns expression = 0 solved for one of its variables.
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
    variables_.clear();
    rows_.clear();
    columns_.clear();
    reducedCosts_.clear();
    objectiveVariables_.clear();
    objectiveConstant_ = {};
    // Also the scratch memory: an exception may have left something in it.
    sums_.clear();
    isSummed_.clear();
    summedVariables_.clear();
    isVisited_.clear();
    dependencyOrder_.clear();
    path_.clear();
    rowsWithFixedTerms_.clear();
    evaluationSteps_.clear();
    evaluationTerms_.clear();
    variables_.reserve(expectedVariables);
    rows_.reserve(expectedVariables);
    columns_.reserve(expectedVariables);
    reducedCosts_.reserve(expectedVariables);
    sums_.reserve(expectedVariables);
}

Variable Tableau::addVariable(Domain domain) {
    variables_.push_back({domain == Domain::free ? Role::free : Role::nonbasic});
    columns_.emplace_back();
    reducedCosts_.push_back(0);
    sums_.push_back(0);
    isSummed_.push_back(0);
    isVisited_.push_back(0);
    return static_cast<Variable>(variables_.size()) - 1;
}

Variable Tableau::addErrorVariable() {
    const Variable error = addVariable(Domain::notNegative);
    addReducedCost(error, 1);
    return error;
}

std::optional<Affine> Tableau::addEquality(const LinearExpression& expression, Strength strength) {
    LinearExpression relation = expression;
    const Variable freeVariable = findFreeVariable(relation);
    if (relation.terms.empty())
        return relation.constant;
    const std::size_t eligible = relation.terms.size();
    if (strength == Strength::soft) {
        relation.terms.push_back({addErrorVariable(), -1});
        relation.terms.push_back({addErrorVariable(), 1});
    }
    if (freeVariable >= 0) {
        define(freeVariable, std::move(relation));
    } else if (!makeFeasibleVariableBasic(relation, eligible)) {
        // The present solution violates the relation: an error variable takes up the difference.
        const double sign = relation.constant.at(parameters_) >= 0 ? -1 : 1;
        if (strength == Strength::hard)
            relation.terms.push_back({addErrorVariable(), sign});
        const Variable error =
            relation.terms[sign < 0 ? eligible : relation.terms.size() - 1].variable;
        makeBasic(error, solvedFor(error, std::move(relation)));
    }
    return std::nullopt;
}

std::optional<Affine> Tableau::addInequality(const LinearExpression& expression,
                                             Strength strength) {
    LinearExpression relation = expression;
    const Variable freeVariable = findFreeVariable(relation);
    if (relation.terms.empty())
        return relation.constant;
    const std::size_t eligible = relation.terms.size();
    const Variable surplus = addVariable(Domain::notNegative);
    relation.terms.push_back({surplus, -1});
    if (strength == Strength::soft)
        relation.terms.push_back({addErrorVariable(), 1});
    if (freeVariable >= 0) {
        define(freeVariable, std::move(relation));
    } else if (relation.constant.at(parameters_) >= -kFeasibilityTolerance) {
        makeBasic(surplus, solvedFor(surplus, std::move(relation)));
    } else if (!makeFeasibleVariableBasic(relation, eligible)) {
        if (strength == Strength::hard)
            relation.terms.push_back({addErrorVariable(), 1});
        const Variable error = relation.terms.back().variable;
        makeBasic(error, solvedFor(error, std::move(relation)));
    }
    return std::nullopt;
}

// Returns the free variable that the relation should define, or -1 if it has none. Expands the
// relation, unless it can define the variable as it is.
Variable Tableau::findFreeVariable(LinearExpression& relation) {
    const Variable unreferenced = unreferencedFreeVariable(relation);
    if (unreferenced >= 0)
        return unreferenced;
    relation = expanded(relation);
    return largestFreeVariable(relation);
}

// Returns the newest free variable that no definition refers to, or -1. The relation can define it
// without being expanded: no cycle of definitions can arise.
Variable Tableau::unreferencedFreeVariable(const LinearExpression& expression) const {
    for (auto term = expression.terms.rbegin(); term != expression.terms.rend(); ++term) {
        const VariableState& state = variables_[term->variable];
        if (state.role == Role::free && !state.isReferenced &&
            std::abs(term->coefficient) >= kPivotTolerance)
            return term->variable;
    }
    return -1;
}

// Returns the free variable with the largest coefficient, the newest of several, or -1.
Variable Tableau::largestFreeVariable(const LinearExpression& expression) const {
    Variable best = -1;
    double largest = 0;
    for (const Term& term : expression.terms) {
        if (variables_[term.variable].role == Role::free && std::abs(term.coefficient) >= largest) {
            best = term.variable;
            largest = std::abs(term.coefficient);
        }
    }
    return best;
}

void Tableau::define(Variable variable, LinearExpression relation) {
    VariableState& state = variables_[variable];
    LinearExpression expression = withShortRowsInlined(solvedFor(variable, std::move(relation)));
    for (const Term& term : expression.terms)
        variables_[term.variable].isReferenced = true;
    state.role = Role::defined;
    state.row = static_cast<int>(rows_.size());
    rows_.push_back({.owner = variable, .expression = std::move(expression)});
}

// Makes one of the first `eligible` variables basic, with relation = 0 as its row, if the solution
// stays feasible, and returns whether one was found. Prefers variables that are in few rows.
bool Tableau::makeFeasibleVariableBasic(const LinearExpression& relation, std::size_t eligible) {
    const double constant = relation.constant.at(parameters_);
    std::vector<std::pair<std::size_t, Term>> candidates;
    for (std::size_t i = 0; i < eligible; ++i) {
        const Term& term = relation.terms[i];
        if (std::abs(term.coefficient) >= kPivotTolerance &&
            -constant / term.coefficient >= -kFeasibilityTolerance)
            candidates.emplace_back(columns_[term.variable].size(), term);
    }
    const std::size_t tried = std::min(candidates.size(), kMaxCandidates);
    std::partial_sort(candidates.begin(), candidates.begin() + static_cast<std::ptrdiff_t>(tried),
                      candidates.end(), [](const auto& a, const auto& b) {
                          return a.first != b.first ? a.first < b.first
                                                    : a.second.variable > b.second.variable;
                      });
    for (std::size_t i = 0; i < tried; ++i) {
        const Term& term = candidates[i].second;
        if (canIncreaseTo(term.variable, -constant / term.coefficient)) {
            makeBasic(term.variable, solvedFor(term.variable, relation));
            return true;
        }
    }
    return false;
}

// Whether the solution stays feasible if a nonbasic variable takes the value `amount` instead of 0.
bool Tableau::canIncreaseTo(Variable variable, double amount) const {
    for (const int row : columns_[variable]) {
        const double after = value(row) + amount * coefficient(variable, row);
        if (!(after >= -kFeasibilityTolerance) && after < value(row))
            return false;
    }
    return true;
}

// Makes a nonbasic variable basic, with a new row.
void Tableau::makeBasic(Variable variable, LinearExpression expression) {
    substitute(variable, expression);
    const int row = static_cast<int>(rows_.size());
    variables_[variable].role = Role::basic;
    variables_[variable].row = row;
    for (const Term& term : expression.terms)
        columns_[term.variable].push_back(row);
    rows_.push_back({.owner = variable, .expression = std::move(expression)});
}

// Appends to dependencyOrder_ the variable, if it has a row, and all owners that it depends on.
void Tableau::collectDependencies(Variable variable) {
    const auto enter = [this](Variable v) {
        if (variables_[v].row >= 0 && !std::exchange(isVisited_[v], 1))
            path_.emplace_back(v, 0);
    };
    // Depth first, without recursion: a chain of definitions can be as long as a row of views.
    enter(variable);
    while (!path_.empty()) {
        auto& [current, next] = path_.back();
        const Row& row = rowOf(current);
        if (next < row.expression.terms.size()) {
            enter(row.expression.terms[next++].variable);
        } else {
            dependencyOrder_.push_back(current);
            path_.pop_back();
        }
    }
}

void Tableau::collectAllDependencies() {
    for (const Row& row : rows_)
        collectDependencies(row.owner);
}

void Tableau::clearDependencies() {
    for (const Variable variable : dependencyOrder_)
        isVisited_[variable] = 0;
    dependencyOrder_.clear();
}

void Tableau::addToSum(Variable variable, double coefficient) {
    sums_[variable] += coefficient;
    if (!std::exchange(isSummed_[variable], 1))
        summedVariables_.push_back(variable);
}

// Moves the sums of addToSum() into `terms`, in ascending order of variables, without zeros and
// fixed variables.
void Tableau::moveSumTo(std::vector<Term>& terms) {
    std::sort(summedVariables_.begin(), summedVariables_.end());
    for (const Variable variable : summedVariables_) {
        const double sum = std::exchange(sums_[variable], 0);
        isSummed_[variable] = 0;
        if (std::abs(sum) > kCoefficientTolerance && variables_[variable].role != Role::fixed)
            terms.push_back({variable, sum});
    }
    summedVariables_.clear();
}

// Returns the expression in terms of free and nonbasic variables only.
LinearExpression Tableau::expanded(const LinearExpression& expression) {
    LinearExpression result;
    result.constant = expression.constant;
    for (const Term& term : expression.terms) {
        addToSum(term.variable, term.coefficient);
        collectDependencies(term.variable);
    }
    for (auto variable = dependencyOrder_.rbegin(); variable != dependencyOrder_.rend();
         ++variable) {
        const double factor = std::exchange(sums_[*variable], 0);
        const LinearExpression& row = rowOf(*variable).expression;
        for (const Term& term : row.terms)
            addToSum(term.variable, factor * term.coefficient);
        result.constant.add(row.constant, factor);
    }
    clearDependencies();
    moveSumTo(result.terms);
    return result;
}

// Replaces owners of short rows by their rows. Returns the expression unchanged if that would make
// it long.
LinearExpression Tableau::withShortRowsInlined(LinearExpression expression) {
    LinearExpression result;
    result.constant = expression.constant;
    for (const Term& term : expression.terms) {
        const int row = variables_[term.variable].row;
        const LinearExpression* inner = row < 0 ? nullptr : &rows_[row].expression;
        if (!inner || inner->terms.size() > kMaxInlinedTerms) {
            addToSum(term.variable, term.coefficient);
            continue;
        }
        for (const Term& innerTerm : inner->terms)
            addToSum(innerTerm.variable, term.coefficient * innerTerm.coefficient);
        result.constant.add(inner->constant, term.coefficient);
    }
    moveSumTo(result.terms);
    return result.terms.size() <= 2 * kMaxInlinedTerms ? result : std::move(expression);
}

std::vector<bool> Tableau::determinedVariables() {
    std::vector<bool> result(variables_.size());
    for (std::size_t i = 0; i < variables_.size(); ++i)
        result[i] = variables_[i].role == Role::fixed;
    collectAllDependencies();
    for (const Variable variable : dependencyOrder_) {
        const auto& terms = rowOf(variable).expression.terms;
        result[variable] = std::all_of(terms.begin(), terms.end(),
                                       [&](const Term& term) { return result[term.variable]; });
    }
    clearDependencies();
    return result;
}

void Tableau::compileEvaluation() {
    evaluationSteps_.clear();
    evaluationTerms_.clear();
    collectAllDependencies();
    evaluationSteps_.reserve(dependencyOrder_.size());
    for (const Variable variable : dependencyOrder_) {
        const Row& row = rowOf(variable);
        for (const Term& term : row.expression.terms) {
            if (variables_[term.variable].row >= 0)
                evaluationTerms_.push_back(term);
        }
        evaluationSteps_.push_back({variable, evaluationTerms_.size(), row.expression.constant});
    }
    clearDependencies();
}

bool Tableau::isFeasibleFor(const Parameters& parameters) const {
    return std::all_of(rows_.begin(), rows_.end(), [&](const Row& row) {
        return variables_[row.owner].role != Role::basic ||
               row.expression.constant.at(parameters) >= -kFeasibilityTolerance;
    });
}

void Tableau::evaluate(const Parameters& parameters, std::vector<double>& values) const {
    values.assign(variables_.size(), 0);
    std::size_t at = 0;
    for (const EvaluationStep& step : evaluationSteps_) {
        double value = step.constant.at(parameters);
        for (; at < step.termsEnd; ++at)
            value += evaluationTerms_[at].coefficient * values[evaluationTerms_[at].variable];
        values[step.variable] = value;
    }
}

} // namespace tesmar
