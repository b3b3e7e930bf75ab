// Directories of the databases in memory: which record of a data file belongs to which component or pair.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kMaxEntries = 1500;   // components of a directory
inline constexpr int kMaxPairKeys = 7500;  // pairs of the binary directory
inline constexpr int kMaxCodeFields = 3;   // code fields of an entry

using DirectoryEntries = Vec<Text<16>, kMaxEntries>;

struct DirectoryRecord {
  // Pure component directory.
  L4 NEWZANSTYLE;                      // read from the text directory
  DirectoryEntries CDENT;              // codes of each entry
  Vec<I4, kMaxCodeFields> L1MANY;      // first character of each code field
  Vec<I4, kMaxCodeFields> L2MANY;      // last character of each code field
  Vec<Text<4>, kMaxCodeFields> CMANY;  // names of the code fields
  I4 NDIR;                             // entries
  I4 MSTD, MMFD;                       // code fields of the standard code and of the MFD code
  // Hydrate directory.
  DirectoryEntries CDENTH;  // as above
  Vec<I4, kMaxCodeFields> L1MANH;
  Vec<I4, kMaxCodeFields> L2MANH;
  Vec<Text<4>, kMaxCodeFields> CMANYH;
  I4 NDIRH;
  I4 MSTDH, MMFDH;
  // Binary directory.
  Vec<I4, kMaxPairKeys> IBINSC;  // pair keys, ascending
  I4 NLBI;                       // number of keys
  // Data files that stay open during a load: their units, 0 when closed.
  I4 pure_unit, binary_unit, hydrate_unit;
};

extern constinit DirectoryRecord directory;

void reset_directory_record();

}  // namespace talix
