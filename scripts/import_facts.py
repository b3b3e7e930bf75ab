#!/usr/bin/env python3
"""Makes the tables of published data in data/ from a folder of fact tables.

    scripts/import_facts.py FACTS_DIR [--data DIR] [--report]

FACTS_DIR holds components.csv, numbers.csv, correlations.csv, correlations_long.csv, reference_fluids.csv and
reference_points.csv. Written are components.csv, reference_points.csv and the three tables of correlations. What a
person has decided stands in data/hand_values.csv and goes before the facts. What the facts leave open is filled by
a stated estimate, whose source begins with EST, or stays empty. The same input gives the same files.
"""

import argparse
import csv
import io
import sys
from collections import Counter
from pathlib import Path

import facts_estimates as est
from facts_forms import R, evaluate, number
from facts_names import interface_name, short_name
from facts_relations import Relations

COLUMNS = (
    "number code cas name name28 short_name interface_name synonyms formula family isofam C H N O S F Cl Br I other_atoms "
    "mw tc_K src_tc pc_Pa src_pc vc_m3_per_mol src_vc zc omega src_omega tb_K src_tb tm_K src_tm ttriple_K src_tt dipole_D src_dipole "
    "hf_gas_J_per_mol src_hf gf_gas_J_per_mol src_gf s_gas_J_per_molK src_s hcomb_net_J_per_mol hcomb_gross_J_per_mol "
    "src_hcomb gcomb_J_per_mol src_gcomb hfus_J_per_mol src_hfus hvap_tb_J_per_mol src_hvap vliq_25C_m3_per_mol src_vliq "
    "sg_60F src_sg solubility_param_Pa05 src_solpar parachor src_parachor radius_gyration_m src_rg unifac_original "
    "src_unifac unifac_dortmund src_dortmund").split()
CATALOGUE = ("number", "code", "name28", "isofam")
COEFFICIENTS = [f"c{k}" for k in range(1, 28)]
RELATION = ["cas", "property", "rank", "equation", "tmin_K", "tmax_K", "tc_used_K", *COEFFICIENTS, "flag", "source"]
POINTS = ["cas", "T_K", "psat_Pa", "rho_liq_sat_mol_m3", "rho_vap_sat_mol_m3", "hvap_J_mol", "cp_ig_J_mol_K", "source"]
# Column of the source of a column.
SOURCE_OF = {c: COLUMNS[k + 1] for k, c in enumerate(COLUMNS[:-1]) if COLUMNS[k + 1].startswith("src_")}
RELATION_HEAD = ("# Published correlations, coefficients as published (rescaled to the units below), T in K. The forms stand "
                 "in tools/bank/correlations.cpp.\n")
# file, properties with the most rows that are kept, second line of the heading
TABLES = (
    ("saturation_correlations.csv", {"psat": 6, "rho_liq_sat": 4, "hvap": 4, "cp_liq": 2},
     "# psat Pa, rho_liq_sat mol/m3, hvap J/mol, cp_liq J/(mol K). rank 1 is used first; a source EST is an estimate.\n"),
    ("ideal_gas_correlations.csv", {"cp_ig": 4}, "# cp_ig J/(mol K). rank 1 is used first; a source EST is an estimate.\n"),
    ("transport_correlations.csv", {"mu_liq_sat": 3, "k_liq_sat": 3, "sigma": 3, "mu_gas_dilute": 1, "k_gas_dilute": 1},
     "# Saturated liquid: mu_liq_sat Pa s, k_liq_sat W/(m K), sigma N/m; gas at low density: mu_gas_dilute Pa s, "
     "k_gas_dilute W/(m K). rank 1 is used first; rows that other sources contradict are left out.\n"),
)
FIRST_SMOOTH, FIRST_SMOOTH_VC = 23, 19  # carbon number from which n-alkanes follow the series


def read(path):
    with open(path, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(line for line in file if not line.startswith("#")))


