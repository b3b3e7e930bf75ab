#include "database/sdb_hydrate.h"

#include <string_view>

#include "database/directory_record.h"
#include "database/file_layer.h"
#include "database/message_text.h"
#include "database/record_bytes.h"
#include "database/sdb_code_directory.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"
#include "solids/hydrate_record.h"

namespace talix {

namespace {

constexpr std::string_view kRoutine = "SDPC2";  // five letters
constexpr int kHydrateCells = 50;               // cells of a record
constexpr I4 kHydrateRecordLength = 4 * kHydrateCells;
constexpr std::string_view kDirectoryNotOpened = "Could not open hydrate database directory file";
constexpr std::string_view kNotOpened = "Could not open hydrate database";

constexpr CodeDirectoryRules kRules{kRoutine,
                                    "Configuration error on hydrate database directory file",
                                    "STD or MFD fields not found",
                                    "Incorrect length of component code",
                                    {{200, kMaxEntries, 10, 15, 25}}};

void fail(std::string_view message, I4& NFAIL) {
  NFAIL = status::failed;
  SERPU0(severity::error, kRoutine, message);
}

}  // namespace

// SDBPC2: read the directory of the hydrate database and open its data file.
//
// Shared   writes the hydrate part of directory, setup.date_hydrate, setup.units.hydrate
// Status   ok; failed
// Reports  the texts above, severity 3
// Oddity   the messages stand under "SDPC2"
void SDBPC2(I4& NFAIL) {
  NFAIL = status::ok;
  // A load that was broken off may have left its file open.
  SFLCL0(directory.hydrate_unit, "KEEP");
  directory.hydrate_unit = 0;
  directory.NDIRH = 0;
  if (!data_file_exists(data_file::hydrate_directory))
    return fail("Hydrate database directory file not found", NFAIL);
  I4 unit = setup.units.hydrate;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail(kDirectoryNotOpened, NFAIL);
  SFLOP0(unit, setup.files(data_file::hydrate_directory).view(), "DIRECT", "UNFORMATTED",
         kDirectoryRecordLength, NFAIL);
  if (NFAIL != status::ok) return fail(kDirectoryNotOpened, NFAIL);
  read_code_directory(unit, kRules,
                      {directory.CDENTH, directory.L1MANH, directory.L2MANH, directory.CMANYH,
                       directory.NDIRH, directory.MSTDH, directory.MMFDH, setup.date_hydrate},
                      NFAIL);
  SFLCL0(unit, "KEEP");
  if (NFAIL != status::ok) return;

  if (!data_file_exists(data_file::hydrate)) return fail("Hydrate database not found", NFAIL);
  unit = setup.units.hydrate;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail(kNotOpened, NFAIL);
  SFLOP0(unit, setup.files(data_file::hydrate).view(), "DIRECT", "UNFORMATTED", kHydrateRecordLength, NFAIL);
  if (NFAIL != status::ok) return fail(kNotOpened, NFAIL);
  setup.units.hydrate = unit;
  directory.hydrate_unit = unit;
}

// SDBPC3: read a record of the hydrate database.
//
// In       ICOMP   I4  slot of the hydrate tables; 0 or below: the record is only read
//          RECORD  I4  record number
// Shared   writes ENTERS and COHPC of the slot, setup.generation
// Status   ok; failed when the record cannot be read
// Reports  "Read error in hydrate database, record " and the number, severity 3
// Oddity   a component enters a cage for a flag of 1 alone, any other value is no
void SDBPC3(const I4& ICOMP, const I4& RECORD, I4& NFAIL) {
  constexpr int kFirstFlag = 11;
  constexpr int kFirstCoefficient = 26;
  constexpr int kCoefficients = 19;

  NFAIL = status::ok;
  RecordCells<kHydrateCells> cells;
  if (read_record(directory.hydrate_unit, RECORD, cells.bytes.b, kHydrateRecordLength) != io::ok) {
    MessageText message{};
    message.add("Read error in hydrate database, record ").add(RECORD, 0);
    return fail(message.view(), NFAIL);
  }
  if (ICOMP <= 0) return;

  hydrate.ENTERS(1, ICOMP, 1) = cells.integer(kFirstFlag) == 1;
  hydrate.ENTERS(1, ICOMP, 2) = cells.integer(kFirstFlag + 1) == 1;
  hydrate.ENTERS(2, ICOMP, 1) = cells.integer(kFirstFlag + 2) == 1;
  hydrate.ENTERS(2, ICOMP, 2) = cells.integer(kFirstFlag + 3) == 1;
  for (int k = 1; k <= kCoefficients; ++k)
    hydrate.COHPC(k, ICOMP) = widen(cells.real(kFirstCoefficient + k - 1));
  ++setup.generation;
}

}  // namespace talix
