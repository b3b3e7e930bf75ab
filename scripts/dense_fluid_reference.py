#!/usr/bin/env python3
"""Viscosity and conductivity of dense fluids by corresponding states with methane, in double precision.

A second writing of the formulas behind DCST, TRPVIS and THERMC, plain and slow and without the savings of the library:
every cube root where it is needed, every pair twice. It writes tests/golden/dense_fluid_mixtures.csv. The constants of
the components are those of tests/support/dense_fluid_cases.h.

Usage: dense_fluid_reference.py > tests/golden/dense_fluid_mixtures.csv
"""
import os
import re
from math import copysign, exp, log, sqrt, tanh

CASES_H = os.path.join(os.path.dirname(__file__), "..", "tests", "support", "dense_fluid_cases.h")

R = 0.08205616                                             # L atm/(mol K)
TC, RHOC, ZC, W, M = 190.53, 10.104, 0.287046, 0.011, 16.04  # methane
A = (0.090569, -0.862762, 0.316636, -0.465684)
B = (0.394901, -1.023545, -0.932813, -0.754639)
C = (1.16145, 0.14874, 0.52487, 0.7732, 2.16178, 2.43787)
ETA0, EPSILON, RHO_SCALE = 7.67035, 148.6, 0.1628
VISCOSITY = ((1.696986, -0.13337235, 1.4, 168.0),
             (-10.2391605, 174.228226, 17.4605465, -2847.63281, 0.133685023, 142.072403, 5002.06689))
COLD = (-9.74602, 44.6055, 18.0834, -4126.66, 0.976544, 81.8134, 15649.9)
CONDUCTIVITY = ((-0.252762914, 0.334328592, 1.12, 168.0),
                (-7.14591312, 81.3209381, 12.4215708, -950.983093, 0.493518144, 41.4513893, 590.887024))
PI6 = 0.52359879


def cbrt(a):
    return copysign(abs(a) ** (1 / 3), a)


def held(v):
    return min(2.0, max(0.5, v))


def theta(w, tr, vr):
    return 1 + (w - W) * (A[0] + A[1] * log(tr) + (A[2] + A[3] / tr) * (vr - 0.5))


def phi(w, tr, vr):
    return 1 + (w - W) * (B[0] * (vr + B[1]) + B[2] * (vr + B[3]) * log(tr))


def omega(ts):
    return C[0] / ts ** C[1] + C[2] * exp(-C[3] * ts) + C[4] * exp(-C[5] * ts)


