#include "fastprops/surface_tension.h"

#include <cmath>

#include "database/component_record.h"
#include "fastprops/engine_call.h"
#include "fastprops/surface_tension_tables.h"

namespace talix {

namespace {

constexpr R8 kZeroCelsius = 273.15;

// What SURTEN1 hands on and what SSTPW0 works on.
struct Work {
  PhaseCompositions XX;
  CompVec ASURT, BSURT;
};
constinit Work work{};

// Sum of a phase and its molar volume; a phase that is absent has neither.
struct PhaseSum {
  I4 column;
  R8 SUM;  // [(mN/m)^(1/4) cm3/mol]
  R8 VOL;  // [cm3/mol]
  [[nodiscard]] bool present() const { return column > 0; }
  [[nodiscard]] R8 density() const { return SUM / VOL; }
};

PhaseSum open_phase(I4 column, const Vec<R8, 3>& PHVOL) {
  constexpr R8 kCubicCentimetre = 1e-06;
  return {column, 0.0, column > 0 ? PHVOL(column) / kCubicCentimetre : 0.0};
}

void add(PhaseSum& phase, const PhaseCompositions& XX, R8 Q, I4 i, I4 j) {
  if (phase.present()) phase.SUM += Q * XX(i, phase.column) * XX(j, phase.column);
}

// Against the vapour, if there is one. Where the vapour is the denser of the two there is no interface, and the
// fourth power would hide the sign.
R8 against_vapour(const PhaseSum& liquid, const PhaseSum& vapour) {
  const R8 difference = liquid.density() - (vapour.present() ? vapour.density() : 0.0);
  if (!(difference > 0.0)) return 0.0;
  const R8 square = difference * difference;
  return square * square;
}

// Between two liquids, from their tensions against the vapour.
R8 between_liquids(const PhaseSum& first, const PhaseSum& second, R8 S1, R8 S3) {
  constexpr R8 kTwoThirds = 2.0 / 3.0;
  const R8 sum = std::pow(first.VOL, kTwoThirds) + std::pow(second.VOL, kTwoThirds);
  const R8 GAM = 4.0 * std::pow(first.VOL * second.VOL, kTwoThirds) / (sum * sum);
  return S1 + S3 - 2.0 * GAM * std::sqrt(S1 * S3);
}

}  // namespace

// SURTEN: surface tension of a mixture as the mean over its components.
//
// In       NC     I4        number of components
//          T      R4        temperature [K]
//          TC     R4(50)    critical temperatures [K]
//          SUR    R4(2,50)  an exponent above 3 in entry 2: entry 1 is a parachor; otherwise a power of 1 - T/TC with
//                           entry 1 in mN/m
//          AMW    R4(50)    molar masses [g/mol]; AMWV that of the vapour
//          DEN    R4(50)    liquid densities [kg/m3]; DENV that of the vapour
//          XX     R4(50)    mole fractions
// Out      SIGMA  R4        [mN/m]; a component above its critical temperature, or not denser than the vapour, adds
//                           nothing
void SURTEN(const I4& NC, const R4& T, const FlashVec& TC, const Mat<R4, 2, kMaxComponents>& SUR,
            const FlashVec& AMW, const R4& AMWV, const FlashVec& DEN, const R4& DENV, const FlashVec& XX,
            R4& SIGMA) {
  constexpr R4 kLargestExponent = 3.0F;
  SIGMA = 0.0F;
  const R4 vapour = AMWV > 0.0F ? DENV / AMWV : 0.0F;
  for (int i = 1; i <= NC; ++i) {
    if (!(T < TC(i))) continue;
    if (SUR(2, i) > kLargestExponent) {
      const R4 D = (DEN(i) / AMW(i) - vapour) * 0.001F;
      if (D > 0.0F) SIGMA += XX(i) * std::pow(SUR(1, i) * D, SUR(2, i));
    } else {
      SIGMA += XX(i) * SUR(1, i) * std::pow(1.0F - T / TC(i), SUR(2, i));
    }
  }
}

// SURTEN1: surface tension of a liquid against its vapour by the parachor method.
//
// In       NC     I4      number of components
//          T      R4      temperature [K]
//          P      R4      pressure [bar]
//          Y, X   R4(50)  mole fractions of vapour and liquid
//          ZV     R4      compressibility factor of the vapour [-]; not above 0: no vapour
//          ZL     R4      of the liquid [-]
// Out      SIGMA  R4      [mN/m]; 0 where the vapour is not less dense than the liquid
// Oddity   without a vapour the liquid stands against an ideal gas of its own composition
void SURTEN1(const I4& NC, const R4& T, const R4& P, const FlashVec& Y, const FlashVec& X, const R4& ZV,
             const R4& ZL, R4& SIGMA) {
  const bool vapour = ZV > 0.0F;
  for (int i = 1; i <= NC; ++i) {
    work.XX(i, 1) = static_cast<R8>(vapour ? Y(i) : X(i));
    work.XX(i, 2) = static_cast<R8>(X(i));
  }
  const R8 TPAS = static_cast<R8>(T);
  const R8 PPAS = static_cast<R8>(P) * kPascalPerBar;
  Vec<R8, 3> PHVOL{};
  Vec<R8, 3> SIG{};
  PHVOL(1) = (vapour ? static_cast<R8>(ZV) : 1.0) * kGasConstant * TPAS / PPAS;
  PHVOL(2) = static_cast<R8>(ZL) * kGasConstant * TPAS / PPAS;
  SSTPW0(NC, TPAS, work.XX, 1, 2, 0, PHVOL, SIG);
  SIGMA = static_cast<R4>(SIG(1));
  if (!std::isfinite(SIGMA)) SIGMA = 0.0F;
}

// SSTPW0: Macleod-Sugden surface tensions with binary corrections, and their like between two liquids.
//
// In       NC     I4        number of components
//          T      R8        temperature [K]
//          XX     R8(50,3)  mole fractions, one column for each phase
//          KV, KL1, KL2  I4  columns of vapour, first and second liquid; 0 for an absent phase
//          PHVOL  R8(3)     molar volumes of the columns [m3/mol]
// Out      SIG    R8(3)     vapour to first liquid, first to second liquid, vapour to second liquid [mN/m]; all 0
//                           with fewer than two phases
// Shared   reads comp.ICS, comp.PACHOR
// Source   D. B. Macleod, Trans. Faraday Soc. 19 (1923) 38; S. Sugden, J. Chem. Soc. 125 (1924) 1177
void SSTPW0(const I4& NC, const R8& T, const PhaseCompositions& XX, const I4& KV, const I4& KL1,
            const I4& KL2, const Vec<R8, 3>& PHVOL, Vec<R8, 3>& SIG) {
  SIG.fill(0.0);
  PhaseSum vapour = open_phase(KV, PHVOL);
  PhaseSum first = open_phase(KL1, PHVOL);
  PhaseSum second = open_phase(KL2, PHVOL);
  if (vapour.present() + first.present() + second.present() < 2) return;

  for (int i = 1; i <= NC; ++i) {
    SSTPW1(comp.ICS, i, work.ASURT, work.BSURT, NC);
    for (int j = i + 1; j <= NC; ++j) {
      const R8 Q = (comp.PACHOR(i) + comp.PACHOR(j)) * (work.BSURT(j) * (T - kZeroCelsius) + work.ASURT(j));
      add(vapour, XX, Q, i, j);
      add(first, XX, Q, i, j);
      add(second, XX, Q, i, j);
    }
  }
  for (int i = 1; i <= NC; ++i) {
    add(vapour, XX, comp.PACHOR(i), i, i);
    add(first, XX, comp.PACHOR(i), i, i);
    add(second, XX, comp.PACHOR(i), i, i);
  }

  if (first.present()) SIG(1) = against_vapour(first, vapour);
  if (second.present()) SIG(3) = against_vapour(second, vapour);
  if (first.present() && second.present()) SIG(2) = between_liquids(first, second, SIG(1), SIG(3));
}

}  // namespace talix
