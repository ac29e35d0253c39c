// The solver alone: compared with another solver, with itself, and with extreme numbers.
#include "tesmar/platform/layout/internal/LayoutSolver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <random>

namespace tesmar {
namespace {

using enum LayoutSolver::Relation;

struct Relation {
    int level; // 0 is required, 1 the highest priority
    LayoutSolver::Relation kind;
    LinearExpression expression; // variables may repeat

    double violation(const std::vector<double>& point, double size) const {
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
    for (double& x : point)
        x = draw(0, 100);
    // For the other solver; first, since nothing makes an extent negative.
    for (int i = 0; i < system.count; i += 2)
        system.relations.push_back({0, notNegative, {{{i, 1}}, {}}});
    for (int n = draw(3, 18); n > 0; --n) {
        Relation relation{draw(0, 3), draw(0, 2) > 0 ? equal : notNegative, {}};
        for (int terms = draw(1, 4); terms > 0; --terms)
            relation.expression.terms.push_back(
                {draw(0, system.count - 1), draw(1, 2) * (draw(0, 1) ? 1.0 : -1.0)});
        Affine& constant = relation.expression.constant;
        constant.slopes[0] = static_cast<double>(system.relations.size() % 3);
        if (relation.level > 0) {
            constant.constant = draw(-150, 150);
        } else {
            for (const Term& term : relation.expression.terms)
                constant.constant -= term.coefficient * point[term.variable];
            constant.constant += relation.kind == equal ? 0 : draw(0, 1) * draw(0, 50);
        }
        system.relations.push_back(relation);
    }
    return system;
}

constexpr double kPriorities[] = {1000, 750, 500, 250};
double priority(const Relation& relation, int) {
    return kPriorities[relation.level];
}
double fallingPriority(const Relation& relation, int index) {
    return relation.level ? kPriorities[relation.level] : 999 - index;
}

LayoutSolver load(const System& system, double (*priorityOf)(const Relation&, int) = priority) {
    LayoutSolver solver;
    for (int i = 0; i < system.count; ++i)
        i % 2 ? solver.preferNearZero(solver.addVariable())
              : solver.preferSmallest(solver.addExtent());
    for (int tag = 0; const Relation& relation : system.relations) {
        solver.addConstraint(relation.expression, relation.kind, priorityOf(relation, tag), tag);
        ++tag;
    }
    return solver;
}

std::vector<double> solve(LayoutSolver& solver, const System& system, double size) {
    solver.solve({size, 0});
    std::vector<double> values(system.count);
    for (int i = 0; i < system.count; ++i)
        values[i] = solver.value(i);
    return values;
}

TEST(LayoutSolver, AgreesWithAnotherSolver) {
    const std::string python = "/usr/bin/python3";
    if (std::system((python + " -c 'import kiwisolver' 2>/dev/null").c_str()) != 0)
        GTEST_SKIP() << "needs the package python3-kiwisolver";
    std::mt19937 random(20240607);
    std::vector<std::array<double, 4>> errors(1000);
    const std::string path = ::testing::TempDir() + "tesmar_solver_oracle.txt";
    std::ofstream input(path);
    for (auto& sums : errors) {
        const System system = randomSystem(random);
        LayoutSolver solver = load(system);
        const auto values = solve(solver, system, 0);
        EXPECT_TRUE(solver.conflicts().empty());
        input << "system " << system.count << "\n";
        for (const Relation& relation : system.relations) {
            sums[relation.level] += relation.violation(values, 0);
            input << relation.level << (relation.kind == equal ? " eq " : " ge ")
                  << relation.expression.constant.constant;
            for (const Term& term : relation.expression.terms)
                input << " " << term.variable << " " << term.coefficient;
            input << "\n";
        }
    }
    input.close();
    FILE* pipe = popen((python + " " TESMAR_SOLVER_ORACLE " " + path).c_str(), "r");
    ASSERT_TRUE(pipe);
    for (std::size_t n = 0; n < errors.size(); ++n) {
        for (const double error : errors[n]) {
            double expected;
            ASSERT_EQ(std::fscanf(pipe, "%lf", &expected), 1);
            EXPECT_NEAR(error, expected, 1e-5) << "system " << n;
        }
    }
    EXPECT_EQ(pclose(pipe), 0);
}

// A reused solver must find the same values as a new one. Required relations must behave as if they
// had falling priorities: in a conflict the last is violated, as little as the others allow.
TEST(LayoutSolver, ReportsConflictsAndFindsTheSameValuesAtEverySize) {
    std::mt19937 random(7);
    int conflicts = 0;
    for (int n = 0; n < 150; ++n) {
        const System system = randomSystem(random);
        LayoutSolver reused = load(system);
        for (const double size : {0, 1, -3, 12, 40, -80, 12, 0}) {
            SCOPED_TRACE("system " + std::to_string(n) + ", size " + std::to_string(size));
            const auto values = solve(reused, system, size);
            LayoutSolver ranked = load(system, fallingPriority);
            const auto expected = solve(ranked, system, size);
            for (int i = 0; i < system.count; ++i)
                EXPECT_NEAR(values[i], expected[i], 1e-6) << "variable " << i;
            std::vector<int> violated;
            for (int tag = 0; const Relation& relation : system.relations) {
                if (relation.level == 0 && relation.violation(values, size) > 1e-6)
                    violated.push_back(tag);
                ++tag;
            }
            EXPECT_EQ(std::vector(reused.conflicts().begin(), reused.conflicts().end()), violated);
            conflicts += !violated.empty();
        }
    }
    EXPECT_GT(conflicts, 100); // too few would prove nothing
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
