#include "engine/reset.h"

#include "association/bwrs.h"
#include "association/cpa_record.h"
#include "characterisation/fraction_record.h"
#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/file_layer.h"
#include "database/pair_record.h"
#include "database/srk_variant_record.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "eos/eos_caches.h"
#include "eos/ssm_mixing_g_excess.h"
#include "eos/two_dimensional_record.h"
#include "eos/vardo95_record.h"
#include "liquid/snl_nrtl.h"
#include "liquid/solubility_record.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"
#include "transport/dense_fluid_record.h"

namespace talix {

// reset_engine: all records of the engine as they are when the library is loaded.
//
// Shared   writes every record of the engine
void reset_engine() {
  reset_error_ring();
  reset_setup_record();
  models = ModelRecord{};
  resv = ReservedRecord{};

  reset_component_record();
  reset_pair_record();
  reset_directory_record();
  reset_srk_variant_record();
  reset_file_record();

  reset_eos_caches();
  reset_two_dimensional_tables();
  a_excess = AExcessReference{};
  g_excess = GExcessRecord{};
  vardo95 = Vardo95Record{};

  reset_fraction_record();
  reset_cpa_record();
  reset_bwrs_cache();
  reset_unifac_record();
  reset_solubility_record();
  reset_nrtl_cache();
  unifill = UnifillSettings{};
  reset_hydrate_record();
  reset_dense_fluid_record();
}

}  // namespace talix
