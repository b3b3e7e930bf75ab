#include "association/bwrs.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "association/bwrs_record.h"
#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix {

constinit BwrsRecord bwrs{};

namespace {

// Generalised parameters over the acentric factor: constant and slope, and beyond kBend a second parabola.
struct CorrelationRow {
  R8 SA, SB, SC, SD;
};

constexpr auto kCorrelation = std::to_array<CorrelationRow>({
    {.SA = 1.28438, .SB = -0.920731, .SC = 0.0474379, .SD = 0.0459632},     // A0
    {.SA = 0.44369, .SB = 0.115449, .SC = 0.00565842, .SD = 0.200178},      // B0
    {.SA = 0.356306, .SB = 1.70871, .SC = -0.0282625, .SD = 0.823764},      // C0
    {.SA = 0.0307452, .SB = 0.179433, .SC = -0.00294972, .SD = 0.0837407},  // D0
    {.SA = 0.00645, .SB = -0.022143, .SC = 0.0, .SD = 0.0},                 // E0
    {.SA = 0.484011, .SB = 0.75413, .SC = -0.0336319, .SD = 1.0384},        // a
    {.SA = 0.0732828, .SB = 0.463492, .SC = -0.0247235, .SD = 0.466776},    // d
    {.SA = 0.504087, .SB = 1.32245, .SC = -0.062187, .SD = 1.54733},        // c
    {.SA = 0.528629, .SB = 0.349261, .SC = -0.0106005, .SD = 0.7155},       // b
    {.SA = 0.0705233, .SB = -0.044448, .SC = 0.00477286, .SD = 0.0255493},  // alpha
    {.SA = 0.544979, .SB = -0.270896, .SC = 0.0258707, .SD = 0.174003},     // gamma
});
static_assert(kCorrelation.size() == kBwrsParameters);

constexpr R8 kBend = 0.539;       // acentric factor behind which the second parabola counts [-]
constexpr R8 kE0Decay = -3.8;     // exponent of the fifth parameter [-]
constexpr R8 kTolerance = 1E-10;  // of pressure and density, relative [-]
constexpr R8 kGrowth = 1.15;      // of the density where the pressure does not rise [-]
constexpr int kMaxPasses = 50;

// Parameters of one component from its critical constants.
void set_component(int i) {
  const R8 OMEGA = comp.OMEGA(i);
  const R8 D = OMEGA - kBend;
  const R8 volume = comp.VC(i) / kBwrsLitresPerM3;
  const R8 TCI = comp.TC(i);
  Vec<R8, kBwrsParameters> c{};
  for (int k = 1; k <= kBwrsParameters; ++k) {
    const CorrelationRow& row = kCorrelation[static_cast<std::size_t>(k - 1)];
    const R8 TRM = k > 5 ? volume * volume : volume;
    if (k == 5) {
      c(k) = TRM * (row.SB * OMEGA * std::exp(kE0Decay * OMEGA) + row.SA);
      continue;
    }
    c(k) = TRM * (OMEGA * row.SB + row.SA);
    if (D > 0.0) c(k) = std::max(c(k) + TRM * D * (D * row.SD + row.SC), 0.0);
  }
  R8 TRM = kGasConstant * TCI;
  for (int k = 1; k <= 5; ++k) {
    if (k != 2) c(k) *= TRM;
    TRM *= TCI;
  }
  TRM = kGasConstant * TCI;
  for (int k = 6; k <= 8; ++k) {
    c(k) *= TRM;
    TRM *= TCI;
  }
  c(10) *= volume;

  // A negative acentric factor makes C0 and D0 negative, which have no square root.
  for (int k = 1; k <= kBwrsParameters; ++k) {
    if (kBwrsDegree(k) == 2) c(k) = std::sqrt(std::max(c(k), 0.0));
    if (kBwrsDegree(k) == 3) c(k) = std::cbrt(c(k));
    bwrs.CBWRS(i, k) = c(k);
  }
}

// Rebuilds the component parameters when the data or the range changed.
I4 component_parameters(I4 IFCOM, I4 ILCOM) {
  const BwrsKey key{.generation = setup.generation + 1, .IFCOM = IFCOM, .ILCOM = ILCOM};
  if (bwrs.key == key) return bwrs.code;
  bwrs.code = status::ok;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    // Without a critical volume every parameter is zero, which would pass for an ideal gas.
    if (!(comp.TC(i) > 0.0 && comp.VC(i) > 0.0)) bwrs.code = status::no_parameters;
    set_component(i);
  }
  bwrs.key = key;
  return bwrs.code;
}

