// The pressure search with a second liquid. It is entered only with a key component (fl.NL2KEY above 0), which no
// call of the library sets.
#include "flash/flvt_state.h"

namespace talix {

namespace {

// FLA set to a share of the liquid, with the equations there.
void move_liquid(FlvtState& s, R4 FLA) {
  s.FLA = FLA;
  s.FLB = s.FLL - FLA;
  evaluate_pressure(s);
}

// Newton step of both equations in pressure and FLA.
void step_both(FlvtState& s) {
  const R4 J = 1.0F / s.QAP;
  const R4 TEMP2 = s.QBP * J;
  s.QAL = (s.QA * TEMP2 - s.QB) / (s.QBB - s.QAA * TEMP2);
  s.DELP = -(s.QAL * s.QAA + s.QA) * J;
}

// Liquid B alone stands unless liquid A wants to form at a pressure that still has to rise.
void try_liquid_b(FlvtState& s) {
  move_liquid(s, 0.0F);
  s.DELP = -s.QB / s.QBP;
  s.NGO = PressureMode::liquid_b;
  if (!(s.QA > 0.0F) || !(s.DELP > 0.0F)) return;
  move_liquid(s, s.FLL / 2.0F);
  step_both(s);
  s.NGO = PressureMode::both_liquids;
}

}  // namespace

// The step with the equations that the mode asks for. As long as the pressure of liquid A alone has to rise, or
// no second liquid wants to form, it stays out.
void step_second_liquid(FlvtState& s) {
  switch (s.NGO) {
    case PressureMode::liquid_a:
      if (s.QB > 0.0F && !(s.DELP > 0.0F)) try_liquid_b(s);
      break;
    case PressureMode::liquid_b:
      s.DELP = -s.QB / s.QBP;
      break;
    case PressureMode::both_liquids:
      step_both(s);
      break;
  }
}

bool admit_second_liquid(FlvtState& s) {
  if (s.NGO != PressureMode::liquid_a) return false;
  evaluate_pressure(s);
  if (!(s.QB > 0.0F)) return false;
  try_liquid_b(s);
  return true;
}

}  // namespace talix
