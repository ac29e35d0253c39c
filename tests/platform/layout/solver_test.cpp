// The solver alone: compared with another solver, with itself, and with extreme numbers.
#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iomanip>
#include <random>
#include <sstream>

namespace tesmar {
namespace {

using enum LayoutSolver::Relation;

struct Relation {
    double priority; // 1000 is required
    LayoutSolver::Relation kind;
    LinearExpression expression; // variables may repeat

    int level() const { return static_cast<int>(4 - priority / 250); }
    double error(const std::vector<double>& point, double size) const {
        double value = expression.constant.at({size, 0});
        for (const Term& term : expression.terms)
            value += term.coefficient * point[term.variable];
        return kind == equal ? std::abs(value) : std::max(0.0, -value);
    }
};

struct System {
    int count; // of the variables; those with even numbers are extents
    std::vector<Relation> relations;
};

// A system whose required relations are satisfied at one random point. Coefficients are small, so
// that a solver that weights priorities by factors of a thousand must find the same errors. The
// first parameter moves two thirds of the relations, at two speeds.
System randomSystem(std::mt19937& random) {
    const auto draw = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    System system{draw(2, 9), {}};
    std::vector<double> point(system.count);
    std::ranges::generate(point, [&] { return draw(0, 100); });
    // Extents, for the other solver. They come first, so that conflicts never make one negative.
    for (int i = 0; i < system.count; i += 2)
        system.relations.push_back({1000, notNegative, {{{i, 1}}, {}}});
    for (int n = draw(3, 18); n > 0; --n) {
        Relation relation{draw(1, 4) * 250.0, draw(0, 2) > 0 ? equal : notNegative, {}};
        for (int terms = draw(1, 4); terms > 0; --terms)
            relation.expression.terms.push_back(
                {draw(0, system.count - 1), draw(1, 2) * (draw(0, 1) ? 1.0 : -1.0)});
        Affine& constant = relation.expression.constant;
        const int slack = relation.kind == equal ? 0 : draw(0, 1) * draw(0, 50);
        constant.constant = relation.priority == 1000 ? slack : draw(-150, 150);
        if (relation.priority == 1000)
            for (const Term& term : relation.expression.terms)
                constant.constant -= term.coefficient * point[term.variable];
        constant.slopes[0] = static_cast<double>(system.relations.size() % 3);
        system.relations.push_back(relation);
    }
    return system;
}

LayoutSolver load(const System& system) {
    LayoutSolver solver;
    for (int i = 0; i < system.count; ++i)
        i % 2 ? solver.preferNearZero(solver.addVariable())
              : solver.preferSmallest(solver.addExtent());
    for (int tag = 0; const Relation& relation : system.relations)
        solver.addConstraint(relation.expression, relation.kind, relation.priority, tag++);
    return solver;
}

std::vector<double> solve(LayoutSolver& solver, const System& system, double size) {
    solver.solve({size, 0});
    std::vector<double> values(static_cast<std::size_t>(system.count));
    for (int i = 0; i < system.count; ++i)
        values[static_cast<std::size_t>(i)] = solver.value(i);
    return values;
}

TEST(LayoutSolver, AgreesWithAnotherSolver) {
    std::mt19937 random(20240607);
    std::ostringstream input;
    for (int n = 0; n < 1000; ++n) {
        const System system = randomSystem(random);
        LayoutSolver solver = load(system);
        const auto values = solve(solver, system, 0);
        EXPECT_TRUE(solver.conflicts().empty());
        std::array<double, 4> errors{};
        for (const Relation& relation : system.relations) {
            errors[relation.level()] += relation.error(values, 0);
            input << relation.level() << (relation.kind == equal ? " eq " : " ge ")
                  << relation.expression.constant.constant;
            for (const Term& term : relation.expression.terms)
                input << " " << term.variable << " " << term.coefficient;
            input << ";";
        }
        for (const double error : errors)
            input << std::setprecision(12) << " " << error;
        input << "\n";
    }
    FILE* oracle = popen("/usr/bin/python3 " TESMAR_SOLVER_ORACLE, "w");
    ASSERT_TRUE(oracle);
    std::fputs(input.str().c_str(), oracle);
    EXPECT_EQ(pclose(oracle), 0);
}

// A reused solver must find the same values as a new one. Required relations must behave as if they
// had falling priorities: in a conflict the last is violated, as little as the others allow.
TEST(LayoutSolver, ReportsConflictsAndFindsTheSameValuesAtEverySize) {
    std::mt19937 random(7);
    int conflicts = 0;
    for (int n = 0; n < 150; ++n) {
        const System system = randomSystem(random);
        System ranked = system;
        for (double priority = 999; Relation & relation : ranked.relations)
            if (relation.priority == 1000)
                relation.priority = priority--;
        LayoutSolver reused = load(system);
        for (const double size : {0, 1, -3, 12, 40, -80, 12, 0}) {
            SCOPED_TRACE("system " + std::to_string(n) + ", size " + std::to_string(size));
            const auto values = solve(reused, system, size);
            LayoutSolver fresh = load(ranked);
            const auto expected = solve(fresh, ranked, size);
            for (int i = 0; i < system.count; ++i)
                EXPECT_NEAR(values[i], expected[i], 1e-6) << "variable " << i;
            for (int tag = 0; const Relation& relation : system.relations) {
                const bool conflict =
                    relation.priority == 1000 && relation.error(values, size) > 1e-6;
                EXPECT_EQ(std::ranges::count(reused.conflicts(), tag++), conflict);
                conflicts += conflict;
            }
        }
    }
    EXPECT_GT(conflicts, 100); // fewer would prove nothing
}

TEST(LayoutSolver, StaysFiniteWithExtremeNumbers) {
    LayoutSolver solver;
    solver.addExtent();
    for (int i = 1; i < 200; ++i)
        solver.addConstraint({{{solver.addExtent(), 1}, {i - 1, -1e4}}, {i % 2 ? -1e7 : 1e7, {}}},
                             i % 3 ? equal : notNegative, i % 5 ? 1000 : 300, i);
    solver.solve({1e7, 1e7});
    for (int i = 0; i < 200; ++i)
        EXPECT_TRUE(std::isfinite(solver.value(i)));
}

} // namespace
} // namespace tesmar
