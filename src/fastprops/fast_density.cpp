#include "fastprops/fast_density.h"

#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/try_step.h"

namespace talix {

// RHO: liquid densities of the components, the critical one at and above the critical temperature.
//
// In       NC    I4        number of components
//          T     R4        temperature [K]
//          VC    R4(50)    critical volumes [cm3/mol]
//          TC    R4(50)    critical temperatures [K]
//          AMW   R4(50)    molar masses [g/mol]
//          CDEN  R4(4,50)  density sets: 1 [kg/m3], 2 and 3 [-]; the fourth entry is not read
// Out      DEN   R4(50)    [kg/m3]; 0 for a component without critical volume
// Oddity   no flag says whether a component has a set: one of zeros gives the density 0
void RHO(const I4& NC, const R4& T, const FlashVec& VC, const FlashVec& TC, const FlashVec& AMW,
         const Mat<R4, 4, kMaxComponents>& CDEN, FlashVec& DEN) {
  constexpr R4 kThird = 1.0F / 3.0F;
  for (int i = 1; i <= NC; ++i) {
    DEN(i) = VC(i) > 0.0F ? 1000.0F * AMW(i) / VC(i) : 0.0F;
    if (!(TC(i) > T)) continue;
    const R4 TR = 1.0F - T / TC(i);
    DEN(i) = CDEN(1, i) * (1.0F + CDEN(2, i) * std::pow(TR, kThird) + CDEN(3, i) * TR);
  }
}

namespace {

constexpr R4 kBarPerMegapascal = 10.0F;

// 10 to a power that stays a 32-bit number when it becomes bar.
constexpr R4 kLargestPressure = 1.0E36F;  // [MPa]; what reaches it is no solution
R4 power_of_ten(R4 exponent) {
  constexpr R4 kLimit = 37.0F;
  if (exponent > kLimit) exponent = kLimit;
  if (!(exponent > -kLimit)) exponent = -kLimit;
  return std::pow(10.0F, exponent);
}

// The pressure p [MPa] of log10 p = TMP + SLOPE p, by accelerated substitution; false when the steps run out.
bool solve_frost_kalkwarf(R4 TMP, R4 SLOPE, R4& PNEW) {
  constexpr int kSteps = 20;
  constexpr R4 kTolerance = 0.0001F;
  R4 PSUB = power_of_ten(TMP);
  R4 DX = 0.0F;
  R4 DXOLD = 0.0F;
  R4 R = 0.0F;
  for (int j = 1; j <= kSteps; ++j) {
    PNEW = power_of_ten(TMP + SLOPE * PSUB);
    if (std::fabs(PSUB - PNEW) < kTolerance * PSUB && PNEW < kLargestPressure) return true;
    TRY(PSUB, PNEW, DX, DXOLD, R);
  }
  return false;
}

// Vapour pressure over critical pressure above the critical temperature, by the logarithm of T/TTC.
R4 beyond_critical(R4 T, R4 TTC) {
  const R4 L = std::log(T / TTC);
  const R4 FRA =
      -0.39937F + L * (4.95175F + L * (-2.5123F + L * (-0.638496F + L * (0.693376F - 0.192851F * L))));
  return std::exp(FRA) / 0.7F;
}

}  // namespace

// FKW: vapour pressures of the components.
//
// In       NC    I4        number of components
//          T     R4        temperature [K]
//          PC    R4(50)    critical pressures [bar]
//          TC    R4(50)    critical temperatures [K]
//          NAME  text(50)  component names
//          CP0   R4(5,50)  Frost-Kalkwarf sets for log10 MPa; the third entry is not read
// Out      P0    R4(50)    [bar]
//          MSG   text      changed when a substitution does not converge
// Reports  " Frost-Kalkwarf equation did not converge (FKW)", cell 1; the last value is used all the same
// Oddity   a name that begins with H2 counts as hydrogen, which has a temperature and a pressure scale of its own
//          above its critical temperature
void FKW(const I4& NC, const R4& T, const FlashVec& PC, const FlashVec& TC,
         const Vec<Text<28>, kMaxComponents>& NAME, const Mat<R4, 5, kMaxComponents>& CP0, FlashVec& P0,
         Message& MSG) {
  constexpr R4 kHydrogenTemperature = 95.93F;
  constexpr R4 kHydrogenPressure = 100.0F;
  const R4 RECIPT = 1.0F / (T * T);
  const R4 LT = std::log10(T);
  for (int i = 1; i <= NC; ++i) {
    P0(i) = PC(i);
    if (TC(i) > T) {
      const R4 TMP = CP0(1, i) + CP0(2, i) / T + CP0(4, i) * LT;
      R4 PNEW = 0.0F;
      if (!solve_frost_kalkwarf(TMP, CP0(5, i) * RECIPT, PNEW)) {
        mark_error(error_row::FKW, 1);
        report(MSG, " Frost-Kalkwarf equation did not converge (FKW)");
      }
      P0(i) = PNEW * kBarPerMegapascal;
    } else {
      const bool hydrogen = NAME(i).sub(1, 2) == "H2";
      const R4 TTC = hydrogen ? kHydrogenTemperature : TC(i);
      const R4 SCALE = hydrogen ? kHydrogenPressure / PC(i) : 1.0F;
      P0(i) = SCALE * P0(i) * beyond_critical(T, TTC);
    }
  }
}

}  // namespace talix
