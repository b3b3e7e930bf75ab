#include <cmath>

#include "numerics/s0cbrt.h"
#include "transport/dense_fluid.h"
#include "transport/dense_fluid_record.h"
#include "transport/dense_fluid_terms.h"

namespace talix {

namespace {

constexpr R4 kJoulePerCalorie = 4.184F;
constexpr R4 kMonatomic = 4.968F;  // heat capacity without internal degrees of freedom [cal/(mol K)]

constexpr I4 kHyperbolic = 7;  // form of a heat capacity in J/(kmol K)

// Ideal-gas heat capacity of component I [cal/(mol K)].
R4 heat_capacity(int i, R4 T, const DenseHeatCapacity& c, I4 form) {
  R4 cp = 0.0F;
  if (form == kHyperbolic) {
    cp = c(1, i);
    if (c(3, i) != 0.0F) {
      const R4 u = c(3, i) / T;
      cp += c(2, i) * square(u / std::sinh(u));
    }
    if (c(5, i) != 0.0F) {
      const R4 u = c(5, i) / T;
      cp += c(4, i) * square(u / std::cosh(u));
    }
    cp = cp / 1000.0F;
  } else {
    cp = c(1, i) + T * (c(2, i) + T * (c(3, i) + T * (c(4, i) + T * (c(5, i) + T * c(6, i))))) +
         (c(7, i) + c(8, i) / T) / T;
  }
  return cp / kJoulePerCalorie;
}

}  // namespace

// TRCOND: translational part of the conductivity of a mixture by corresponding states.
//
// In       RHO0  R4  density from DCST [mol/L]
//          T     R4  [K]
// Returns  R4, mW/(m K)
// Shared   reads dense_fluid, dense_mixture as DCST left it
// Source   as DCST
R4 TRCOND(const R4& RHO0, const R4& T) {
  const DenseFluidMixture& mixture = dense_mixture;
  const ReferenceState s = reference_state(RHO0, T);
  const R4 G = first_density_term(dense_fluid.GL, s.T0);
  const R4 LAM0 = 0.194345042F * dense_fluid.ETA0K * s.T1 / collision_integral(s.T0 / dense_fluid.EPSK);
  const R4 R1 = std::pow(s.D0, 0.1F);
  const R4 R2 = (s.D0 / dense_fluid.RHOL - 1.0F) * std::sqrt(s.D0);
  const R4 EXC = excess(dense_fluid.EL, s, R1, R2);

  const R4 FLAM = std::sqrt(mixture.FMIX * dense_fluid.MWREF / mixture.MWLAM) / S0CBRT(square(mixture.HMIX));
  const R4 slope = mixture.DFDT > 0.0F ? 0.0F : mixture.DFDT;
  const R4 correction = std::pow((1.0F - s.T0 * slope) * dense_fluid.ZCREF / mixture.ZCMIX, 1.5F);
  return (G * s.D0 + LAM0 + EXC) * FLAM * correction;
}

// THERMC: conductivity of a mixture, with the internal degrees of freedom.
//
// In       RHO0  R4       density from DCST [mol/L]
//          T     R4       [K]
//          X     R4(50)   mole fractions
//          N     I4       components
//          CMW   R4(50)   molar mass [g/mol]
//          CPC   R4(8,50) ideal-gas heat capacity of each component
//          ICP   I4(50)   its form: 7 hyperbolic [J/(kmol K)], any other a polynomial [J/(mol K)]
// Returns  R4, mW/(m K)
// Shared   reads dense_fluid, dense_mixture as DCST left it
// Oddity   two gases without internal degrees of freedom, 0 over 0 in the letter, add nothing
// Source   as DCST
R4 THERMC(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW,
          const DenseHeatCapacity& CPC, const Vec<I4, kMaxComponents>& ICP) {
  const R4 TCTMIX = TRCOND(RHO0, T);

  DenseVec TCINT;
  for (int i = 1; i <= N; ++i) {
    const R4 cp0 = heat_capacity(i, T, CPC, ICP(i));
    const R4 omega = collision_integral(T / (dense_mixture.F(i) * dense_fluid.EPSK));
    const R4 trm = dense_fluid.ETA0K * std::sqrt(T / (dense_fluid.MWREF * CMW(i))) /
                   (omega * S0CBRT(square(dense_mixture.H(i))));
    TCINT(i) = 0.552288F * (cp0 - kMonatomic) * trm;
  }

  R4 SUM = 0.0F;
  for (int i = 1; i <= N; ++i) {
    R4 a = 0.0F;
    R4 b = 0.0F;
    for (int j = 1; j <= i; ++j) {
      const R4 both = TCINT(i) + TCINT(j);
      a = both == 0.0F ? 0.0F : X(j) * TCINT(j) / both;
      b += a;
    }
    SUM += X(i) * TCINT(i) * (2.0F * b - a);
  }
  return 2.0F * SUM + TCTMIX;
}

}  // namespace talix