class Fluid:
    """Factors of a mixture: components are (fraction, molar mass, TC, PC, VC, acentric factor, heat capacity)."""

    def __init__(self, components, T, rho, liquid):
        self.x, self.m, tc, pc, vc, w, self.cp = map(list, zip(*components))
        self.T, self.n = T, range(len(components))
        zc = [p * v / (R * t) for p, v, t in zip(pc, vc, tc)]
        self.f, self.h = [t / TC for t in tc], [RHOC * v for v in vc]
        if liquid:
            for i in self.n:
                self.f[i] *= max(theta(w[i], T / tc[i], 0.5), 0.1)
                self.h[i] *= max(phi(w[i], T / tc[i], 0.5), 0.1) * ZC / zc[i]
        self.fx = self.hx = 1.0
        for _ in range(15):
            before = self.fx, self.hx
            self.mix()
            T0, R0 = T / self.fx, rho * self.hx
            for i in self.n:
                tr, vr = held(self.f[i] * T0 / tc[i]), held(self.h[i] / (vc[i] * R0))
                self.f[i] = max(theta(w[i], tr, vr), 0.01) * tc[i] / TC
                self.h[i] = max(phi(w[i], tr, vr), 0.01) * RHOC * ZC * vc[i] / zc[i]
            if abs(self.fx - before[0]) <= 1e-5 * self.fx and abs(self.hx - before[1]) <= 1e-5 * self.hx:
                break
        self.rho = R0 / self.hx
        self.zc = sum(x * z for x, z in zip(self.x, zc))
        self.slopes(tc, vc, zc, w)

    def pair(self, i, j):
        return (0.5 * (cbrt(self.h[i]) + cbrt(self.h[j]))) ** 3, sqrt(self.f[i] * self.f[j])

    def mix(self):
        self.hx = fh = 0.0
        for i in self.n:
            for j in self.n:
                h, f = self.pair(i, j)
                self.hx += self.x[i] * self.x[j] * h
                fh += self.x[i] * self.x[j] * h * f
        self.fx = fh / self.hx

    def slopes(self, tc, vc, zc, w):
        s = [[0.0] * 4 for _ in range(3)]
        eta = lam = 0.0
        for i in self.n:
            sums = [0.0] * 5
            for j in self.n:
                h, f = self.pair(i, j)
                reduced = self.m[i] * self.m[j] / (self.m[i] + self.m[j])
                half = 0.5 * (1 + cbrt(self.h[j] / self.h[i]))
                speed = cbrt(h) * sqrt(reduced / f)
                term = self.x[j] * h / half
                for k, v in enumerate((1, f, f * half, f * half * speed, f * half * speed / reduced)):
                    sums[k] += term * v
            th, ph = self.f[i] * TC / tc[i], self.h[i] / (vc[i] * RHOC)
            tr, vr = held(self.f[i] * self.T / (self.fx * tc[i])), held(self.h[i] / (vc[i] * self.hx * self.rho))
            v, u = (w[i] - W) / th, (w[i] - W) * ZC / (ph * zc[i])
            z = [1 - v * (A[1] - A[3] * (vr - 0.5) / tr), v * (A[3] / tr + A[2]) * vr,
                 1 - u * (B[2] * log(tr) + B[0]) * vr, u * B[2] * (vr + B[3])]
            if tr >= 2:
                z[0], z[3] = 1.0, 0.0
            if vr <= 0.5 or vr >= 2:
                z[1], z[2] = 0.0, 1.0
            for row in range(3):
                scale = (z[0] * z[2] - z[1] * z[3]) * self.hx * (1 if row == 0 else self.fx)
                for k in range(4):
                    s[row][k] += z[k] * self.x[i] * sums[row] / scale
            eta += self.x[i] * sums[3]
            lam += self.x[i] * sums[4]
        change = 1 - s[0][0] / (s[0][0] * (s[2][2] + s[1][3]) - s[0][3] * (s[2][1] + s[1][0]))
        self.slope = min(self.fx * change / self.T, 0.0) * self.T / self.fx
        scale = self.fx * self.hx ** (8 / 3)
        self.eta_mass, self.lambda_mass = 2 * eta ** 2 / scale, 2 * scale / lam ** 2

    def methane(self, constants, dilute):
        """First density term and dilute gas, excess of the warm set, excess of the cold one."""
        g, e = constants
        d, T0 = 0.001 * self.rho * self.hx * M, self.T / self.fx

        def excess(e):
            t0, t2 = e[0] + e[1] / T0, e[2] + e[3] / T0 ** 1.5
            t3 = e[4] + (e[5] + e[6] / T0) / T0
            return exp(t0 + t2 * d ** 0.1 + t3 * (d / RHO_SCALE - 1) * sqrt(d)) - exp(t0)

        gas = (g[0] + g[1] * (g[2] - log(T0 / g[3])) ** 2) * d + dilute * ETA0 * sqrt(T0) / omega(T0 / EPSILON)
        return gas, excess(e), excess(COLD), T0

    def viscosity(self):
        gas, warm, cold, T0 = self.methane(VISCOSITY, 1.0)
        weight = 0.5 * (1 + (tanh(T0 - 90.65) if abs(T0 - 90.65) <= 40 else copysign(1, T0 - 90.65)))
        correction = sqrt((1 - 1.5 * self.slope) * self.zc / ZC)
        scale = sqrt(self.fx * self.eta_mass / M) / cbrt(self.hx ** 2)
        return (gas + (weight * warm + (1 - weight) * cold) * correction) * scale + self.hard_spheres()

    def conductivity(self):
        gas, excess, _, _ = self.methane(CONDUCTIVITY, 0.194345042)
        scale = sqrt(self.fx * M / self.lambda_mass) / cbrt(self.hx ** 2)
        translation = (gas + excess) * scale * ((1 - self.slope) * ZC / self.zc) ** 1.5
        inner = [0.552288 * (self.cp[i] / 4.184 - 4.968) * ETA0 * sqrt(self.T / (M * self.m[i])) /
                 (omega(self.T / (self.f[i] * EPSILON)) * cbrt(self.h[i] ** 2)) for i in self.n]
        return translation + sum(2 * self.x[i] * self.x[j] * inner[i] * inner[j] / (inner[i] + inner[j])
                                 for i in self.n for j in self.n)

    def hard_spheres(self):
        """A hard-sphere mixture less the one fluid that stands for it."""
        size = [cbrt(97.751 * h / 1.84183347) for h in self.h]
        pairs = [[0.5 * (a + b) for b in size] for a in size]
        cube = sum(self.x[i] * self.x[j] * pairs[i][j] ** 3 for i in self.n for j in self.n)
        mass = sum(self.x[i] * self.x[j] * pairs[i][j] ** 4 * sqrt(self.m[i] * self.m[j] / (self.m[i] + self.m[j]))
                   for i in self.n for j in self.n)
        one, heavy = cbrt(cube), 2 * (mass / (cube * cbrt(cube))) ** 2
        return 26.693 * sqrt(self.T) * (enskog(0.0006023 * self.rho, pairs, self.m, self.x) -
                                        enskog(0.0006023 * self.rho, [[one]], [heavy], [1.0]))


