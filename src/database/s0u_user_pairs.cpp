#include "database/s0u_user_pairs.h"

#include <string_view>

#include "database/component_record.h"
#include "database/file_layer.h"
#include "database/free_format.h"
#include "database/overrides.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr I4 kKeyWidth = 10;
constexpr int kKeywordLength = 10;

struct UserRecord {
  I4 section;        // section of the pair, 0 for an unknown keyword
  int count;         // parameters of the record
  I4 first, second;  // standard numbers
  KeyValues VALUES;  // parameters, in the order of the keys of the section
};

UserRecord record_of(std::string_view keyword) {
  keyword = trimmed(keyword.substr(0, kKeywordLength));
  if (keyword == "NRTL") return {.section = model::nrtl, .count = 12, .first = 0, .second = 0, .VALUES{}};
  if (keyword == "HENRY")
    return {.section = key_section::henry, .count = 4, .first = 0, .second = 0, .VALUES{}};
  return {};
}

// Takes the standard numbers and the parameters. False when the file ends in them, or one is no number.
bool read_numbers(FreeFormat& reader, UserRecord& record) {
  begin_list(reader);
  if (!next_integer(reader, record.first) || !next_integer(reader, record.second)) return false;
  for (int k = 1; k <= record.count; ++k)
    if (!next_real(reader, record.VALUES(k))) return false;
  return true;
}

// Component with a standard number, the first of several; 0 for none.
I4 component_of(I4 number, I4 N) {
  for (I4 i = 1; i <= N; ++i)
    if (comp.ICSTD(i) == number) return i;
  return 0;
}

void apply(UserRecord& record, I4 N) {
  const I4 i = component_of(record.first, N);
  const I4 j = component_of(record.second, N);
  if (record.section == 0 || i == 0 || j == 0) return;

  I4 NKEYS = 0;
  I4 ignored = status::ok;
  KeyNames KEYS{};
  SURBI0(NKEYS, KEYS, kKeyWidth, record.VALUES, action::input, i, j, record.section, ignored);
  if (record.section != key_section::henry || ignored != status::ok) return;
  KeyValues has_henry_data{};
  has_henry_data(1) = 1.0;
  SURPC0(NKEYS, KEYS, kKeyWidth, has_henry_data, action::input, i, key_section::henry, ignored);
}

}  // namespace

// S0UBIN: apply the user's file of pair parameters.
//
// A record is a keyword, two standard numbers and parameters in free format; the numbers stand behind the keyword or
// on the lines after it, and what else stands on their last line is passed over. "NRTL" has twelve parameters, in the
// order of the keys of section nrtl, "HENRY" has four, gas first. Another keyword has none.
//
// In       N      I4  components of the set
// Shared   writes pairs, comp.ISHEN, setup.generation
// Status   ok; not_available (no such file); failed (no free unit, or the file cannot be opened)
// Reports  "User pair data end in a record that cannot be read", severity 1
// Oddity   a record that cannot be read ends the reading with the status ok: the records before it stand
void S0UBIN(const I4& N, I4& NFAIL) {
  NFAIL = status::ok;
  I4 unit = 0;
  SFLAO1(unit, NFAIL);
  if (NFAIL != status::ok) return;
  if (!data_file_exists(data_file::user_binary)) {
    NFAIL = status::not_available;
    return;
  }
  const std::string_view name = setup.files(data_file::user_binary).view();
  if (open_unit(unit, {name, Opening::old, false, false, 0}) != io::ok) {
    NFAIL = status::failed;
    return;
  }

  FreeFormat reader = free_format(unit);
  std::string_view keyword;
  bool readable = true;
  while (readable && next_word(reader, keyword)) {
    UserRecord record = record_of(keyword);
    readable = read_numbers(reader, record);
    if (readable) apply(record, N);
  }
  if (!reader.at_end)
    SERPU0(severity::warning, "S0UBIN", "User pair data end in a record that cannot be read");
  SFLCL0(unit, "KEEP");
}

}  // namespace talix
