"""Which published correlations are kept, and over which range."""

from collections import defaultdict

import facts_estimates as est
from facts_forms import evaluate, number

WRONG = ("outlier", "eos_dev", "bad_tmin")  # flags of rows that better ones contradict
MEASURED = ("CRC", "NIST", "CAS-CC")  # sources of boiling points that go before a vapour pressure far from them
GAS_RANGE = ("298", "773")  # in which gas polynomials without a range were checked [K]
ATMOSPHERE = 101325.0  # Pa


class Relations:
    """Correlations of all compounds. FACTS is by CAS and its boiling points may be settled here; HAND are the hand
    values; EQUATIONS has the CAS numbers with a reference equation of state; COUNTS takes what was done."""

    def __init__(self, rows, facts, hand, equations, counts):
        self.relations = defaultdict(list)
        for row in rows:
            self.relations[row["cas"], row["property"]].append(row)
        self.facts, self.hand, self.equations, self.counts = facts, hand, equations, counts

    def clean(self, cas, prop):
        """Rows in the order of their rank; those that better ones contradict only where there is nothing else."""
        rows = sorted(self.relations.get((cas, prop), ()), key=lambda r: int(r["rank"]))
        if prop == "cp_ig" and sum(est.atoms_of(self.facts[cas]).values()) > 2:
            # A constant stands in the place of missing coefficients.
            self.counts["constant heat capacities left out"] += sum(not r["c2"] for r in rows)
            rows = [r for r in rows if r["c2"]]
        good = [r for r in rows if not any(w in r["flag"] for w in WRONG)]
        return good or rows[:1]

    def choose(self, order, properties):
        """The best rows by (CAS, property), as copies that may be cut. PROPERTIES has the most rows of each."""
        barred = [(h["cas"], *h["column"].split(":")[1:], h["value"]) for h in self.hand if h["column"].startswith("without:")]
        chosen = {}
        for cas in order:
            for prop, most in properties.items():
                rows = [dict(r) for r in self.clean(cas, prop)
                        if not any((cas, prop) == b[:2] and b[2] in r["src"] for b in barred)]
                for row in rows:
                    self.bound(cas, prop, row)
                if prop == "psat":
                    rows = self.at_boiling_point(cas, rows)
                    self.settle_boiling_point(cas, rows)
                chosen[cas, prop] = rows[:most]
        return chosen

    def pressures(self, rows, T):
        """(row, pressure) of the rows whose range holds T."""
        for row in rows:
            p = evaluate(row, T) if number(row["tmin_K"]) <= T <= number(row["tmax_K"]) else None
            if p:
                yield row, p

    def settle_boiling_point(self, cas, rows):
        """Where two sources of the vapour pressure agree within 2 % and all miss 1 atm at the boiling point by more than
        1.5 %, or where all miss it and it was not measured, the boiling point is that of the first."""
        fact = self.facts[cas]
        tb = number(fact["tb_K"])
        if cas in self.equations or not tb or "^" in fact["src_tb"]:
            return
        found = list(self.pressures(rows, tb))
        misses = [p / ATMOSPHERE - 1 for _, p in found]
        if not misses or min(abs(m) for m in misses) < 0.015:
            return
        sources = {row["src"].split(" ")[0] for row, _ in found}
        agree = len(sources) > 1 and max(misses) - min(misses) < 0.02
        if not agree and (fact["src_tb"] in MEASURED or fact["src_tb"].startswith("calc")):
            return
        low, high = 0.8 * tb, 1.2 * tb
        for _ in range(60):
            middle = (low + high) / 2
            low, high = (middle, high) if (evaluate(found[0][0], middle) or 0) < ATMOSPHERE else (low, middle)
        fact["tb_K"], fact["src_tb"] = f"{low:.6g}", "calc:psat"
        self.counts["tb_K calc:psat"] += 1

    def at_boiling_point(self, cas, rows):
        """Vapour pressures that agree with the boiling point. A row that misses 1 atm there by more than 4 % goes where
        another meets it within 2 %; all go where all miss it by more than 25 % and the boiling point is measured."""
        fact = self.facts[cas]
        tb = number(fact["tb_K"])
        if cas in self.equations or not tb or "^" in fact["src_tb"]:
            return rows
        miss = {id(row): abs(p / ATMOSPHERE - 1) for row, p in self.pressures(rows, tb)}
        if miss and min(miss.values()) < 0.02:
            kept = [row for row in rows if miss.get(id(row), 0) < 0.04]
            self.counts["vapour pressures dropped for the boiling point"] += len(rows) - len(kept)
            return kept
        if miss and min(miss.values()) > 0.25 and fact["src_tb"] in MEASURED:
            self.counts["vapour pressures dropped for the boiling point"] += len(rows)
            return []
        return rows

    def bound(self, cas, prop, row):
        """Ranges: gas polynomials without one get that of their check; a relation that ends at another critical
        point than that of the component holds well below it only."""
        if prop in ("mu_gas_dilute", "k_gas_dilute", "cp_ig") and not row["tmax_K"]:
            row["tmin_K"], row["tmax_K"] = GAS_RANGE
        if "SPOLY" in row["equation"] or prop not in ("psat", "rho_liq_sat", "hvap", "sigma") or cas in self.equations:
            return
        tc, pc = number(self.facts[cas]["tc_K"]), number(self.facts[cas]["pc_Pa"])
        own = number(row["c3"]) if row["equation"] == "DIPPR105" else number(row["tc_used_K"])
        foreign = own > 0 and abs(own / tc - 1) > 0.01
        tmax = number(row["tmax_K"])
        if prop == "psat" and tmax > 0.97 * tc:
            p = evaluate(row, min(tc, tmax))
            foreign = foreign or (p is not None and tmax >= 0.995 * tc and not 0.92 < p / pc < 1.08)
        limit = 0.85 * min(own or tc, tc)
        if foreign and (tmax > limit or not tmax):
            row["tmax_K"] = f"{limit:.6g}"
            row["flag"] = ";".join(filter(None, [row["flag"], "end_cut"]))
            self.counts["relations cut below a foreign critical point"] += 1
