#include "association/bwrs_phase.h"

#include <cmath>

#include "association/bwrs.h"
#include "association/bwrs_record.h"
#include "database/component_record.h"
#include "engine/codes.h"

namespace talix {

namespace {

constexpr R8 kLiquidDensity = 3.0;  // start of a liquid, over the density at the critical volumes [-]
constexpr R8 kIdealStart = 1.0;
constexpr R8 kSameRoot = 1E-6;  // relative distance below which two results are one root [-]

// Residual Gibbs energy over RT at the last result.
R8 gibbs_measure(R8 Z) {
  const BwrsRecord& w = bwrs;
  const R8 D = w.D;
  const auto [GD2, decay, TMP] = bwrs_exponential(D);
  const R8 steep = GD2 > 0.0 ? (w.G5 - (1.0 + 0.5 * GD2) * TMP) / w.C(11) : 0.0;
  const R8 F = (D * (w.G2 + D * (0.5 * w.G3 + 0.2 * D * D * D * w.G4)) + steep) / w.G1;
  return F + Z - 1.0 - std::log(Z);
}

// Compressibility from which the iteration falls onto the liquid root, if there is one.
R8 liquid_start(R8 T, R8 P, const CompVec& X, I4 IFCOM, I4 ILCOM) {
  R8 volume = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) volume += X(i) * comp.VC(i) / kBwrsLitresPerM3;
  return P * volume / (kLiquidDensity * kGasConstant * T);
}

// A root and what SBWRS0 gives with it.
struct Root {
  R8 Z, PV, PTCN;
  I4 ICODE;
};

Root root_from(R8 start, R8 T, R8 P, const CompVec& X, I4 IFCOM, I4 ILCOM) {
  Root r{.Z = start, .PV = 0.0, .PTCN = 0.0, .ICODE = status::ok};
  SBWRS0(IFCOM, ILCOM, T, P, X, r.Z, r.PV, r.PTCN, r.ICODE);
  return r;
}

// The start value of the root of lower Gibbs energy: of the thin and the dense one, or of the only one.
R8 stable_start(R8 dense, R8 T, R8 P, const CompVec& X, I4 IFCOM, I4 ILCOM, R8& ZOTHER, I4& IPHRTN) {
  const Root light = root_from(kIdealStart, T, P, X, IFCOM, ILCOM);
  if (light.ICODE != status::ok) return dense;
  const R8 light_measure = gibbs_measure(light.Z);
  const Root heavy = root_from(dense, T, P, X, IFCOM, ILCOM);
  if (heavy.ICODE != status::ok || std::abs(light.Z - heavy.Z) <= kSameRoot * light.Z) return light.Z;
  const bool vapour = light_measure <= gibbs_measure(heavy.Z);
  IPHRTN = vapour ? phase::vapour : phase::liquid;
  ZOTHER = vapour ? heavy.Z : light.Z;
  return vapour ? light.Z : heavy.Z;
}

}  // namespace

// bwrs_phase: compressibility of the phase asked for.
//
// In       IPHASE        I4      phase::vapour, liquid, gibbs, hydrate, solid
//          IFCOM, ILCOM  I4      range of components
//          T, P          R8      [K], [Pa]
//          X             R8(50)  mole fractions [-]
// In/Out   Z             R8      start value if positive, otherwise the phase decides: a dense liquid, the
//                                ideal gas, or both and the lower Gibbs energy; compressibility [-]
// Out      ZOTHER        R8      the root that the Gibbs energy refused, otherwise 0 [-]
//          PV, PTCN      R8      as SBWRS0
//          IPHRTN        I4      phase::vapour or liquid where the Gibbs energy chose, otherwise phase::single
// Status   as SBWRS0; not_available (another phase)
// Oddity   where the phase asked for has no root the other one answers; IPHRTN does not tell
void bwrs_phase(I4 IPHASE, I4 IFCOM, I4 ILCOM, R8 T, R8 P, const CompVec& X, R8& Z, R8& ZOTHER, R8& PV,
                R8& PTCN, I4& IPHRTN, I4& ICODE) {
  ZOTHER = 0.0;
  IPHRTN = phase::single;
  const R8 dense = liquid_start(T, P, X, IFCOM, ILCOM);
  const bool given = Z > 0.0;
  R8 start = Z;
  R8 second = kIdealStart;
  switch (IPHASE) {
    case phase::vapour:
      if (!given) start = kIdealStart;
      second = dense;
      break;
    case phase::liquid:
      if (!given) start = dense;
      break;
    case phase::gibbs:
    case phase::hydrate:
    case phase::solid:
      if (!given) start = stable_start(dense, T, P, X, IFCOM, ILCOM, ZOTHER, IPHRTN);
      break;
    default:
      ICODE = status::not_available;
      return;
  }
  Root root = root_from(start, T, P, X, IFCOM, ILCOM);
  // Without a root on its side the iteration swings around the limit of stability.
  if (root.ICODE == status::not_converged && !given) root = root_from(second, T, P, X, IFCOM, ILCOM);
  ICODE = root.ICODE;
  if (ICODE != status::ok) return;
  Z = root.Z;
  PV = root.PV;
  PTCN = root.PTCN;
}

// bwrs_composition_slope: composition slope of the pressure at constant total volume and temperature.
//
// In       IFCOM, ILCOM  I4      range of components, as in the last successful call of SBWRS0
// Out      PN            R8(50)  (n/P) dP/dn_i [-]
void bwrs_composition_slope(I4 IFCOM, I4 ILCOM, CompVec& PN) {
  const BwrsRecord& w = bwrs;
  const Vec<R8, kBwrsParameters>& C = w.C;
  const R8 D2 = w.D * w.D;
  const R8 D3 = w.D * D2;
  const R8 D6 = D3 * D3;
  const R8 RT = w.RT;
  const R8 RTT = RT * RT;
  const auto [GD2, decay, TMP] = bwrs_exponential(w.D);

  // dP/dC at constant density.
  Vec<R8, kBwrsParameters> slope{{-D2, w.G1 * D2, -RTT * D2, RTT * RT * D2, -RTT * RTT * D2, D6 * C(10) - D3,
                                  RT * (D6 * C(10) - D3), RTT * D3 * (1.0 + GD2) * decay, w.G1 * D3,
                                  D6 * (RT * C(7) + C(6)), -GD2 * D3 * D2 * TMP}};
  for (int k = 1; k <= kBwrsParameters; ++k) {
    R8 growth = 1.0;
    for (int power = 1; power < kBwrsDegree(k); ++power) growth *= w.root(k);
    slope(k) *= kBwrsDegree(k) * growth;
  }
  for (int i = IFCOM; i <= ILCOM; ++i) {
    R8 sum = w.D * w.DPDD;
    for (int k = 1; k <= kBwrsParameters; ++k) sum += slope(k) * (w.CBWRS(i, k) - w.root(k));
    PN(i) = sum / w.P;
  }
}

}  // namespace talix
