#include "flash/robust_enthalpy_state.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "numerics/sal_linear.h"

namespace talix {

namespace {

constexpr int kCrossingSteps = 60;
constexpr R8 kCrossingTolerance = 1e-12;  // of the Gibbs energies over RT
constexpr R8 kClosedBracket = 1e-13;      // width over T at which a bracket cannot shrink further
constexpr R8 kNoCrossing = 1e-5;          // the same while no temperature with two roots was met
constexpr R8 kSameRoot = 1e-9;            // relative difference in Z below which both roots are one
constexpr R8 kSmallestShare = 1e-200;     // keeps the inverse of an amount finite
constexpr int kLeverSteps = 8;
constexpr R8 kLeverTolerance = 1e-9;  // of the enthalpy and the heat of one kelvin
constexpr R8 kLargestUnequal = 2e-5;  // in ln f after the fraction was moved
constexpr R8 kSmallestHeat = 1e-6;  // difference of the phases below which they cannot carry a lever [J/mol]

struct LinearSystem {
  CompMat A;
  CompVec b;
  CompVec scale;
  Vec<I4, kMaxComponents> pivots;
};
constinit LinearSystem work{};
constinit RobustSplit kept{};

bool ok(const RobustPhase& phase) { return phase.status == status::ok; }

R8 heat_capacity_of(const RobustSplit& split) {
  if (split.answer == Split::one_phase) return split.vapour.cp;
  return split.fraction * split.vapour.cp + (1.0 - split.fraction) * split.liquid.cp;
}

// Change of ln fugacity with the amounts of the vapour, scaled to a diagonal near 1.
void form_matrix(int n, const RobustSplit& split) {
  const R8 V = split.fraction;
  const R8 L = 1.0 - V;
  for (int i = 1; i <= n; ++i) {
    const R8 v = std::max(V * split.vapour.x(i), kSmallestShare);
    const R8 l = std::max(L * split.liquid.x(i), kSmallestShare);
    work.scale(i) = std::sqrt(v) * std::sqrt(l / (v + l));
  }
  for (int j = 1; j <= n; ++j)
    for (int i = 1; i <= n; ++i) {
      const R8 change = (split.vapour.lnphi_n(i, j) - 1.0) / V + (split.liquid.lnphi_n(i, j) - 1.0) / L;
      work.A(i, j) = work.scale(i) * change * work.scale(j) + (i == j ? 1.0 : 0.0);
    }
}

// Heat taken up by what moves between the phases as T changes at equal fugacities [J/(mol K)]; 0 where the engine
// or the matrix does not give it.
R8 transfer_slope(const RobustMixture& mixture, RobustSplit& split) {
  if (!(split.fraction > 0.0 && split.fraction < 1.0)) return 0.0;
  evaluate_phase(mixture, split.T, split.P, split.vapour.x, own_root(split.vapour), PhaseDerivatives::all,
                 split.vapour);
  evaluate_phase(mixture, split.T, split.P, split.liquid.x, own_root(split.liquid), PhaseDerivatives::all,
                 split.liquid);
  if (!ok(split.vapour) || !ok(split.liquid)) return 0.0;

  const int n = mixture.n;
  form_matrix(n, split);
  for (int i = 1; i <= n; ++i)
    work.b(i) = work.scale(i) * (split.vapour.lnphi_T(i) - split.liquid.lnphi_T(i));
  R8 determinant = 0.0;
  I4 state = status::ok;
  SALLA1(work.A.data(), n, kMaxComponents, work.pivots.data(), determinant, state);
  if (state != status::ok) return 0.0;
  SALLA0(work.A.data(), n, kMaxComponents, work.pivots.data(), work.b.data());
  R8 sum = 0.0;
  for (int i = 1; i <= n; ++i)
    sum += work.scale(i) * (split.vapour.lnphi_T(i) - split.liquid.lnphi_T(i)) * work.b(i);
  const R8 slope = kGasConstant * sum;
  return slope > 0.0 && std::isfinite(slope) ? slope : 0.0;
}

// Largest difference in ln f between the phases of a split whose ln phi are there.
R8 unequal_fugacities(int n, const RobustSplit& split) {
  R8 largest = 0.0;
  for (int i = 1; i <= n; ++i) {
    if (!(split.vapour.x(i) > 0.0) || !(split.liquid.x(i) > 0.0)) continue;
    const R8 gap =
        std::log(split.vapour.x(i) / split.liquid.x(i)) + split.vapour.lnphi(i) - split.liquid.lnphi(i);
    largest = std::max(largest, std::abs(gap));
  }
  return largest;
}

enum class Side { below, above, both, failed };

// Both roots of the feed at T. GAP is the Gibbs energy of the vapour less that of the liquid over RT, SLOPE its
// change with ln T. Where there is one root only, its identity tells the side.
Side roots_of_feed(const RobustMixture& mixture, R8 T, RobustSplit& split, R8& GAP, R8& SLOPE) {
  evaluate_phase(mixture, T, split.P, mixture.z, phase::liquid, PhaseDerivatives::all, split.liquid);
  evaluate_phase(mixture, T, split.P, mixture.z, phase::vapour, PhaseDerivatives::all, split.vapour);
  if (!ok(split.liquid) || !ok(split.vapour)) return Side::failed;
  if (!(split.vapour.Z - split.liquid.Z > kSameRoot * split.vapour.Z))
    return split.liquid.root == phase::liquid && !split.liquid.single ? Side::below : Side::above;
  GAP = SLOPE = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    GAP += mixture.z(i) * (split.vapour.lnphi(i) - split.liquid.lnphi(i));
    SLOPE += mixture.z(i) * (split.vapour.lnphi_T(i) - split.liquid.lnphi_T(i));
  }
  return Side::both;
}

// The two phases that hold the fraction F of the feed by the K-values; false when the enthalpies fail.
bool compose(const RobustMixture& mixture, const CompVec& K, R8 F, RobustSplit& split) {
  R8 V = 0.0;
  R8 L = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 l = mixture.z(i) * (1.0 - F) / (1.0 - F + F * K(i));
    split.liquid.x(i) = l;
    split.vapour.x(i) = mixture.z(i) * F * K(i) / (1.0 - F + F * K(i));
    V += split.vapour.x(i);
    L += l;
  }
  for (int i = 1; i <= mixture.n; ++i) {
    split.vapour.x(i) /= V;
    split.liquid.x(i) /= L;
  }
  split.fraction = V / (V + L);
  evaluate_enthalpy(mixture, split.T, split.P, own_root(split.vapour), split.vapour);
  evaluate_enthalpy(mixture, split.T, split.P, own_root(split.liquid), split.liquid);
  return ok(split.vapour) && ok(split.liquid);
}

