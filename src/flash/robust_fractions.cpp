#include "flash/robust_fractions.h"

#include <algorithm>
#include <cmath>

namespace talix {

namespace {

// Steps of the safeguarded Newton method; halvings of 0..1/2 alone would end after 55.
constexpr int kMaxSteps = 80;
constexpr R8 kFractionTolerance = 4.0E-16;
// Largest |ln K| that enters the equation, so that its exponential stays finite.
constexpr R8 kMaxLnK = 600.0;
// Below this |ln K| the difference K - 1 loses digits.
constexpr R8 kSmallLnK = 0.5;

// K and K - 1 of every component, seen from the phase whose fraction is sought: neither follows from the
// other without a loss of digits.
constinit CompVec ratio{};
constinit CompVec excess{};

void take_ratios(int n, const CompVec& lnK) {
  for (int i = 1; i <= n; ++i) {
    const R8 logarithm = std::clamp(lnK(i), -kMaxLnK, kMaxLnK);
    if (std::fabs(logarithm) < kSmallLnK) {
      excess(i) = std::expm1(logarithm);
      ratio(i) = 1.0 + excess(i);
    } else {
      ratio(i) = std::exp(logarithm);
      excess(i) = ratio(i) - 1.0;
    }
  }
}

// The same seen from the other phase.
void invert_ratios(int n) {
  for (int i = 1; i <= n; ++i) {
    excess(i) /= -ratio(i);
    ratio(i) = 1.0 / ratio(i);
  }
}

// The sum of z (K - 1)/(1 + B (K - 1)) and its slope, which is negative.
R8 balance(const RobustMixture& mixture, R8 B, R8& slope) {
  R8 sum = 0.0;
  slope = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 term = excess(i) / (1.0 + B * excess(i));
    sum += mixture.z(i) * term;
    slope -= mixture.z(i) * term * term;
  }
  return sum;
}

// The fraction between 0 and 1/2 at which the balance vanishes: positive at 0, not positive at 1/2. Mole
// fractions below 1 bound it further; inside the bounds Newton steps, replaced by halvings while they do not
// shrink fast enough.
R8 smaller_fraction(const RobustMixture& mixture) {
  R8 low = 0.0, high = 0.5;
  for (int i = 1; i <= mixture.n; ++i) {
    const R8 z = mixture.z(i);
    if (excess(i) > 0.0) low = std::max(low, z - (1.0 - z) / excess(i));
    if (excess(i) < 0.0) high = std::min(high, (1.0 - z) / -excess(i));
  }
  if (!(low < high)) return low;
  R8 B = 0.5 * (low + high);
  R8 change = high - low;
  for (int step = 1; step <= kMaxSteps; ++step) {
    R8 slope = 0.0;
    const R8 value = balance(mixture, B, slope);
    (value > 0.0 ? low : high) = B;
    const R8 newton = B - value / slope;
    const R8 before = change;
    const bool halve = !(newton > low && newton < high) || std::fabs(2.0 * value) > std::fabs(before * slope);
    const R8 next = halve ? 0.5 * (low + high) : newton;
    change = std::fabs(next - B);
    B = next;
    if (change <= kFractionTolerance * B) break;
  }
  return B;
}

// Composition of the phase with K-values over the rest (GROWN) and of the rest, at fraction B of the former.
void compositions(const RobustMixture& mixture, R8 B, CompVec& grown, CompVec& rest) {
  R8 grown_sum = 0.0, rest_sum = 0.0;
  for (int i = 1; i <= mixture.n; ++i) {
    rest(i) = mixture.z(i) / (1.0 + B * excess(i));
    grown(i) = rest(i) * ratio(i);
    grown_sum += grown(i);
    rest_sum += rest(i);
  }
  for (int i = 1; i <= mixture.n; ++i) {
    grown(i) /= grown_sum;
    rest(i) /= rest_sum;
  }
}

}  // namespace

// The equation is solved for the smaller of the two fractions, so that neither loses digits near 0 or 1: by
// Newton steps, halved where they would leave the bracket.
FractionRange split_fractions(const RobustMixture& mixture, const CompVec& lnK, SplitFractions& out) {
  R8 slope = 0.0;
  take_ratios(mixture.n, lnK);
  const bool vapour_forms = balance(mixture, 0.0, slope) > 0.0;
  if (vapour_forms && balance(mixture, 0.5, slope) <= 0.0) {
    out.vapour = smaller_fraction(mixture);
    out.liquid = 1.0 - out.vapour;
    compositions(mixture, out.vapour, out.y, out.x);
    return FractionRange::inside;
  }
  if (!vapour_forms) {
    out.vapour = 0.0;
    out.liquid = 1.0;
    compositions(mixture, 0.0, out.y, out.x);
    return FractionRange::below;
  }
  invert_ratios(mixture.n);
  const bool liquid_forms = balance(mixture, 0.0, slope) > 0.0;
  out.liquid = liquid_forms ? smaller_fraction(mixture) : 0.0;
  out.vapour = 1.0 - out.liquid;
  compositions(mixture, out.liquid, out.x, out.y);
  return liquid_forms ? FractionRange::inside : FractionRange::above;
}

}  // namespace talix