def text_of(columns, rows, head=""):
    out = io.StringIO()
    out.write(head)
    writer = csv.writer(out, lineterminator="\n")
    # A code with blanks at its ends stands in quotes, so that an editor keeps them.
    quoted = {"code", "name", "name28", "short_name"} if "code" in columns else set()
    writer.writerow(columns)
    for row in rows:
        cells = [row.get(c) or "" for c in columns]
        line = io.StringIO()
        csv.writer(line, lineterminator="").writerow(cells)
        if quoted:
            out.write(",".join('"' + v.replace('"', '""') + '"' if c in quoted or any(x in v for x in ',"') else v
                               for c, v in zip(columns, cells)) + "\n")
        else:
            out.write(line.getvalue() + "\n")
    return out.getvalue()


class Importer:
    def __init__(self, folder, hand):
        self.facts = {r["cas"]: r for r in read(folder / "components.csv")}
        self.catalogue = read(folder / "numbers.csv")
        self.hand = read(hand) if hand.exists() else []
        self.equations = {r["cas"]: r for r in read(folder / "reference_fluids.csv")}
        self.point_rows = read(folder / "reference_points.csv")
        self.order = [r["cas"] for r in self.catalogue]
        self.counts = Counter()
        rows = [row for name in ("correlations.csv", "correlations_long.csv") for row in read(folder / name)]
        self.relations = Relations(rows, self.facts, self.hand, self.equations, self.counts)
        self.chosen = {}
        self.left_out = []

    def run(self):
        self.blank()
        self.smooth_alkanes()
        self.chosen = self.relations.choose(self.order, {p: n for _, most, _ in TABLES for p, n in most.items()})
        self.train()
        rows = []
        for entry in self.catalogue:
            row = self.component(entry)
            if row:
                rows.append(row)
        self.name(rows)
        self.apply_hand(rows)
        return rows

    def blank(self):
        """Takes out the facts that a hand value of nothing declares wrong; an estimate may fill the cell. Densities of
        unknown temperature are no figures at 25 C for what boils below it."""
        for f in self.facts.values():
            if f["src_vliq"].rstrip("*") in ("CAS-CC", "CRC-d") and number(f["tb_K"], 999) < est.T_60F:
                f["vliq_25C_m3_per_mol"] = f["src_vliq"] = ""
                self.counts["densities of unknown temperature left out"] += 1
        for h in self.hand:
            if not h["value"] and h["column"] != "leave_out" and h["cas"] in self.facts:
                fact, column = self.facts[h["cas"]], h["column"]
                fact[column] = ""
                fact[SOURCE_OF.get(column, column)] = ""

    # ---- n-alkanes -----------------------------------------------------------------------------------------------

    def smooth_alkanes(self):
        members = {}
        for entry in self.catalogue:
            f = self.facts[entry["cas"]]
            if entry["family"] == "paraffin" and entry["code"].endswith("P ") and entry["code"][:2].strip() == f["C"]:
                members[int(f["C"])] = f
        if not any(n >= FIRST_SMOOTH_VC for n in members):
            return
        tc, pc, zc, omega = est.alkane_series(
            [(n, *(number(f[k]) for k in ("mw", "tc_K", "pc_Pa", "vc_m3_per_mol", "omega")), f["src_tc"], f["src_pc"])
             for n, f in sorted(members.items())])
        for n, f in sorted(members.items()):
            if n >= FIRST_SMOOTH:
                self.fill(f, "pc_Pa", "src_pc", pc(n, number(f["mw"])), "EST:series")
                if f["src_tc"] in ("DIPPR", "CS83"):
                    self.fill(f, "tc_K", "src_tc", tc(n), "EST:series")
                self.fill(f, "omega", "src_omega", omega(n), "EST:series")
            if n >= FIRST_SMOOTH_VC:
                volume = zc(n) * R * number(f["tc_K"]) / number(f["pc_Pa"])
                self.fill(f, "vc_m3_per_mol", "src_vc", volume, "EST:series")
                f["zc"] = f"{zc(n):.5g}"

    # ---- estimates -----------------------------------------------------------------------------------------------

    def cp_at_nodes(self, cas):
        return [self.first_value(cas, "cp_ig", T) for T in est.NODES]

    def first_value(self, cas, prop, T):
        """Value of the first relation that holds at T, give or take 2 %; None without one."""
        return next((evaluate(r, T) for r in self.chosen[cas, prop]
                     if number(r["tmin_K"]) <= T * 1.02 and T * 0.98 <= number(r["tmax_K"])), None)

    def train(self):
        """Group contributions from the compounds that have the figures."""
        facts = [self.facts[cas] for cas in self.order]

        def with_value(column, factor=1.0):
            return [(f, [number(f[column]) * factor]) for f in facts if f[column]]
        heat = [(f, self.cp_at_nodes(f["cas"])) for f in facts]
        self.cp_samples = [(f, v) for f, v in heat if None not in v]
        inner = [(f, v[est.INNER]) for f, v in heat if None not in v[est.INNER]]
        self.estimators = {
            "cp_ig": est.Estimator(self.cp_samples),
            "cp_ig_short": est.Estimator(inner),
            "hf": est.Estimator(with_value("hf_gas_J_per_mol"), with_atoms=False),
            "s": est.Estimator(with_value("s_gas_J_per_molK"), with_atoms=False),
            "parachor": est.Estimator(with_value("parachor")),
            "vliq": est.Estimator([s for s in with_value("vliq_25C_m3_per_mol", 1e6) if number(s[0]["tc_K"]) > 450]),
        }

    def fill(self, row, column, source, value, method, digits=6):
        row[column], row[source] = f"{value:.{digits}g}", method
        self.counts[f"{column} {method.split(' ')[0]}"] += 1

    def component(self, entry):
        """One row of components.csv, and the estimated correlations that it needs."""
        fact = self.facts[entry["cas"]]
        row = {**fact, **{k: entry[k] for k in CATALOGUE}}
        needed = ("tc_K", "pc_Pa", "vc_m3_per_mol", "omega", "tb_K", "mw")
        reason = next((h["reason"] for h in self.hand if h["cas"] == entry["cas"] and h["column"] == "leave_out"), None)
        if reason:
            self.left_out.append(f"{entry['number']} {fact['name']}: {reason}")
            return None
        missing = [c for c in needed if not fact[c]]
        if missing:
            self.left_out.append(f"{entry['number']} {fact['name']}: no {', '.join(missing)}")
            return None
        tc, pc, tb, omega = (number(fact[c]) for c in ("tc_K", "pc_Pa", "tb_K", "omega"))
        if not tb < tc:
            self.left_out.append(f"{entry['number']} {fact['name']}: boiling point not below the critical temperature")
            return None
        self.need(row, "psat", lambda: est.vapour_pressure(tc, pc, tb))
        self.reach_boiling(row, tc, pc, tb)
        self.need(row, "rho_liq_sat", lambda: est.liquid_density(tc, pc, omega, self.one_density(fact)))
        self.need(row, "cp_ig", lambda: self.heat_capacity(fact))
        self.need(row, "cp_liq", lambda: est.liquid_heat_capacity(tc, omega, lambda T: self.first_value(row["cas"], "cp_ig", T)))
        self.liquid(row, tc)
        self.vaporisation(row, tc, pc, tb)
        self.formation(row)
        if not row["parachor"]:
            found = self.estimators["parachor"].estimate(fact)
            if found:
                self.fill(row, "parachor", "src_parachor", found[0][0], "EST:" + found[1])
        return row

    def need(self, row, prop, make):
        """An estimated correlation where the facts have none."""
        cas = row["cas"]
        if self.chosen[cas, prop] or (cas in self.equations and prop in ("psat", "rho_liq_sat", "cp_ig", "hvap")):
            return
        made = make()
        if made:
            self.chosen[cas, prop] = [{**made, "cas": cas, "property": prop}]
            self.counts[f"{prop} {made['src'].split(',')[0]}"] += 1

    def reach_boiling(self, row, tc, pc, tb):
        """The estimated vapour pressure as last choice where no published one comes near the boiling point."""
        rows = self.chosen[row["cas"], "psat"]
        near = any(number(r["tmin_K"]) <= 1.03 * tb and number(r["tmax_K"]) >= 0.97 * tb for r in rows)
        if near or row["cas"] in self.equations or "^" in row["src_tb"]:
            return
        made = {**est.vapour_pressure(tc, pc, tb), "cas": row["cas"], "property": "psat", "rank": str(int(rows[-1]["rank"]) + 1)}
        self.chosen[row["cas"], "psat"] = [*rows, made]
        self.counts["psat EST beside a narrow published one"] += 1

    def one_density(self, fact):
        """A liquid density for the Rackett relation: of the tables, else by contributions to the volume at 25 C."""
        known = est.known_density(fact)
        if known or number(fact["tc_K"]) < 450:
            return known
        found = self.estimators["vliq"].estimate(fact)
        if not found or found[0][0] <= 0:
            return None
        words = "group" if found[1] == "groups" else "element"
        return est.T_ROOM, 1e6 / found[0][0], f"volume by {words} contributions"

    def heat_capacity(self, fact):
        features = {"group": est.groups_of(fact), "element": est.elements_of(fact)}
        for kind, attribute in (("group", "groups"), ("element", "atoms")):
            for name in ("cp_ig", "cp_ig_short"):
                scheme = getattr(self.estimators[name], attribute)
                values = scheme.value(features[kind])
                if values and all(v > 0 for v in values):
                    return est.ideal_gas_heat_capacity(values, kind, scheme.count)
        return None

    def density(self, cas, T):
        """Liquid density by the first relation that reaches T, drawn on below its range; None without one."""
        for row in self.chosen[cas, "rho_liq_sat"]:
            drawn_on = "SPOLY" not in row["equation"] and "DIPPR100" not in row["equation"]
            if T <= number(row["tmax_K"]) and (T >= number(row["tmin_K"]) or drawn_on and T > 0.6 * number(row["tmin_K"])):
                v = evaluate(row, T)
                if v:
                    return v, row
        return None

    def liquid(self, row, tc):
        """Molar volume at 25 C and specific gravity; * marks a liquid below its melting point."""
        for column, source, T in (("vliq_25C_m3_per_mol", "src_vliq", est.T_ROOM), ("sg_60F", "src_sg", est.T_60F)):
            if row[column] or T > 0.97 * tc:
                continue
            found = self.density(row["cas"], T)
            if not found:
                continue
            rho, relation = found
            method = "EST:Rackett" if relation["flag"] == "estimated" else "EST:density"
            method += "*" if number(row["tm_K"]) > T else ""
            value = 1 / rho if column.startswith("v") else rho * number(row["mw"]) / 1000 / est.WATER_60F
            self.fill(row, column, source, value, method)

    def vaporisation(self, row, tc, pc, tb):
        cas = row["cas"]
        if not row["hvap_tb_J_per_mol"] and self.chosen[cas, "psat"]:
            value = est.vaporisation_at_boiling(tc, pc, tb, self.chosen[cas, "psat"][0])
            if value:
                self.fill(row, "hvap_tb_J_per_mol", "src_hvap", value, "EST:slope")
        at_boiling = number(row["hvap_tb_J_per_mol"])
        if at_boiling:
            self.need(row, "hvap", lambda: est.heat_of_vaporisation(tc, tb, at_boiling))
        room = est.T_ROOM
        if not row["solubility_param_Pa05"] and at_boiling and row["vliq_25C_m3_per_mol"] and room < 0.9 * tc:
            at_room = at_boiling * ((1 - room / tc) / (1 - tb / tc)) ** 0.38
            density = (at_room - R * room) / number(row["vliq_25C_m3_per_mol"])
            if density > 0:
                self.fill(row, "solubility_param_Pa05", "src_solpar", density**0.5, "EST:hvap")

    def formation(self, row):
        if not row["hf_gas_J_per_mol"]:
            found = self.estimators["hf"].estimate(row)
            if found:
                self.fill(row, "hf_gas_J_per_mol", "src_hf", found[0][0], "EST:groups")
        elements = est.element_entropy(row)
        if not row["s_gas_J_per_molK"]:
            found = self.estimators["s"].estimate(row)
            if found and found[0][0] > 0:
                self.fill(row, "s_gas_J_per_molK", "src_s", found[0][0], "EST:groups")
        if not row["gf_gas_J_per_mol"] and row["hf_gas_J_per_mol"] and row["s_gas_J_per_molK"] and elements is not None:
            gf = number(row["hf_gas_J_per_mol"]) - est.T_ROOM * (number(row["s_gas_J_per_molK"]) - elements)
            self.fill(row, "gf_gas_J_per_mol", "src_gf", gf, "EST:hf,s")
        if not row["hf_gas_J_per_mol"]:
            return
        gf = number(row["gf_gas_J_per_mol"]) if row["gf_gas_J_per_mol"] else None
        burnt = est.combustion(row, number(row["hf_gas_J_per_mol"]), gf)
        if not burnt or burnt[0] <= 0:
            return
        if not row["hcomb_net_J_per_mol"] and not row["hcomb_gross_J_per_mol"]:
            method = "EST:hf" if row["src_hf"].startswith("EST") else "calc:hf"
            self.fill(row, "hcomb_net_J_per_mol", "src_hcomb", burnt[0], method, 7)
            self.fill(row, "hcomb_gross_J_per_mol", "src_hcomb", burnt[1], method, 7)
        if burnt[2] is not None:
            self.fill(row, "gcomb_J_per_mol", "src_gcomb", burnt[2],
                      "EST:gf" if row["src_gf"].startswith("EST") else "calc:gf", 7)

    # ---- names and hand values -----------------------------------------------------------------------------------

    def name(self, rows):
        given = {h["cas"]: h["value"] for h in self.hand if h["column"] == "short_name"}
        taken = {v.upper() for v in given.values()}
        for row in rows:
            row["short_name"] = given.get(row["cas"]) or short_name(row["name"], taken)
            taken.add(row["short_name"].upper())
        taken = set()
        for row in rows:
            row["interface_name"] = interface_name(row["name"], taken)
            taken.add(row["interface_name"])

    def apply_hand(self, rows):
        by_cas = {r["cas"]: r for r in rows}
        for h in self.hand:
            if h["value"] and h["column"] != "short_name" and ":" not in h["column"] and h["cas"] in by_cas:
                by_cas[h["cas"]][h["column"]] = h["value"]

    # ---- tables --------------------------------------------------------------------------------------------------

    def relation_rows(self, rows, properties):
        for row in rows:
            for prop in sorted(properties):
                for r in self.chosen[row["cas"], prop]:
                    yield {**r, "source": r["src"]}

    def points(self, rows):
        wanted = {r["cas"] for r in rows}
        for p in self.point_rows:
            if p["cas"] in wanted:
                yield {**p, "source": f"{self.equations[p['cas']]['eos_citation']}; CoolProp fluid file"}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("facts", type=Path, help="folder of the fact tables")
    parser.add_argument("--data", type=Path, default=Path("data"), help="folder of the tables that are written")
    parser.add_argument("--report", action="store_true", help="print how many cells of each kind are estimates")
    options = parser.parse_args()
    try:
        work = Importer(options.facts, options.data / "hand_values.csv")
        rows = work.run()
    except (OSError, KeyError, ValueError) as fault:
        print(f"import_facts: {type(fault).__name__}: {fault}", file=sys.stderr)
        return 1
    files = {"components.csv": text_of(COLUMNS, rows)}
    for file, properties, head in TABLES:
        files[file] = text_of(RELATION, work.relation_rows(rows, properties), RELATION_HEAD + head)
    files["reference_points.csv"] = text_of(
        POINTS, work.points(rows),
        "# Points on the saturation line from reference equations of state (citation in the last column), evaluated with the\n"
        "# equation files of CoolProp (Bell et al., Ind. Eng. Chem. Res. 53 (2014) 2498).\n")
    for file, text in files.items():
        (options.data / file).write_text(text, encoding="utf-8", newline="\n")
    print(f"{len(rows)} components, {len(work.left_out)} left out")
    for line in work.left_out:
        print("left out:", line)
    if options.report:
        for kind, count in sorted(work.counts.items()):
            print(f"{count:5} {kind}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
