"""Stated estimates that fill what the fact tables leave open.

Each estimate is a relation of the literature with a correlation of the bank's own form, or a least-squares group
contribution trained on the compounds of the tables that have the figure. Units: K, Pa, mol/m3, J/mol, J/(mol K).
"""

import math

from facts_forms import R, evaluate, number

T_ROOM = 298.15  # K
T_60F = 288.706  # K
WATER_60F = 999.016  # kg/m3
INNER = slice(1, 7)  # nodes of the compounds whose relations are short
NODES = (200.0, 300.0, 400.0, 500.0, 600.0, 800.0, 1000.0, 1200.0)  # of an estimated ideal-gas heat capacity [K]
ATOMS = ("C", "H", "N", "O", "S", "F", "Cl", "Br", "I")
# Entropy of an atom in its element, 298.15 K, 1 bar [J/(mol K)]: CODATA key values.
ELEMENT_ENTROPY = {"C": 5.74, "H": 65.34, "N": 95.8045, "O": 102.576, "S": 32.054, "F": 101.3955,
                   "Cl": 111.5405, "Br": 76.105, "I": 58.07, "Si": 18.81}
# Heat and entropy of formation of the products of combustion: CODATA key values.
PRODUCTS = {"CO2": (-393510.0, 213.785), "H2O": (-285830.0, 69.95), "H2Og": (-241826.0, 188.835),
            "SO2": (-296810.0, 248.223)}


def atoms_of(fact):
    """Atoms of a molecule by element symbol."""
    atoms = {a: int(fact[a]) for a in ATOMS if int(fact[a])}
    for item in filter(None, fact["other_atoms"].split(";")):
        symbol, count = item.split(":")
        atoms[symbol] = atoms.get(symbol, 0) + int(count)
    return atoms


def correlation(equation, coefficients, tmin, tmax, tc, method):
    """A row of the correlation tables that holds an estimate."""
    row = {"equation": equation, "tmin_K": f"{tmin:.6g}", "tmax_K": f"{tmax:.6g}",
           "tc_used_K": f"{tc:.8g}" if tc else "", "rank": "1", "flag": "estimated", "src": "EST: " + method}
    row.update({f"c{k}": f"{c:.9g}" for k, c in enumerate(coefficients, 1)})
    return row


# ---- vapour pressure, liquid density, heat of vaporisation -------------------------------------------------------


def vapour_pressure(tc, pc, tb):
    """B. I. Lee and M. G. Kesler, AIChE J. 21 (1975) 510, with the acentric factor that meets the boiling point."""
    def terms(tr):
        l, t6 = math.log(tr), tr**6
        return (5.92714 - 6.09648 / tr - 1.28862 * l + 0.169347 * t6,
                15.2518 - 15.6875 / tr - 13.4721 * l + 0.43577 * t6)
    simple, slope = terms(tb / tc)
    w = (math.log(101325.0 / pc) - simple) / slope
    log_term = -(1.28862 + 13.4721 * w)
    c = (math.log(pc) + 5.92714 + 15.2518 * w - log_term * math.log(tc), -(6.09648 + 15.6875 * w) * tc, log_term,
         (0.169347 + 0.43577 * w) / tc**6, 6)
    return correlation("DIPPR101", c, 0.35 * tc, tc, tc, "Lee and Kesler 1975 through the boiling point")


def rackett_z(tc, pc, rho, T):
    """Parameter of the Rackett relation that meets the density RHO at T."""
    return (pc / (rho * R * tc)) ** (1 / (1 + (1 - T / tc) ** (2 / 7)))


def liquid_density(tc, pc, omega, known):
    """H. G. Rackett, J. Chem. Eng. Data 15 (1970) 514 in the form of Spencer and Danner, through one density
    (T, rho, words), or with the parameter of Yamada and Gunn, J. Chem. Eng. Data 18 (1973) 234, where there is none."""
    if known:
        z, method = rackett_z(tc, pc, known[1], known[0]), f"Rackett 1970 through the {known[2]} at {known[0]:.6g} K"
    else:
        z, method = 0.29056 - 0.08775 * omega, "Rackett 1970 with the parameter of Yamada and Gunn 1973"
    return correlation("DIPPR105", (pc / (R * tc), z, tc, 2 / 7), 0.3 * tc, tc, tc, method)


def vaporisation_at_boiling(tc, pc, tb, psat):
    """Slope of the vapour pressure with the volumes of E. Haggenmacher, J. Am. Chem. Soc. 68 (1946) 1633."""
    low, high = evaluate(psat, tb * 0.999), evaluate(psat, tb * 1.001)
    if not low or not high:
        return None
    slope = math.log(high / low) / (math.log(1.001 / 0.999))
    return R * tb * slope * math.sqrt(1 - 101325.0 / pc / (tb / tc) ** 3)


