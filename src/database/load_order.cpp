#include "database/load_order.h"

#include <string_view>

#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/file_layer.h"
#include "database/message_text.h"
#include "database/optional_readers.h"
#include "database/pair_record.h"
#include "database/s0u_user_pairs.h"
#include "database/sdb_binary.h"
#include "database/sdb_cpa.h"
#include "database/sdb_hydrate.h"
#include "database/sdb_pure.h"
#include "database/sdb_srk.h"
#include "database/sdb_unifac.h"
#include "database/ssv_text_search.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_table.h"
#include "engine/setup_record.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"

namespace talix {

namespace {

constexpr std::string_view kPseudo = "KELDRIN";
constexpr std::string_view kDatabase = "ZANDOR ";

void report(I4 level, std::string_view text) { SERPU0(level, "SHDBS0", text); }

// Steps 1 to 3. The message of a failure is pushed later, when all paths have come together.
std::string_view open_databases(I4& NFAIL) {
  SDBPC0(NFAIL);
  if (NFAIL != status::ok) return "Error with pure component database";
  SDBBI0(NFAIL);
  if (NFAIL != status::ok) return "Error with binary database";
  SDBPC2(NFAIL);
  if (NFAIL != status::ok) return "Error with hydrate database";
  return {};
}

// Slot of a pseudo-component that takes component L, or 0.
I4 pseudo_slot(I4 L) {
  for (I4 k = 1; k <= setup.NFRAC && k <= kMaxComponents; ++k)
    if (setup.IDFRAC(k) == L) return k;
  return 0;
}

// Entry of a directory whose code field FIRST to LAST holds the code of component L.
I4 find_entry(const DirectoryEntries& entries, I4 count, I4 first, I4 last, I4 L) {
  return SSVST0(entries.v[0].c, Text<16>::extent, kMaxEntries, 1, count, first, last, setup.CUCOMP(L).view(),
                1, 4);
}

void load_database_component(I4 L, I4& NFAIL) {
  // Entry 1 of the pure directory is no component; that of the hydrate directory is one.
  const I4 record = find_entry(directory.CDENT, directory.NDIR, directory.L1MANY(directory.MMFD),
                               directory.L2MANY(directory.MMFD), L);
  if (record <= 1) {
    NFAIL = status::unknown;
    MessageText message{};
    message.add("Pure component ").add(setup.CUCOMP(L).view()).add(" not found in database");
    return report(severity::error, message.view());
  }
  SDBPC1(L, record, NFAIL);
  if (NFAIL != status::ok) return;
  if (equal_padded(comp.ICS(L).view(), "H2O ")) comp.IWATER = L;

  const I4 cage = find_entry(directory.CDENTH, directory.NDIRH, directory.L1MANH(directory.MMFDH),
                             directory.L2MANH(directory.MMFDH), L);
  hydrate.INDXH(L) = 0;
  if (cage <= 0) return;
  SDBPC3(L, cage, NFAIL);
  if (NFAIL == status::ok) hydrate.INDXH(L) = L;
}

void load_pseudo_component(I4 L, I4& NFAIL) {
  SFCPC0(pseudo_slot(L), NFAIL);
  if (NFAIL == status::ok) return;
  MessageText message{};
  message.add("Keldrin procedure failed for component ").add(setup.CUCOMP(L).view());
  report(severity::error, message.view());
}

// Step 4.
void load_components(I4& NFAIL) {
  comp.IWATER = 0;
  comp.ISALT = 0;
  for (I4 L = 1; L <= setup.NUMH && NFAIL == status::ok; ++L) {
    setup.CUCOMP(L) = setup.SHCOMP(L);
    comp.ISOFAM(L) = 0;
    comp.ILVT(L) = 0;
    setup.SHCPTY(L) = pseudo_slot(L) != 0 ? kPseudo : kDatabase;
    if (setup.SHCPTY(L).view() == kPseudo) {
      load_pseudo_component(L, NFAIL);
    } else if (setup.SHCPTY(L).view() == kDatabase) {
      load_database_component(L, NFAIL);
    } else {
      // A component of the user's own has no data to load.
      comp.NOTRY(L) = 1;
      comp.ICSTD(L) = -1;
      NFAIL = status::unknown;
    }
  }
}

// Step 5. Henry data, the parameters of the A-excess rule and the last parameter of the association model belong to
// the pairs of one list: those of an older list must not stand in for it.
void load_pairs(I4& NFAIL) {
  pairs.HEN1.fill(0.0);
  pairs.HEN2.fill(0.0);
  pairs.HEN3.fill(0.0);
  pairs.HEN4.fill(0.0);
  pairs.BICWS.fill(0.0);
  pairs.BCP1TT.fill(0.0);
  SDBBI1(setup.NUMH, NFAIL);
  if (NFAIL != status::ok) report(severity::error, "Could not read/generate BIP values");
}

void close_databases() {
  SFLCL0(directory.binary_unit, "KEEP");
  SFLCL0(directory.pure_unit, "KEEP");
  SFLCL0(directory.hydrate_unit, "KEEP");
  directory.binary_unit = 0;
  directory.pure_unit = 0;
  directory.hydrate_unit = 0;
}

bool loaded(I4 code) {
  I4 LNO = 0;
  SMDAO1(code, LNO);
  return LNO != 0;
}

// The failure of an optional step becomes a message.
void forgive(I4& NFAIL, std::string_view name, std::string_view text) {
  if (NFAIL == status::ok) return;
  SERPU0(severity::warning, name, text);
  NFAIL = status::ok;
}

// Steps 9 to 12: data of the models that are loaded, and the group table of every load.
void load_model_data(I4& NFAIL) {
  const L4 report_missing = logical(true);
  if (loaded(model::srk_simsci)) {
    SP2DB1(1, setup.NUMH, comp.ICSTD, report_missing, NFAIL);
    forgive(NFAIL, "SHDBS0", "Could not read SRKP2 database");
  }
  if (loaded(model::srk_aspen)) {
    SAPDB1(1, setup.NUMH, comp.ICSTD, report_missing, NFAIL);
    forgive(NFAIL, "SHDBS0", "Could not read SRKASP database");
  }
  SDBUF0(model::unifac_dm, NFAIL);
  SUFAO3(setup.NUMH, model::unifac_dm, NFAIL);
  NFAIL = status::ok;

  if (unifill.on && loaded(model::nrtl)) {
    I4 LNO = 0;
    SHMLD0(model::unifac_dm, LNO, NFAIL);
    SDBUF0(model::unifac_dm, NFAIL);
    SNLUF0(setup.NUMH, 0.0, 0.0, NFAIL);
    forgive(NFAIL, "SNLUF0", "Unifill procedure failed");
  }
}

// Steps 13 to 16: data that are read for every load.
void load_optional_data(I4& NFAIL) {
  for (I4 i = 1; i <= setup.NUMH; ++i) {
    SCPDB0(i, comp.ICSTD(i), NFAIL);
    forgive(NFAIL, "SHDBS0", "CPA pure component db read failed");
  }
  SCPDB2(setup.NUMH, NFAIL);
  forgive(NFAIL, "SHDBS0", "CPA binary parameter db read failed");

  for (I4 i = 1; i <= setup.NUMH; ++i) {
    bool any = false;
    for (I4 j = 1; j <= setup.NUMH; ++j)
      any = any || pairs.HEN1(i, j) != 0.0 || pairs.HEN2(i, j) != 0.0 || pairs.HEN3(i, j) != 0.0 ||
            pairs.HEN4(i, j) != 0.0;
    comp.ISHEN(i) = any;
  }

  S0UBIN(setup.NUMH, NFAIL);
  forgive(NFAIL, "SHDBS0", "User overwrite binary data failed");
}

}  // namespace

// SHDBS0: load the data of the component set and of the selected models.
//
// Order: the three databases are opened; each component is read with its hydrate data; the pair tables are
// filled; the databases are closed whatever happened; the data of the loaded models, the group table, the CPA
// data and the user's pairs follow, all of them optional.
//
// Shared   writes comp, pairs, directory, the hydrate data, setup.CUCOMP, setup.SHCPTY, setup.generation
// Status   ok; failed (a database); unknown (a component is not in the directory); severe_warning (parameters of
//          a pair are missing); not_available (pseudo-component, or the SAFT model)
// Reports  the texts above, severity 3 where the load ends and 1 where it goes on
// Oddity   a code that stands in entry 1 of the pure directory alone counts as not found
void SHDBS0(I4& NFAIL) {
  NFAIL = status::ok;
  const std::string_view failure = open_databases(NFAIL);
  if (NFAIL == status::ok)
    load_components(NFAIL);
  else
    report(severity::error, failure);
  if (NFAIL == status::ok) load_pairs(NFAIL);
  close_databases();
  ++setup.generation;
  if (NFAIL != status::ok) return;

  // Data files of this model are not supported: no result may come from it.
  if (loaded(model::saft)) {
    NFAIL = status::not_available;
    report(severity::error, "Saft disabled");
    return;
  }
  load_model_data(NFAIL);
  load_optional_data(NFAIL);
}

}  // namespace talix
