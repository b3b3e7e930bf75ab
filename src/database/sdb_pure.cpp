#include "database/sdb_pure.h"

#include <string_view>

#include "base/stop_handler.h"
#include "database/directory_record.h"
#include "database/field_text.h"
#include "database/file_layer.h"
#include "database/sdb_code_directory.h"
#include "database/ssv_text_search.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr I4 kPureRecordLength = 1000;  // [byte]
constexpr std::string_view kConfiguration = "Configuration error in pure component database directory file";
constexpr std::string_view kDirectoryNotOpened = "Could not open pure component database directory file";
constexpr std::string_view kNotOpened = "Could not open pure component database";
constexpr I4 kTextFields = 2;  // code fields that line 1 of the text directory has room for

constexpr CodeDirectoryRules kRules{"SDBPC0",
                                    kConfiguration,
                                    "STD or MFD code fields not found",
                                    "Incorrrect length of component code",
                                    {{1000, kMaxEntries, 25, 25, 200}}};

void fail(std::string_view message, I4& NFAIL) {
  NFAIL = status::failed;
  SERPU0(severity::error, "SDBPC0", message);
}

// The header of the text directory is taken as a fixed layout, whatever line 1 says.
void fix_text_layout() {
  directory.CMANY(1) = "STD ";
  directory.CMANY(2) = "MFD ";
  directory.CMANY(3).blank();
  directory.L1MANY = {{1, 5, 0}};
  directory.L2MANY = {{4, 8, 0}};
  directory.MSTD = 1;
  directory.MMFD = 2;
  setup.date_pure = "April 2003          ";
}

// Only the number of entries and of code fields of line 1 have an effect; the layout fits two fields.
bool read_text_directory(I4 unit) {
  Line line;
  I4 entries = 0;
  I4 fields = 0;
  if (read_line(unit, line) != io::ok) return false;
  if (!integer_field(line.columns(26, 30), entries) || !integer_field(line.columns(41, 45), fields))
    return false;
  if (entries < 0 || entries > kMaxEntries || fields != kTextFields) return false;

  fix_text_layout();
  for (I4 j = 1; j <= entries; ++j) {
    if (read_line(unit, line) != io::ok) return false;
    directory.CDENT(j) = line.columns(1, 8);
  }
  directory.NDIR = entries;
  return true;
}

void read_new_style(I4& NFAIL) {
  I4 unit = setup.units.pure;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail(kDirectoryNotOpened, NFAIL);

  const std::string_view name = setup.files(data_file::pure_directory).view();
  if (open_unit(unit, {name, Opening::old, false, false, 0}) != io::ok) {
    NFAIL = status::failed;
    stop("Zandor file pcdir.asc not found");
    return;
  }
  if (!read_text_directory(unit)) fail(kConfiguration, NFAIL);
  SFLCL0(unit, "KEEP");
}

void read_old_style(I4& NFAIL) {
  if (!data_file_exists(data_file::pure_directory_old))
    return fail("Pure component database directory file not found", NFAIL);
  I4 unit = setup.units.pure;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail(kDirectoryNotOpened, NFAIL);
  SFLOP0(unit, setup.files(data_file::pure_directory_old).view(), "DIRECT", "UNFORMATTED",
         kDirectoryRecordLength, NFAIL);
  if (NFAIL != status::ok) return fail(kDirectoryNotOpened, NFAIL);

  read_code_directory(unit, kRules,
                      {directory.CDENT, directory.L1MANY, directory.L2MANY, directory.CMANY, directory.NDIR,
                       directory.MSTD, directory.MMFD, setup.date_pure},
                      NFAIL);
  SFLCL0(unit, "KEEP");
}

}  // namespace

// SDBPC0: read the directory of the pure component database and open its data file.
//
// Shared   writes the pure part of directory, setup.date_pure, setup.units.pure
// Status   ok; failed
// Reports  the texts above under "SDBPC0", severity 3
// Oddity   the text directory wins over the direct-access one; when it goes away between the test and the
//          reading the stop "Zandor file pcdir.asc not found" is called
void SDBPC0(I4& NFAIL) {
  NFAIL = status::ok;
  // A load that was broken off may have left its file open.
  SFLCL0(directory.pure_unit, "KEEP");
  directory.pure_unit = 0;
  directory.NDIR = 0;
  directory.NEWZANSTYLE = data_file_exists(data_file::pure_directory);
  if (directory.NEWZANSTYLE) {
    read_new_style(NFAIL);
  } else {
    read_old_style(NFAIL);
  }
  if (NFAIL != status::ok) return;

  if (!data_file_exists(data_file::pure)) return fail("Pure component database file not found", NFAIL);
  I4 unit = setup.units.pure;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail(kNotOpened, NFAIL);
  SFLOP0(unit, setup.files(data_file::pure).view(), "DIRECT", "UNFORMATTED", kPureRecordLength, NFAIL);
  if (NFAIL != status::ok) return fail(kNotOpened, NFAIL);
  setup.units.pure = unit;
  directory.pure_unit = unit;
}

// SDBAO0: is the code of a component in the directory?
//
// In       ICOMP  I4  component index
// Out      true when an entry from 2 on has the code; entry 1 is no component
bool SDBAO0(const I4& ICOMP) {
  constexpr I4 kFirstCharacter = 5;
  constexpr I4 kLastCharacter = 8;
  return SSVST0(directory.CDENT(1).c, Text<16>::extent, kMaxEntries, 2, directory.NDIR, kFirstCharacter,
                kLastCharacter, setup.CUCOMP(ICOMP).view(), 1, 4) > 0;
}

}  // namespace talix
