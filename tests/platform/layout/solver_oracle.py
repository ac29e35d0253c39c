"""Compares the solutions of solver_test.cpp with those of an independent solver.

Reads one system a line: for each relation "<level> <eq|ge> <constant> {<variable> <coefficient>};",
where level 0 is required, then the sums of the errors of levels 0 to 3. Fails at a wrong sum.
"""
import collections
import sys

import kiwisolver

STRENGTHS = ["required", "strong", "medium", "weak"]

for number, line in enumerate(sys.stdin):
    solver = kiwisolver.Solver()
    variables = collections.defaultdict(kiwisolver.Variable)
    relations = []
    *texts, errors = line.split(";")
    for text in texts:
        level, kind, constant, *terms = text.split()
        terms = [kiwisolver.Term(variables[v], float(c)) for v, c in zip(terms[::2], terms[1::2])]
        expression = kiwisolver.Expression(terms, float(constant))
        constraint = expression == 0 if kind == "eq" else expression >= 0
        solver.addConstraint(constraint | STRENGTHS[int(level)])
        relations.append((int(level), kind, expression))
    solver.updateVariables()
    differences = [float(error) for error in errors.split()]
    for level, kind, expression in relations:
        value = expression.value()
        differences[level] -= abs(value) if kind == "eq" else max(0, -value)
    if max(map(abs, differences)) > 1e-5:
        sys.exit("system %d: the errors differ by %s" % (number, differences))
