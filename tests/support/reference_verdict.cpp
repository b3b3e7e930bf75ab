#include "support/reference_verdict.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "fastprops/flash_record.h"

namespace talix::test::reference {

namespace {

constexpr R8 kFractionTolerance = 1.0E-3;
constexpr R8 kCompositionTolerance = 1.0E-4;
constexpr R8 kTemperatureTolerance = 0.02;  // [K], at a given enthalpy
constexpr R8 kNear = 1.0E-3;                // relative distance of temperature or pressure from a boundary
constexpr R8 kTrivial = 1.0E-3;             // two phases of a saturated state nearer than this are one
constexpr int kHalvings = 24;               // of the reach of a 32-bit number
constexpr R8 kBalanced = 1.0E-6;            // imbalance of two phases whose Gibbs energy can be compared

std::string text_of(const char* label, const Numbers& x) {
  std::string s = label;
  char field[32];
  for (const R8 v : x) {
    std::snprintf(field, sizeof field, " %.6g", v);
    s += field;
  }
  return s + "\n";
}

int phases_of(const Reply& r) { return (r.vapour > 0.0) + (r.liquid > 0.0) + (r.second > 0.0); }

// The two phases of a reply, paired with those of the reference by their compositions, and their Gibbs energy.
struct Reported {
  Phase light, heavy;
  R8 light_share = 0.0;
  R8 g = 0.0;
  R8 imbalance = 0.0;  // largest difference of both phases together from the feed, in mole fraction
  bool usable = false;
};

Reported two_phases(const Mixture& m, const Reply& r, const Answer& truth) {
  Reported out;
  const bool vapour = r.vapour > 0.0;
  const Numbers& first = vapour ? r.y : r.x2;
  const Numbers& other = r.liquid > 0.0 ? r.x : r.x2;
  const R8 share = (vapour ? r.vapour : r.second) / (r.vapour + r.liquid + r.second);
  Phase a, b;
  if (!evaluate(m, r.T, r.P, normalised(first), a) || !evaluate(m, r.T, r.P, normalised(other), b))
    return out;
  out.usable = true;
  out.g = share * a.g + (1.0 - share) * b.g;
  for (std::size_t i = 0; i < m.size(); ++i)
    out.imbalance = std::max(out.imbalance, std::fabs(share * a.x[i] + (1.0 - share) * b.x[i] - m.z[i]));
  const bool straight =
      std::max(largest_difference(a.x, truth.light.x), largest_difference(b.x, truth.heavy.x)) <=
      std::max(largest_difference(b.x, truth.light.x), largest_difference(a.x, truth.heavy.x));
  out.light = straight ? a : b;
  out.heavy = straight ? b : a;
  out.light_share = straight ? share : 1.0 - share;
  return out;
}

// What 32-bit compositions leave of a Gibbs energy over RT.
R8 gibbs_tolerance(const Answer& truth) { return 1.0E-6 + 2.0E-7 * std::fabs(truth.g); }

int kind_of(const Answer& a) { return a.failed ? 0 : a.third() ? 3 : a.phases; }

// Whether what the reference finds changes within 0.1 % in pressure or temperature.
bool near_boundary(const Mixture& m, R8 T, R8 P, const Answer& here, bool with_third) {
  for (const R8 d : {-kNear, kNear}) {
    for (const bool in_T : {true, false}) {
      const Answer there = flash(m, in_T ? T * (1.0 + d) : T, in_T ? P : P * (1.0 + d));
      if (there.phases != here.phases) return true;
      if (with_third && (kind_of(there) != kind_of(here) || there.two_liquids != here.two_liquids))
        return true;
    }
  }
  return false;
}

Outcome outcome_of(const Reply& r) {
  Outcome o;
  o.message = r.message;
  o.engine_calls = r.engine_calls;
  o.with_text = !r.message.empty();
  o.T = r.T;
  o.P = r.P;
  return o;
}

std::string describe(const Mixture& m, const Reply& r, const Answer& truth) {
  char line[400];
  std::snprintf(
      line, sizeof line,
      "  library: V %.6f L %.6f L2 %.6f message '%s'\n  reference: %d phase(s), vapour %.6f, light %.6f, "
      "two liquids %d, G/RT %.10f, further phase %.3e, Z %.5f %.5f, liquid flags %d %d\n",
      r.vapour, r.liquid, r.second, r.message.c_str(), truth.phases, truth.vapour_share, truth.light_share,
      truth.two_liquids ? 1 : 0, truth.g, truth.missing, truth.light.Z, truth.heavy.Z,
      truth.light.liquid ? 1 : 0, truth.heavy.liquid ? 1 : 0);
  std::string s = line;
  if (r.answered && phases_of(r) == 2) {
    const Reported mine = two_phases(m, r, truth);
    std::snprintf(line, sizeof line, "  library's two phases: G/RT %.10f, light %.6f, Z %.5f %.5f\n", mine.g,
                  mine.light_share, mine.light.Z, mine.heavy.Z);
    s += line;
    s += text_of("   library light  ", mine.light.x) + text_of("   library heavy  ", mine.heavy.x);
  }
  s += text_of("   reference light", truth.light.x) + text_of("   reference heavy", truth.heavy.x);
  return s;
}

Verdict compare_two_phases(const Mixture& m, const Reply& r, const Answer& truth) {
  const Reported mine = two_phases(m, r, truth);
  if (!mine.usable || mine.imbalance > kCompositionTolerance) return Verdict::wrong_composition;
  if (mine.imbalance < kBalanced && mine.g < truth.g - gibbs_tolerance(truth)) return Verdict::beaten;
  const R8 difference = std::max(largest_difference(mine.light.x, truth.light.x),
                                 largest_difference(mine.heavy.x, truth.heavy.x));
  if (mine.g > truth.g + gibbs_tolerance(truth) && difference > 1.0E-2) return Verdict::not_lowest;
  if (std::fabs(mine.light_share - truth.light_share) > kFractionTolerance) return Verdict::wrong_fraction;
  if (difference > kCompositionTolerance) return Verdict::wrong_composition;
  const R8 share = r.vapour / (r.vapour + r.liquid + r.second);
  if (std::fabs(share - truth.vapour_share) > kFractionTolerance) return Verdict::wrong_label;
  return Verdict::right;
}

bool warns(const Reply& r) { return !r.message.empty() && r.message.front() == '.'; }

// Whether a phase of a reply is about the phase FORMING that the reference sees at the boundary.
R8 incipient_difference(const Reply& r, const Boundary& edge, bool bubble) {
  const Numbers& mine = bubble ? r.y : r.x;
  return largest_difference(normalised(mine), edge.bubble ? edge.inside.light.x : edge.inside.heavy.x);
}

// The boundary next to AT, looked for at growing distances.
bool boundary_near(const Line& line, R8 at, Boundary& edge) {
  for (const R8 d : {1.0E-5, 1.0E-4, kNear}) {
    const R8 low = at * (1.0 - d), high = at * (1.0 + d);
    const bool below = splits(line, low, Effort::thorough), above = splits(line, high, Effort::thorough);
    if (below == above) continue;
    if (boundary_between(line, below ? high : low, below ? low : high, Effort::thorough, edge)) return true;
  }
  return false;
}

Verdict judge_edge(const Line& line, const Reply& r, bool bubble, std::string& detail) {
  const R8 at = line.axis == Axis::pressure ? r.P : r.T;
  Boundary edge;
  if (!boundary_near(line, at, edge)) return Verdict::no_solution;
  char text[200];
  const R8 difference = incipient_difference(r, edge, bubble);
  std::snprintf(text, sizeof text,
                "  boundary of the reference at %.8g (answer %.8g), %s, two liquids %d, incipient off %.2e\n",
                edge.at, at, edge.bubble ? "bubble" : "dew", edge.two_liquids ? 1 : 0, difference);
  detail += text + text_of("   reference light", edge.inside.light.x) +
            text_of("   reference heavy", edge.inside.heavy.x);
  if (edge.bubble != bubble) return Verdict::no_solution;
  if (std::fabs(edge.at / at - 1.0) > kNear) return Verdict::no_solution;
  // The incipient phase is steep in the distance from a critical point: it is judged at the library's own place.
  if (difference > kCompositionTolerance + 20.0 * std::fabs(edge.at / at - 1.0))
    return Verdict::wrong_composition;
  return Verdict::right;
}

}  // namespace

const char* name_of(Verdict v) {
  static constexpr std::array<const char*, kVerdicts> names = {
      "right",      "near boundary", "wrong count", "wrong fraction", "wrong label",        "wrong x",
      "not lowest", "no warning",    "no solution", "wrong enthalpy", "metastable instead", "trivial",
      "not finite", "unanswered",    "no answer",   "metastable",     "ref. beaten",        "undecided"};
  return names[static_cast<std::size_t>(v)];
}

bool is_wrong(Verdict v) { return v >= Verdict::wrong_count && v <= Verdict::not_finite; }

Outcome judge_isothermal(const Mixture& m, const Reply& r, const Answer& truth) {
  Outcome o = outcome_of(r);
  if (truth.failed) return o;
  if (!r.answered) {
    o.verdict = Verdict::unanswered;
    o.detail = describe(m, r, truth);
    return o;
  }
  if (!r.finite) {
    o.verdict = Verdict::not_finite;
  } else if (phases_of(r) != truth.phases) {
    o.verdict = near_boundary(m, r.T, r.P, truth, false) ? Verdict::near_boundary : Verdict::wrong_count;
    if (phases_of(r) == 2) {
      const Reported mine = two_phases(m, r, truth);
      if (mine.imbalance < kBalanced && mine.g < truth.g - gibbs_tolerance(truth))
        o.verdict = Verdict::beaten;
    }
  } else if (truth.phases == 2) {
    o.verdict = compare_two_phases(m, r, truth);
    if (o.verdict == Verdict::right && truth.third() && !warns(r)) o.verdict = Verdict::no_warning;
    if ((o.verdict == Verdict::no_warning || o.verdict == Verdict::not_lowest ||
         o.verdict == Verdict::wrong_label) &&
        near_boundary(m, r.T, r.P, truth, true))
      o.verdict = Verdict::near_boundary;
  } else {
    const bool vapour = r.vapour > 0.0;
    o.verdict = vapour == !truth.heavy.liquid ? Verdict::right : Verdict::wrong_label;
  }
  if (o.verdict != Verdict::right) o.detail = describe(m, r, truth);
  return o;
}

namespace {

// Nearly pure feeds boil within a few steps of a 32-bit temperature or pressure: the asked fraction then lies between
// those of the neighbouring numbers, and the phases are those of one of them.
bool spans_fraction(const Line& line, const Reply& r, R8 fraction) {
  const R8 at = line.axis == Axis::pressure ? r.P : r.T;
  R8 low = at * (1.0 - 2.0E-7), high = at * (1.0 + 2.0E-7);
  const auto share_at = [&](R8 place) { return flash(line.m, line.T(place), line.P(place)).vapour_share; };
  const bool rising = share_at(low) <= fraction && share_at(high) >= fraction;
  const bool falling = share_at(low) >= fraction && share_at(high) <= fraction;
  if (!rising && !falling) return false;
  for (int step = 0; step < kHalvings; ++step) {
    const R8 middle = 0.5 * (low + high);
    const Answer there = flash(line.m, line.T(middle), line.P(middle));
    if (there.phases == 2 && largest_difference(normalised(r.y), there.light.x) < kCompositionTolerance &&
        largest_difference(normalised(r.x), there.heavy.x) < kCompositionTolerance)
      return std::fabs(r.vapour - fraction) < kFractionTolerance;
    ((there.vapour_share < fraction) == rising ? low : high) = middle;
  }
  return false;
}

// So near to a critical point that the phases of the boundary differ by less than 0.005 and the boundary is known to
// about 1e-5 only: their compositions and which one is the vapour are beyond what can be told.
bool at_critical_point(const Line& line, const Reply& r) {
  const R8 at = line.axis == Axis::pressure ? r.P : r.T;
  Boundary edge;
  for (const R8 d : {2.0E-6, 1.0E-5}) {
    const R8 low = at * (1.0 - d), high = at * (1.0 + d);
    const bool below = splits(line, low, Effort::thorough), above = splits(line, high, Effort::thorough);
    if (below == above) continue;
    return boundary_between(line, below ? high : low, below ? low : high, Effort::thorough, edge) &&
           largest_difference(edge.inside.light.x, edge.inside.heavy.x) < 5.0E-3;
  }
  return false;
}

// What an answer that is no stable one is: an equilibrium on an unstable feed, one phase twice, or none.
Verdict judge_unstable(const Line& line, const Reply& r, bool edge, bool bubble, bool solvable,
                       std::string& detail) {
  const Mixture& m = line.m;
  Phase a, b;
  const Numbers& x = edge && bubble ? m.z : r.x;
  const Numbers& y = edge && !bubble ? m.z : r.y;
  R8 total = 0.0;
  for (const R8 v : x) total += v;
  for (const R8 v : y) total += v;
  if (!(std::fabs(total - 2.0) < 1.0E-3)) return Verdict::no_solution;
  if (!evaluate(m, r.T, r.P, normalised(y), a) || !evaluate(m, r.T, r.P, normalised(x), b))
    return Verdict::no_solution;
  R8 residual = 0.0;
  for (std::size_t i = 0; i < m.size(); ++i)
    if (a.x[i] > 1.0E-6 && b.x[i] > 1.0E-6)
      residual = std::max(residual, std::fabs(std::log(a.x[i] / b.x[i]) + a.lnphi[i] - b.lnphi[i]));
  const R8 apart = largest_difference(a.x, b.x);
  char text[200];
  std::snprintf(text, sizeof text, "  the answer's phases: ln f apart by %.2e, x by %.2e, Z %.6f %.6f\n",
                residual, apart, a.Z, b.Z);
  detail += text;
  if (apart < kTrivial && std::fabs(a.Z - b.Z) < kTrivial) return Verdict::trivial;
  if (!warns(r) || residual > 1.0E-3) return Verdict::no_solution;
  return solvable ? Verdict::metastable_instead : Verdict::metastable;
}

}  // namespace

Outcome judge_saturation(const Line& line, const Reply& r, I4 code, R8 fraction, bool solvable) {
  Outcome o = outcome_of(r);
  o.solvable = solvable;
  if (!r.answered) {
    o.verdict = solvable ? Verdict::unanswered : Verdict::no_answer;
    return o;
  }
  if (!r.finite) {
    o.verdict = Verdict::not_finite;
    return o;
  }
  const bool edge = code <= flash_type::dew_temperature || fraction <= 0.0 || fraction >= 1.0;
  const bool bubble = code <= flash_type::dew_temperature
                          ? code == flash_type::bubble_pressure || code == flash_type::bubble_temperature
                          : fraction <= 0.0;
  if (edge) {
    o.verdict = judge_edge(line, r, bubble, o.detail);
  } else {
    const Answer truth = flash(line.m, r.T, r.P);
    o.detail = describe(line.m, r, truth);
    // Without an answer of the engine there is no state to be right.
    o.verdict =
        !truth.failed && truth.phases == 2 ? compare_two_phases(line.m, r, truth) : Verdict::no_solution;
    if (o.verdict == Verdict::right && std::fabs(truth.vapour_share - fraction) > kFractionTolerance)
      o.verdict = Verdict::no_solution;
    if (is_wrong(o.verdict) && spans_fraction(line, r, fraction)) o.verdict = Verdict::right;
    if (o.verdict == Verdict::right && truth.third() && !warns(r)) o.verdict = Verdict::no_warning;
  }
  if (is_wrong(o.verdict) && o.verdict != Verdict::no_warning && at_critical_point(line, r)) {
    o.verdict = Verdict::near_boundary;
    return o;
  }
  if (is_wrong(o.verdict) && o.verdict != Verdict::no_warning && o.verdict != Verdict::wrong_composition)
    o.verdict = judge_unstable(line, r, edge, bubble, solvable, o.detail);
  o.solvable = solvable || o.verdict == Verdict::right || o.verdict == Verdict::near_boundary;
  return o;
}

Outcome judge_enthalpy(const Mixture& m, const Reply& r, R8 h, const EnthalpyState& truth) {
  Outcome o = outcome_of(r);
  char text[300];
  std::snprintf(text, sizeof text,
                "  library: T %.5f, vapour %.6f, L %.6f, L2 %.6f '%s'; reference: T %.5f, vapour %.6f\n", r.T,
                r.vapour, r.liquid, r.second, r.message.c_str(), truth.T, truth.vapour_share);
  o.detail = text;
  if (!r.answered) {
    o.verdict = Verdict::unanswered;
    return o;
  }
  if (!r.finite) {
    o.verdict = Verdict::not_finite;
    return o;
  }
  const auto same = [&](R8 T, R8 share) {
    return std::fabs(r.T - T) < kTemperatureTolerance && std::fabs(r.vapour - share) < kFractionTolerance;
  };
  o.verdict = same(truth.T, truth.vapour_share) ? Verdict::right : Verdict::wrong_enthalpy;
  if (o.verdict == Verdict::right) return o;
  // The state of the reference next to the library's temperature that carries the enthalpy.
  R8 value = 0.0;
  Answer here;
  EnthalpyState other;
  if (!total_enthalpy(m, r.T, r.P, value, here)) return o;
  std::snprintf(text, sizeof text,
                "  enthalpy asked %.4f, at the library's temperature %.4f J/mol, vapour there %.6f\n", h,
                value, here.vapour_share);
  o.detail += text;
  if (temperature_of_enthalpy(m, r.P, h, r.T - 0.05, r.T + 0.05, other) && same(other.T, other.vapour_share))
    o.verdict = Verdict::right;
  return o;
}

}  // namespace talix::test::reference
