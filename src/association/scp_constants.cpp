#include "association/scp_constants.h"

#include <cmath>

#include "association/cpa_record.h"
#include "database/component_record.h"

namespace talix {

namespace {

constexpr R8 kAbsent = 1e-35;          // a magnitude not above counts as absent
constexpr R8 kGasConstant = 8.314471;  // [J/(mol K)]
constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kCriticalA = widen(0.427480234F);  // a PC/(R TC)^2 [-]
constexpr R8 kCriticalB = widen(0.720368677F);  // b PC/TC [J/(mol K)]

bool given(R8 value) { return std::fabs(value) > kAbsent; }

// Slope of the temperature function from the acentric factor.
R8 slope_of_omega(R8 omega) { return 0.48508 + omega * (1.55171 - 0.15613 * omega); }

// The first of the given values, or that of the acentric factor. Clears OK when there is none of them.
R8 slope(R8 first, R8 second, R8 omega, bool& ok) {
  if (given(first)) return first;
  if (given(second)) return second;
  if (given(omega)) return slope_of_omega(omega);
  ok = false;
  return 0.0;
}

}  // namespace

// cpa_constants: the working constants of a component, each as given, and else from the critical point or the
// acentric factor.
//
// In       ICOMP   I4  component
// Shared   reads cpa_sets, comp.TC, PC, OMEGA
CpaConstants cpa_constants(I4 ICOMP) {
  const auto kappa = [ICOMP](int k) { return cpa_sets.EOSK(k, ICOMP); };
  const R8 tc = comp.TC(ICOMP);
  const R8 pc = comp.PC(ICOMP) * kPascalPerBar;
  const R8 omega = comp.OMEGA(ICOMP);
  const bool critical = tc > kAbsent && comp.PC(ICOMP) > kAbsent;

  CpaConstants c{.DATAOK = true, .AC = 0.0, .B = 0.0, .AK = 0.0, .AKK{}};
  if (cpa_sets.EOSA(ICOMP) > kAbsent) {
    c.AC = cpa_sets.EOSA(ICOMP);
  } else if (critical) {
    c.AC = kCriticalA * (kGasConstant * tc) * (kGasConstant * tc) / pc;
  } else {
    c.DATAOK = false;
  }
  if (cpa_sets.EOSB(ICOMP) > kAbsent) {
    c.B = cpa_sets.EOSB(ICOMP);
  } else if (critical) {
    c.B = kCriticalB * tc / pc;
  } else {
    c.DATAOK = false;
  }
  c.AK = slope(kappa(6), kappa(1), omega, c.DATAOK);
  c.AKK(1) = slope(kappa(1), 0.0, omega, c.DATAOK);
  c.AKK(2) = kappa(7);
  for (int k = 2; k <= 5; ++k) c.AKK(k + 1) = kappa(k);
  return c;
}

// SCPDB4: one working constant of the association model.
//
// In       ICOMP   I4  component
//          SELECT  I4  6 a, 7 b, 8 to 14 the curve by its powers 0 to 6, 15 the slope above the critical point
// Out      VALUE   R8  the constant; 0 for another selector, or without data
// Shared   reads cpa_sets, comp.TC, PC, OMEGA
// Oddity   power 0 stands for the square root term; the curve ends at power 5, and power 6 gives the slope above
//          the critical point once more
void SCPDB4(const I4& ICOMP, const I4& SELECT, R8& VALUE) {
  const CpaConstants c = cpa_constants(ICOMP);
  switch (SELECT) {
    case cpa_value::a_critical:
      VALUE = c.AC;
      break;
    case cpa_value::b_critical:
      VALUE = c.B;
      break;
    case cpa_value::kappa_0:
      VALUE = c.AKK(2);
      break;
    case cpa_value::kappa_0 + 1:
      VALUE = c.AKK(1);
      break;
    case cpa_value::kappa_0 + 2:
    case cpa_value::kappa_0 + 3:
    case cpa_value::kappa_0 + 4:
    case cpa_value::kappa_0 + 5:
      VALUE = c.AKK(SELECT - cpa_value::kappa_0 + 1);
      break;
    case cpa_value::kappa_6:
    case cpa_value::supercritical:
      VALUE = c.AK;
      break;
    default:
      VALUE = 0.0;
  }
}

}  // namespace talix
