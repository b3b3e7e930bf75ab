"""Published temperature correlations: the forms of the fact tables, one value at a temperature.

A row is a mapping with the columns equation, c1 to c27, tmin_K, tmax_K and tc_used_K; absent coefficients are
empty. T is in K, the result in the unit of the property.
"""

import math

R = 8.314462618  # J/(mol K)


def number(text, otherwise=0.0):
    """The number of a cell, OTHERWISE where it is empty."""
    return float(text) if text not in ("", None) else otherwise


def coefficients(row):
    """Coefficients up to the last one that is given."""
    cells = [row.get(f"c{k}") or "" for k in range(1, 28)]
    while cells and not cells[-1]:
        cells.pop()
    return [number(cell) for cell in cells]


def _horner(c, x):
    y = 0.0
    for a in reversed(c):
        y = y * x + a
    return y


def _power_sum(c, h):
    return sum(a * h**b for a, b in zip(c[2::2], c[3::2]))


def _trc(c, T):
    v = c[0] + c[1] / T**2 * math.exp(-c[2] / T)
    if T > c[7]:
        y = (T - c[7]) / (T + c[6])
        v += c[3] * y**2 + (c[4] - c[5] / (T - c[7]) ** 2) * y**8
    return R * v


def _planck_einstein(c, T):
    pairs = int(c[2])
    v = c[1]
    for n, u in zip(c[3 : 3 + 2 * pairs : 2], c[4 : 4 + 2 * pairs : 2]):
        e = math.exp(-u / T)
        v += n * (u / T) ** 2 * e / (1 - e) ** 2
    rest = c[3 + 2 * pairs :]
    return c[0] * (v + sum(a * T**b for a, b in zip(rest[0::2], rest[1::2])))


def _hyperbolic(c, T):
    x, y = c[2] / T, c[4] / T
    first = (x / math.sinh(x)) ** 2 if x else 1.0
    return c[0] + c[1] * first + c[3] * (y / math.cosh(y)) ** 2


def _zabransky(c, r):
    return R * (c[0] * math.log(1 - r) + c[1] / (1 - r) + _horner(c[2:6], r))


def _antoine_extended(c, T, tc):
    x = max((T - c[6] - 273.15) / tc, 0.0)
    return 10 ** (c[0] - c[1] / (T + c[2]) + 0.43429 * x ** c[3] + c[4] * x**8 + c[5] * x**12)


def _wagner(c, t, r, third, fourth):
    return c[4] * math.exp((c[0] * t + c[1] * t**1.5 + c[2] * t**third + c[3] * t**fourth) / r)


def _ppds9(c, T):
    q = (c[2] - T) / (T - c[3])
    return c[4] * math.exp(math.copysign(abs(q) ** (1 / 3), q) * (c[0] + c[1] * q))


def _ln_tau(c, T, tmin, tmax, tc):
    low, high = sorted((math.log(1 - tmin / tc), math.log(1 - tmax / tc)))
    return math.exp(_horner(c, (2 * math.log(1 - T / tc) - low - high) / (high - low)))


def _value(row, T):
    given = coefficients(row)
    c = given + [0.0] * (27 - len(given))
    tc, tmin, tmax = (number(row[k]) for k in ("tc_used_K", "tmin_K", "tmax_K"))
    r = T / tc if tc else 0.0
    t = 1.0 - r
    s = (2 * T - tmax - tmin) / (tmax - tmin) if tmax > tmin else 0.0
    forms = {
        "DIPPR100": lambda: _horner(given, T),
        "INV_DIPPR100": lambda: 1 / _horner(given, T),
        "EXPPOLY": lambda: math.exp(_horner(given, T)),
        "DIPPR101": lambda: math.exp(c[0] + c[1] / T + c[2] * math.log(T) + c[3] * T ** c[4]),
        "DIPPR102": lambda: c[0] * T ** c[1] / (1 + c[2] / T + c[3] / T**2),
        "DIPPR105": lambda: c[0] / c[1] ** (1 + (1 - T / c[2]) ** c[3]),
        "DIPPR106": lambda: c[0] * t ** (c[1] + c[2] * r + c[3] * r**2 + c[4] * r**3),
        "DIPPR107": lambda: _hyperbolic(c, T),
        "DIPPR114": lambda: c[0] ** 2 / t + c[1] - 2 * c[0] * c[2] * t - c[0] * c[3] * t**2
        - c[2] ** 2 * t**3 / 3 - c[2] * c[3] * t**4 / 2 - c[3] ** 2 * t**5 / 5,
        "DIPPR116": lambda: c[0] + c[1] * t**0.35 + c[2] * t ** (2 / 3) + c[3] * t + c[4] * t ** (4 / 3),
        "CS16": lambda: c[0] + math.exp(c[1] / T + c[2] + c[3] * T + c[4] * T**2),
        "CS118": lambda: math.exp(c[0] + c[1] / T ** c[4] + c[2] * math.log(T) + c[3] * T**2),
        "ANTOINE_E": lambda: math.exp(c[0] - c[1] / (T + c[2])),
        "ANTOINE_10": lambda: 10 ** (c[0] - c[1] / (T + c[2])),
        "ANTOINE_EXT": lambda: _antoine_extended(c, T, tc),
        "WAGNER25": lambda: _wagner(c, t, r, 2.5, 5),
        "WAGNER36": lambda: _wagner(c, t, r, 3, 6),
        "PPDS9": lambda: _ppds9(c, T),
        "PPDS12": lambda: R * tc * (c[0] * t ** (1 / 3) + c[1] * t ** (2 / 3) + c[2] * t + c[3] * t**2
                                    + c[4] * t**6),
        "PPDS14": lambda: c[0] * t ** c[1] * (1 + c[2] * t),
        "SIGMA_SUM": lambda: sum(c[k] * t ** c[k + 1] for k in (0, 2, 4) if c[k]),
        "SOMAYAJULU": lambda: c[0] * t**1.25 + c[1] * t**2.25 + c[2] * t**3.25,
        "VISC_ANT10": lambda: 10 ** (c[0] + c[1] / (c[2] - T)),
        "POWER": lambda: c[0] * T ** c[1],
        "SHOMATE": lambda: _horner(c[:4], T) + c[4] / T**2,
        "TRC_CP": lambda: _trc(c, T),
        "ZABR_QUASI": lambda: _zabransky(c, r),
        "SPOLY": lambda: _horner(given, s),
        "INV_SPOLY": lambda: 1 / _horner(given, s),
        "EXP_SPOLY": lambda: math.exp(_horner(given, s)),
        "EXP_SPOLY_LNTAU": lambda: _ln_tau(given, T, tmin, tmax, tc),
        "ANC_EXP_TR": lambda: c[0] * math.exp(c[1] / T * _power_sum(given, 1 - T / c[1])),
        "ANC_EXP": lambda: c[0] * math.exp(_power_sum(given, 1 - T / c[1])),
        "ANC_LIN": lambda: c[0] * (1 + _power_sum(given, 1 - T / c[1])),
        "RATPOLY": lambda: _horner(given[1 : 1 + int(c[0])], T) / _horner(given[1 + int(c[0]) :], T),
        "CP0_PE": lambda: _planck_einstein(given, T),
    }
    return forms[row["equation"]]()


def evaluate(row, T):
    """Value of a correlation at T; None where the form has none, or none that is positive."""
    try:
        value = _value(row, T)
    except (ArithmeticError, ValueError, KeyError):
        return None
    if isinstance(value, complex) or not math.isfinite(value) or value <= 0:
        return None
    return value
