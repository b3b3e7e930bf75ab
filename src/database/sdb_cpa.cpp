#include "database/sdb_cpa.h"

#include <string_view>

#include "association/cpa_record.h"
#include "database/component_record.h"
#include "database/field_text.h"
#include "database/file_layer.h"
#include "database/keyed_file.h"
#include "database/pair_record.h"
#include "database/sh_component_class.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr int kHeaderWidth = 8;
constexpr int kPureFields = 15;
constexpr int kPairFields = 5;
constexpr int kFieldWidth = 13;  // behind one blank
constexpr int kDecimals = 6;
constexpr int kReplacements = 13;  // values of the local file
constexpr std::string_view kLocalFile = "cpastr.dat";

constexpr KeyedLayout kPure{data_file::cpa_pure, 8 + kPureFields*(1 + kFieldWidth), kHeaderWidth, 1, 8};
constexpr KeyedLayout kPairs{data_file::cpa_binary, 8 + kPairFields*(1 + kFieldWidth), kHeaderWidth, 1, 8};
static_assert(kPure.columns <= kLongestKeyedRecord);

// Real K of a record; false where the columns hold no number.
bool record_real(const KeyedRecord& record, int k, R8& value) {
  const int first = 8 + (k - 1) * (1 + kFieldWidth) + 2;
  return real_field(record.columns(first, first + kFieldWidth - 1), kDecimals, value);
}

void clear_component(I4 i) {
  cpa_sets.ASA(i) = cpa_sets.ASB(i) = cpa_sets.ASC(i) = cpa_sets.ASD(i) = cpa_sets.ASF(i) = 0.0;
  cpa_sets.EOSA(i) = cpa_sets.EOSB(i) = 0.0;
  for (int k = 1; k <= 7; ++k) cpa_sets.EOSK(k, i) = 0.0;
}

// Parameter K of the order in which both files have them: five of association, two of the physical part, then
// the seventh coefficient of the curve and the first five.
R8& parameter(int k, I4 i) {
  switch (k) {
    case 1:
      return cpa_sets.ASB(i);
    case 2:
      return cpa_sets.ASA(i);
    case 3:
      return cpa_sets.ASC(i);
    case 4:
      return cpa_sets.ASD(i);
    case 5:
      return cpa_sets.ASF(i);
    case 6:
      return cpa_sets.EOSA(i);
    case 7:
      return cpa_sets.EOSB(i);
    case 8:
      return cpa_sets.EOSK(7, i);
    default:
      return cpa_sets.EOSK(k - 8, i);
  }
}

bool store_component(const KeyedRecord& record, I4 i) {
  bool sound = true;
  for (int k = 1; k <= kReplacements; ++k) {
    const int field = k <= 5 ? k : k + 2;  // fields 6 and 7 are not used
    sound = sound && record_real(record, field, parameter(k, i));
  }
  return sound;
}

void read_component(I4 i, I4 number, I4& NFAIL) {
  L4 found{};
  KeyedRecord record;
  find_keyed_record(kPure, SCPDB3, number, found, record, NFAIL);
  if (NFAIL != status::ok || !found || store_component(record, i)) return;
  clear_component(i);
  NFAIL = status::not_available;
}

// First item of a line in free format.
std::string_view first_item(const Line& line) {
  std::string_view text = line.view();
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  return text.substr(0, text.find_first_of(" \t,;/"));
}

// Values of a file in the working directory take the place of those of the database, if it is for this number.
void read_local_file(I4 i, I4 number) {
  I4 unit = setup.units.unifac;
  I4 free_unit = status::ok;
  SFLAO1(unit, free_unit);
  if (free_unit != status::ok || open_unit(unit, {kLocalFile, Opening::old, false, false, 0}) != io::ok)
    return;
  Line line;
  I4 wanted = 0;
  if (read_line(unit, line) == io::ok && integer_field(first_item(line), wanted) && wanted == number) {
    for (int k = 1; k <= kReplacements && read_line(unit, line) == io::ok; ++k) {
      R8 value = 0.0;
      const std::string_view item = first_item(line);
      if (item.empty() || !real_field(item, 0, value)) break;
      parameter(k, i) = value;
    }
  }
  SFLCL0(unit, "KEEP");
}

void set_pair(I4 i, I4 j, const Vec<R8, kPairFields>& value) {
  pairs.BCPA0(i, j) = pairs.BCPA0(j, i) = value(1);
  pairs.BCPA0T(i, j) = pairs.BCPA0T(j, i) = value(2);
  pairs.BCPA1(i, j) = pairs.BCPA1(j, i) = value(3);
  pairs.BCPA1T(i, j) = pairs.BCPA1T(j, i) = value(4);
  pairs.BCP1TT(i, j) = pairs.BCP1TT(j, i) = value(5);
}

