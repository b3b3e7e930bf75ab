#include "fastprops/rksf_direct.h"

#include <algorithm>
#include <cmath>

#include "fastprops/redlab.h"
#include "fastprops/rkscrt.h"

namespace talix {

namespace {

constexpr R4 kGasConstant = 83.143F;    // of this formula alone [bar cm3/(mol K)]
constexpr R4 kMaxLogarithm = 38.0F;     // of a fugacity coefficient, so that it stays a 32-bit number
constexpr R4 kLowPressure = 1.0F;       // [bar]
constexpr R8 kScaledConstant = 1.0E-8;  // constants of the cubic up to here are scaled

// Parameters of the mixture, dimensionless.
struct Mixture {
  R4 AMX, BMX;
};

Mixture mix(I4 NC, R4 T, R4 P, const FlashVec& XX) {
  const R4 S = P / (kGasConstant * T);
  for (int I = 1; I <= NC; ++I) {
    fl.AA(I) = fl.A(I) * S;
    fl.BB(I) = fl.B(I) * S;
  }
  Mixture m{};
  for (int I = 1; I <= NC; ++I) {
    fl.AMIX(I) = fl.BMIX(I) = 0.0F;
    for (int J = 1; J <= NC; ++J) {
      fl.AMIX(I) += XX(J) * std::sqrt(fl.AA(I) * fl.AA(J));
      fl.BMIX(I) += XX(J) * (fl.BB(I) + fl.BB(J)) / 2.0F;
    }
    m.AMX += XX(I) * fl.AMIX(I);
    m.BMX += XX(I) * fl.BMIX(I);
  }
  return m;
}

void form_cubic(const Mixture& m) {
  const R8 A = widen(m.AMX);
  const R8 B = widen(m.BMX);
  fl.AN(1) = -1.0;
  fl.AN(2) = A - B * (1.0 + B);
  fl.AN(3) = -A * B;
}

// The root of the phase; with one root only, one beyond the turning point where the cubic has one.
R4 phase_root(bool SOLVER, I4 PH, R4 BMX) {
  R8 ZMAX = 0.0;
  R8 ZMIN = 0.0;
  I4 NRT = 0;
  if (SOLVER)
    RKSCRT2(fl.AN, fl.ZZ, ZMAX, ZMIN, NRT);
  else
    RKSCRT(fl.AN, fl.ZZ, ZMAX, ZMIN, NRT);
  const bool vapour = PH == flash_phase::vapour;
  R8 root = fl.ZZ(1);
  if (NRT != 1)
    root = vapour ? std::max({fl.ZZ(1), fl.ZZ(2), fl.ZZ(3)}) : std::min({fl.ZZ(1), fl.ZZ(2), fl.ZZ(3)});
  else if (ZMAX > 0.0)
    root = vapour ? std::max(root, ZMIN) : std::min(root, ZMAX);
  const R4 Z = static_cast<R4>(root);
  return Z > BMX ? Z : static_cast<R4>(fl.ZZ(1));
}

// Small constants are brought up to the order of 1 before the closed form.
R4 low_pressure_root(I4 PH, R4 BMX) {
  const R8 constant = std::fabs(fl.AN(3));
  R8 S = 1.0;
  if (constant > 0.0 && constant <= kScaledConstant) S = std::exp(std::log(constant) / 3.0 + 6.0);
  CubicVector scaled{};
  scaled(1) = fl.AN(1) / S;
  scaled(2) = fl.AN(2) / (S * S);
  scaled(3) = fl.AN(3) / (S * S * S);
  RKS(scaled, fl.ZZ);
  const I4 L = PH == flash_phase::second_liquid ? flash_phase::liquid : PH;
  const R4 Z = static_cast<R4>(S * fl.ZZ(L));
  return Z > BMX ? Z : static_cast<R4>(-fl.AN(3) / fl.AN(2));
}

}  // namespace

// direct_fugacities: fugacity coefficients and compressibility of one phase, without pair parameters.
//
// In       SOLVER  true: roots by RKSCRT2; false: by RKSCRT, and by RKS below 1 bar
//          NC    I4      number of components
//          PH    I4      flash_phase::vapour takes the largest root, the liquids the smallest
//          T, P  R4      [K], [bar]
//          XX    R4(50)  mole fractions
// Out      PHI   R4(50)  fugacity coefficients [-], between exp(-38) and exp(38)
//          Z     R4      compressibility factor [-]
//          IPH   I4      0, no root type
// Shared   fl.RGAS has to be kVolumeGasConstant; sets fl.A, B, AA, BB, AMIX, BMIX, AN, ZZ
// Oddity   the gas constant of the reduced parameters has five digits
void direct_fugacities(bool SOLVER, const I4& NC, const I4& PH, const R4& T, const FlashVec& XX,
                       FlashVec& PHI, R4& Z, const R4& P, I4& IPH) {
  IPH = 0;
  I4 IER = 0;
  REDLAB(T, 0, NC, IER);
  const Mixture m = mix(NC, T, P, XX);
  form_cubic(m);
  Z = !SOLVER && P < kLowPressure ? low_pressure_root(PH, m.BMX) : phase_root(SOLVER, PH, m.BMX);

  for (int J = 1; J <= NC; ++J) {
    R4 ARG = ((Z - 1.0F) / m.BMX) * fl.BB(J) - std::log(Z - m.BMX) +
             (std::log(1.0F + m.BMX / Z) / m.BMX) * ((m.AMX / m.BMX) * fl.BB(J) - 2.0F * fl.AMIX(J));
    if (ARG > kMaxLogarithm) ARG = kMaxLogarithm;
    if (!(ARG >= -kMaxLogarithm)) ARG = -kMaxLogarithm;
    PHI(J) = std::exp(ARG);
  }
}

}  // namespace talix
