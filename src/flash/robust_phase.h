// One phase in 64-bit reals, as the check behind the flashes and its solvers see it.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// The mixture of a call, reduced to the components that have a feed. All vectors and matrices of the robust
// solvers run over positions 1..n of this record, so that components without a feed cost nothing and change
// nothing.
struct RobustMixture {
  I4 n;                        // components with a feed
  Vec<I4, kMaxComponents> at;  // their positions in the component list
  CompVec z;                   // mole fractions of the feed, sum 1 [-]
  R8 total;                    // total feed [mol]
};

// What evaluate_phase works out beside ln phi.
enum class PhaseDerivatives {
  none,         // ln phi and Z
  composition,  // and the composition derivatives
  all           // and the temperature and pressure derivatives
};

struct RobustPhase {
  CompVec x;               // mole fractions, sum 1 [-]
  CompVec lnphi;           // ln fugacity coefficient [-]
  CompVec lnphi_T;         // T d ln phi/dT [-]
  CompVec lnphi_P;         // P d ln phi/dP [-]
  CompMat lnphi_n;         // N d ln phi_i/dn_j: symmetric, sum over j of x_j lnphi_n(i,j) is 0 [-]
  PhaseDerivatives known;  // which of the derivatives above evaluate_phase has set
  R8 Z;                    // compressibility factor [-]
  R8 h;                    // molar enthalpy [J/mol] (evaluate_enthalpy)
  R8 cp;                   // molar heat capacity dh/dT [J/(mol K)] (evaluate_enthalpy)
  I4 root;                 // phase::liquid or phase::vapour as the engine identifies the root
  L4 single;               // the equation has one root here and the phase could not be told apart
  I4 status;  // status::ok, or what the engine answered; status::failed when the budget is used up
};

// The components with a feed of the flash record, fl.F.
void gather_mixture(RobustMixture& mixture);

// Engine calls that the check may still make in this call of the library; evaluate_phase and evaluate_enthalpy
// take one each and answer status::failed without one, so that every loop over them ends.
void set_engine_budget(I4 calls);
I4 engine_budget();

// Fugacities of one phase on a real root of the equation, never on a pseudo-root.
//   T [K], P [bar], X mole fractions of the mixture's components
//   ROOT  phase::gibbs the root of lowest Gibbs energy; phase::vapour, phase::liquid the extreme root of that
//         side, the only one where there is one
void evaluate_phase(const RobustMixture& mixture, R8 T, R8 P, const CompVec& X, I4 ROOT,
                    PhaseDerivatives derivatives, RobustPhase& out);
// Enthalpy and heat capacity of the phase whose composition out.x holds.
void evaluate_enthalpy(const RobustMixture& mixture, R8 T, R8 P, I4 ROOT, RobustPhase& out);

// Wilson's estimate of ln K, from the constants of the flash layer.
void wilson_ln_k(const RobustMixture& mixture, R8 T, R8 P, CompVec& lnK);

}  // namespace talix
