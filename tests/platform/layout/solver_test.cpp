// The solver alone: against another solver, and under sizes, priorities and conflicts.
#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>

namespace tesmar {
namespace {

struct Relation {
    int level; // 0 is required, 1 the highest priority
    bool isEquality;
    double constant;
    std::vector<double> coefficients;
};

struct System {
    std::size_t count;
    std::vector<Relation> relations;

    double valueOf(const Relation& relation, const std::vector<double>& point) const {
        double value = relation.constant;
        for (std::size_t i = 0; i < count; ++i)
            value += relation.coefficients[i] * point[i];
        return relation.isEquality ? std::abs(value) : std::max(0.0, -value);
    }
    std::array<double, 4> violations(const std::vector<double>& point) const {
        std::array<double, 4> sums{};
        for (const Relation& relation : relations)
            sums[relation.level] += valueOf(relation, point);
        return sums;
    }
};

// Required relations all hold at one random point. Coefficients are small, so that a solver that
// weighs strengths by factors of a thousand must come to the same sums as one that ranks them.
System randomSystem(std::mt19937& random) {
    const auto draw = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    System system{static_cast<std::size_t>(draw(2, 9)), {}};
    std::vector<double> point(system.count);
    for (double& x : point)
        x = draw(0, 100);
    // The even variables are extents: they come first, as the solver holds them above all else.
    for (std::size_t i = 0; i < system.count; i += 2) {
        Relation notNegative{0, false, 0, std::vector<double>(system.count)};
        notNegative.coefficients[i] = 1;
        system.relations.push_back(notNegative);
    }
    const int total = draw(3, 18);
    for (int n = 0; n < total; ++n) {
        Relation relation{draw(0, 3), draw(0, 2) > 0, 0, std::vector<double>(system.count)};
        for (int terms = draw(1, 4); terms > 0; --terms)
            relation.coefficients[draw(0, static_cast<int>(system.count) - 1)] =
                draw(1, 2) * (draw(0, 1) ? 1 : -1);
        double at = 0;
        for (std::size_t i = 0; i < system.count; ++i)
            at += relation.coefficients[i] * point[i];
        if (relation.level > 0)
            relation.constant = draw(-150, 150);
        else
            relation.constant = -at + (relation.isEquality ? 0 : draw(0, 1) * draw(0, 50));
        system.relations.push_back(relation);
    }
    return system;
}

enum class Required { outright, asFallingPriorities };

// The first parameter moves two thirds of the relations, at two speeds.
std::vector<Variable> load(LayoutSolver& solver, const System& system,
                           Required required = Required::outright) {
    static constexpr double priorities[] = {1000, 750, 500, 250};
    std::vector<Variable> variables;
    for (std::size_t i = 0; i < system.count; ++i)
        variables.push_back(i % 2 ? solver.addVariable() : solver.addExtent());
    for (std::size_t n = 0; n < system.relations.size(); ++n) {
        const Relation& relation = system.relations[n];
        LinearExpression expression;
        for (std::size_t i = 0; i < system.count; ++i)
            expression.terms.push_back({variables[i], relation.coefficients[i]});
        expression.constant = {relation.constant, {static_cast<double>(n % 3), 0}};
        solver.addConstraint(expression,
                             relation.isEquality ? LayoutSolver::Relation::equal
                                                 : LayoutSolver::Relation::notNegative,
                             relation.level == 0 && required == Required::asFallingPriorities
                                 ? 999 - static_cast<double>(n)
                                 : priorities[relation.level],
                             static_cast<int>(n));
    }
    for (std::size_t i = 0; i < system.count; ++i)
        i % 2 ? solver.wishNearZero(variables[i]) : solver.wishSmallest(variables[i]);
    return variables;
}

std::vector<double> valuesOf(const LayoutSolver& solver, const std::vector<Variable>& variables) {
    std::vector<double> values;
    for (const Variable variable : variables)
        values.push_back(solver.value(variable));
    return values;
}

TEST(LayoutSolver, AgreesWithAnotherSolver) {
    const std::string python = "/usr/bin/python3";
    if (std::system((python + " -c 'import kiwisolver' 2>/dev/null").c_str()) != 0)
        GTEST_SKIP() << "needs the package python3-kiwisolver";
    std::mt19937 random(20240607);
    std::vector<std::array<double, 4>> ours;
    std::ostringstream input;
    for (int n = 0; n < 1000; ++n) {
        const System system = randomSystem(random);
        input << "system " << system.count << "\n";
        for (const Relation& relation : system.relations) {
            input << relation.level << (relation.isEquality ? " eq " : " ge ") << relation.constant;
            for (const double coefficient : relation.coefficients)
                input << " " << coefficient;
            input << "\n";
        }
        LayoutSolver solver;
        const auto variables = load(solver, system);
        solver.solve({0, 0});
        ours.push_back(system.violations(valuesOf(solver, variables)));
        EXPECT_NEAR(ours.back()[0], 0, 1e-6) << "system " << n;
        EXPECT_TRUE(solver.conflicts().empty()) << "system " << n;
    }
    const std::string path = ::testing::TempDir() + "tesmar_solver_oracle.txt";
    std::ofstream(path) << input.str();
    FILE* pipe = popen((python + " " TESMAR_SOLVER_ORACLE " " + path).c_str(), "r");
    ASSERT_TRUE(pipe);
    for (std::size_t n = 0; n < ours.size(); ++n) {
        double theirs[3];
        ASSERT_EQ(std::fscanf(pipe, "%lf %lf %lf", &theirs[0], &theirs[1], &theirs[2]), 3);
        for (int level = 1; level <= 3; ++level)
            EXPECT_NEAR(ours[n][level], theirs[level - 1], 1e-5)
                << "system " << n << " level " << level;
    }
    EXPECT_EQ(pclose(pipe), 0);
}

// Every size is solved as by a solver that sees it first, and as if the required relations had
// priorities of their own, falling in the order of adding: in a conflict the last gives way, by as
// little as the others allow.
TEST(LayoutSolver, RequiredRelationsGiveWayInReverseOrderAtEverySize) {
    std::mt19937 random(7);
    int conflicting = 0;
    for (int n = 0; n < 150; ++n) {
        const System system = randomSystem(random);
        LayoutSolver kept;
        const auto variables = load(kept, system);
        for (const double size : {0, 1, -3, 12, 40, -80, 12, 0}) {
            SCOPED_TRACE("system " + std::to_string(n) + ", size " + std::to_string(size));
            LayoutSolver fresh;
            load(fresh, system, Required::asFallingPriorities);
            kept.solve({size, 0});
            fresh.solve({size, 0});
            const auto values = valuesOf(kept, variables);
            const auto expected = valuesOf(fresh, variables);
            for (std::size_t i = 0; i < system.count; ++i)
                EXPECT_NEAR(values[i], expected[i], 1e-6) << "variable " << i;
            std::vector<int> broken;
            for (std::size_t i = 0; i < system.relations.size(); ++i) {
                Relation moved = system.relations[i];
                moved.constant += static_cast<double>(i % 3) * size;
                if (moved.level == 0 && system.valueOf(moved, values) > 1e-6)
                    broken.push_back(static_cast<int>(i));
            }
            EXPECT_EQ(std::vector<int>(kept.conflicts().begin(), kept.conflicts().end()), broken);
            conflicting += !broken.empty();
        }
    }
    EXPECT_GT(conflicting, 100); // else the test means nothing
}

TEST(LayoutSolver, StaysFiniteOnExtremeNumbers) {
    LayoutSolver solver;
    std::vector<Variable> variables;
    for (int i = 0; i < 200; ++i)
        variables.push_back(solver.addExtent());
    LinearExpression expression;
    for (int i = 1; i < 200; ++i) {
        expression.clear();
        expression.terms = {{variables[i], 1}, {variables[i - 1], -1e4}};
        expression.constant.constant = i % 2 ? -1e7 : 1e7;
        solver.addConstraint(
            expression, i % 3 ? LayoutSolver::Relation::equal : LayoutSolver::Relation::notNegative,
            i % 5 ? 1000 : 300, i);
    }
    solver.solve({1e7, 1e7});
    for (const Variable variable : variables)
        EXPECT_TRUE(std::isfinite(solver.value(variable)));
}

} // namespace
} // namespace tesmar
