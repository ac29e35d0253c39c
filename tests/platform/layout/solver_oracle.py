"""Solves the systems of solver_test.cpp with an independent solver.

Input, from the file named by the argument: for each system a line "system <number of variables>",
then a line "<level> <eq|ge> <constant> {<variable> <coefficient>}" for each relation; level 0 is
required. Output: for each system a line with the sum of the errors of levels 0 to 3.
"""
import sys

import kiwisolver

STRENGTHS = ["required", "strong", "medium", "weak"]


def errors(count, relations):
    solver = kiwisolver.Solver()
    variables = [kiwisolver.Variable("x%d" % i) for i in range(count)]
    expressions = []
    for level, kind, constant, *terms in relations:
        terms = [kiwisolver.Term(variables[int(v)], float(c)) for v, c in zip(terms[::2], terms[1::2])]
        expression = kiwisolver.Expression(terms, float(constant))
        solver.addConstraint((expression == 0 if kind == "eq" else expression >= 0) | STRENGTHS[int(level)])
        expressions.append((int(level), kind, expression))
    solver.updateVariables()
    sums = [0, 0, 0, 0]
    for level, kind, expression in expressions:
        value = expression.value()
        sums[level] += abs(value) if kind == "eq" else max(0, -value)
    return sums


systems = []
for line in open(sys.argv[1]):
    fields = line.split()
    if fields[0] == "system":
        systems.append((int(fields[1]), []))
    else:
        systems[-1][1].append(fields)
for system in systems:
    print("%.9g %.9g %.9g %.9g" % tuple(errors(*system)))
