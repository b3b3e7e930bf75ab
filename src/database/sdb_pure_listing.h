// The diagnostic listing of one pure component record, switched off.
#pragma once

#include "base/array.h"
#include "database/record_bytes.h"

namespace talix {

inline constexpr int kPureCells = 250;  // cells of a pure component record

using PureCells = RecordCells<kPureCells>;
// Cells that were stored as a value other than 0.
using StoredCells = Vec<bool, kPureCells>;

// On: every record that is stored is listed in the file ftdb.chk of the working directory.
extern constinit bool list_pure_records;

void list_pure_record(const PureCells& cells, const StoredCells& CHK);

}  // namespace talix
