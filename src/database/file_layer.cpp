#include "database/file_layer.h"

#include "database/open_file.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

constinit FileRecord sfl{};

void reset_file_record() {
  for (I4 unit = 1; unit <= kLastUnit; ++unit) close_unit(unit, false);
  sfl = FileRecord{};
}

namespace {

constexpr int kShownName = 214;   // longest name that a message holds whole
constexpr int kShownFrom = 41;    // first character shown of a longer one
constexpr I4 kStandardInput = 5;  // reserved units
constexpr I4 kStandardOutput = 6;

bool set_aside(I4 unit) {
  return unit <= 0 || unit == kStandardInput || unit == kStandardOutput || unit > kLastUnit;
}

bool counts_in_words(I4 code) {
  return code == platform::vax || code == platform::indigo || code == platform::octane;
}

void open_failed(std::string_view FNAME, I4& NFAIL) {
  NFAIL = status::failed;
  std::string_view shown = FNAME;
  if (shown.size() > static_cast<std::size_t>(kShownName)) shown.remove_prefix(kShownFrom - 1);
  sfl.work = MessageText{};
  sfl.work.add("Error opening file, IOSTAT= ").add(sfl.IOSTAT, 5).add("FILE= ").add(shown);
  SERPU0(severity::error, "SFLOP0", sfl.work.view());
}

// Open by the first rule that applies; false when the platform has no rule and nothing is opened.
bool open_by_rule(I4 unit, std::string_view name, std::string_view access, I4 length) {
  const bool scratch = trimmed(name).empty();
  const bool direct = equal_padded(access, "DIRECT");
  const bool append = equal_padded(access, "APPEND");
  OpenRequest request{name, scratch ? Opening::scratch : Opening::unknown, direct, append, length};

  if (direct && !scratch && counts_in_words(setup.platform)) {
    // These platforms are told a length in words of four bytes.
    const I4 words = length / 4;
    request.record_length = words * 4;
  } else if (!scratch && append) {
    switch (setup.platform) {
      case platform::pc_ftn77:
      case platform::hp9000:
      case platform::pc_lahey:
      case platform::vax:
      case platform::indigo:
      case platform::octane:
      case platform::sun:
      case platform::rs6000:
        break;  // each with its own words, all of them stand behind the last record
      default:
        return false;
    }
  } else if (!direct && !append && !equal_padded(access, "SEQUENTIAL")) {
    sfl.IOSTAT = io::bad_option;
    return true;
  }
  sfl.IOSTAT = open_unit(unit, request);
  return true;
}

}  // namespace

// SFLOP0: open a file on a unit.
//
// In       UNIT    I4    1 to 98 but not 5 or 6, not in use
//          FNAME   text  name, blank-padded; blank for a scratch file
//          ACCESS  text  "DIRECT", "APPEND" or "SEQUENTIAL"
//          FORM    text  "FORMATTED" or "UNFORMATTED"
//          RECL    I4    record length for direct access [byte]
// Shared   writes sfl.IOSTAT; reads setup.platform
// Status   ok; failed
// Reports  "Error opening file, IOSTAT= " with number and name, severity 3
// Oddity   unit 99 is refused though SFLAO1 hands it out; on a platform without a rule for "APPEND" nothing
//          is opened and the status stays ok; a refusal reports the status of the open before it
void SFLOP0(const I4& UNIT, std::string_view FNAME, std::string_view ACCESS, std::string_view FORM,
            const I4& RECL, I4& NFAIL) {
  NFAIL = status::ok;
  if (set_aside(UNIT) || UNIT >= kLastUnit) return open_failed(FNAME, NFAIL);
  L4 FOPEND{};
  I4 IOS = io::ok;
  SFLUQ0(UNIT, FOPEND, IOS);
  if (FOPEND) return open_failed(FNAME, NFAIL);

  if (equal_padded(ACCESS, "DIRECT") && RECL <= 0) return open_failed(FNAME, NFAIL);
  if (!equal_padded(FORM, "FORMATTED") && !equal_padded(FORM, "UNFORMATTED"))
    return open_failed(FNAME, NFAIL);

  if (open_by_rule(UNIT, FNAME, ACCESS, RECL) && sfl.IOSTAT > 0) open_failed(FNAME, NFAIL);
}

// SFLAO1: find a free unit.
//
// In, out  UNIT    I4  where to start; the free unit, or 100
// Status   ok; failed when none is free
// Oddity   hands out unit 99, which SFLOP0 refuses
void SFLAO1(I4& UNIT, I4& NFAIL) {
  if (set_aside(UNIT)) UNIT = 1;
  for (;;) {
    L4 FOPEND{};
    I4 IOS = io::ok;
    SFLUQ0(UNIT, FOPEND, IOS);
    if (!FOPEND) {
      NFAIL = status::ok;
      return;
    }
    ++UNIT;
    if (UNIT == kStandardInput) UNIT += 2;
    if (UNIT > kLastUnit) {
      NFAIL = status::failed;
      return;
    }
  }
}

// SFLIQ0: does a file exist?
//
// Reports  "File inquire failed, IOSTAT =" with the number, severity 1
void SFLIQ0(std::string_view FNAME, L4& FEXIST) {
  int error = 0;
  FEXIST = file_exists(FNAME, error);
  if (error > 0) {
    sfl.work = MessageText{};
    sfl.work.add("File inquire failed, IOSTAT =").add(error, 5);
    SERPU0(severity::warning, "SFLIQ0", sfl.work.view());
  }
}

bool data_file_exists(int ROW) {
  L4 FEXIST{};
  SFLIQ0(setup.files(ROW).view(), FEXIST);
  return static_cast<bool>(FEXIST);
}

// SFLUQ0: is a unit in use?
//
// Out      FOPEND  L4  true for a reserved unit, for one with a file, and for one that the host reports a
//                      failure on
//          IOS     I4  I/O status; left alone for a reserved unit
// Reports  "Unit inquire failed, IOSTAT =" with the number, severity 1
void SFLUQ0(const I4& UNIT, L4& FOPEND, I4& IOS) {
  FOPEND = true;
  if (set_aside(UNIT)) return;
  FOPEND = unit_is_open(UNIT);
  IOS = unit_fault(UNIT);
  if (IOS > 0) {
    FOPEND = true;
    sfl.work = MessageText{};
    sfl.work.add("Unit inquire failed, IOSTAT =").add(IOS, 5);
    SERPU0(severity::warning, "SFLUQ0", sfl.work.view());
  }
}

// SFLCL0: close a unit; one that is not open is left alone.
void SFLCL0(const I4& UNIT, std::string_view STATUS) { close_unit(UNIT, equal_padded(STATUS, "DELETE")); }

// SFLDT0: the date of a file, the same for all.
void SFLDT0(Text<23>& DATE) { DATE = "     JAN 01 2000  00:01"; }

}  // namespace talix
