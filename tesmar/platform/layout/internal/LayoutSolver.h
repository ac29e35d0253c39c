// Finds numbers that satisfy linear equations and inequalities with strict priorities. It knows
// neither items nor attributes. The method:
//
// 1. Each x, y, width and height is a variable, each constraint a relation "expression = 0" or
//    "expression >= 0". The tableau (see Tableau.h) keeps all relations solved: it expresses some
//    variables by others, which are 0 in the present solution.
// 2. A relation that is not required may be violated. The amount is a variable of its own, an error
//    variable, which is never negative. Minimising the sum of the error variables satisfies the
//    relations as far as possible. This is a linear program; the simplex method solves it.
// 3. Priorities are strict because they are minimised one after the other, the highest first. After
//    each minimisation, all variables whose increase would worsen the result are fixed at 0.
//    Later steps cannot undo it. If required relations conflict, each of them is minimised
//    alone in this way, in the order of adding, so that the last one is violated.
// 4. Tie-breaks decide what the relations leave open, also one minimisation after the other: first
//    each extent becomes as small as possible, then each position as close to 0 as possible. So the
//    solution is always the same one.
// 5. Constants depend on the root's size (the parameters). The minimisations above have chosen
//    which variables are 0. That choice stays optimal for every root size at which it is feasible:
//    no width, height, surplus or error becomes negative. So a resize checks feasibility and
//    evaluates each variable. Only if the check fails are steps 1 to 4 repeated.
#pragma once

#include "tesmar/platform/layout/internal/Tableau.h"
#include "tesmar/platform/layout/internal/linear.h"

#include <span>
#include <vector>

namespace tesmar {

class LayoutSolver {
  public:
    enum class Relation : std::uint8_t { equal, notNegative };

    // Removes all variables and relations.
    void clear();

    // A variable that may take any value.
    Variable addVariable() { return add(Tableau::Domain::free); }
    // A width or height: never negative, even where that violates required relations.
    Variable addExtent() { return add(Tableau::Domain::notNegative); }

    // Adds expression = 0 or expression >= 0. The terms may have any order and repeat variables. A
    // priority of 1000 or more is required, one of 0 or less has no effect. conflicts() returns the
    // `tag`, 0 or more, of a required relation that is violated.
    void addConstraint(const LinearExpression& expression, Relation relation, double priority,
                       int tag);
    // Tie-breaks: all extents in the order of adding, then all positions in the order of adding.
    void preferSmallest(Variable extent) { preferSmallest_.push_back(extent); }
    void preferNearZero(Variable position) { preferNearZero_.push_back(position); }

    // Computes the values for a root size. Allocates nothing if nothing was added since the last
    // call and the last solution's choice is feasible for this size too.
    void solve(const Parameters& parameters);

    // Finite, clamped to the largest coordinate.
    double value(Variable variable) const { return values_[variable]; }
    // The tags of the required relations that are violated, in ascending order.
    std::span<const int> conflicts() const { return conflicts_; }

  private:
    struct Constraint {
        std::size_t termsBegin; // in terms_
        std::size_t termsEnd;
        Affine constant;
        double priority;
        int tag;
        Relation relation;
    };
    // What is left of a required relation when no variable in it can change any more: it is
    // satisfied if `value` is 0 (or not negative) for the present parameters.
    struct Residual {
        Affine value;
        Relation relation;
        int tag;
    };
    enum class Order { sparsestFirst, asAdded };

    Variable add(Tableau::Domain domain);
    bool isSatisfied(const Residual& residual) const;
    bool allSatisfied(const std::vector<Residual>& residuals) const;
    bool solveRequired(Order order);
    std::optional<Affine> addToTableau(const Constraint& constraint, Tableau::Strength strength);
    void addRequired(const Constraint& constraint);
    void solvePriorities();
    void applyTieBreaks();
    void build();
    void evaluate();

    std::vector<Tableau::Domain> variables_;
    std::vector<Term> terms_;
    std::vector<Constraint> required_;
    std::vector<Constraint> optional_;
    std::vector<Variable> preferSmallest_;
    std::vector<Variable> preferNearZero_;

    Parameters parameters_{};
    Tableau tableau_;
    bool built_ = false;
    Order order_ = Order::sparsestFirst;
    LinearExpression expression_; // scratch
    std::vector<Residual> residuals_;
    std::vector<Residual> constantRelations_; // relations that were added without variables
    std::vector<double> values_;
    std::vector<int> conflicts_;
};

} // namespace tesmar
