// The numbers that the layout solver works with: linear expressions over unknowns, whose constant
// parts depend in turn on the two parameters (the root's width and height), so that a change of a
// parameter needs no new solution.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace tesmar {

// A coefficient this small is the dust of a cancellation.
inline constexpr double kCoefficientTolerance = 1e-10;
// A relation holds, and a size is not negative, when it is off by no more than this (in points).
inline constexpr double kFeasibilityTolerance = 1e-7;
// Solving for an unknown with a smaller coefficient than this would magnify rounding errors.
inline constexpr double kPivotTolerance = 1e-6;
// A saving of less than this for each point is none.
inline constexpr double kCostTolerance = 1e-9;

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

using Variable = int;

struct Term {
    Variable variable;
    double coefficient;
};

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
