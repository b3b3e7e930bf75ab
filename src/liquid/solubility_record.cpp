#include "liquid/solubility_record.h"

namespace talix {

constinit SolubilityRecord solubility{};

void reset_solubility_record() {
  solubility.RSDEL.fill(0.0);
  solubility.RSVOL.fill(0.0);
}

}  // namespace talix
