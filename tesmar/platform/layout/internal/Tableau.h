// A set of linear relations in solved form, and the minimisation of linear costs over it.
//
// Every unknown has one of these roles:
//   undefined   free, and in no relation that would tie it yet
//   defined     free, and set once and for all to an expression of others (expressions may refer to
//               one another, never in a circle, and are expanded only when needed: that keeps long
//               chains of boxes sparse)
//   nonbasic    not negative, and 0 in the present solution
//   basic       not negative, and the owner of a row: an expression of nonbasic unknowns only
//   frozen      not negative, and 0 for good, since anything else would cost
//
// Rows hold for all values of the parameters; the present solution (all nonbasic unknowns at 0) is
// one as long as no basic unknown is negative. Whether it costs the least depends on no parameter:
// that is why a new parameter needs only an evaluation.
#pragma once

#include "tesmar/platform/layout/internal/linear.h"

#include <cstdint>
#include <optional>

namespace tesmar {

class Tableau {
  public:
    enum class Domain : std::uint8_t { free, notNegative };
    // Whether a relation may be off: a hard one only when it cannot hold here, a soft one whenever
    // that is worth it. Being off is charged to the next minimise().
    enum class Strength : std::uint8_t { hard, soft };

    // Forgets everything. Solutions are looked for under `parameters`; about `expectedVariables`
    // will be added.
    void reset(const Parameters& parameters, std::size_t expectedVariables);

    Variable addVariable(Domain domain);

    // expression = 0, and expression >= 0. Where nothing in the expression can move any more the
    // relation is left out and the expression's value answered: it holds or it does not.
    std::optional<Affine> addEquality(const LinearExpression& expression, Strength strength);
    std::optional<Affine> addInequality(const LinearExpression& expression, Strength strength);

    // Adds a variable that is not negative to the cost of the next minimise().
    void charge(Variable variable);
    // Makes the charged cost as small as possible and keeps it so from now on. Answers what it is.
    Affine minimise();

    // For every variable whether nothing is left to decide about it.
    std::vector<bool> determined();

    // After the last minimise(), before evaluate().
    void finish();
    // Whether the present solution is one for these parameters, too.
    bool holdsFor(const Parameters& parameters) const;
    // The value of every variable; those that nothing decided are 0. Allocates nothing once
    // `values` is large enough.
    void evaluate(const Parameters& parameters, std::vector<double>& values) const;

  private:
    enum class Role : std::uint8_t { undefined, defined, nonbasic, basic, frozen };
    struct Unknown {
        Role role;
        bool mentioned = false; // in a definition
        int row = -1;           // of a defined or basic one
    };
    struct Row {
        Variable owner;
        LinearExpression expression;
        bool holdsFrozen = false;
    };
    struct Step { // of an evaluation: a row without the terms that are 0
        Variable variable;
        std::size_t termsEnd;
        Affine constant;
    };

    // Taking relations in.
    Variable addError();
    Variable freshVariable(const LinearExpression& expression) const;
    Variable undefinedVariable(const LinearExpression& expression) const;
    void define(Variable variable, LinearExpression relation);
    bool eliminate(const LinearExpression& relation, std::size_t eligible);
    bool canRise(Variable variable, double amount) const;
    void makeBasic(Variable variable, LinearExpression expression);

    // Expanding definitions.
    void visit(Variable variable);
    void visitAll();
    void clearVisits();
    void addToSum(Variable variable, double coefficient);
    void takeSum(std::vector<Term>& terms);
    LinearExpression expanded(const LinearExpression& expression);
    LinearExpression shortened(LinearExpression expression);

    // The simplex method.
    const Row& rowOf(Variable variable) const { return rows_[unknowns_[variable].row]; }
    double value(int row) const { return rows_[row].expression.constant.at(parameters_); }
    double coefficient(Variable variable, int row) const;
    void addScaled(LinearExpression& target, const LinearExpression& source, double factor,
                   int row);
    void substitute(Variable variable, const LinearExpression& replacement);
    void pivot(Variable entering, int row);
    Variable enteringVariable(bool cautious) const;
    int leavingRow(Variable entering, bool cautious) const;
    void addCost(Variable variable, double coefficient);
    void freeze(Variable variable);
    void dropFrozenTerms();

    Parameters parameters_{};
    std::vector<Unknown> unknowns_;
    std::vector<Row> rows_;
    // For each nonbasic variable the rows of the basic ones that hold it, and maybe others.
    std::vector<std::vector<int>> columns_;

    std::vector<double> costs_;     // by variable
    std::vector<Variable> charged_; // all that have a cost; may repeat
    Affine cost_;

    // Scratch, in its resting state (zeros, empty) between uses.
    std::vector<double> sums_; // by variable
    std::vector<std::uint8_t> summed_;
    std::vector<Variable> summedOrder_;
    std::vector<std::uint8_t> visited_; // by variable
    std::vector<Variable> order_;       // visited ones with rows, those referred to first
    std::vector<std::pair<Variable, std::size_t>> path_;
    std::vector<Term> merged_;
    std::vector<int> rowsWithFrozen_;

    std::vector<Step> steps_;
    std::vector<Term> stepTerms_;
};

} // namespace tesmar
