// SURPC0: the constants of a component by name.
#include "database/component_record.h"
#include "database/key_list.h"
#include "database/overrides.h"
#include "database/sur_component_sections.h"
#include "engine/codes.h"
#include "engine/setup_record.h"
#include "engine/shmix_driver.h"

namespace talix {

namespace {

// What the flag of a set becomes when an override fills a set that was not there.
constexpr I4 kPresent = 1;
constexpr I4 kExtendedAntoinePresent = 7;

// A set that is written for the first time is there from then on; zeros alone make no set.
void note_presence(const KeyList& list, I4& flag, I4 present = kPresent) {
  if (!list.writes() || flag != 0) return;
  for (int k = 1; k <= list.NKEYS; ++k)
    if (list.VALUES(k) != 0.0) flag = present;
}

void general_keys(KeyList& list, I4 i) {
  list.constant("Atbp", comp.ATBP(i));
  list.constant("Gf", comp.GF(i));
  list.constant("Hf", comp.HF(i));
  list.constant("Href", comp.HREF(i));
  list.constant("Hvap", comp.HVAP(i));
  list.constant("Lvis50", comp.LVIS50(i));
  list.constant("Omega", comp.OMEGA(i));
  list.constant("Pachor", comp.PACHOR(i));
  list.constant("Pc", comp.PC(i));
  list.constant("Rho", comp.RHO(i));
  list.constant("Rmolw", comp.RMOLW(i));
  list.constant("Tboil", comp.TBOIL(i));
  list.constant("Tc", comp.TC(i));
  list.constant("Uopk", comp.UOPK(i));
  list.constant("Vc", comp.VC(i));
  list.constant("Dipole", comp.DIPOLE(i));
  if (list.writes() && comp.IDIP(i) == 0 && comp.DIPOLE(i) != 0.0) comp.IDIP(i) = kPresent;
}

void curve_keys(KeyList& list, I4 i) {
  list.row("Asub-", comp.PARABF, i, 1, 5);
  list.row("Bsub-", comp.PARABF, i, 6, 10);
  list.row("Asup-", comp.PARABF, i, 11, 15);
}

void solid_keys(KeyList& list, I4 i) {
  list.constant("HFus", comp.SPAR(1, i));
  list.constant("DCpFus", comp.SPAR(2, i));
  list.constant("DvFus", comp.SPAR(3, i));
  list.constant("Tfreeze", comp.SPAR(4, i));
}

void henry_key(KeyList& list, I4 i) {
  const I4 k = list.add("ISHEN");
  if (list.reads()) list.VALUES(k) = comp.ISHEN(i) ? 1.0 : 0.0;
  if (list.writes()) comp.ISHEN(i) = list.VALUES(k) != 0.0;
}

void letters(KeyList& list, std::string_view stem, R8& value, char letter) {
  Text<10> key = text<10>(stem);
  key(static_cast<int>(stem.size()) + 1) = letter;
  list.constant(key.view(), value);
}

// Columns 1 to COUNT of row I as STEMA, STEMB, ...
template <int N>
void lettered_row(KeyList& list, std::string_view stem, Mat<R8, kMaxComponents, N>& table, I4 i,
                  int count = N) {
  for (int k = 1; k <= count; ++k) letters(list, stem, table(i, k), static_cast<char>('A' + k - 1));
}

// A vapour pressure set, method::*. BY_NAME when the section names the set; a default method that ends at the
// Antoine form without a set of its own means the shared set. False for a component without a set.
bool vapour_pressure_keys(KeyList& list, I4 i, I4 set, bool by_name) {
  switch (set) {
    case method::frost_kalkwarf:
      lettered_row(list, "FK-", comp.PSAT, i);
      note_presence(list, comp.IPSA(i));
      return true;
    case method::wagner:
      lettered_row(list, "WAG-", comp.PWAG, i);
      note_presence(list, comp.IPWA(i));
      return true;
    case method::antoine:
      if (by_name || comp.IPAN(i) != 0) {
        lettered_row(list, "ANT-", comp.PANT, i);
        note_presence(list, comp.IPAN(i));
      } else {
        lettered_row(list, "ANT-", comp.PSAT, i, 3);
      }
      return true;
    case method::antoine_extended:
      list.row("PLXANT", comp.PANTO, i);
      note_presence(list, comp.IPANO(i), kExtendedAntoinePresent);
      return true;
    default:
      return false;
  }
}

void liquid_density_keys(KeyList& list, I4 i) {
  list.row("Riedel-", comp.DLIP, i);
  note_presence(list, comp.IDLI(i));
}

void heat_of_vaporisation_keys(KeyList& list, I4 i) {
  list.row("Hvap-", comp.HVAPCF, i);
  note_presence(list, comp.IHVA(i));
}

// A set that stands with its own flag: the flag is what is written.
void flagged_keys(KeyList& list, std::string_view key, I4& flag, std::string_view stem,
                  Mat<R8, kMaxComponents, 7>& table, I4 i) {
  list.integer(key, flag);
  list.row(stem, table, i);
}

// The keys of a section. False when it does not apply to component I.
bool fill(KeyList& list, I4 i, I4 wanted) {
  switch (wanted) {
    case key_section::general:
      general_keys(list, i);
      return true;
    case model::vardo1:
    case model::vardo2:
    case model::vardo3:
    case model::vardo4:
    case model::vardo5:
      curve_keys(list, i);
      return true;
    case model::cpa:
      association_keys(list, i);
      return true;
    case model::wp1:
      return langmuir_keys(list, i, 1);
    case model::wp3:
      return langmuir_keys(list, i, 2);
    case model::wp2:
    case model::wp4:
      return potential_keys(list, i);
    case method::bramm_default:
    case method::tolk_default:
      return vapour_pressure_keys(list, i, vapour_pressure_set(wanted, i), false);
    case method::frost_kalkwarf:
    case method::wagner:
    case method::antoine:
    case method::antoine_extended:
      return vapour_pressure_keys(list, i, wanted, true);
    case method::poynting:
    case method::riedel:
      liquid_density_keys(list, i);
      return true;
    case key_section::elements:
      element_keys(list, i);
      return true;
    case key_section::liquid_viscosity:
      flagged_keys(list, "Ivil", comp.IVIL(i), "Vil-", comp.VIL, i);
      return true;
    case key_section::thermal_conductivity:
      flagged_keys(list, "Itcl", comp.ITCL(i), "Tcl-", comp.TCL, i);
      return true;
    case key_section::heat_of_vaporisation:
      heat_of_vaporisation_keys(list, i);
      return true;
    case key_section::ideal_heat_capacity:
      list.row("Cp_Ideal-", comp.COFHT, i);
      return true;
    case key_section::groups:
      group_keys(list, i);
      return true;
    case key_section::henry:
      henry_key(list, i);
      return true;
    case model::freeze_out:
      solid_keys(list, i);
      return true;
    default:
      return false;
  }
}

}  // namespace

// SURPC0: read or replace the constants of component I.
//
// In       WIDTH    I4        characters of a key: 10
//          ACTION   I4        action::information reads out, action::input writes in; any other lists the keys
//          I        I4        component
//          SECTION  I4        key_section::*; a model of the component's own curves or data, model::*; a set of a
//                             correlation, method::*, where a default method means the set that it takes
// Out      NKEYS    I4        keys of the section
//          KEYS     text(10)  their names
// In, out  VALUES   R8        one a key, in the same order
// Out      NFAIL    I4        status
// Shared   comp, cpa_sets, hydrate; a write adds 1 to setup.generation
// Status   ok; not_available, with no keys (no such section or component; no hydrate data; no set for a default
//          method)
// Oddity   section cpa has one key more than it has constants: "Kappa6" and "K-supcrit" are the same
void SURPC0(I4& NKEYS, KeyNames& KEYS, [[maybe_unused]] const I4& WIDTH, KeyValues& VALUES, const I4& ACTION,
            const I4& I, const I4& SECTION, I4& NFAIL) {
  NFAIL = status::ok;
  NKEYS = 0;
  KeyList list{NKEYS, KEYS, VALUES, ACTION};
  if (I < 1 || I > setup.NUMH || !fill(list, I, SECTION)) {
    NFAIL = status::not_available;
    return;
  }
  if (list.writes()) ++setup.generation;
}

}  // namespace talix
