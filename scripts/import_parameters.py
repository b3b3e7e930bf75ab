#!/usr/bin/env python3
"""Makes the tables of model parameters in data/ from a folder of fact tables.

    scripts/import_parameters.py FACTS_DIR [--data DIR]

FACTS_DIR holds the folders unifac, association, alpha, solids, chain and components. Written are unifac_subgroups.csv,
unifac_interactions.csv, association_pure.csv, association_pairs.csv, srk_twu.csv, hydrate_langmuir.csv,
hydrate_kihara.csv, hydrate_solubility.csv and hydrate_points.csv. Numbers keep the digits of their source. The same input gives the same
files.
"""

import argparse
import csv
import io
import sys
from pathlib import Path

# ---------------------------------------------------------------- groups

HIGHEST_SUBGROUP = 160
HIGHEST_MAIN_GROUP = 77
FIRST_FREE = 110  # numbers from here on that the original table does not use

# A component has one list of groups, in the numbers of the original table. Every other table is therefore put under
# these numbers: "a-b>c" puts the published subgroups a to b under c and the numbers behind it. A group that the
# original table does not have takes the next free number.
DORTMUND = ("1-26>1 28-36>28 40-77>40 91-92>94 100>96 101-103>97 122-124>102 110-111>118 112-114>112 153>153")
LYNGBY = ("1-8>1 9>70 10-11>9 12-14>14 15-16>18 17>20 18-19>21 20-23>24 25-29>31 31-33>37 34-35>40 36>42 37-45>44")
LINEAR = ("1-8>1 9>70 13-14>65 15-16>9 18-20>11 34-37>14 38>62 39-40>100 42-43>18 48>20 50>61 51-52>21 55>23 58>77 "
          "59-61>24 63>27 66-68>28 71-73>31 74-75>34 76-78>37 79>36 85-86>40 90>68 94-95>42 99-101>44 102-104>47 "
          "105-106>50 107>52 108>69 109>53 112>74 114>75 117>76 118>71 120-127>86 128>63 130>64 132-134>54 136>57 "
          "138-139>59 142-144>102 146>58 147-149>106 153>67 161>72 162-163>97 164>73 165>99 166>95 168>96 169>94 "
          "195>85 196>105 197-203>78")
# table, stem of the fact files, numbers, names of the three parameters in the fact file
TABLES = (
    ("original", "original", None, ("a_K", None, None)),
    ("dortmund", "dortmund", DORTMUND, ("a_K", "b_dimensionless", "c_per_K")),
    ("lyngby", "lyngby", LYNGBY, ("a1_K", "a2_dimensionless", "a3_dimensionless")),
    ("linear", "linear_nistkt", LINEAR, ("a1_K", "a2_dimensionless", "a3_dimensionless")),
)

SUBGROUP_HEAD = (
    "# Subgroups of the group-contribution tables. R, Q [-], molar mass g/mol. subgroup is the number in the file and in\n"
    "# the components, published_subgroup that of the publication; they differ where a table has a numbering of its own.\n"
    "# Made by scripts/import_parameters.py.\n")
INTERACTION_HEAD = (
    "# Interaction of main groups, main_i the first index of a_ij. original: psi = exp(-a/T), a K. dortmund:\n"
    "# exp(-(a + b T + c T^2)/T), a K, b -, c 1/K. lyngby, linear: exp(-(a + b (T - T0) + c (T ln(T0/T) + T - T0))/T),\n"
    "# T0 = 298.15 K, a K, b and c -. A pair without a row has no parameters. Made by scripts/import_parameters.py.\n")


def ranges(text):
    """Published number to number in the file."""
    result = {}
    for item in text.split():
        published, first = item.split(">")
        low, _, high = published.partition("-")
        for step in range(int(high or low) - int(low) + 1):
            result[int(low) + step] = int(first) + step
    return result


def read(path):
    with open(path, newline="", encoding="utf-8") as file:
        return list(csv.DictReader(file))


def write(path, head, columns, rows):
    """Writes a table. The sources of its rows stand numbered in the heading."""
    at = columns.index("source")
    sources = sorted({row[at] for row in rows})
    rows = [(*row[:at], sources.index(row[at]) + 1, *row[at + 1:]) for row in rows]
    text = io.StringIO()
    text.write(head)
    for number, source in enumerate(sources, 1):
        text.write(f"# source {number}: {source}\n")
    table = csv.writer(text, lineterminator="\n")
    table.writerow(columns)
    table.writerows(rows)
    path.write_text(text.getvalue(), encoding="utf-8")
    print(f"{path}: {len(rows)} rows")


def fail(text):
    sys.exit(f"import_parameters: {text}")


def plain_name(name):
    return name.replace("\u2261", "#")[:8]


