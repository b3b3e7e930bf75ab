// Interaction parameters of pairs: from the table pairs.csv to records of the pair file.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "bank/record.h"
#include "bank/tables.h"

namespace talix::bank {

// Key of a pair in the bank.
std::int32_t pair_key(int first, int second);

// Reads the pairs, sorted by key. `codes` holds number and code of every component of the component table.
// Throws BankError for an unknown number, a code that is not the component's, a pair twice, or a bad figure.
std::vector<PairRecord> read_pair_records(const SourceTable& table, const std::map<int, std::string>& codes);

// Adds the NRTL sets of the table nrtl.csv to the records: non-randomness, its slope in temperature, and both rows of
// temperature terms. A pair without a record gets one of status 0, whose parameters of the cubic are estimated. Throws
// BankError for a fault in the table.
void add_activity_sets(std::vector<PairRecord>& records, const SourceTable& table,
                       const std::map<int, std::string>& codes);

}  // namespace talix::bank