def enskog(rho, s, m, x):
    n = range(len(x))
    s2 = sum(x[i] * rho * PI6 * s[i][i] ** 2 for i in n)
    e = 1 - sum(x[i] * rho * PI6 * s[i][i] ** 3 for i in n)
    y, matrix, value = [], [[0.0] * len(x) for _ in n], 0.0
    for i in n:
        shared = []
        for j in n:
            g = s[i][i] * s[j][j] / (s[i][i] + s[j][j])
            volume = s[i][j] ** 3 * 4 * PI6 * rho
            contact = volume * (3 * e * s2 * g + e ** 2 + 2 * (s2 * g) ** 2) / e ** 3
            share = m[j] / (m[i] + m[j])
            speed = volume * sqrt(2 * m[i] * share) / s[i][j] ** 2
            shared.append((x[j] * share * contact, x[j] * speed * contact, x[j] * contact * share ** 2 / speed))
        y.append(x[i] * (1 + 0.8 * sum(t[0] for t in shared)))
        value += x[i] * sum(t[1] for t in shared)
        for k in n:
            q = m[i] / (3 * m[k])
            matrix[i][i] += 2 * x[i] * shared[k][2] * (1 + 5 * q)
            matrix[i][k] -= 2 * x[i] * shared[k][2] * 2 * q
    return 8 * value / (25 * PI6) + sum(a * b for a, b in zip(solved(matrix, y), y))


def solved(matrix, right):
    rows = [row[:] + [r] for row, r in zip(matrix, right)]
    for k, _ in enumerate(rows):
        pivot = max(range(k, len(rows)), key=lambda r, k=k: abs(rows[r][k]))
        rows[k], rows[pivot] = rows[pivot], rows[k]
        rows[k] = [v / rows[k][k] for v in rows[k]]
        for r, row in enumerate(rows):
            if r != k:
                rows[r] = [v - row[k] * p for v, p in zip(row, rows[k])]
    return [row[-1] for row in rows]


GAS = (("nitrogen", 0.011), ("carbon dioxide", 0.020), ("methane", 0.816), ("ethane", 0.093), ("propane", 0.042),
       ("isobutane", 0.006), ("n-butane", 0.008), ("n-pentane", 0.003), ("n-hexane", 0.001))
OIL = (("methane", 0.30), ("propane", 0.25), ("n-hexane", 0.20), ("benzene", 0.15), ("n-decane", 0.10))
CONDENSATE = (("ethane", 0.2), ("propane", 0.3), ("n-butane", 0.3), ("n-pentane", 0.2))
STATES = ((GAS, 0, ((273.15, 0.05), (273.15, 3.42), (450.0, 8.0), (220.0, 10.0))),
          (OIL, 1, ((300.0, 10.0), (420.0, 8.5))),
          (CONDENSATE, 1, ((230.0, 11.5), (330.0, 9.5))),
          ((("hydrogen", 0.7), ("carbon monoxide", 0.2), ("methane", 0.1)), 0, ((300.0, 1.0), (500.0, 5.0))),
          ((("methane", 0.95), ("nitrogen", 0.05)), 1, ((91.0, 28.0), (120.0, 25.0))),
          ((("propane", 1.0),), 1, ((120.0, 15.8), (300.0, 11.1))),
          ((("water", 0.4), ("carbon dioxide", 0.6)), 0, ((600.0, 0.5),)))


def main():
    constants = {row[0]: [float(v) for v in row[1:]] for row in re.findall(
        r'\{"([^"]+)"' + r", (-?[\d.]+)F" * 6 + r"\}", open(CASES_H, encoding="utf-8").read())}
    print("mixture,liquid,T_K,density_mol_per_L,viscosity_uP,conductivity_mW_per_mK")
    for mixture, liquid, states in STATES:
        components = []
        for name, x in mixture:
            mass, tc, pc, vc, w, cp = constants[name]
            components.append((x, mass, tc, pc, vc, w, cp))
        for T, rho in states:
            fluid = Fluid(components, T, rho, liquid)
            print(";".join(f"{name}:{x:g}" for name, x in mixture), liquid, T, rho,
                  f"{fluid.viscosity():.6g}", f"{fluid.conductivity():.6g}", sep=",")


if __name__ == "__main__":
    main()
