#include "eos/ses_options.h"

#include <initializer_list>

namespace talix {

namespace {

template <int N>
void raise(Vec<bool, N>& table, std::initializer_list<int> entries) {
  for (const int k : entries) table(k) = true;
}

void fugacity_options(const Flags3& LDFUG, OptionTables& o) {
  raise(o.OPTMOD, {13});
  raise(o.OPTMR, {2});
  raise(o.OPTLM, {2});
  raise(o.OPTFC, {1});
  if (LDFUG(1)) {
    raise(o.OPTMOD, {2, 3, 4, 17, 20});
    raise(o.OPTMR, {4, 6});
    raise(o.OPTLM, {4, 6});
    raise(o.OPTCOM, {1, 2, 6});
    raise(o.OPTFC, {2});
  }
  if (LDFUG(2)) {
    raise(o.OPTMOD, {2, 3});
    raise(o.OPTCOM, {1});
    raise(o.OPTFC, {3});
  }
  if (LDFUG(3)) {
    raise(o.OPTMOD, {2, 3, 17});
    raise(o.OPTMR, {3});
    raise(o.OPTLM, {3});
    raise(o.OPTCOM, {1});
    raise(o.OPTFC, {4});
  }
}

void volume_options(const Flags3& LDVOL, OptionTables& o) {
  if (LDVOL(1)) {
    raise(o.OPTMOD, {2, 3, 4});
    raise(o.OPTMR, {4});
    raise(o.OPTLM, {4});
    raise(o.OPTCOM, {2});
    raise(o.OPTVOL, {1});
  }
  if (LDVOL(2)) {
    raise(o.OPTMOD, {2});
    raise(o.OPTVOL, {2});
  }
  if (LDVOL(3)) {
    raise(o.OPTMOD, {2, 3});
    raise(o.OPTMR, {2});
    raise(o.OPTLM, {2});
    raise(o.OPTCOM, {1});
    raise(o.OPTVOL, {3});
  }
}

void thermal_options(const Flags3& LDTHERM, OptionTables& o) {
  raise(o.OPTFC, {1, 2});
  raise(o.OPTMOD, {2, 3, 4, 5, 8, 9, 13, 14, 16, 17, 20});
  raise(o.OPTMR, {2, 4, 5, 6});
  raise(o.OPTLM, {2, 4, 5, 6});
  raise(o.OPTCOM, {1, 2, 3, 4, 5, 6});
  raise(o.OPTDER, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
  if (LDTHERM(1)) raise(o.OPTDER, {11, 12});
  if (LDTHERM(2)) raise(o.OPTDER, {9, 10});
  if (LDTHERM(3)) raise(o.OPTDER, {13, 14});
}

}  // namespace

// SESAO0: option tables from the flags of the caller, so that nothing is formed that nobody asked for.
//
// In       LFUG, LDFUG      ln fugacity coefficients; their derivatives with T, P, composition
//          LVOL, LDVOL      volume; derivatives of Z
//          LTHERM, LDTHERM  thermal properties; their derivatives
// Out      options          OPTMOD: 1 back-check of the pressure, 2 PV, 3 PQ, 4 PT, 5 PVV, 6 PTT, 7 PQQ,
//                           8 PVT, 9 PQV, 11 F, 13 FQ, 14 FT, 16 FTT, 17 FQQ, 20 FQTCQ;
//                           the other tables as described in the record
void SESAO0(const bool& LFUG, const Flags3& LDFUG, const bool& LVOL, const Flags3& LDVOL, const bool& LTHERM,
            const Flags3& LDTHERM, OptionTables& options) {
  options = {};
  raise(options.OPTMOD, {1, 11});
  raise(options.OPTMR, {1});
  raise(options.OPTLM, {1});
  if (LFUG) fugacity_options(LDFUG, options);
  if (LVOL) volume_options(LDVOL, options);
  if (LTHERM) thermal_options(LDTHERM, options);
}

}  // namespace talix
