#include "database/sur_component_sections.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "association/cpa_record.h"
#include "association/scp_constants.h"
#include "database/component_record.h"
#include "database/sdb_unifac.h"
#include "engine/codes.h"
#include "engine/setup_record.h"
#include "solids/hydrate_record.h"

namespace talix {

namespace {

// The hydrate data of component I in reach. The tables of the hydrate phase are prepared anew after a write.
bool has_hydrate_data(const KeyList& list, I4 i) {
  if (hydrate.INDXH(i) == 0) return false;
  if (list.writes()) setup.hydrate_initialised = false;
  return true;
}

// Keys of the constants that the association model completes by itself: an absent one reads as what the model
// takes in its place.
void completed(KeyList& list, I4 k, I4 i, I4 selector, R8& value) {
  constexpr R8 absent = 1e-35;
  if (list.writes()) value = list.VALUES(k);
  if (!list.reads()) return;
  list.VALUES(k) = value;
  if (std::fabs(value) < absent) SCPDB4(i, selector, list.VALUES(k));
}

}  // namespace

// The last two keys name one constant. A write takes that of the two which it changes, and the last when it changes
// both.
void association_keys(KeyList& list, I4 i) {
  R8 supercritical = cpa_sets.EOSK(6, i);
  R8 before = 0.0;
  SCPDB4(i, cpa_value::supercritical, before);

  list.constant("Beta", cpa_sets.ASB(i));
  list.constant("Eps", cpa_sets.ASA(i));
  list.constant("Gamma", cpa_sets.ASC(i));
  list.constant("Delta", cpa_sets.ASD(i));
  list.constant("#sites/2", cpa_sets.ASF(i));
  completed(list, list.add("Acrit"), i, cpa_value::a_critical, cpa_sets.EOSA(i));
  completed(list, list.add("Bcrit"), i, cpa_value::b_critical, cpa_sets.EOSB(i));
  // The square root term, entry 7 of the record, comes first as in the file.
  completed(list, list.add("Kappa0"), i, cpa_value::kappa_0, cpa_sets.EOSK(7, i));
  for (int k = 1; k <= 6; ++k)
    completed(list, list.add("Kappa", k), i, cpa_value::kappa_0 + k, cpa_sets.EOSK(k, i));
  completed(list, list.add("K-supcrit"), i, cpa_value::supercritical, supercritical);
  if (list.writes() && supercritical != before) cpa_sets.EOSK(6, i) = supercritical;
}

void element_keys(KeyList& list, I4 i) {
  static constexpr std::string_view keys[15] = {
      "C atoms", "H atoms",    "N atoms",  "O atoms",    "S atoms",  "F atoms",    "Cl atoms", "Br atoms",
      "I atoms", "Atom nb X1", "X1 atoms", "Atom nb X2", "X2 atoms", "Atom nb X3", "X3 atoms"};
  for (int e = 1; e <= 15; ++e) list.integer(keys[e - 1], comp.ELEM(i, e));
}

// A group entry holds the subgroup number in its thousands and the count below them. After a write the groups of
// the set are counted anew; without a group table there is nothing to count.
void group_keys(KeyList& list, I4 i) {
  constexpr R8 factor = 1000.0;
  constexpr int groups = 8;
  I4 used = comp.NGRP(i);
  list.integer("Nb groups", used);
  if (list.writes()) comp.NGRP(i) = std::clamp(used, 0, groups);
  for (int g = 1; g <= groups; ++g) {
    R8 entry = factor * comp.GRPTYP(i, g) + comp.GRPNUM(i, g);
    list.constant("Group-", g, entry);
    if (!list.writes() || !(entry >= 0.0 && entry < factor * factor)) continue;
    comp.GRPTYP(i, g) = static_cast<I4>(entry / factor);
    comp.GRPNUM(i, g) = entry - factor * comp.GRPTYP(i, g);
  }
  I4 ignored = status::ok;
  if (list.writes()) SUFAO3(setup.NUMH, model::unifac_dm, ignored);
}

bool langmuir_keys(KeyList& list, I4 i, int structure) {
  static constexpr std::string_view keys[2][8] = {
      {"A(I-1)", "B(I-1)", "A(I-2)", "B(I-2)", "C(I-1)", "D(I-1)", "C(I-2)", "D(I-2)"},
      {"A(II-1)", "B(II-1)", "A(II-2)", "B(II-2)", "C(II-1)", "D(II-1)", "C(II-2)", "D(II-2)"}};
  if (!has_hydrate_data(list, i)) return false;
  for (const std::string_view key : keys[structure - 1]) {
    const int cavity = key[key.size() - 2] - '0';
    list.constant(key, hydrate.COHPC(hydrate_row::langmuir(key.front(), cavity, structure), i));
  }
  return true;
}

bool potential_keys(KeyList& list, I4 i) {
  if (!has_hydrate_data(list, i)) return false;
  list.constant("alpha", hydrate.COHPC(hydrate_row::core_radius, i));
  list.constant("sigma", hydrate.COHPC(hydrate_row::diameter, i));
  list.constant("epsilon", hydrate.COHPC(hydrate_row::well_depth, i));
  return true;
}

}  // namespace talix