def heat_of_vaporisation(tc, tb, at_boiling):
    """K. M. Watson, Ind. Eng. Chem. 35 (1943) 398."""
    c = (at_boiling / (1 - tb / tc) ** 0.38, 0.38)
    return correlation("DIPPR106", c, 0.4 * tc, tc, tc, "Watson 1943 from the heat of vaporisation at the boiling point")


def liquid_heat_capacity(tc, omega, ideal_gas):
    """J. S. Rowlinson and A. Bondi in the form of Poling, Prausnitz, O'Connell, 5th ed., 2001, equation 6-6.4, from the
    ideal-gas heat capacity IDEAL_GAS(T); None where that leaves too little of 0.45 to 0.85 Tc."""
    xs, ys = [], []
    for k in range(9):
        tr = 0.45 + 0.05 * k
        gas, q = ideal_gas(tr * tc), 1 - tr
        if gas:
            xs.append(tr * tc)
            ys.append(gas + R * (1.586 + 0.49 / q + omega * (4.2775 + 6.3 * q ** (1 / 3) / tr + 0.4355 / q)))
    if len(xs) < 5:
        return None
    return correlation("DIPPR100", polynomial(xs, ys, 3), xs[0], xs[-1], None,
                       "Rowlinson and Bondi on the ideal-gas heat capacity")


# ---- group contributions trained on the tables -------------------------------------------------------------------


def solve(matrix, right):
    """Gauss elimination with row pivots; RIGHT holds several right-hand sides a row."""
    n = len(matrix)
    rows = [list(matrix[i]) + list(right[i]) for i in range(n)]
    for k in range(n):
        pivot = max(range(k, n), key=lambda i: abs(rows[i][k]))
        rows[k], rows[pivot] = rows[pivot], rows[k]
        for i in range(k + 1, n):
            f = rows[i][k] / rows[k][k]
            if f:
                rows[i] = [a - f * b for a, b in zip(rows[i], rows[k])]
    for k in reversed(range(n)):
        rows[k] = [a / rows[k][k] for a in rows[k]]
        for i in range(k):
            f = rows[i][k]
            if f:
                rows[i] = [a - f * b for a, b in zip(rows[i], rows[k])]
    return [row[n:] for row in rows]


def groups_of(fact):
    """UNIFAC subgroups with a constant and the saturated atoms; None for a molecule without groups."""
    if not fact["unifac_original"]:
        return None
    features = {int(g.split(":")[0]): float(g.split(":")[1]) for g in fact["unifac_original"].split(";")}
    features["1"] = 1.0  # with it, the number of rings is a linear function of the counts
    return features


def elements_of(fact):
    """Atoms with a constant, for molecules that hold carbon or silicon."""
    atoms = atoms_of(fact)
    if "C" not in atoms and "Si" not in atoms:
        return None
    return {**{a: float(n) for a, n in atoms.items()}, "1": 1.0}