void mixture_parameters(const CompVec& X, I4 IFCOM, I4 ILCOM) {
  for (int k = 1; k <= kBwrsParameters; ++k) {
    R8 sum = 0.0;
    for (int i = IFCOM; i <= ILCOM; ++i) sum += X(i) * bwrs.CBWRS(i, k);
    bwrs.root(k) = sum;
    bwrs.C(k) = kBwrsDegree(k) == 1 ? sum : kBwrsDegree(k) == 2 ? sum * sum : sum * sum * sum;
  }
}

void temperature_coefficients(R8 T) {
  BwrsRecord& w = bwrs;
  const Vec<R8, kBwrsParameters>& C = w.C;
  const R8 RT = 1.0 / T;
  const R8 RTT = RT * RT;
  w.RT = RT;
  w.G1 = kGasConstant * T;
  w.G2 = C(2) * w.G1 - C(1) - RTT * (C(3) - RT * (C(4) - RT * C(5)));
  w.L1 = C(2) * w.G1 + RTT * (2.0 * C(3) - RT * (3.0 * C(4) - 4.0 * RT * C(5)));
  w.G3 = C(9) * w.G1 - C(6) - RT * C(7);
  w.L2 = C(9) * w.G1 + RT * C(7);
  w.G4 = C(10) * (RT * C(7) + C(6));
  w.L3 = -C(10) * RT * C(7);
  w.G5 = C(8) * RTT;
}

// Newton steps in density; false when they do not settle on a positive density.
bool solve_density(R8 P, R8& D) {
  BwrsRecord& w = bwrs;
  for (int pass = 1; pass <= kMaxPasses; ++pass) {
    const R8 D2 = D * D;
    const R8 D3 = D * D2;
    const auto [GD2, decay, TMP] = bwrs_exponential(D);
    const R8 PPC = D * (D * (D * ((1.0 + GD2) * TMP + w.G3 + D3 * w.G4) + w.G2) + w.G1);
    const R8 DPDD = D * (2.0 * w.G2 + D * (3.0 * w.G3 + 6.0 * D3 * w.G4)) + w.G1 +
                    TMP * D2 * (3.0 + GD2 * (3.0 - 2.0 * GD2));
    if (DPDD <= 0.0) {
      D *= kGrowth;
      continue;
    }
    const R8 DP = P - PPC;
    const R8 DD = DP / DPDD;
    if (std::abs(DP / P) <= kTolerance || std::abs(DD / D) <= kTolerance) {
      if (!(D > 0.0)) return false;
      w.D = D;
      w.DPDD = DPDD;
      return true;
    }
    D += DD;
  }
  return false;
}

}  // namespace

void reset_bwrs_cache() { bwrs.key = {}; }

// SBWRS0: compressibility of a mixture.
//
// In       IFCOM, ILCOM  I4      range of components
//          T, P          R8      [K], [Pa]
//          X             R8(50)  mole fractions [-]
// In/Out   Z             R8      start value if positive, otherwise the start is the ideal gas; the
//                                compressibility [-]
// Out      PV            R8      (V/P) dP/dV [-]
//          PTCN          R8      (T/P) dP/dT at constant volume [-]
//          ICODE         I4
// Shared   reads comp.TC, VC, OMEGA, setup.generation
// Status   ok; not_converged (also where the result has no positive density): nothing else is changed;
//          no_parameters (no critical temperature or volume): likewise
// Oddity   the start value decides the root; no message
// Source   Starling, Fluid Thermodynamic Properties for Light Petroleum Systems, 1973; Starling and Han,
//          Hydrocarbon Processing 51 (1972) no. 5, 129
void SBWRS0(const I4& IFCOM, const I4& ILCOM, const R8& T, const R8& P, const CompVec& X, R8& Z, R8& PV,
            R8& PTCN, I4& ICODE) {
  ICODE = component_parameters(IFCOM, ILCOM);
  if (ICODE != status::ok) return;
  mixture_parameters(X, IFCOM, ILCOM);
  temperature_coefficients(T);
  BwrsRecord& w = bwrs;
  w.P = P;

  const R8 DI = P / w.G1;
  R8 D = Z > 0.0 ? DI / Z : DI;
  if (!solve_density(P, D)) {
    ICODE = status::not_converged;
    return;
  }
  const auto [GD2, decay, TMP] = bwrs_exponential(D);
  Z = DI / D;
  PV = -D * w.DPDD / P;
  PTCN = D * (D * (D * (w.L2 - 2.0 * (1.0 + GD2) * TMP + D * D * D * w.L3) + w.L1) + w.G1) / P;
}

}  // namespace talix
