// A system of linear relations in solved form, and the simplex method, which minimises a linear
// objective over it. See LayoutSolver.h for how the layout uses it.
//
// The tableau is a list of rows. A row expresses one variable, its owner, by others:
//
//     owner = constant + coefficient * variable + ...
//
// Each variable has one role:
//
//     free      may have any value, and no relation determines it yet
//     defined   may have any value, and owns a row that never changes its owner. Such a definition
//               may refer to other defined variables, never in a cycle; it is expanded only where
//               needed, which keeps long chains of boxes sparse.
//     nonbasic  not negative, owns no row, and is 0 in the present solution
//     basic     not negative, and owns a row of nonbasic variables only
//     fixed     not negative, and 0 for good: another value would increase an objective that was
//               minimised before
//
// Since nonbasic variables are 0, the constant of a basic variable's row is its value. The solution
// is feasible if no such value is negative. A pivot exchanges a nonbasic (entering) variable for a
// basic (leaving) one: the row is solved for the entering variable. The objective is an expression
// of nonbasic variables, too; its coefficients are the reduced costs. As long as one of them is
// negative, letting that variable enter improves the objective; when none is, the solution is
// optimal.
//
// An inequality becomes an equation by a surplus variable: expression - surplus = 0. A relation
// that may be violated contains an error variable, the amount by which it is, which the next
// minimise() makes as small as possible.
//
// Constants are functions of parameters. Reduced costs do not depend on them: a solution that is
// optimal for some parameters is optimal for all parameters for which it is feasible.
#pragma once

#include "tesmar/platform/layout/internal/linear.h"

#include <cstdint>
#include <optional>

namespace tesmar {

class Tableau {
  public:
    enum class Domain : std::uint8_t { free, notNegative };
    // A hard relation gets an error variable only if the present solution cannot be adapted to
    // satisfy it, a soft relation always.
    enum class Strength : std::uint8_t { hard, soft };

    // Removes everything. The simplex method will work for `parameters`. `expectedVariables` only
    // reserves memory.
    void reset(const Parameters& parameters, std::size_t expectedVariables);

    Variable addVariable(Domain domain);

    // Adds expression = 0 or expression >= 0. If every variable of the expression is determined by
    // earlier relations, adds nothing and returns the expression's value, which may or may not
    // satisfy the relation.
    std::optional<Affine> addEquality(const LinearExpression& expression, Strength strength);
    std::optional<Affine> addInequality(const LinearExpression& expression, Strength strength);

    // Adds a variable that must not be negative to the objective of the next minimise().
    void addToObjective(Variable variable);
    // Minimises the sum of the error variables and of addToObjective() since the last call, fixes
    // all variables that could increase it later, and returns the minimum.
    Affine minimise();

    // For every variable, whether no later minimise() can change its value.
    std::vector<bool> determinedVariables();

    // Prepares evaluate(); call it after the last minimise().
    void compileEvaluation();
    // Whether the present solution is feasible for these parameters too.
    bool isFeasibleFor(const Parameters& parameters) const;
    // Computes the value of every variable; undetermined ones are 0. Allocates nothing once
    // `values` is large enough.
    void evaluate(const Parameters& parameters, std::vector<double>& values) const;

  private:
    enum class Role : std::uint8_t { free, defined, nonbasic, basic, fixed };
    struct VariableState {
        Role role;
        bool isReferenced = false; // by a definition
        int row = -1;              // of a defined or basic variable
    };
    struct Row {
        Variable owner;
        LinearExpression expression;
        bool hasFixedTerms = false;
    };
    // One row in the order of evaluation, without the terms that are 0.
    struct EvaluationStep {
        Variable variable;
        std::size_t termsEnd; // in evaluationTerms_; they begin where the last step's end
        Affine constant;
    };
    // Which variables a pivot exchanges. largestCoefficient converges fastest but can cycle in
    // degenerate systems; lowestIndex (Bland's rule) cannot.
    enum class PivotRule { largestCoefficient, lowestIndex };

    // Adding relations.
    Variable addErrorVariable();
    Variable findFreeVariable(LinearExpression& relation);
    Variable unreferencedFreeVariable(const LinearExpression& expression) const;
    Variable largestFreeVariable(const LinearExpression& expression) const;
    void define(Variable variable, LinearExpression relation);
    bool makeFeasibleVariableBasic(const LinearExpression& relation, std::size_t eligible);
    bool canIncreaseTo(Variable variable, double amount) const;
    void makeBasic(Variable variable, LinearExpression expression);

    // Expanding definitions.
    void collectDependencies(Variable variable);
    void collectAllDependencies();
    void clearDependencies();
    void addToSum(Variable variable, double coefficient);
    void moveSumTo(std::vector<Term>& terms);
    LinearExpression expanded(const LinearExpression& expression);
    LinearExpression withShortRowsInlined(LinearExpression expression);

    // The simplex method.
    const Row& rowOf(Variable variable) const { return rows_[variables_[variable].row]; }
    double value(int row) const { return rows_[row].expression.constant.at(parameters_); }
    double coefficient(Variable variable, int row) const;
    void addScaled(LinearExpression& target, const LinearExpression& source, double factor,
                   int row);
    void substitute(Variable variable, const LinearExpression& replacement);
    void pivot(Variable entering, int row);
    Variable enteringVariable(PivotRule rule) const;
    int leavingRow(Variable entering, PivotRule rule) const;
    void addReducedCost(Variable variable, double cost);
    void fixAtZero(Variable variable);
    void removeFixedTerms();

    Parameters parameters_{};
    std::vector<VariableState> variables_;
    std::vector<Row> rows_;
    // For each nonbasic variable the rows of basic variables that contain it. May also list rows
    // that no longer do.
    std::vector<std::vector<int>> columns_;

    std::vector<double> reducedCosts_;         // by variable
    std::vector<Variable> objectiveVariables_; // all with a reduced cost; may have duplicates
    Affine objectiveConstant_;

    // Scratch memory, zero or empty between uses.
    std::vector<double> sums_; // by variable
    std::vector<std::uint8_t> isSummed_;
    std::vector<Variable> summedVariables_;
    std::vector<std::uint8_t> isVisited_;   // by variable
    std::vector<Variable> dependencyOrder_; // visited owners; each after those it refers to
    std::vector<std::pair<Variable, std::size_t>> path_;
    std::vector<Term> inserted_;
    std::vector<int> rowsWithFixedTerms_;

    std::vector<EvaluationStep> evaluationSteps_;
    std::vector<Term> evaluationTerms_;
};

} // namespace tesmar
