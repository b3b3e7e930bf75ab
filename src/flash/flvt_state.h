// Working state of the pressure search at a given vapour fraction.
#pragma once

#include "base/real.h"
#include "flash/rachford_rice.h"

namespace talix {

// Which equations give the pressure (selector NGO).
enum class PressureMode { liquid_a = 1, liquid_b = 2, both_liquids = 3 };

struct FlvtState {
  SplitEquations equations;  // feed and K-values of this pass, at PSTAR
  bool key;                  // a second liquid is sought
  R4 PSTAR;                  // pressure of the K-values [bar]
  R4 PCAL;                   // pressure of the Newton loop [bar]
  R4 FLL;                    // fraction of the feed in both liquids
  R4 FLA, FLB;               // fraction in liquid A and in liquid B
  R4 FT, RFT;                // total feed [mol] and its reciprocal
  R4 FTL, FTLO;              // liquid flow of this pass and of the one before [mol]
  I4 LOOP;                   // outer pass
  I4 KVL;                    // Newton steps inside the pass
  I4 IDEAL;                  // what the K-values are, kvalues::*, for this call only
  PressureMode NGO;
  R4 QA, QB;    // the phase-fraction equations of the two liquids
  R4 QAP, QBP;  // their pressure derivatives [1/bar]
  R4 QAA, QBB;  // their derivatives by FLA at fixed FLL
  R4 DELP;      // step of PCAL [bar]
  R4 QAL;       // step of FLA
};

inline constexpr I4 kMaxPressureSteps = 160;

// QA, QB and their derivatives at PCAL and FLA.
void evaluate_pressure(FlvtState& s);
// DELP, QAL with a second liquid in question; may change NGO and FLA.
void step_second_liquid(FlvtState& s);
// True when the pressure of liquid A alone has settled while a second liquid wants to form; it is then let in.
bool admit_second_liquid(FlvtState& s);

}  // namespace talix
