#include "database/sdb_code_directory.h"

#include <algorithm>
#include <cstdint>

#include "database/record_bytes.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"

namespace talix {

namespace {

using Block = RecordBytes<kDirectoryRecordLength>;

constexpr I4 kMaxEntryLength = 16;  // characters of an entry
constexpr I4 kMaxSpareLength = 8;   // characters of a code field that is neither STD nor MFD
constexpr int kEntryNumber = 4;     // bytes behind each entry, not used

struct Header {
  Vec<I4, 5> sizes;                     // I1 to I5
  I4 NDIR, MCDIR, NPER, MANYID, NWORD;  // entries, blocks, entries per block, code fields, words per entry
  Vec<Text<4>, kMaxCodeFields> CMANY;
  Vec<I4, kMaxCodeFields> ILEN;  // words of each code field
  Text<20> date;
};

// Record 1. False when the number of code fields makes the rest unreadable.
bool take_header(const Block& block, Header& header) {
  for (int i = 1; i <= 5; ++i) header.sizes(i) = block.integer(4 * (i - 1));
  header.NDIR = block.integer(20);
  header.MCDIR = block.integer(24);
  header.NPER = block.integer(28);
  header.MANYID = block.integer(32);
  if (header.MANYID < 1 || header.MANYID > kMaxCodeFields) return false;

  int offset = 36;
  for (int m = 1; m <= header.MANYID; ++m, offset += 4) header.CMANY(m) = block.text(offset, 4);
  for (int m = 1; m <= header.MANYID; ++m, offset += 4) header.ILEN(m) = block.integer(offset);
  header.NWORD = block.integer(offset);
  header.date = block.text(offset + 8, 20);
  return true;
}

// Sizes that the tables and the blocks can hold. The last block may be filled beyond NPER, as far as its record
// goes.
bool sizes_fit(const Header& header, const Vec<I4, 5>& wanted) {
  for (int i = 1; i <= 5; ++i)
    if (header.sizes(i) != wanted(i)) return false;
  if (header.NDIR < 0 || header.NDIR > kMaxEntries) return false;
  if (header.NWORD < 1 || header.NWORD > kMaxEntryLength / 4) return false;
  if (header.NDIR == 0) return true;

  const I4 room = kDirectoryRecordLength / (4 * header.NWORD + kEntryNumber);
  if (header.NPER < 1 || header.NPER > room) return false;
  if (header.MCDIR < 1 || header.MCDIR > kMaxEntries) return false;
  const I4 last = header.NDIR - (header.MCDIR - 1) * header.NPER;
  return last >= 1 && last <= room;
}

// Positions of the code fields in an entry, one behind the other.
void place_fields(const Header& header, const CodeDirectoryRules& rules, const CodeDirectoryTables& tables,
                  I4& NFAIL) {
  tables.MSTD = 0;
  tables.MMFD = 0;
  for (int m = 1; m <= header.MANYID; ++m) {
    if (equal_padded(header.CMANY(m).view(), "STD ")) tables.MSTD = m;
    if (equal_padded(header.CMANY(m).view(), "MFD ")) tables.MMFD = m;
  }
  if (tables.MSTD == 0 || tables.MMFD == 0) {
    NFAIL = status::failed;
    SERPU0(severity::error, rules.routine, rules.no_field);
    return;
  }

  I4 next = 1;
  for (int m = 1; m <= header.MANYID; ++m) {
    const bool named = m == tables.MSTD || m == tables.MMFD;
    const I4 words = header.ILEN(m);
    const bool fits = named ? words == 1 : words >= 1 && words <= kMaxSpareLength / 4;
    if (!fits) {
      NFAIL = status::failed;
      SERPU0(severity::error, rules.routine, rules.wrong_length);
      return;
    }
    tables.CMANY(m) = header.CMANY(m);
    tables.L1MANY(m) = next;
    tables.L2MANY(m) = next + 4 * words - 1;
    next += 4 * words;
  }
}

bool read_blocks(I4 unit, const Header& header, DirectoryEntries& CDENT) {
  Block block;
  const I4 ICE = 4 * header.NWORD;
  for (I4 k = 1; k <= header.MCDIR && header.NDIR > 0; ++k) {
    const I4 first = (k - 1) * header.NPER + 1;
    const I4 last = k == header.MCDIR ? header.NDIR : k * header.NPER;
    if (read_record(unit, k + header.MCDIR + 1, block.b, (last - first + 1) * (ICE + kEntryNumber)) != io::ok)
      return false;
    for (I4 j = first; j <= last; ++j) CDENT(j) = block.text((j - first) * (ICE + kEntryNumber), ICE);
  }
  return true;
}

}  // namespace

void read_code_directory(I4 unit, const CodeDirectoryRules& rules, const CodeDirectoryTables& tables,
                         I4& NFAIL) {
  NFAIL = status::ok;
  tables.NDIR = 0;
  tables.L1MANY.fill(0);
  tables.L2MANY.fill(0);
  for (int m = 1; m <= kMaxCodeFields; ++m) tables.CMANY(m).blank();

  // A record that cannot be read counts as one that does not pass its check.
  Block block{};
  Header header{};
  constexpr int kHeaderLength = 36 + 8 * kMaxCodeFields + 8 + 20;
  if (read_record(unit, 1, block.b, kHeaderLength) != io::ok || !take_header(block, header) ||
      !sizes_fit(header, rules.header)) {
    NFAIL = status::failed;
    SERPU0(severity::error, rules.routine, rules.configuration);
    return;
  }
  tables.date = header.date.view();

  place_fields(header, rules, tables, NFAIL);
  if (NFAIL != status::ok) return;
  if (!read_blocks(unit, header, tables.CDENT)) {
    NFAIL = status::failed;
    SERPU0(severity::error, rules.routine, rules.configuration);
    return;
  }
  tables.NDIR = header.NDIR;
}

}  // namespace talix
