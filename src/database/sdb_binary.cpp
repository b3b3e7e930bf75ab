#include "database/sdb_binary.h"

#include <cmath>
#include <string_view>

#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/file_layer.h"
#include "database/message_text.h"
#include "database/pair_record.h"
#include "database/record_bytes.h"
#include "database/sdb_code_directory.h"
#include "database/ssm_pair_estimates.h"
#include "database/ssm_pair_lists.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"
#include "numerics/sal_bisection.h"

namespace talix {

namespace {

constexpr I4 kBinaryRecordLength = 300;  // [byte]
constexpr I4 kKeyFactor = 10000;         // a key is this times the smaller standard number plus the larger
constexpr int kKeyLength = 8;            // bytes of a directory entry: the key and a number not used

void fail(std::string_view message, I4& NFAIL) {
  NFAIL = status::failed;
  SERPU0(severity::error, "SDBBI0", message);
}

// Reads the keys from an open unit. False when record 1 does not pass its check, a block cannot be read, or the
// keys are not in order.
bool read_keys(I4 unit) {
  constexpr Vec<I4, 5> kSizes{{300, 100, 49, 1, 12}};
  constexpr int kHeaderLength = 56;
  constexpr I4 kRoom = kDirectoryRecordLength / kKeyLength;

  RecordBytes<kDirectoryRecordLength> block{};
  if (read_record(unit, 1, block.b, kHeaderLength) != io::ok) return false;
  for (int i = 1; i <= 5; ++i)
    if (block.integer(20 + 4 * (i - 1)) != kSizes(i)) return false;
  const I4 NLBI = block.integer(44);
  const I4 NBPLI = block.integer(48);
  const I4 NPER = block.integer(52);
  if (NLBI < 0 || NLBI > kMaxPairKeys) return false;
  setup.date_binary = block.text(0, 20);
  if (NLBI == 0) return true;

  if (NPER < 1 || NPER > kRoom || NBPLI < 1 || NBPLI > kMaxPairKeys) return false;
  const I4 rest = NLBI - (NBPLI - 1) * NPER;
  if (rest < 1 || rest > kRoom) return false;

  for (I4 k = 1; k <= NBPLI; ++k) {
    const I4 first = (k - 1) * NPER + 1;
    const I4 last = k == NBPLI ? NLBI : k * NPER;
    if (read_record(unit, k + 1, block.b, (last - first + 1) * kKeyLength) != io::ok) return false;
    for (I4 j = first; j <= last; ++j) {
      directory.IBINSC(j) = block.integer((j - first) * kKeyLength);
      if (j > 1 && directory.IBINSC(j) <= directory.IBINSC(j - 1)) return false;
    }
  }
  directory.NLBI = NLBI;
  return true;
}

}  // namespace

// SDBBI0: read the directory of the binary database and open its data file.
//
// Shared   writes directory.IBINSC, NLBI, binary_unit, setup.date_binary, setup.units.binary
// Status   ok; failed
// Reports  under "SDBBI0", severity 3: see the calls of fail
// Oddity   a missing directory is reported as that of the pure component database; without a free unit the
//          reading goes on with no open unit, and fails there
void SDBBI0(I4& NFAIL) {
  NFAIL = status::ok;
  // A load that was broken off may have left its file open.
  SFLCL0(directory.binary_unit, "KEEP");
  directory.binary_unit = 0;
  directory.NLBI = 0;
  if (!data_file_exists(data_file::binary_directory))
    return fail("Pure component database directory file not found", NFAIL);
  I4 unit = setup.units.binary;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) {
    SERPU0(severity::error, "SDBBI0", "Error opening database directory unit");
  } else {
    SFLOP0(unit, setup.files(data_file::binary_directory).view(), "DIRECT", "UNFORMATTED",
           kDirectoryRecordLength, NFAIL);
    if (NFAIL != status::ok) return fail("Error opening database directory file", NFAIL);
  }
  const bool sound = read_keys(unit);
  SFLCL0(unit, "KEEP");
  if (!sound) return fail("Configuration error in binary database directory file", NFAIL);