def subgroup_rows(facts, formulas):
    for table, stem, mapping, _ in TABLES:
        rows = [row for row in read(facts / "unifac" / f"{stem}_subgroups.csv")
                if int(row["main_group"]) <= HIGHEST_MAIN_GROUP]
        known = ranges(mapping) if mapping else {int(row["subgroup"]): int(row["subgroup"]) for row in rows}
        used = set(known.values())
        free = (number for number in range(FIRST_FREE, HIGHEST_SUBGROUP + 1)
                if number not in used and number not in formulas)
        for row in rows:
            published = int(row["subgroup"])
            if mapping and published in known:
                number = known[published]
                # Counterparts must be the same atoms; numbers that the original table does not use are free to take.
                if number in formulas and formulas[number] != row["formula"]:
                    fail(f"{table} {published} {row['formula']} is not {number} {formulas[number]}")
            else:
                number = known[published] if not mapping else next(free)
            yield (table, number, published, row["main_group"], row["main_group_name"], plain_name(row["name8"]), row["R"],
                   row["Q"], row["molar_mass_g_mol"], row["formula"], row["note"], row["source"])


def import_unifac(facts, data):
    formulas = {int(row["subgroup"]): row["formula"] for row in read(facts / "unifac/original_subgroups.csv")
                if int(row["main_group"]) <= HIGHEST_MAIN_GROUP}
    rows = sorted(subgroup_rows(facts, formulas), key=lambda row: ([t[0] for t in TABLES].index(row[0]), row[1]))
    keys = [row[:2] for row in rows]
    if len(set(keys)) != len(keys):
        fail("two subgroups have one number")
    write(data / "unifac_subgroups.csv", SUBGROUP_HEAD,
          "table subgroup published_subgroup main_group main_group_name name8 R Q molar_mass_g_mol formula note source".split(),
          rows)
    pairs = []
    for table, stem, _, columns in TABLES:
        groups = {row[3] for row in rows if row[0] == table}
        for row in read(facts / "unifac" / f"{stem}_interactions.csv"):
            if row["main_i"] in groups and row["main_j"] in groups:
                pairs.append((table, row["main_i"], row["main_j"], *(row[c] if c else "0" for c in columns), row["source"]))
    write(data / "unifac_interactions.csv", INTERACTION_HEAD, "table main_i main_j a b c source".split(), pairs)


# ---------------------------------------------------------------- association

# Half the number of sites of a component that associates with others only. One site each; for hydrogen sulphide the
# source leaves the number open, and one site is an assumption.
SOLVATING = {"124-38-9": "0.5", "7783-06-4": "0.5"}

PURE_HEAD = (
    "# Association model: sqrt(a) = sqrt(a0) (1 + c1 (1 - sqrt(T/Tc))) with the Tc of the row. a0 Pa m6/mol2, b m3/mol,\n"
    "# eps J/mol, beta -, half_sites: half the number of sites. One set a component: sets for the simplified radial\n"
    "# function only, published before recovered. Made by scripts/import_parameters.py.\n")
PAIR_HEAD = (
    "# Pairs of the association model. kij + kijT T, kijT 1/K; cross rule with beta -, eps J/mol where the source gives\n"
    "# them. One row a pair, published before package values. Made by scripts/import_parameters.py.\n")


def half_sites(row):
    return SOLVATING.get(row["cas"], row["ASF"]) if row["scheme"].startswith("inert") else row["ASF"]


def import_association(facts, data):
    order = {"published": 0, "recovered": 1}
    chosen = {}
    for row in read(facts / "association/cpa_pure.csv"):
        if row["rdf"] != "simplified" or row["status"] not in order:
            continue
        held = chosen.get(row["cas"])
        if held is None or order[row["status"]] < order[held["status"]]:
            chosen[row["cas"]] = row
    rows = [(row["cas"], row["name"], row["a0_Pa_m6_mol2"], row["b_m3_mol"], row["c1"], row["eps_assoc_J_mol"], row["beta"],
             row["scheme"].split()[0].rstrip(";"), half_sites(row), row["Tc_used_K"], row["status"], row["source"],
             row["note"]) for _, row in sorted(chosen.items())]
    write(data / "association_pure.csv", PURE_HEAD,
          "cas name a0_Pa_m6_per_mol2 b_m3_per_mol c1 eps_J_per_mol beta scheme half_sites tc_K status source note".split(),
          rows)

    order = {"published": 0, "package": 1}
    chosen = {}
    for row in read(facts / "association/cpa_binary.csv"):
        if row["rdf"] != "simplified":
            continue
        key = tuple(sorted((row["cas1"], row["cas2"])))
        held = chosen.get(key)
        if held is None or order[row["status"]] < order[held["status"]]:
            chosen[key] = row
    rules = {"none": "none", "CR-1": "CR-1", "ECR": "ECR", "solvation (modified CR-1)": "solvation"}
    rows = [(row["cas1"], row["name1"], row["cas2"], row["name2"], row["kij"], row["kijT_per_K"], rules[row["cross_rule"]],
             row["beta_cross"], row["eps_cross_J_mol"], row["status"], row["source"], row["note"])
            for _, row in sorted(chosen.items())]
    write(data / "association_pairs.csv", PAIR_HEAD,
          "cas1 name1 cas2 name2 kij kijT_per_K cross_rule beta eps_J_per_mol status source note".split(), rows)


