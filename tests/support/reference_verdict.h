// Compares answers of the library's entry call with the reference flash.
#pragma once

#include <string>

#include "support/reference_enthalpy.h"
#include "support/reference_reply.h"

namespace talix::test::reference {

enum class Verdict {
  right,
  near_boundary,       // another phase count, within 0.1 % of where the reference's count changes
  wrong_count,         // number of phases
  wrong_fraction,      // vapour fraction off by more than 0.001
  wrong_label,         // a phase in the column of another one
  wrong_composition,   // off by more than 0.0001
  not_lowest,          // two phases where two others have a lower Gibbs energy
  no_warning,          // a further phase would form and no warning says so
  no_solution,         // an answer that is no saturated state, or not at the asked fraction
  wrong_enthalpy,      // temperature or fraction do not carry the asked enthalpy
  metastable_instead,  // a warned equilibrium on an unstable feed where the reference has a stable one
  trivial,             // two phases that are one
  not_finite,          // a non-finite number in the tables without a text
  unanswered,          // a text where the reference has an answer
  no_answer,           // a text where the reference has none either
  metastable,          // a warned equilibrium on an unstable feed, the reference has no stable one
  beaten,              // the library's answer has the lower Gibbs energy: the reference is at fault
  undecided            // the reference failed
};
inline constexpr int kVerdicts = 18;
const char* name_of(Verdict v);
bool is_wrong(Verdict v);

struct Outcome {
  Verdict verdict = Verdict::undecided;
  bool solvable = true;    // the reference has an answer, or the library one that is right
  bool with_text = false;  // a warning stood beside the answer
  std::string message;     // of the library
  std::string detail;      // what both say, for a report
  int engine_calls = 0;
  R8 T = 0.0, P = 0.0;  // at the end, [K] and [bar]
};

// TRUTH is the reference's answer at the state of the reply.
Outcome judge_isothermal(const Mixture& m, const Reply& reply, const Answer& truth);
// LINE is the line of constant temperature or pressure of the call; SOLVABLE: the reference has an answer on it.
Outcome judge_saturation(const Line& line, const Reply& reply, I4 code, R8 fraction, bool solvable);
// TRUTH is a state of the reference with the asked enthalpy H [J/mol]; another one that carries it counts as well.
Outcome judge_enthalpy(const Mixture& m, const Reply& reply, R8 h, const EnthalpyState& truth);

}  // namespace talix::test::reference
