#include "database/overrides.h"

#include <cmath>
#include <string_view>

#include "engine/codes.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "liquid/unifac_record.h"

namespace talix {

namespace {

// A list under construction: its keys, and the next value that goes out or in.
struct Section {
  I4& NKEYS;
  KeyNames& KEYS;
  KeyValues& VALUES;
  I4 ACTION;

  // One key with the constant behind it.
  void constant(std::string_view key, R8& value) {
    add(key);
    if (ACTION == action::information) VALUES(NKEYS) = value;
    if (ACTION == action::input) value = VALUES(NKEYS);
  }
  // One key with a logical: read as 1 or 0; on when the whole part of what is written is 1.
  void flag(std::string_view key, L4& value) {
    constexpr R8 slack = widen(0.0001F);
    add(key);
    if (ACTION == action::information) VALUES(NKEYS) = value ? 1.0 : 0.0;
    if (ACTION == action::input) value = std::trunc(VALUES(NKEYS) + slack) == 1.0;
  }

 private:
  void add(std::string_view key) {
    ++NKEYS;
    KEYS(NKEYS) = key;
  }
};

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
// Shared   setup.TREF, a_excess, unifill; a write raises setup.generation
// Status   ok; not_available, with no keys (no such section, or what a write would have to renew is missing)
void SURMD0(I4& NKEYS, KeyNames& KEYS, [[maybe_unused]] const I4& WIDTH, KeyValues& VALUES, const I4& ACTION,
            const I4& MODEL, I4& NFAIL) {
  NFAIL = status::ok;
  NKEYS = 0;
  Section section{NKEYS, KEYS, VALUES, ACTION};
  switch (MODEL) {
    case model::vardo3:
      // A new fit point is worth nothing without the pair parameters that belong to it.
      if (ACTION == action::input) {
        NFAIL = status::not_available;
        return;
      }
      section.constant("Tkij", a_excess.TKIJ);
      section.constant("Pkij", a_excess.PKIJ);
      break;
    case model::ideal_gas:
      section.constant("H-datum", setup.TREF);
      break;
    case model::nrtl:
      section.constant("UFIL Tlow", unifill.Tlow);
      section.constant("UFIL Tupp", unifill.Tupp);
      section.constant("UFIL Alpha", unifill.Alpha);
      section.flag("UFIL on?", unifill.on);
      break;
    default:
      NFAIL = status::not_available;
      return;
  }
  if (ACTION == action::input) ++setup.generation;
}

}  // namespace talix
