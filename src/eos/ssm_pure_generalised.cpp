#include "eos/ssm_pure_generalised.h"

#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/setup_record.h"
#include "eos/ssm_pure_generalised_tables.h"

namespace talix {

namespace {

// The limits of the ranges are plain doubles: an acentric factor of 0.1045 belongs to the relation in
// single as in double precision.
constexpr R8 kLowest = 0.1045;

const GeneralisedRange& range_of(R8 W) {
  if (W > kGeneralisedHigh.origin) return kGeneralisedHigh;
  if (W > kGeneralisedMiddle.origin) return kGeneralisedMiddle;
  return kGeneralisedLow;
}

R8 value(const GeneralisedTerm& term, R8 WR) {
  const R8 power = widen(term.c0) + (widen(term.c1) + (widen(term.c2) + widen(term.c3) * WR) * WR) * WR;
  return power + widen(term.amplitude) * std::exp(widen(term.rate) * WR);
}

// Five columns from one set of intermediates.
void set_columns(const GeneralisedTerms& terms, R8 WR, int before, CurveSet& EOSPAR) {
  const R8 Q1 = value(terms[0], WR);
  const R8 Q2 = value(terms[1], WR);
  const R8 Q3 = value(terms[2], WR);
  const R8 Q4 = value(terms[3], WR);
  const R8 Q5 = value(terms[4], WR);
  EOSPAR(before + 1) = Q2 * Q5 + Q1;
  EOSPAR(before + 2) = -Q2 / Q4;
  EOSPAR(before + 3) = -Q4;
  EOSPAR(before + 4) = Q5;
  EOSPAR(before + 5) = -Q3 - Q2 / Q4;
}

}  // namespace

// SSMPC4: curve parameters from the acentric factor.
//
// In       W         R8      acentric factor [-]
// Out      EOSPAR    R8(15)  1-5 a curve, 6-10 b curve, 11-15 a above critical [-]; set only when ok
//          RESERVED  R8      0
// Status   ok; range (W below 0.1045)
void SSMPC4(const R8& W, CurveSet& EOSPAR, I4& ICODE, R8& RESERVED) {
  RESERVED = 0.0;
  if (!(W >= kLowest)) {
    ICODE = status::range;
    return;
  }
  ICODE = status::ok;
  const GeneralisedRange& range = range_of(W);
  const R8 WR = W - range.origin;
  set_columns(range.b, WR, 5, EOSPAR);
  set_columns(range.a, WR, 0, EOSPAR);
  // The a curve at the critical point, and from there on upward.
  const R8 T1 = EOSPAR(3) * (1.0 - EOSPAR(4));
  EOSPAR(11) =
      EOSPAR(2) * std::log(1.0 + std::exp(T1)) + EOSPAR(1) - EOSPAR(5) * std::log(1.0 + std::exp(-T1));
  EOSPAR(12) = widen(19.696F) * W + widen(0.18902F);
  EOSPAR(13) = widen(-25.016F) * W - widen(0.72032F);
  EOSPAR(14) = widen(45.547F) * W + widen(1.2889F);
  EOSPAR(15) = widen(31.4571F) * W + widen(1.1923F);
}

// SESGE0: curve parameters of a pseudo-component, stored with its critical data.
//
// In       MOD       I4      model the parameters are for; they do not differ
//          TC        R8      critical temperature [K]
//          PC        R8      critical pressure [bar]
//          W         R8      acentric factor [-]
//          IC        I4      component
// Out      EOSPAR    R8(15)  curve parameters; set only when ok
//          RESERVED  R8      0
// Shared   writes comp.TC, PC, OMEGA, PARABF of IC; adds 1 to setup.generation
// Status   ok; range (acentric factor below 0.1045: the curves stay as they are)
void SESGE0(const I4& /*MOD*/, const R8& TC, const R8& PC, const R8& W, const I4& IC, CurveSet& EOSPAR,
            R8& RESERVED, I4& ICODE) {
  ++setup.generation;
  comp.OMEGA(IC) = W;
  comp.TC(IC) = TC;
  comp.PC(IC) = PC;
  SSMPC4(W, EOSPAR, ICODE, RESERVED);
  if (ICODE != status::ok) return;
  for (int k = 1; k <= 15; ++k) comp.PARABF(IC, k) = EOSPAR(k);
}

}  // namespace talix
