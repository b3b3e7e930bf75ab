// The direct-access directory of component codes, shared by the pure and the hydrate database.
#pragma once

#include <string_view>

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"
#include "database/directory_record.h"

namespace talix {

inline constexpr I4 kDirectoryRecordLength = 4800;  // [byte]

// Texts and sizes in which the two directories differ.
struct CodeDirectoryRules {
  std::string_view routine;        // name under which messages are pushed
  std::string_view configuration;  // message: check of record 1 failed
  std::string_view no_field;       // message: code fields missing
  std::string_view wrong_length;   // message: length of a code field
  Vec<I4, 5> header;               // I1 to I5
};

// Where the contents go.
struct CodeDirectoryTables {
  DirectoryEntries& CDENT;
  Vec<I4, kMaxCodeFields>& L1MANY;
  Vec<I4, kMaxCodeFields>& L2MANY;
  Vec<Text<4>, kMaxCodeFields>& CMANY;
  I4& NDIR;
  I4& MSTD;
  I4& MMFD;
  Text<20>& date;
};

// Reads the directory from an open unit. Status ok; failed with a message, NDIR is then 0.
void read_code_directory(I4 unit, const CodeDirectoryRules& rules, const CodeDirectoryTables& tables,
                         I4& NFAIL);

}  // namespace talix
