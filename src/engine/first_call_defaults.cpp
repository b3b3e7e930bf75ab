// First-call defaults: what SHINI0 puts in place once in the life of the library.
#include "association/cpa_record.h"
#include "characterisation/fraction_record.h"
#include "database/component_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/setup.h"
#include "engine/setup_record.h"
#include "eos/two_dimensional_record.h"
#include "eos/vardo95_record.h"
#include "liquid/solubility_record.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"
#include "transport/dense_fluid_record.h"

namespace talix {

// SINAO0: hydrate constants.
//
// Shared   writes hydrate.COHCV, hydrate.COHST
void SINAO0() { set_hydrate_constants(); }

// SINAO1: the empty values of the shared records.
//
// Shared   writes setup, fractions, comp, vardo95, srk_variants, resv, unifac, planar, solubility, cpa_sets,
//          unifill
// Oddity   TMELT and AOB are empty at -1, everything else at 0
void SINAO1() {
  // Set-up and pseudo-component slots.
  setup.output_unit = 6;
  setup.spare_settings.fill(0);
  setup.NFRAC = 0;
  setup.IDFRAC.fill(0);

  // Component constants, with the pseudo-component tables between the curves and the counters.
  comp.COFHT.fill(0.0);
  comp.PARABF.fill(0.0);
  comp.TC.fill(0.0);
  comp.PC.fill(0.0);
  comp.OMEGA.fill(0.0);
  comp.VC.fill(0.0);
  comp.ICS.fill(text<4>(""));
  vardo95 = Vardo95Record{};
  srk_variants = SrkVariantRecord{};
  reset_fraction_record();
  setup.pure_records_read = 0;
  resv = ReservedRecord{};

  // Platform and dates.
  setup.platform = platform::pc_ftn77;
  setup.date_pure = "Not yet retrieved";
  setup.date_binary = "Not yet retrieved";
  setup.date_hydrate = "Not yet retrieved";
  setup.date_engine = "October 2002";

  // Groups.
  reset_unifac_record();
  comp.NGRP.fill(0);
  comp.GRPTYP.fill(0);
  comp.GRPNUM.fill(0.0);

  // Vapour pressure sets.
  comp.IPSA.fill(0);
  comp.IPWA.fill(0);
  comp.IPAN.fill(0);
  comp.PSAT.fill(0.0);
  comp.PWAG.fill(0.0);
  comp.PANT.fill(0.0);

  // Thermal constants.
  comp.TMELT.fill(-1.0);
  comp.GC.fill(0.0);
  comp.GF.fill(0.0);
  comp.HCD.fill(0.0);
  comp.HCW.fill(0.0);
  comp.HF.fill(0.0);
  comp.HFUS.fill(0.0);
  comp.HREF.fill(0.0);
  comp.HVAP.fill(0.0);
  comp.IS25.fill(0);
  comp.IV25.fill(0);
  comp.OMHV.fill(0.0);
  comp.SL25.fill(0.0);
  comp.SOFF.fill(0.0);
  comp.TBOIL.fill(0.0);
  comp.VLIQ25.fill(0.0);
  comp.SPAR.fill(0.0);

  // Parameters of single models.
  reset_two_dimensional_tables();
  reset_solubility_record();
  reset_cpa_record();
  reset_unifill_settings();
  comp.ISHEN.fill(logical(false));

  // Component data changed: no cache may hold on to the old ones.
  ++setup.generation;
}

// SINAO2: a second entry of SINAO0.
//
// Shared   writes hydrate.COHCV, hydrate.COHST
void SINAO2() { set_hydrate_constants(); }

// SINAO3: constants of the dense-fluid transport model.
//
// Shared   writes dense_fluid
void SINAO3() { set_dense_fluid_constants(); }

}  // namespace talix
