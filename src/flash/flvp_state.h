// Working state of the temperature search at a given vapour fraction.
#pragma once

#include "base/real.h"
#include "flash/rachford_rice.h"

namespace talix {

// What follows the decision of a pass (selector NCOMP).
enum class AfterDecision { next_pass, finish, no_convergence, insolvable };

struct FlvpState {
  SplitEquations equations;  // feed and K-values of this pass
  SplitSums sums;            // the equations at FLA, FLB and their derivatives
  bool key;                  // a second liquid is sought
  R4 TA, TAOLD;              // trial temperature and the one before [K]
  R4 DELTAT;                 // last step [K]
  R4 DTMAX;                  // limit of the step [K]
  R4 FLL;                    // fraction of the feed in both liquids
  R4 FLA, FLB;               // fraction in liquid A and in liquid B
  R4 FT, RFT;                // total feed [mol] and its reciprocal
  R4 FTLS;                   // second liquid [mol]
  I4 LOOP;                   // pass
  I4 NOSOL;                  // signs that no temperature has the fraction
  R4 QA, QB;                 // the phase-fraction equations of the two liquids
  R4 QAOLD, QBOLD;           // those of the pass before
  R4 DQADT, DQBDT;           // their slopes [1/K]
  R4 DQADTOLD, DQBDTOLD;     // the slopes of the pass before
  R4 TOLQ;                   // tolerance of the equations
};

// The equations at FLA.
void evaluate_fraction(FlvpState& s, R4 FLA);
// The next step from one equation and its slope.
AfterDecision decide_step(FlvpState& s, R4 Q, R4 DQDT);
// The same with a second liquid in question; sets FLA.
AfterDecision decide_second_liquid(FlvpState& s);
// The first step [K], in the direction of the equation.
R4 first_step(R4 Q);

}  // namespace talix
