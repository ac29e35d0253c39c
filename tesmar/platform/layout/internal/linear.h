// The numbers of the layout solver: linear expressions of variables. Their constants are in turn
// linear functions of two parameters, the root's width and height, so that a solution can be
// evaluated for another root size without solving again.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace tesmar {

// A smaller coefficient is a rounding error of terms that cancel out, and counts as 0.
inline constexpr double kCoefficientTolerance = 1e-10;
// A relation may be violated, and a size may be negative, by up to this many points.
inline constexpr double kFeasibilityTolerance = 1e-7;
// Dividing by a smaller coefficient would magnify rounding errors too much.
inline constexpr double kPivotTolerance = 1e-6;
// A reduced cost below this counts as 0: it saves too little for each point to be worth a pivot.
inline constexpr double kReducedCostTolerance = 1e-9;

using Parameters = std::array<double, 2>;

// constant + slopes * parameters
struct Affine {
    double constant = 0;
    Parameters slopes{};

    double at(const Parameters& p) const { return constant + slopes[0] * p[0] + slopes[1] * p[1]; }
    bool isZero() const { return constant == 0 && slopes[0] == 0 && slopes[1] == 0; }
    void add(const Affine& other, double factor) {
        constant += factor * other.constant;
        slopes[0] += factor * other.slopes[0];
        slopes[1] += factor * other.slopes[1];
    }
    void scale(double factor) {
        constant *= factor;
        slopes[0] *= factor;
        slopes[1] *= factor;
    }
};

// The index of a variable.
using Variable = int;

struct Term {
    Variable variable;
    double coefficient;
};

// The sum of the terms and the constant.
struct LinearExpression {
    std::vector<Term> terms; // in ascending order of variables, each at most once
    Affine constant;

    void clear() {
        terms.clear();
        constant = {};
    }
    void scale(double factor) {
        for (Term& term : terms)
            term.coefficient *= factor;
        constant.scale(factor);
    }
};

} // namespace tesmar
