// SURMD0: the constants of a model by name.
#include <cmath>
#include <string_view>

#include "database/key_list.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "eos/ssm_fit_a_excess.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"

namespace talix {

namespace {

constexpr std::string_view kHydrateKeys[2][11] = {
    {"D-Muw0-I", "D-Hw0-I", "D-Vw-I", "D-Cpw0-I", "b-I", "Nu-I1", "Nu-I2", "Rad-I1", "Rad-I2", "Z-I1",
     "Z-I2"},
    {"D-Muw0-II", "D-Hw0-II", "D-Vw-II", "D-Cpw0-II", "b-II", "Nu-II1", "Nu-II2", "Rad-II1", "Rad-II2",
     "Z-II1", "Z-II2"}};

// Water and lattice data of structure 1 or 2: first the water data, then by rows those of its two cavities. The tables
// of the hydrate phase are prepared anew after a write.
void hydrate_keys(KeyList& list, int structure) {
  if (list.writes()) setup.hydrate_initialised = false;
  const std::string_view* key = kHydrateKeys[structure - 1];
  for (int row = 1; row <= 5; ++row) list.constant(*key++, hydrate.COHST(row, structure));
  for (int row = 1; row <= 3; ++row)
    for (int cavity = 1; cavity <= 2; ++cavity)
      list.constant(*key++, hydrate.COHCV(row, 2 * (structure - 1) + cavity));
}

// Fit point of the A-excess rule. With a new point the pair parameters of the whole set are matched anew.
void fit_point(KeyList& list, I4& NFAIL) {
  list.constant("Tkij", a_excess.TKIJ);
  list.constant("Pkij", a_excess.PKIJ);
  if (!list.writes()) return;
  ++setup.generation;
  SSMMR7(1, setup.NUMH, a_excess.TKIJ, a_excess.PKIJ, NFAIL);
}

// One key with a logical: read as 1 or 0; on when the whole part of what is written is 1.
void flag(KeyList& list, std::string_view key, L4& value) {
  const I4 k = list.add(key);
  if (list.reads()) list.VALUES(k) = value ? 1.0 : 0.0;
  if (list.writes()) value = std::trunc(list.VALUES(k) + KeyList::kSlack) == 1.0;
}

void fit_settings(KeyList& list) {
  list.constant("UFIL Tlow", unifill.Tlow);
  list.constant("UFIL Tupp", unifill.Tupp);
  list.constant("UFIL Alpha", unifill.Alpha);
  flag(list, "UFIL on?", unifill.on);
}

}  // namespace

// SURMD0: read or replace the constants of a model.
//
// In       WIDTH   I4        characters of a key: 10
//          ACTION  I4        action::information reads out, action::input writes in; any other lists the keys
//          MODEL   I4        section, model::*
// Out      NKEYS   I4        keys of the section
//          KEYS    text(10)  their names
// In, out  VALUES  R8        one a key, in the same order
// Out      NFAIL   I4        status
// Shared   hydrate, setup.TREF, a_excess, unifill, pairs.BICWS; a write raises setup.generation
// Status   ok; not_available, with no keys (no such section); after a write of the fit point that of SSMMR7, with the
//          point as written
// Oddity   the fit point takes effect on the pair parameters of the A-excess rule at a write alone, not at a load
void SURMD0(I4& NKEYS, KeyNames& KEYS, [[maybe_unused]] const I4& WIDTH, KeyValues& VALUES, const I4& ACTION,
            const I4& MODEL, I4& NFAIL) {
  NFAIL = status::ok;
  NKEYS = 0;
  KeyList list{NKEYS, KEYS, VALUES, ACTION};
  switch (MODEL) {
    case model::wp1:
    case model::wp2:
      hydrate_keys(list, 1);
      break;
    case model::wp3:
    case model::wp4:
      hydrate_keys(list, 2);
      break;
    case model::vardo3:
      fit_point(list, NFAIL);
      break;
    case model::ideal_gas:
      list.constant("H-datum", setup.TREF);
      break;
    case model::nrtl:
      fit_settings(list);
      break;
    default:
      NFAIL = status::not_available;
      return;
  }
  if (list.writes()) ++setup.generation;
}

}  // namespace talix