  if (!data_file_exists(data_file::binary)) return fail("Binary database file not found", NFAIL);
  unit = setup.units.binary;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return fail("Error opening binary database unit", NFAIL);
  SFLOP0(unit, setup.files(data_file::binary).view(), "DIRECT", "UNFORMATTED", kBinaryRecordLength, NFAIL);
  if (NFAIL != status::ok) return fail("Error opening binary database file", NFAIL);
  setup.units.binary = unit;
  directory.binary_unit = unit;
}

namespace {

// One record of the binary database.
struct PairEntry {
  RecordBytes<kBinaryRecordLength> bytes;

  // Character I of CBLBIN.
  [[nodiscard]] char letter(int i) const { return bytes.b[4 + i - 1]; }
  // Entry I of RBLBIN.
  [[nodiscard]] R8 value(int i) const { return widen(bytes.real(104 + 4 * (i - 1))); }
};

// A pair in the order of the loop, and in the order of its key.
struct LoopPair {
  I4 I, J;
  I4 LOW, HIGH;
};

void clear_pair(I4 i, I4 j) {
  pairs.BCPA0(i, j) = pairs.BCPA0T(i, j) = pairs.BCPA1(i, j) = pairs.BCPA1T(i, j) = 0.0;
  pairs.TETA0(i, j) = pairs.TETA0T(i, j) = pairs.TETA1(i, j) = pairs.TETA1T(i, j) = 0.0;
}

void clear_activity(I4 i, I4 j) {
  pairs.ALFA(i, j) = pairs.TAUT0(i, j) = pairs.TAUT1(i, j) = pairs.TAUT2(i, j) = 0.0;
}

void report_pair(std::string_view text, const LoopPair& p) {
  MessageText message{};
  message.add(text).add(comp.ICS(p.I).view()).add(" - ").add(comp.ICS(p.J).view());
  SERPU0(severity::error, "SDBBI1", message.view());
}

// Steps that close the interval of the bisection over all keys, counted in single precision.
I4 bisection_steps() {
  if (directory.NLBI < 1) return 0;
  return static_cast<I4>(std::log(static_cast<R4>(directory.NLBI)) / 0.693147182F) + 1;
}

// Record number of a pair; 0 or below when it has none. A number with more than four digits has no key.
I4 find_record(const LoopPair& p, I4 steps) {
  const I4 low = comp.ICSTD(p.LOW);
  const I4 high = comp.ICSTD(p.HIGH);
  if (low <= 1 || high <= 1 || high >= kKeyFactor) return 0;
  I4 record = 0;
  SALBS0(kKeyFactor * low + high, directory.IBINSC.v, directory.NLBI, steps, record);
  return record;
}

void take_interactions(const PairEntry& entry, const LoopPair& p) {
  pairs.TETA0(p.LOW, p.HIGH) = pairs.TETA0(p.HIGH, p.LOW) = entry.value(1);
  pairs.TETA0T(p.LOW, p.HIGH) = pairs.TETA0T(p.HIGH, p.LOW) = entry.value(2);
  pairs.TETA1(p.LOW, p.HIGH) = entry.value(3);
  pairs.TETA1(p.HIGH, p.LOW) = -entry.value(3);
  pairs.TETA1T(p.LOW, p.HIGH) = entry.value(4);
  pairs.TETA1T(p.HIGH, p.LOW) = -entry.value(4);
}

// Source digits of data that were taken. A blank counts as 0; false when one is no digit.
bool check_source(const PairEntry& entry, const LoopPair& p, I4& ERRFLG) {
  constexpr int kFirstDigit = 17;
  const auto digit = [&entry](int i) { return entry.letter(i) == ' ' ? '0' : entry.letter(i); };
  for (int i = kFirstDigit; i <= kFirstDigit + 1; ++i)
    if (digit(i) < '0' || digit(i) > '9') return false;
  if (digit(kFirstDigit) == '0') {
    ERRFLG = status::severe_warning;
    report_pair("BICS missing in databank for: ", p);
  }
  return true;
}

// The equation-of-state data of an entry by its status character. False when the entry cannot be read.
bool act_on_entry(const PairEntry& entry, const LoopPair& p, I4& ERRFLG) {
  constexpr int kStatus = 5;
  I4 ignored = status::ok;
  switch (entry.letter(kStatus)) {
    case '0':  // no fitted data
      SSMBI0(p.LOW, p.HIGH, ignored);
      return true;
    case '3':  // no interaction
      return true;
    case '5':  // needed but absent
      ERRFLG = status::severe_warning;
      report_pair("Binary interactions needed for: ", p);
      return true;
    default:
      take_interactions(entry, p);
      return check_source(entry, p, ERRFLG);
  }
}

// ALFA stands in loop order, the other terms in the order of the key.
void take_activity(const PairEntry& entry, const LoopPair& p) {
  pairs.ALFA(p.I, p.J) = entry.value(10);
  pairs.ALFA(p.J, p.I) = entry.value(11);
  pairs.TAUT0(p.LOW, p.HIGH) = entry.value(12);
  pairs.TAUT1(p.LOW, p.HIGH) = entry.value(13);
  pairs.TAUT2(p.LOW, p.HIGH) = entry.value(14);
  pairs.TAUT0(p.HIGH, p.LOW) = entry.value(15);
  pairs.TAUT1(p.HIGH, p.LOW) = entry.value(16);
  pairs.TAUT2(p.HIGH, p.LOW) = entry.value(17);
}

void act_on_activity(const PairEntry& entry, bool found, const LoopPair& p) {
  constexpr int kStatus = 6;
  const char letter = entry.letter(kStatus);
  if (found && letter != '0' && letter != '5') {
    pairs.LTAUX = letter == 'X';
    take_activity(entry, p);
    return;
  }
  pairs.LTAUX = true;
  clear_activity(p.I, p.J);
  clear_activity(p.J, p.I);
}

// One pair. False when its record cannot be read.
bool load_pair(I4 i, I4 j, I4 steps, I4& ERRFLG) {
  clear_pair(i, j);
  clear_pair(j, i);
  const bool ordered = comp.ICSTD(i) <= comp.ICSTD(j);
  const LoopPair p{i, j, ordered ? i : j, ordered ? j : i};

  PairEntry entry{};
  const bool both_pseudo = comp.ICSTD(i) <= 1 && comp.ICSTD(j) <= 1;
  const I4 record = find_record(p, steps);
  if (record > 0) {
    if (read_record(directory.binary_unit, record, entry.bytes.b, kBinaryRecordLength) != io::ok ||
        !act_on_entry(entry, p, ERRFLG)) {
      MessageText message{};
      message.add("Read error in binary database, record ").add(record, 0);
      SERPU0(severity::error, "SDBBI1", message.view());
      return false;
    }
  } else if (!both_pseudo) {
    I4 ignored = status::ok;
    SSMBI0(p.LOW, p.HIGH, ignored);
  }
  act_on_activity(entry, record > 0, p);
  return true;
}

}  // namespace

// SDBBI1: fill the pair tables.
//
// In       N       I4  components of the set
// Shared   writes the tables and lists of pairs, setup.generation
// Status   ok; severe_warning when parameters of a pair are missing, all pairs being filled all the same;
//          failed when a record cannot be read
// Reports  "Binary interactions needed for: " and "BICS missing in databank for: " with the two codes,
//          "Read error in binary database, record " with the number, severity 3
// Oddity   LTAUX is left as the last pair set it
void SDBBI1(const I4& N, I4& NFAIL) {
  I4 ERRFLG = status::ok;
  pairs.NPAIR = N;
  const I4 steps = bisection_steps();
  bool readable = true;
  for (I4 i = 1; i <= N; ++i) {
    clear_pair(i, i);
    clear_activity(i, i);
    for (I4 j = i + 1; j <= N && readable; ++j) readable = load_pair(i, j, steps, ERRFLG);
  }
  SSMAO0();
  NFAIL = readable ? ERRFLG : status::failed;
}

}  // namespace talix
