#!/usr/bin/env python3
"""Imports the facts on pairs of components into the tables of the bank.

Usage: import_pairs.py FACTS DATA

Reads FACTS/binary and FACTS/chain, writes DATA/pair_points.csv, pair_published.csv, pair_henry.csv and nrtl.csv.
"""

import csv
import math
import sys
from pathlib import Path

# Gases whose parameters in water are fitted to Henry constants: CAS number, parameter in the gas phase.
SOREIDE = "Soreide and Whitson 1992"
SOAVE = "published lists for the Soave cubic"
GASES_IN_WATER = {
    "124-38-9": (0.19, SOREIDE), "7783-06-4": (0.135, SOREIDE), "10024-97-2": (0.19, SOREIDE),
    "7727-37-9": (0.48, SOREIDE), "7782-44-7": (0.48, SOREIDE), "7440-37-1": (0.48, SOREIDE),
    "7446-09-5": ("", ""), "630-08-0": (0.48, SOREIDE), "463-58-1": (0.19, SOREIDE), "1333-74-0": (0.48, SOREIDE),
    "10102-43-9": (0.48, SOREIDE), "74-82-8": (0.5, SOAVE), "74-84-0": (0.5, SOAVE), "74-98-6": (0.53, SOAVE),
    "106-97-8": (0.52, SOAVE), "75-28-5": (0.52, SOAVE),
}
WATER = {
    "124-38-9": 0.19, "7783-06-4": 0.135, "10024-97-2": 0.19, "7727-37-9": 0.48, "7782-44-7": 0.48,
    "7440-37-1": 0.48, "7446-09-5": None, "630-08-0": 0.48, "463-58-1": 0.19, "1333-74-0": 0.48,
    "10102-43-9": 0.48,
}
WATER = "7732-18-5"
# Parameters that belong to a cubic with quantum corrections and not to the plain one.
OTHER_EQUATIONS = {"doi:10.1016/j.fluid.2020.112790"}
# Points with a misprint beyond doubt: system, T, P. The pressure lies below that of a liquid with far less propane.
MISPRINTS = {("propane/ethanol", "333.99", "969900")}
# Best source of a Henry constant first.
HENRY_ORDER = ("Klauda", "correlations", "Sander")
# Two-term forms hold near 298 K only, and a form with a heat of solution that rises with temperature is left aside.
LEFT_ASIDE = {("75-28-5", "Klauda")}
# Largest size of an NRTL tau from 273 to 423 K that can belong to a liquid mixture.
LARGEST_TAU = 25.0


def read(path):
    with open(path, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(line for line in file if not line.startswith("#")))


def write(path, comments, columns, rows):
    with open(path, "w", newline="", encoding="utf-8") as file:
        for comment in comments:
            file.write(f"# {comment}\n")
        file.write(",".join(columns) + "\n")
        for row in rows:
            cells = []
            for column in columns:
                text = str(row.get(column, ""))
                quoted = column in ("code1", "code2") or any(c in text for c in ',"')
                cells.append('"' + text.replace('"', "'") + '"' if quoted else text)
            file.write(",".join(cells) + "\n")


class Components:
    def __init__(self, data):
        rows = read(data / "components.csv")
        self.number = {row["cas"]: int(row["number"]) for row in rows}
        self.code = {int(row["number"]): row["code"] for row in rows}

    def known(self, row):
        return row["cas1"] in self.number and row["cas2"] in self.number

    def pair(self, row):
        """The head of a row with ascending numbers, and whether the components changed places."""
        first, second = self.number[row["cas1"]], self.number[row["cas2"]]
        turned = first > second
        low, high = min(first, second), max(first, second)
        return {"number1": low, "number2": high, "code1": self.code[low], "code2": self.code[high]}, turned


HEAD = ["number1", "number2", "code1", "code2"]


def other(fraction, turned):
    if not turned or fraction == "":
        return fraction
    return f"{1.0 - float(fraction):.10g}"


def points(facts, data, components):
    rows = []
    for row in read(facts / "binary/vle_checks.csv"):
        if not components.known(row):
            continue
        head, turned = components.pair(row)
        doubt = ""
        misprint = (row["system"], row["T_K"], row["P_Pa"]) in MISPRINTS
        if row["flag"].startswith("suspect") or misprint:
            doubt = "suspect"
        elif row["flag"]:
            doubt = "far"
        rows.append(head | {"kind": row["kind"], "type": row["data_type"], "T_K": row["T_K"], "P_Pa": row["P_Pa"],
                            "x1": other(row["x1"], turned), "y1": other(row["y1"], turned), "doubt": doubt,
                            "citation": row["citation"]})
    rows.sort(key=lambda r: (r["number1"], r["number2"]))
    write(data / "pair_points.csv",
          ["Vapour-liquid equilibria of pairs: measured points, most of them from the NIST ThermoML archive, and points",
           "computed with GERG-2008. x1, y1: mole fractions of component number1 in liquid and vapour. doubt: suspect is a",
           "set that disagrees with others or a misprint, far a point far off a plain cubic. Made by",
           "scripts/import_pairs.py."],
          HEAD + ["kind", "type", "T_K", "P_Pa", "x1", "y1", "doubt", "citation"], rows)