// The record of a pair on the open file; false where there is none.
bool read_pair(I4 unit, I4 low, I4 high, I4 i, I4 j) {
  const I4 first = comp.ICSTD(i);
  const I4 second = comp.ICSTD(j);
  if (first <= 1 || second <= 1) return false;
  const I4 key = first < second ? 10000 * first + second : 10000 * second + first;
  L4 found{};
  I4 position = 0;
  SCPDB3(unit, low, high, key, found, position);
  KeyedRecord record;
  if (!found || !read_keyed_record(kPairs, unit, position, record)) return false;
  Vec<R8, kPairFields> value{};
  for (int k = 1; k <= kPairFields; ++k)
    if (!record_real(record, k, value(k))) return false;
  set_pair(i, j, value);
  return true;
}

}  // namespace

// SCPDB3: bisection for a key on the open file of the pure or of the pair parameters.
//
// In       UNIT       I4  where the file is open
//          LOW, HIGH  I4  numbers of its first and last data record
//          KEY        I4  standard number or pair key
// Out      FOUND      L4
//          RECORD     I4  its record when found
// Oddity   the last record is never reached; the files end with a record that is no component and no pair
void SCPDB3(const I4& UNIT, const I4& LOW, const I4& HIGH, const I4& KEY, L4& FOUND, I4& RECORD) {
  search_keyed_file(kPairs, UNIT, LOW, HIGH, KEY, FOUND, RECORD);
}

// SCPDB0: read the association parameters of a component.
//
// In       ICOMP   I4  component index
//          NUMBER  I4  its standard number
// Shared   writes the parameters of the component in cpa_sets, setup.generation
// Status   ok, also for a component that is not on file: its parameters are 0, which counts as absent;
//          not_available where the file is missing or its record holds no numbers
// Oddity   a file "cpastr.dat" in the working directory goes before the database, whatever the status is; the
//          sixth coefficient of the curve stands in neither file and is 0
void SCPDB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL) {
  clear_component(ICOMP);
  read_component(ICOMP, NUMBER, NFAIL);
  read_local_file(ICOMP, NUMBER);
  ++setup.generation;
}

// SCPDB2: read or estimate the association parameters of the pairs of the list.
//
// In       N  I4  components
// Shared   writes the five tables of the model in pairs, setup.generation; reads comp.ICSTD
// Status   ok; not_available where the file is missing, and all parameters are 0 then
void SCPDB2(const I4& N, I4& NFAIL) {
  const Vec<R8, kPairFields> none{};
  for (I4 i = 1; i <= N; ++i)
    for (I4 j = i; j <= N; ++j) set_pair(i, j, none);
  ++setup.generation;

  I4 unit = 0;
  I4 low = 0;
  I4 high = 0;
  open_keyed_file(kPairs, unit, low, high, NFAIL);
  if (NFAIL != status::ok) return;
  for (I4 i = 1; i <= N; ++i) {
    for (I4 j = i + 1; j <= N; ++j) {
      if (read_pair(unit, low, high, i, j)) continue;
      I4 estimated = status::ok;
      SCPDB5(i, j, estimated);
    }
  }
  SFLCL0(unit, "KEEP");
}

// SCPDB5: estimate the association parameters of a pair that is not on file.
//
// Water with an alkane: interaction parameter 0.1915 - 0.026 for each carbon atom. The relation goes through the
// published values of propane to decane; longer alkanes take the value of decane.
//
// In       ICOMP, JCOMP  I4  component indices
// Shared   writes BCPA0 of the pair, both orders
// Status   ok; failed when no rule applies
// Source   values for propane to decane: data/association_pairs.csv
void SCPDB5(const I4& ICOMP, const I4& JCOMP, I4& NFAIL) {
  constexpr I4 kWater = 9;
  constexpr I4 kLongestAlkane = 10;  // carbon atoms

  NFAIL = status::failed;
  const bool first_is_water = comp.ICSTD(ICOMP) == kWater;
  const I4 other = first_is_water ? JCOMP : ICOMP;
  if (!first_is_water && comp.ICSTD(JCOMP) != kWater) return;
  if (comp.ICSTD(other) <= 1 || comp.NOTRY(other) != 0) return;
  I4 main_class = 0;
  I4 subclass = 0;
  I4 classified = status::ok;
  SHCAO0(main_class, subclass, comp.ICSTD(other), comp.ICS(other).view(), classified);
  if (classified != status::ok || subclass != family::alkane) return;
  const I4 carbons = comp.ELEM(other, 1) < kLongestAlkane ? comp.ELEM(other, 1) : kLongestAlkane;
  const R8 value = 0.1915 - 0.026 * carbons;
  pairs.BCPA0(ICOMP, JCOMP) = pairs.BCPA0(JCOMP, ICOMP) = value;
  NFAIL = status::ok;
}

}  // namespace talix
