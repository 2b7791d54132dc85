#!/usr/bin/env python3
"""Writes tests/data/numeric_vectors.txt: random operand pairs with the exact sum,
difference and product computed by Python's decimal module at high precision.
Line: a b a+b a-b a*b.  Run: python3 tests/numeric/gen_vectors.py"""
import decimal, os, random

rng = random.Random(20240611)

def digits():  # 1 to 20 significant digits, the first non-zero
    return str(rng.randint(1, 9)) + "".join(rng.choice("0123456789") for _ in range(rng.randint(0, 19)))

def sign():
    return rng.choice(["", "-"])

def operand(integer, point=None):
    if integer:  # integer text: held with its trailing zeros, point position = digit count
        return sign() + digits()
    if point is None:
        point = rng.randint(-10, 20)
    return "%s.%se%d" % (sign(), digits(), point)

def main():
    ctx = decimal.Context(prec=200, Emin=-999999, Emax=999999)
    lines = []
    for i in range(2400):
        integer = i % 3 == 0
        a = operand(integer)
        b = sign() + a.lstrip("-") if i % 20 == 0 else operand(integer)  # some equal magnitudes
        if i % 20 == 1:  # far apart: often too wide for the sum
            a, b = operand(False, 20), operand(False, rng.randint(-10, -5))
        x, y = decimal.Decimal(a), decimal.Decimal(b)
        lines.append(" ".join([a, b, str(ctx.add(x, y)), str(ctx.subtract(x, y)), str(ctx.multiply(x, y))]))
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "data", "numeric_vectors.txt")
    with open(path, "w") as out:
        out.write("\n".join(lines) + "\n")

if __name__ == "__main__":
    main()