def published(facts, data, components):
    rows = {}
    for row in read(facts / "binary/recommended.csv"):
        head, _ = components.pair(row)
        if "extreme" in row["flags"]:
            continue
        basis = row["basis"].replace("fitted here", "fitted")
        rows[head["number1"], head["number2"]] = head | {"equation": "soave", "kij": row["kij"], "kij_t_1_K": "",
                                                         "basis": basis}
    for file, equation in (("srk_kij", "soave"), ("pr_kij", "robinson")):
        for row in read(facts / f"binary/{file}.csv"):
            if not components.known(row) or row["rank"] != "1" or float(row["kij"]) == 0.0:
                continue
            head, _ = components.pair(row)
            if "extreme" in row["flags"] or "not stated" in row["source"] or row["source"] in OTHER_EQUATIONS:
                continue
            key = head["number1"], head["number2"]
            rows.setdefault(key, head | {"equation": equation, "kij": row["kij"], "kij_t_1_K": row["kij_T_1_per_K"],
                                         "basis": row["source"]})
    write(data / "pair_published.csv",
          ["Published interaction parameters of pairs and the cubic that they belong to. Placeholders of 0.5 and values",
           "without a stated origin are left out. Made by scripts/import_pairs.py."],
          HEAD + ["equation", "kij", "kij_t_1_K", "basis"], [rows[key] for key in sorted(rows)])


def henry(facts, data, components):
    rows = []
    table = [r for r in read(facts / "chain/henry.csv") if r["solvent_cas"] == WATER and r["status"] == "ok"]
    for gas, (parameter, origin) in GASES_IN_WATER.items():
        found = [r for r in table if r["gas_cas"] == gas
                 and not any(gas == g and r["source"].startswith(s) for g, s in LEFT_ASIDE)]
        found.sort(key=lambda r: next(i for i, name in enumerate(HENRY_ORDER) if r["source"].startswith(name)))
        best = found[0]
        head, _ = components.pair({"cas1": gas, "cas2": WATER})
        near = best["source"].startswith("Sander")
        rows.append(head | {"gas": components.number[gas], "h1": best["h1"], "h2_K": best["h2_K"], "h3": best["h3"],
                            "h4_1_K": best["h4_per_K"], "tmin_K": 280, "tmax_K": 320 if near else 360,
                            "gas_phase": parameter, "gas_origin": origin, "source": best["source"]})
    rows.sort(key=lambda r: (r["number1"], r["number2"]))
    write(data / "pair_henry.csv",
          ["Henry constants of gases in water: ln H = h1 + h2/T + h3 ln T + h4 T, H in Pa, fugacity over mole fraction.",
           "gas_phase: interaction parameter in the other phase, and where it comes from: Soreide and Whitson, Fluid Phase",
           "Equilib. 77 (1992) 217, or published lists. Made by scripts/import_pairs.py."],
          HEAD + ["gas", "h1", "h2_K", "h3", "h4_1_K", "tmin_K", "tmax_K", "gas_phase", "gas_origin", "source"], rows)


def plausible(row):
    if "alpha-out-of-range" in row["flags"]:
        return False
    for t in (273.15, 323.15, 373.15, 423.15):
        for side in ("12", "21"):
            tau = (float(row[f"tau{side}_0"]) + float(row[f"tau{side}_1_K"]) / t
                   + float(row[f"tau{side}_2_K2"]) / (t * t))
            if math.fabs(tau) > LARGEST_TAU:
                return False
    return True


def nrtl(facts, data, components):
    rows = {}
    left = 0
    for row in sorted(read(facts / "binary/nrtl.csv"), key=lambda r: int(r["rank"])):
        if not components.known(row):
            continue
        head, turned = components.pair(row)
        key = head["number1"], head["number2"]
        if key in rows:
            continue
        if not plausible(row):
            left += 1
            continue
        one, two = ("21", "12") if turned else ("12", "21")
        rows[key] = head | {
            "alpha": row["alpha"], "alphat_1_K": 0,
            "t0_12": row[f"tau{one}_0"], "t1_12_K": row[f"tau{one}_1_K"], "t2_12_K2": row[f"tau{one}_2_K2"],
            "t0_21": row[f"tau{two}_0"], "t1_21_K": row[f"tau{two}_1_K"], "t2_21_K2": row[f"tau{two}_2_K2"],
            "source": row["source"]}
    print(f"nrtl: {len(rows)} pairs, {left} implausible rows left out")
    write(data / "nrtl.csv",
          ["NRTL sets: tau = t0 + t1/T + t2/T^2, non-randomness alpha + alphat T. 12 stands for tau of number1 around",
           "number2: ln gamma1 at infinite dilution is tau21 + tau12 exp(-alpha tau12). Made by scripts/import_pairs.py."],
          HEAD + ["alpha", "alphat_1_K", "t0_12", "t1_12_K", "t2_12_K2", "t0_21", "t1_21_K", "t2_21_K2", "source"],
          [rows[key] for key in sorted(rows)])


def main():
    facts, data = Path(sys.argv[1]), Path(sys.argv[2])
    components = Components(data)
    points(facts, data, components)
    published(facts, data, components)
    henry(facts, data, components)
    nrtl(facts, data, components)


if __name__ == "__main__":
    main()
