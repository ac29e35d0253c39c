"""Solves the systems of solver_test.cpp with an independent solver.

Input, from the file named by the argument: a line "system <variables>" each, then lines
"<level> <eq|ge> <constant> <coefficient of each variable>", level 0 being required. Output: for each
system a line with the sums of what the relations of levels 1, 2 and 3 are off by.
"""
import sys

import kiwisolver

STRENGTHS = {0: "required", 1: "strong", 2: "medium", 3: "weak"}


def optimum(count, relations):
    solver = kiwisolver.Solver()
    variables = [kiwisolver.Variable("x%d" % i) for i in range(count)]
    parts = []
    for level, kind, constant, coefficients in relations:
        terms = [kiwisolver.Term(v, c) for v, c in zip(variables, coefficients) if c]
        expression = kiwisolver.Expression(terms, constant)
        constraint = expression == 0 if kind == "eq" else expression >= 0
        solver.addConstraint(constraint | STRENGTHS[level])
        parts.append((level, kind, constant, coefficients))
    solver.updateVariables()
    sums = [0, 0, 0, 0]
    for level, kind, constant, coefficients in parts:
        value = constant + sum(c * v.value() for c, v in zip(coefficients, variables))
        sums[level] += abs(value) if kind == "eq" else max(0, -value)
    return sums


systems = []
for line in open(sys.argv[1]):
    fields = line.split()
    if fields[0] == "system":
        systems.append((int(fields[1]), []))
    else:
        numbers = [float(f) for f in fields[2:]]
        systems[-1][1].append((int(fields[0]), fields[1], numbers[0], numbers[1:]))
for count, relations in systems:
    print("%.9g %.9g %.9g" % tuple(optimum(count, relations)[1:]))
