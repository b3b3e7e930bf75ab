// Group-contribution tables, the groups of the current components, and the settings of the NRTL fit to them.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kMaxSubgroups = 161;
inline constexpr int kMaxMainGroups = 77;

// The table of the model variant in use is single precision by design. The groups of a component
// (NGRP, GRPTYP, GRPNUM) stand in the component record.
struct UnifacRecord {
  L4 all_grouped;                                         // every component of the set has groups
  I4 NSUB;                                                // subgroups present in the set
  I4 NMAIN;                                               // main groups present in the set
  Vec<I4, kMaxSubgroups> SUBVEC;                          // subgroup numbers present
  Vec<I4, kMaxMainGroups> MANVEC;                         // main-group numbers present
  Mat<R4, kMaxComponents + 1, kMaxSubgroups + 1> SUBGRP;  // (component, position in SUBVEC): count
  Vec<Text<8>, kMaxSubgroups> CSBGRP;                     // name of a subgroup
  Vec<I4, kMaxSubgroups> IMNGRP;                          // main group of a subgroup
  Vec<R4, kMaxSubgroups> RSBGRP;                          // volume parameter of a subgroup [-]
  Vec<R4, kMaxSubgroups> QSBGRP;                          // surface parameter of a subgroup [-]
  Vec<R4, kMaxSubgroups> MWSGRP;                          // molar mass of a subgroup [g/mol]
  Cube<R4, kMaxMainGroups, kMaxMainGroups, 3> AMNINT;  // (main group, main group, set a, b, c): interaction
  Vec<R8, kMaxComponents> RTOT;                        // van der Waals volume of a component [-]
  Vec<R8, kMaxComponents> QTOT;                        // van der Waals surface of a component [-]
};

extern constinit UnifacRecord unifac;

// Settings of the fit that fills missing NRTL pairs from the group model.
struct UnifillSettings {
  I4 trace_unit;  // unit of the fit trace, 0 for none
  L4 trace;       // trace the fit
  R8 Tlow;        // lower fit temperature [K], key "UFIL Tlow"
  R8 Tupp;        // upper fit temperature [K], key "UFIL Tupp"
  R8 Alpha;       // non-randomness of the fitted pairs [-], key "UFIL Alpha"
  L4 on;          // fit missing pairs at all, key "UFIL on?"
};

extern constinit UnifillSettings unifill;

// Empties the group tables.
void reset_unifac_record();
// Puts the fit settings to their first-call values.
void reset_unifill_settings();

}  // namespace talix
