#include <cmath>

#include "numerics/s0cbrt.h"
#include "transport/dense_fluid.h"
#include "transport/dense_fluid_record.h"
#include "transport/dense_fluid_terms.h"

namespace talix {

namespace {

constexpr R4 kTriplePoint = 90.65F;  // of methane [K]
constexpr R4 kBlendWidth = 40.0F;    // beyond it one branch stands alone [K]
constexpr R4 kWeightFloor = 1E-05F;  // weight below which the cold branch is left out

// Excess viscosity of the reference fluid below its triple point.
constexpr Vec<R4, 7> kCold{{-9.74602F, 44.6055F, 18.0834F, -4126.66F, 0.976544F, 81.8134F, 15649.9F}};

// Hyperbolic tangent of the distance from the triple point.
R4 switching(R4 tf) {
  if (tf > kBlendWidth) return 1.0F;
  if (tf < -kBlendWidth) return -1.0F;
  const R4 up = bounded_exp(tf);
  const R4 down = bounded_exp(-tf);
  return (up - down) / (up + down);
}

}  // namespace

// TRPVIS: viscosity of a mixture by corresponding states.
//
// In       RHO0  R4      density from DCST [mol/L]
//          T     R4      [K]
//          X     R4(50)  mole fractions
//          N     I4      components
//          CMW   R4(50)  molar mass [g/mol]
// Returns  R4, micropoise: 1E-04 mPa s
// Shared   reads dense_fluid, dense_mixture as DCST left it
// Oddity   the correction stands in a square root with 1.5 T0, that of TRCOND in a power of 1.5 with T0
// Source   as DCST
R4 TRPVIS(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW) {
  const DenseFluidMixture& mixture = dense_mixture;
  const ReferenceState s = reference_state(RHO0, T);
  const R4 tangent = switching(s.T0 - kTriplePoint);
  const R4 W1 = 0.5F * (1.0F + tangent);
  const R4 W2 = 0.5F * (1.0F - tangent);

  // The reference fluid.
  const R4 G = first_density_term(dense_fluid.GV, s.T0);
  const R4 ETA0 = dense_fluid.ETA0K * s.T1 / collision_integral(s.T0 / dense_fluid.EPSK);
  const R4 R1 = std::pow(s.D0, 0.1F);
  const R4 R2 = (s.D0 / dense_fluid.RHOV - 1.0F) * std::sqrt(s.D0);
  R4 ETAX = excess(dense_fluid.EV, s, R1, R2);
  if (std::abs(W2) > kWeightFloor) ETAX = W1 * ETAX + W2 * excess(kCold, s, R1, R2);

  // The mixture.
  const R4 FETA = std::sqrt(mixture.FMIX * mixture.MWETA / dense_fluid.MWREF) / S0CBRT(square(mixture.HMIX));
  const R4 slope = mixture.DFDT > 0.0F ? 0.0F : mixture.DFDT;
  const R4 G2 = std::sqrt((1.0F - 1.5F * s.T0 * slope) * mixture.ZCMIX / dense_fluid.ZCREF);
  return (G * s.D0 + ETA0 + ETAX * G2) * FETA + DELHSV(RHO0, T, X, N, CMW);
}

}  // namespace talix
