#include "database/keyed_file.h"

#include "base/check.h"
#include "database/field_text.h"
#include "database/file_layer.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix {

std::string_view KeyedRecord::columns(int first, int last) const {
  check_index("keyed record", last, first, length);
  return {c + (first - 1), static_cast<std::size_t>(last - first + 1)};
}

bool read_keyed_record(const KeyedLayout& layout, I4 unit, I4 record, KeyedRecord& into) {
  into.length = layout.columns;
  return read_record(unit, record, into.c, layout.columns) == io::ok;
}

// open_keyed_file: open a parameter file.
//
// Out      UNIT  I4  where it is open
//          LOW   I4  number of the first data record, which stands in record 2
//          HIGH  I4  number of the last data record, which stands in record 1
// Status   ok; not_available
void open_keyed_file(const KeyedLayout& layout, I4& UNIT, I4& LOW, I4& HIGH, I4& NFAIL) {
  NFAIL = status::not_available;
  if (!data_file_exists(layout.file)) return;
  I4 opened = status::ok;
  UNIT = setup.units.unifac;
  SFLAO1(UNIT, opened);
  if (opened != status::ok) return;
  SFLOP0(UNIT, setup.files(layout.file).view(), "DIRECT", "FORMATTED", layout.columns + 1, opened);
  if (opened != status::ok) return;

  KeyedRecord head;
  const bool ranged =
      read_keyed_record(layout, UNIT, 1, head) && integer_field(head.columns(1, layout.header_width), HIGH) &&
      read_keyed_record(layout, UNIT, 2, head) && integer_field(head.columns(1, layout.header_width), LOW);
  if (!ranged) return SFLCL0(UNIT, "KEEP");
  NFAIL = status::ok;
}

namespace {

// Above this number of records their sum is not exact in single precision.
constexpr I4 kMostRecords = 1 << 23;

}  // namespace

// search_keyed_file: find a key by halving the range of the file.
//
// In       LOW, HIGH  I4  numbers of the first and the last record of the range
//          KEY        I4  what is looked for
// Out      FOUND      L4
//          RECORD     I4  number of the record when found, otherwise where the search ended
// Oddity   a bound moves to the middle and not beyond it: the last record of the range is never looked at
void search_keyed_file(const KeyedLayout& layout, const I4& UNIT, const I4& LOW, const I4& HIGH,
                       const I4& KEY, L4& FOUND, I4& RECORD) {
  I4 low = LOW;
  I4 high = HIGH;
  FOUND = false;
  RECORD = 0;
  if (LOW < 1 || HIGH > kMostRecords) return;
  for (I4 step = 1; step < HIGH; ++step) {
    if (high - low <= 0) return;
    const R4 sum = static_cast<R4>(low) + static_cast<R4>(high);
    const I4 middle = static_cast<I4>(sum / 2.0F);
    // The middle of the range before: the steps that are left would read the same record again.
    if (middle == RECORD) return;
    RECORD = middle;
    KeyedRecord entry;
    I4 key = 0;
    if (!read_keyed_record(layout, UNIT, middle, entry) ||
        !integer_field(entry.columns(layout.key_first, layout.key_last), key))
      return;
    if (key == KEY) {
      FOUND = true;
      return;
    }
    (key > KEY ? high : low) = middle;
  }
}

void find_keyed_record(const KeyedLayout& layout, KeyedSearch search, const I4& KEY, L4& FOUND,
                       KeyedRecord& record, I4& NFAIL) {
  FOUND = false;
  I4 unit = 0;
  I4 low = 0;
  I4 high = 0;
  open_keyed_file(layout, unit, low, high, NFAIL);
  if (NFAIL != status::ok) return;
  I4 position = 0;
  search(unit, low, high, KEY, FOUND, position);
  if (FOUND && !read_keyed_record(layout, unit, position, record)) NFAIL = status::not_available;
  SFLCL0(unit, "KEEP");
}

}  // namespace talix
