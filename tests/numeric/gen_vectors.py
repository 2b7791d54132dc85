#!/usr/bin/env python3
"""Writes tests/data/numeric_vectors.txt: random operand pairs (mixed signs, 1 to 20
significant digits, point positions -10 to 20) with the exact sum, difference and product
from Python's decimal module at high precision. Line: a b a+b a-b a*b."""
import decimal, os, random

rng = random.Random(20240611)
ctx = decimal.Context(prec=200, Emin=-999999, Emax=999999)

def operand(integer, point=None):
    digits = str(rng.randint(1, 9)) + "".join(rng.choice("0123456789") for _ in range(rng.randint(0, 19)))
    sign = rng.choice(["", "-"])
    if integer:  # held with its trailing zeros: point position = digit count
        return sign + digits
    return "%s.%se%d" % (sign, digits, rng.randint(-10, 20) if point is None else point)

lines = []
for i in range(2400):
    a = operand(i % 3 == 0)
    b = rng.choice(["", "-"]) + a.lstrip("-") if i % 20 == 0 else operand(i % 3 == 0)  # some equal magnitudes
    if i % 20 == 1:  # far apart: often too wide for a sum
        a, b = operand(False, 20), operand(False, rng.randint(-10, -5))
    x, y = decimal.Decimal(a), decimal.Decimal(b)
    lines.append(" ".join([a, b, str(ctx.add(x, y)), str(ctx.subtract(x, y)), str(ctx.multiply(x, y))]))
with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "numeric_vectors.txt"), "w") as out:
    out.write("\n".join(lines) + "\n")
