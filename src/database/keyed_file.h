// Formatted files of parameters in ascending order of a numeric key, searched on the file itself.
#pragma once

#include <string_view>

#include "base/logical.h"
#include "base/real.h"

namespace talix {

inline constexpr int kLongestKeyedRecord = 256;  // [byte]

// Where the numbers of such a file stand. A record ends with one line end behind its last column.
struct KeyedLayout {
  int file;          // row of the data file table
  int columns;       // of a record
  int header_width;  // columns of the integers in records 1 and 2
  int key_first;     // columns of the key of a data record
  int key_last;
};

struct KeyedRecord {
  char c[kLongestKeyedRecord];
  int length;

  // Columns FIRST to LAST, counted from 1.
  [[nodiscard]] std::string_view columns(int first, int last) const;
};

// Opens the file on a free unit and reads its range. Status ok; not_available where the file is missing, cannot
// be opened or has no range, and it is closed then.
void open_keyed_file(const KeyedLayout& layout, I4& UNIT, I4& LOW, I4& HIGH, I4& NFAIL);

// Bisection for KEY between records LOW and HIGH of the open UNIT.
void search_keyed_file(const KeyedLayout& layout, const I4& UNIT, const I4& LOW, const I4& HIGH,
                       const I4& KEY, L4& FOUND, I4& RECORD);

// A search for KEY between records LOW and HIGH of the open UNIT.
using KeyedSearch = void (*)(const I4& UNIT, const I4& LOW, const I4& HIGH, const I4& KEY, L4& FOUND,
                             I4& RECORD);

// Opens the file, looks KEY up and closes it. FOUND with the record, or not; status not_available where there is
// no file, or the record that was found cannot be read.
void find_keyed_record(const KeyedLayout& layout, KeyedSearch search, const I4& KEY, L4& FOUND,
                       KeyedRecord& record, I4& NFAIL);

// Reads a record; false where the file has none of that number.
bool read_keyed_record(const KeyedLayout& layout, I4 unit, I4 record, KeyedRecord& into);

}  // namespace talix