class Contributions:
    """Least squares of values over features; a feature is known when three compounds of the training set have it.

    Made twice: compounds that miss the first fit by more than eight times the median are faults of a table or no
    members of the scheme, and stay out of the second.
    """

    def __init__(self, samples):
        self.index, self.weights, self.count = {}, [], 0
        if not samples:
            return
        self.fit(samples)
        misses = []
        for x, y in samples:
            v = self.value(x)
            misses.append(0.0 if v is None else sum(abs(a - b) for a, b in zip(v, y)))
        limit = 8 * sorted(m for m in misses if m > 0)[sum(m > 0 for m in misses) // 2] if any(misses) else 0.0
        self.fit([s for s, m in zip(samples, misses) if m <= limit])

    def fit(self, samples):
        """The weights of the features."""
        count = {}
        for features, _ in samples:
            for f in features:
                count[f] = count.get(f, 0) + 1
        self.index = {f: k for k, f in enumerate(sorted((f for f in count if count[f] >= 3), key=str))}
        used = [(x, y) for x, y in samples if all(f in self.index for f in x)]
        self.count = len(used)
        n, m = len(self.index), len(samples[0][1])
        a = [[1e-6 if i == k else 0.0 for k in range(n)] for i in range(n)]
        b = [[0.0] * m for _ in range(n)]
        for x, y in used:
            for f, v in x.items():
                i = self.index[f]
                for g, w in x.items():
                    a[i][self.index[g]] += v * w
                for k in range(m):
                    b[i][k] += v * y[k]
        self.weights = solve(a, b)

    def value(self, features):
        """The estimate, or None where a feature is not known."""
        if features is None or any(f not in self.index for f in features):
            return None
        sums = [0.0] * len(self.weights[0])
        for f, v in features.items():
            for k, w in enumerate(self.weights[self.index[f]]):
                sums[k] += v * w
        return sums


class Estimator:
    """Groups where they cover the molecule, atoms otherwise. SAMPLES are (fact, values)."""

    def __init__(self, samples, with_atoms=True):
        self.groups = Contributions([(groups_of(f), y) for f, y in samples if groups_of(f)])
        self.atoms = Contributions([(elements_of(f), y) for f, y in samples if elements_of(f)]) if with_atoms else None

    def estimate(self, fact):
        """(values, "groups" or "atoms"), or None."""
        values = self.groups.value(groups_of(fact))
        if values is not None:
            return values, "groups"
        values = self.atoms.value(elements_of(fact)) if self.atoms else None
        return None if values is None else (values, "atoms")


def polynomial(xs, ys, degree):
    """Coefficients of the least-squares polynomial, lowest power first."""
    scale = max(abs(x) for x in xs)
    powers = [[(x / scale) ** k for k in range(degree + 1)] for x in xs]
    a = [[sum(p[i] * p[k] for p in powers) for k in range(degree + 1)] for i in range(degree + 1)]
    b = [[sum(p[i] * y for p, y in zip(powers, ys))] for i in range(degree + 1)]
    return [row[0] / scale**k for k, row in enumerate(solve(a, b))]


def ideal_gas_heat_capacity(values, kind, count):
    """Polynomial through the values at all nodes or at the inner ones."""
    nodes = NODES if len(values) == len(NODES) else NODES[INNER]
    c = polynomial(nodes, values, 4 if nodes == NODES else 3)
    return correlation("DIPPR100", c, nodes[0], nodes[-1], None,
                       f"{kind} contributions, least squares over {count} compounds of the bank")


# ---- combustion --------------------------------------------------------------------------------------------------


def element_entropy(fact):
    """Entropy of the elements in a molecule, None where one has no entry."""
    atoms = atoms_of(fact)
    if any(a not in ELEMENT_ENTROPY for a in atoms):
        return None
    return sum(n * ELEMENT_ENTROPY[a] for a, n in atoms.items())


def combustion(fact, hf, gf):
    """(net, gross, Gibbs) energy released on burning the ideal gas; None for other elements than C, H, N, O, S."""
    atoms = atoms_of(fact)
    if any(a not in "CHNOS" for a in atoms) or not atoms.get("C"):
        return None
    c, h, s = atoms.get("C", 0), atoms.get("H", 0), atoms.get("S", 0)

    def gibbs(product, elements):
        heat, entropy = PRODUCTS[product]
        return heat - T_ROOM * (entropy - sum(ELEMENT_ENTROPY[a] * n for a, n in elements.items()))
    burnt = c * PRODUCTS["CO2"][0] + s * PRODUCTS["SO2"][0]
    net = hf - burnt - h / 2 * PRODUCTS["H2Og"][0]
    gross = hf - burnt - h / 2 * PRODUCTS["H2O"][0]
    free = None
    if gf is not None:
        free = gf - c * gibbs("CO2", {"C": 1, "O": 2}) - s * gibbs("SO2", {"S": 1, "O": 2})
        free -= h / 2 * gibbs("H2O", {"H": 2, "O": 1})
    return net, gross, free


# ---- normal alkanes ----------------------------------------------------------------------------------------------


def alkane_series(alkanes):
    """Smooth Tc, Pc, Zc and acentric factor of the n-alkanes: functions of the carbon number.

    ALKANES is (carbon, mw, tc, pc, vc, omega, src_tc, src_pc) a member. sqrt(M/Pc) and Tc are quadratic in the carbon
    number, through the members from C17 on whose figures are measured, the acentric factor through all from C12 on; Zc
    is linear in 1/carbon, through C6 to C18.
    """
    estimated = ("DIPPR", "CS83")
    heavy = [a for a in alkanes if a[0] >= 17]
    root = polynomial([a[0] for a in heavy if a[7] not in estimated],
                      [math.sqrt(a[1] / a[3]) for a in heavy if a[7] not in estimated], 2)
    crit = polynomial([a[0] for a in heavy if a[6] not in estimated], [a[2] for a in heavy if a[6] not in estimated], 2)
    middle = [a for a in alkanes if a[0] >= 12]
    omega = polynomial([a[0] for a in middle], [a[5] for a in middle], 2)
    light = [a for a in alkanes if 6 <= a[0] <= 18]
    zc = polynomial([1 / a[0] for a in light], [a[3] * a[4] / (R * a[2]) for a in light], 1)

    def horner(c, x):
        return sum(k * x**i for i, k in enumerate(c))
    return (lambda n: horner(crit, n), lambda n, mw: mw / horner(root, n) ** 2, lambda n: horner(zc, 1 / n),
            lambda n: horner(omega, n))


def known_density(fact):
    """(T, rho) of the tables for a liquid, None where there is none or where it stands near the critical point."""
    tc, mw = number(fact["tc_K"]), number(fact["mw"])
    if fact["vliq_25C_m3_per_mol"] and T_ROOM < 0.95 * tc:
        return T_ROOM, 1 / number(fact["vliq_25C_m3_per_mol"]), "density"
    if fact["sg_60F"] and "~" not in fact["src_sg"] and T_60F < 0.95 * tc:
        return T_60F, number(fact["sg_60F"]) * WATER_60F / mw * 1000, "density"
    return None
