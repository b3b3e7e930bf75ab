// Working state of the isothermal flash and the steps that its two- and three-phase modes share.
#pragma once

#include "base/real.h"
#include "fastprops/flash_message.h"
#include "flash/rachford_rice.h"

namespace talix {

// Which phase-fraction equations the Newton iteration solves (selector NGO).
enum class SplitMode { vapour_liquid_a = 3, vapour_liquid_b = 5, liquid_liquid = 7, three_phase = 9 };

// What follows the flows of a pass (selector NCONV).
enum class AfterFlows { leave_flash = 1, end_pass = 2, judge_region = 4 };

struct FltpState {
  SplitEquations equations;  // feed and K-values of this pass
  bool key;                  // a second liquid is sought
  R4 FLA, FLB;               // fraction of the feed in liquid A and in liquid B
  R4 FT, RFT;                // total feed [mol] and its reciprocal
  R4 FTV, FTL, FTLS;         // total flows at the current pass [mol]
  R4 FTLP, FTLPP;            // FTL of the previous pass and of the pass before it
  R4 FTLSP;                  // FTLS of the previous pass
  R4 VFF;                    // vapour fraction at entry
  R4 FLAIN;                  // liquid fraction of the start flows, start value of FLA
  R4 FLAMIN, FLAMAX;         // smallest and largest FLA of passes 71 to 79
  R4 FLAWZB;                 // FLA found with no second liquid
  I4 LOOP;                   // pass number
  I4 KVL;                    // Newton steps inside the pass
  I4 NP1, NP2;               // passes that ended all liquid, all vapour
  SplitMode NGO;
  AfterFlows NCONV;
  bool KNOWN;         // a region has been tried in this pass
  R4 ZKA, ZBKA;       // sum of z KA, of z/KA
  R4 ZKB, ZBKB;       // sum of z KB, of z/KB
  R4 ZKABKB, ZKBBKA;  // sum of z KA/KB, of z KB/KA
};

inline constexpr I4 kMaxNewtonSteps = 50;

// Solves the equations NGO from the current FLA, FLB.
void solve_split(FltpState& s);
// The ladder of damping measures, by pass number.
void damp_split(FltpState& s);
// Flows of all phases from the split.
void set_flows(FltpState& s);
// Tries the regions with a second liquid; false with a message when there is none.
bool search_regions(FltpState& s, Message& STR);
// The end of a pass that may have a second liquid: true when the flash is done.
bool second_liquid_converged(FltpState& s, R4 tolerance);

}  // namespace talix
