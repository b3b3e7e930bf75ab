// SURBI0: the constants of a pair by name.
#include <algorithm>

#include "database/key_list.h"
#include "database/overrides.h"
#include "database/pair_record.h"
#include "database/ssm_pair_lists.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

bool is_pair(I4 i, I4 j) { return i >= 1 && i <= setup.NUMH && j >= 1 && j <= setup.NUMH && i != j; }

// Interaction parameters of the quadratic rule. The lists of the pairs that have any follow a write.
void interaction_keys(KeyList& list, I4 i, I4 j) {
  list.constant("TETA0", pairs.TETA0(i, j));
  list.constant("TETA0T", pairs.TETA0T(i, j));
  list.constant("TETA1", pairs.TETA1(i, j));
  list.constant("TETA1T", pairs.TETA1T(i, j));
  if (!list.writes()) return;
  pairs.TETA0(j, i) = pairs.TETA0(i, j);
  pairs.TETA0T(j, i) = pairs.TETA0T(i, j);
  pairs.TETA1(j, i) = -pairs.TETA1(i, j);
  pairs.TETA1T(j, i) = -pairs.TETA1T(i, j);
  SSMAO0();
}

void henry_keys(KeyList& list, std::string_view stem, I4 i, I4 j) {
  list.constant(stem, 1, pairs.HEN1(i, j));
  list.constant(stem, 2, pairs.HEN2(i, j));
  list.constant(stem, 3, pairs.HEN3(i, j));
  list.constant(stem, 4, pairs.HEN4(i, j));
}

// Terms of the activity model in both directions. The two halves of ALFA mean the constant part above the diagonal
// and the temperature slope below it, whichever component of the call comes first.
void activity_keys(KeyList& list, I4 i, I4 j) {
  const auto [first, last] = std::minmax({i, j});
  list.constant("T-t0-ji", pairs.TAUT0(i, j));
  list.constant("T-t1-ji", pairs.TAUT1(i, j));
  list.constant("T-t2-ji", pairs.TAUT2(i, j));
  list.constant("Alfa-ji", pairs.ALFA(first, last));
  list.constant("T-t0-ij", pairs.TAUT0(j, i));
  list.constant("T-t1-ij", pairs.TAUT1(j, i));
  list.constant("T-t2-ij", pairs.TAUT2(j, i));
  list.constant("AlfaT-ji", pairs.ALFA(last, first));
  henry_keys(list, "Henry-", i, j);
}

// The pair parameters of the association model hold for both orders.
void association_keys(KeyList& list, I4 i, I4 j) {
  const auto both = [&](std::string_view key, PairRecord::Table& table) {
    list.constant(key, table(i, j));
    if (list.writes()) table(j, i) = table(i, j);
  };
  both("BCPA0", pairs.BCPA0);
  both("BCPA0T", pairs.BCPA0T);
  both("BCPA1", pairs.BCPA1);
  both("BCPA1T", pairs.BCPA1T);
  both("BCP1TT", pairs.BCP1TT);
}

}  // namespace

// SURBI0: read or replace the constants of the pair (I, J).
//
// In       WIDTH    I4        characters of a key: 10
//          ACTION   I4        action::information reads out, action::input writes in; any other lists the keys
//          I, J     I4        components; gas and solvent for Henry data
//          SECTION  I4        a cubic with quadratic rule (vardo1, srk, peng_robinson, van_der_waals), nrtl or a
//                             cubic with an excess rule (vardo2, vardo3, vardo4), cpa, key_section::henry
// Out      NKEYS    I4        keys of the section
//          KEYS     text(10)  their names
// In, out  VALUES   R8        one a key, in the same order
// Out      NFAIL    I4        status
// Shared   pairs; a write adds 1 to setup.generation
// Status   ok; not_available, with no keys (no such section, or no such pair in the set)
// Oddity   the constants of a model with an excess rule are those of the activity model; vardo4, which has its own
//          pair constants, takes none of them
void SURBI0(I4& NKEYS, KeyNames& KEYS, [[maybe_unused]] const I4& WIDTH, KeyValues& VALUES, const I4& ACTION,
            const I4& I, const I4& J, const I4& SECTION, I4& NFAIL) {
  NFAIL = status::ok;
  NKEYS = 0;
  KeyList list{NKEYS, KEYS, VALUES, ACTION};
  if (!is_pair(I, J)) {
    NFAIL = status::not_available;
    return;
  }
  const I4 generation = setup.generation;
  switch (SECTION) {
    case model::vardo1:
    case model::srk:
    case model::peng_robinson:
    case model::van_der_waals:
      interaction_keys(list, I, J);
      break;
    case model::nrtl:
    case model::vardo2:
    case model::vardo3:
    case model::vardo4:
      activity_keys(list, I, J);
      break;
    case model::cpa:
      association_keys(list, I, J);
      break;
    case key_section::henry:
      henry_keys(list, "HEN", I, J);
      break;
    default:
      NFAIL = status::not_available;
      return;
  }
  if (list.writes()) setup.generation = generation + 1;
}

}  // namespace talix
