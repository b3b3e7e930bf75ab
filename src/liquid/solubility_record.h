// Solubility data of the liquid model with association.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

struct SolubilityRecord {
  Vec<R8, kMaxComponents> RSDEL;  // solubility parameter; RSVOL RSDEL^2 is an energy [J/mol]
  Vec<R8, kMaxComponents> RSVOL;  // molar volume
};

extern constinit SolubilityRecord solubility;

// Empties the record.
void reset_solubility_record();

}  // namespace talix