// Secant steps in the fraction; the first uses the heat between the phases.
bool move_fraction(const RobustMixture& mixture, R8 TARGET, const CompVec& K, RobustSplit& split) {
  R8 F = split.fraction;
  R8 F_before = F;
  R8 miss_before = 0.0;
  for (int step = 1; step <= kLeverSteps; ++step) {
    if (!compose(mixture, K, F, split)) return false;
    const R8 h = enthalpy_of(split);
    const R8 miss = h - TARGET;
    if (std::abs(miss) <= kLeverTolerance * (std::abs(h) + heat_capacity_of(split))) return true;
    R8 slope = split.vapour.h - split.liquid.h;
    if (step > 1 && F != F_before) slope = (miss - miss_before) / (F - F_before);
    if (!(std::abs(slope) > kSmallestHeat)) return false;
    F_before = F;
    miss_before = miss;
    F = F - miss / slope;
    if (!(F > 0.0 && F < 1.0)) return false;
  }
  return false;
}

// Enthalpies and slope of a state.
void add_heat(const RobustMixture& mixture, RobustSplit& split, EnthalpyPoint& point) {
  point.one = split.answer == Split::one_phase;
  evaluate_enthalpy(mixture, split.T, split.P, own_root(split.vapour), split.vapour);
  if (!ok(split.vapour)) return;
  if (!point.one) {
    evaluate_enthalpy(mixture, split.T, split.P, own_root(split.liquid), split.liquid);
    if (!ok(split.liquid)) return;
  }
  point.vapour = point.one && (split.vapour.single || split.vapour.root == phase::vapour);
  point.h = enthalpy_of(split);
  point.least = point.one ? point.h : std::min(split.vapour.h, split.liquid.h);
  point.most = point.one ? point.h : std::max(split.vapour.h, split.liquid.h);
  point.cp = heat_capacity_of(split);
  point.tangent = point.one ? point.cp : point.cp + transfer_slope(mixture, split);
  point.slope = point.tangent;
  point.ok = std::isfinite(point.h) && std::isfinite(point.slope);
}

}  // namespace