# ---------------------------------------------------------------- alpha functions

TWU_HEAD = (
    "# alpha = (T/Tc)^(N (M - 1)) exp(L (1 - (T/Tc)^(M N))) for the cubic of Soave. tc_K and pc_Pa belong to the set.\n"
    "# Made by scripts/import_parameters.py.\n")


def import_twu(facts, data):
    components = {row["cas"] for row in read(facts / "components/numbers.csv")}
    rows = [(row["cas"], row["name"], row["c1_L"], row["c2_M"], row["c3_N"], row["Tc_K"], row["Pc_Pa"], row["source"])
            for row in read(facts / "alpha/twu_srk.csv") if row["cas"] in components]
    write(data / "srk_twu.csv", TWU_HEAD, "cas name L M N tc_K pc_Pa source".split(), sorted(rows))


# ---------------------------------------------------------------- hydrates

PREFERRED = "Munck, Skjold-Jorgensen"
CORE_SOURCES = ("Parrish & Prausnitz 1972", "Ng & Robinson 1977")

LANGMUIR_HEAD = (
    "# Published Langmuir coefficients of hydrate formers: C = (A/T) exp(B/T), A K/bar, B K. One set a former and cavity.\n"
    "# They belong to water constants of 1264 and 883 J/mol. Made by scripts/import_parameters.py.\n")
KIHARA_HEAD = (
    "# Kihara cell potential of hydrate formers: core radius and collision diameter in Angstrom, well depth over k in K.\n"
    "# Made by scripts/import_parameters.py.\n")
SOLUBILITY_SOURCES = ("correlations collected by ChemSep", "Klauda & Sandler 2000")
SOLUBILITY_HEAD = (
    "# Solubility of hydrate formers in water: ln H = h1 + h2/T + h3 ln T + h4 T, H in Pa, T in K.\n"
    "# Made by scripts/import_parameters.py.\n")
POINT_HEAD = (
    "# Measured three-phase points of hydrates: T K, P Pa, composition of the dry gas. Made by scripts/import_parameters.py.\n")


def import_hydrates(facts, data):
    chosen = {}
    for row in read(facts / "solids/langmuir.csv"):
        if row["source"].startswith("Parrish"):
            continue
        key = (row["cas"], row["structure"], row["cavity"])
        if key not in chosen or (row["source"].startswith(PREFERRED) and not chosen[key]["source"].startswith(PREFERRED)):
            chosen[key] = row
    rows = [(row["cas"], row["former"], row["structure"], row["cavity"], row["A_K_per_bar"], row["B_K"], row["source"])
            for _, row in sorted(chosen.items())]
    write(data / "hydrate_langmuir.csv", LANGMUIR_HEAD, "cas former structure cavity A_K_per_bar B_K source".split(), rows)

    chosen = {}
    for row in read(facts / "solids/kihara.csv"):
        ranks = [k for k, source in enumerate(CORE_SOURCES) if row["source"].startswith(source)]
        if ranks and (row["cas"] not in chosen or ranks[0] < chosen[row["cas"]][0]):
            chosen[row["cas"]] = (ranks[0], row)
    rows = [(row["cas"], row["former"], row["core_radius_a_A"], row["sigma_A"], row["eps_over_k_K"], row["source"])
            for _, (_, row) in sorted(chosen.items())]
    write(data / "hydrate_kihara.csv", KIHARA_HEAD, "cas former core_radius_A sigma_A eps_over_k_K source".split(), rows)

    formers = {row["cas"] for row in read(facts / "solids/langmuir.csv")}
    chosen = {}
    for row in read(facts / "chain/henry.csv"):
        ranks = [k for k, source in enumerate(SOLUBILITY_SOURCES) if row["source"].startswith(source)]
        if row["gas_cas"] in formers and row["status"] == "ok" and ranks:
            if row["gas_cas"] not in chosen or ranks[0] < chosen[row["gas_cas"]][0]:
                chosen[row["gas_cas"]] = (ranks[0], row)
    rows = [(row["gas_cas"], row["gas"], row["h1"], row["h2_K"], row["h3"], row["h4_per_K"], row["source"])
            for _, (_, row) in sorted(chosen.items())]
    write(data / "hydrate_solubility.csv", SOLUBILITY_HEAD, "cas former h1 h2_K h3 h4_per_K source".split(), rows)

    rows = [(row["cas"], row["composition_dry"], row["T_K"], row["P_Pa"], row["structure"], row["source"], row["note"])
            for row in read(facts / "solids/hydrate_checks.csv")]
    write(data / "hydrate_points.csv", POINT_HEAD, "cas composition_dry T_K P_Pa structure source note".split(), rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("facts", type=Path, help="folder of the fact tables")
    parser.add_argument("--data", type=Path, default=Path("data"), help="folder that is written")
    options = parser.parse_args()
    if not (options.facts / "unifac").is_dir():
        fail(f"{options.facts}: no folder of fact tables")
    for step in (import_unifac, import_association, import_twu, import_hydrates):
        step(options.facts, options.data)


if __name__ == "__main__":
    main()
