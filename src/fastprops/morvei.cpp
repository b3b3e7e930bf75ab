#include "fastprops/morvei.h"

#include "database/load_order.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/model_table.h"
#include "engine/setup.h"
#include "fastprops/flash_record.h"
#include "fastprops/install_path.h"

namespace talix {

namespace {

// Codes of the component list are four characters wide, names of overrides ten.
constexpr I4 kCodeWidth = 4;
constexpr I4 kKeyWidth = 10;

void set_data_directory() {
  FileName directory = install_name("\\Zandor\\");
  I4 NFAIL = status::ok;
  SURPT0(directory.c, directory.length, "INPUT", NFAIL);
}

// The reference temperature of the ideal gas becomes that of the flash layer.
void set_reference_temperature(I4& NFAIL) {
  I4 keys = 1;
  KeyNames names{};
  KeyValues values{};
  values(1) = widen(fl.TZERO);
  SURMD0(keys, names, kKeyWidth, values, action::input, model::ideal_gas, NFAIL);
}

}  // namespace

// MORVEI: engine start-up for the components fl.MFDS(1..NC).
//
// In       NC     I4   number of components
// Out      IFAIL  I4   0 complete; 1 SHINI0, 2 SHMLD0, 3 SHDBS0, 4 SURMD0 failed
// Shared   reads fl.MFDS, fl.INSTALL, fl.TZERO; sets fl.MODELID, fl.ENGREADY
// Oddity   the statuses of platform and directory are not tested; ENGREADY is never cleared again
void MORVEI(const I4& NC, I4& IFAIL) {
  I4 NFAIL = status::ok;
  SURPL0(platform::pc_ftn77, NFAIL);
  set_data_directory();

  IFAIL = 1;
  SHINI0(NC, fl.MFDS.v[0].c, kCodeWidth, NFAIL);
  if (NFAIL != status::ok) return;

  IFAIL = 2;
  SHMLD0(model::vardo1, fl.MODELID, NFAIL);
  if (NFAIL != status::ok) return;

  IFAIL = 3;
  SHDBS0(NFAIL);
  if (NFAIL != status::ok) return;

  IFAIL = 4;
  set_reference_temperature(NFAIL);
  if (NFAIL != status::ok) return;

  IFAIL = 0;
  fl.ENGREADY = true;
}

}  // namespace talix
