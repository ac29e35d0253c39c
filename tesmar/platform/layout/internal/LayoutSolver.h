// Exact linear constraints with strict priorities: a higher priority wins outright over any number
// of lower ones; within one priority the sum of what the relations are off by is smallest. Required
// relations that conflict give way in the opposite order of their adding, each by as little as it
// can. What all that leaves open, a list of wishes decides, one after the other.
//
// Knows numbers only, neither items nor attributes.
#pragma once

#include "tesmar/platform/layout/internal/Tableau.h"
#include "tesmar/platform/layout/internal/linear.h"

#include <span>
#include <vector>

namespace tesmar {

class LayoutSolver {
  public:
    enum class Relation : std::uint8_t { equal, notNegative };

    // Forgets everything.
    void clear();

    // May take any value.
    Variable addVariable() { return add(Tableau::Domain::free); }
    // An extent: never negative, whatever else gives way.
    Variable addExtent() { return add(Tableau::Domain::notNegative); }

    // expression = 0, or expression >= 0. The terms may come in any order and repeat. `tag` is what
    // conflicts() calls a required one (a priority of 1000 or more); a priority of 0 or less is no
    // wish at all.
    void addConstraint(const LinearExpression& expression, Relation relation, double priority,
                       int tag);
    // What decides freedom that is left, in the order of adding, the extents first.
    void wishSmallest(Variable extent) { smallest_.push_back(extent); }
    void wishNearZero(Variable variable) { nearZero_.push_back(variable); }

    // Finds the values for these parameters. After another solve with nothing added since, this is
    // only an evaluation as long as the same relations bind; then it allocates nothing.
    void solve(const Parameters& parameters);

    // Always finite.
    double value(Variable variable) const { return values_[variable]; }
    // The tags of the required relations that do not hold now, in ascending order.
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
    // A required relation that cannot move: it holds if `value` is 0 (or not negative).
    struct Check {
        Affine value;
        Relation relation;
        int tag;
    };
    enum class Order { sparsestFirst, asAdded };

    Variable add(Tableau::Domain domain);
    bool holds(const Check& check) const;
    bool solveRequired(Order order);
    std::optional<Affine> addToTableau(const Constraint& constraint, Tableau::Strength strength);
    void addRequired(const Constraint& constraint);
    void solvePriorities();
    void grantWishes();
    void build();
    void evaluate();

    std::vector<Tableau::Domain> variables_;
    std::vector<Term> terms_;
    std::vector<Constraint> required_;
    std::vector<Constraint> optional_;
    std::vector<Variable> smallest_;
    std::vector<Variable> nearZero_;

    Parameters parameters_{};
    Tableau tableau_;
    bool built_ = false;
    Order order_ = Order::sparsestFirst;
    LinearExpression expression_; // scratch
    std::vector<Check> checks_;
    std::vector<Check> constantChecks_; // of relations without unknowns
    std::vector<double> values_;
    std::vector<int> conflicts_;
};

} // namespace tesmar