I4 own_root(const RobustPhase& phase) { return phase.single ? phase::gibbs : phase.root; }

R8 enthalpy_of(const RobustSplit& split) {
  if (split.answer == Split::one_phase) return split.vapour.h;
  return split.fraction * split.vapour.h + (1.0 - split.fraction) * split.liquid.h;
}

void evaluate_state(const RobustMixture& mixture, R8 T, R8 P, const CompVec* START_LNK, RobustSplit& split,
                    EnthalpyPoint& point) {
  point = EnthalpyPoint{};
  point.T = T;
  robust_isothermal(mixture, T, P, START_LNK, split);
  if (split.answer == Split::one_phase || split.answer == Split::two_phases) add_heat(mixture, split, point);
}

void evaluate_pair(const RobustMixture& mixture, R8 T, R8 P, const CompVec& START_LNK, RobustSplit& split,
                   EnthalpyPoint& point) {
  point = EnthalpyPoint{};
  point.T = T;
  converge_split(mixture, T, P, START_LNK, split);
  if (split.answer != Split::two_phases || !(split.gibbs < 0.0)) return;
  label_phases(mixture, split);
  split.third_phase = true;
  split.third_root = split.two_liquids ? phase::vapour : phase::liquid;
  add_heat(mixture, split, point);
}

bool find_crossing(const RobustMixture& mixture, R8 P, R8 LOW, R8 HIGH, RobustSplit& split) {
  split.P = P;
  R8 low = LOW;
  R8 high = HIGH;
  R8 T = 0.5 * (low + high);
  bool met = false;
  for (int step = 1; step <= kCrossingSteps; ++step) {
    R8 GAP = 0.0;
    R8 SLOPE = 0.0;
    const Side side = roots_of_feed(mixture, T, split, GAP, SLOPE);
    if (side == Side::failed) return false;
    split.T = T;
    const bool both = side == Side::both;
    if (both && std::abs(GAP) <= kCrossingTolerance) return true;
    met = met || both;
    // The Gibbs energy of the vapour falls against that of the liquid as T rises.
    (side == Side::below || (both && GAP > 0.0) ? low : high) = T;
    if (!(high - low > (met ? kClosedBracket : kNoCrossing) * T)) return both;
    R8 next = 0.5 * (low + high);
    if (both && SLOPE < 0.0) {
      const R8 newton = T * std::exp(-GAP / SLOPE);
      if (newton > low && newton < high) next = newton;
    }
    T = next;
  }
  return false;
}

bool settle_by_lever(const RobustMixture& mixture, R8 TARGET, RobustSplit& split) {
  kept = split;
  CompVec K{};
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 ratio = split.vapour.x(i) / split.liquid.x(i);
    K(i) = std::isfinite(ratio) ? ratio : 1.0 / kSmallestShare;
  }
  if (move_fraction(mixture, TARGET, K, split)) {
    evaluate_phase(mixture, split.T, split.P, split.vapour.x, own_root(split.vapour), PhaseDerivatives::none,
                   split.vapour);
    evaluate_phase(mixture, split.T, split.P, split.liquid.x, own_root(split.liquid), PhaseDerivatives::none,
                   split.liquid);
    if (ok(split.vapour) && ok(split.liquid)) {
      split.unequal = unequal_fugacities(mixture.n, split);
      if (split.unequal <= kLargestUnequal) return true;
    }
  }
  split = kept;
  return false;
}

}  // namespace talix
