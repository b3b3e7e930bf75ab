#include "eos/ses_pure_parameters.h"

#include <algorithm>

#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/eos_caches.h"
#include "eos/ssm_pure_alpha.h"
#include "eos/ssm_pure_planar.h"
#include "eos/ssm_pure_smooth.h"
#include "eos/ssm_pure_vardo.h"
#include "eos/ssm_pure_variants.h"

namespace talix {

namespace {

// Highest derivative level that the tables lack for this request, -1 for none.
I4 missing_level(const PureKey& key, const Vec<bool, 6>& OPTMR) {
  I4 IPARA = -1;
  if (OPTMR(1) && !(pure_cache.level[0] == key)) IPARA = 0;
  if ((OPTMR(4) || OPTMR(6)) && !(pure_cache.level[1] == key)) IPARA = 1;
  if (OPTMR(5) && !(pure_cache.level[2] == key)) IPARA = 2;
  if (pure_cache.generation != key.generation || pure_cache.IFCOM != key.IFCOM ||
      pure_cache.ILCOM != key.ILCOM) {
    pure_cache.generation = key.generation;
    pure_cache.IFCOM = key.IFCOM;
    pure_cache.ILCOM = key.ILCOM;
    IPARA = 2;
  }
  return IPARA;
}

// Without parameters nothing of another model may stand in for them, and no root is found.
void clear_tables(const I4& IFCOM, const I4& ILCOM) {
  for (int i = IFCOM; i <= ILCOM; ++i) {
    pures.ARK(i) = pures.D1ADT(i) = pures.D2ADT(i) = 0.0;
    pures.BRK(i) = pures.D1BDT(i) = pures.D2BDT(i) = 0.0;
    pures.CRK(i) = pures.D1CDT(i) = pures.D2CDT(i) = 0.0;
  }
}

}  // namespace

// SESPC0: pure-component parameters by the routine of the model, recomputed only when they have to be.
//
// A level of the tables is valid while its key fits: data-generation counter, temperature, range, slot,
// parameter routine and constants. A change of data or range refreshes every level.
//
// In       T             R8     temperature [K]
//          MODEL         I4     slot of the model table
//          OPTMR         flags  1 values, 4 first, 5 second temperature derivatives
//          IFCOM, ILCOM  I4     range of components
// Shared   writes pures; reads models, cur, setup.generation
// Status   ok; not_available (no routine for MODPUR, whose tables are then 0); that of the routine
void SESPC0(const R8& T, const I4& MODEL, const Vec<bool, 6>& OPTMR, const I4& IFCOM, const I4& ILCOM,
            I4& ICODE) {
  ICODE = status::ok;
  const PureKey key = pure_key(T, MODEL, IFCOM, ILCOM);
  const I4 IPARA = missing_level(key, OPTMR);
  if (IPARA < 0) return;
  switch (models.MODPUR(MODEL)) {
    case pure::vardo:
      SSMPC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::phase_envelope:
      SSMPC5(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::vd2d1:
      S2DPC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::soave:
      SWLPC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::peng_robinson:
      SWLPC1(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::vardo95:
      SM9PC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::srk_simsci:
      SP2PC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    case pure::srk_aspen:
      SAPPC0(T, IPARA, IFCOM, ILCOM, ICODE);
      break;
    default:
      ICODE = status::not_available;
  }
  if (ICODE != status::ok) {
    clear_tables(IFCOM, ILCOM);
    reset_eos_caches();
    return;
  }
  std::fill_n(pure_cache.level, IPARA + 1, key);
}

}  // namespace talix
