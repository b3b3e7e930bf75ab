#include "association/cpa_record.h"

namespace talix {

constinit CpaRecord cpa_sets{};

void reset_cpa_record() {
  cpa_sets.ASA.fill(0.0);
  cpa_sets.ASB.fill(0.0);
  cpa_sets.ASC.fill(0.0);
  cpa_sets.ASD.fill(0.0);
  cpa_sets.ASF.fill(0.0);
  cpa_sets.EOSA.fill(0.0);
  cpa_sets.EOSB.fill(0.0);
  cpa_sets.EOSK.fill(0.0);
}

}  // namespace talix
