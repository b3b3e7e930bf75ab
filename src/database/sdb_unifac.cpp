#include "database/sdb_unifac.h"

#include <string_view>

#include "database/component_record.h"
#include "database/field_text.h"
#include "database/file_layer.h"
#include "database/message_text.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"
#include "liquid/unifac_record.h"

namespace talix {

namespace {

constexpr std::string_view kLoadingFailed = "Loading UNIFAC data failed";
constexpr int kSets = 3;        // parameter sets of a pair of main groups
constexpr int kRealWidth = 10;  // columns of a real field
constexpr int kPerLine = 8;

// Row of the data file table with the group table of a model, 0 for a model that has none.
int table_file(I4 code) {
  switch (code) {
    case model::unifac:
      return data_file::unifac_original;
    case model::lyngby_unifac:
      return data_file::unifac_lyngby;
    case model::unifac_dm:
    case model::liquid_unifac:
      return data_file::unifac_dm;
    case model::linear_unifac:
    case model::free_volume_unifac:
      return data_file::unifac_linear;
    default:
      return 0;
  }
}

struct TableSize {
  I4 subgroups;
  I4 main_groups;
};

bool read_size(I4 unit, TableSize& size) {
  Line line;
  return read_line(unit, line) == io::ok && integer_field(line.columns(1, 5), size.subgroups) &&
         integer_field(line.columns(6, 10), size.main_groups) && size.subgroups >= 0 &&
         size.main_groups >= 0 && size.main_groups <= kMaxMainGroups;
}

// The subgroups stand in the order of their numbers; a number that is no group has a line of zeros.
bool read_subgroups(I4 unit, I4 count, I4 main_groups) {
  for (I4 k = 1; k <= count; ++k) {
    Line line;
    I4 number = 0;
    const bool sound = read_line(unit, line) == io::ok && integer_field(line.columns(1, 4), number) &&
                       integer_field(line.columns(17, 20), unifac.IMNGRP(k)) &&
                       real_field(line.columns(21, 30), 4, unifac.RSBGRP(k)) &&
                       real_field(line.columns(31, 40), 3, unifac.QSBGRP(k)) &&
                       real_field(line.columns(41, 50), 2, unifac.MWSGRP(k));
    if (!sound || unifac.IMNGRP(k) < 0 || unifac.IMNGRP(k) > main_groups) return false;
    unifac.CSBGRP(k) = line.columns(7, 14);
  }
  return true;
}

// One set of one main group, eight fields a line.
bool read_set(I4 unit, I4 main_group, I4 count, int set) {
  Line line;
  for (I4 j = 1; j <= count; ++j) {
    const int place = (j - 1) % kPerLine;
    if (place == 0 && read_line(unit, line) != io::ok) return false;
    const std::string_view field = line.columns(kRealWidth * place + 1, kRealWidth * (place + 1));
    // A line that ends too early would otherwise give zeros.
    if (trimmed(field).empty() || !real_field(field, 4, unifac.AMNINT(main_group, j, set))) return false;
  }
  return true;
}

bool read_interactions(I4 unit, I4 count) {
  for (I4 i = 1; i <= count; ++i)
    for (int set = 1; set <= kSets; ++set)
      if (!read_set(unit, i, count, set)) return false;
  return true;
}

void clear_table() {
  unifac.IMNGRP.fill(0);
  unifac.RSBGRP.fill(0.0F);
  unifac.QSBGRP.fill(0.0F);
  unifac.MWSGRP.fill(0.0F);
  unifac.CSBGRP.fill(text<8>(""));
  unifac.AMNINT.fill(0.0F);
}

void fail(I4& NFAIL) {
  NFAIL = status::not_available;
  SERPU0(severity::error, "SDBUF0", kLoadingFailed);
}

void clear_groups() {
  unifac.all_grouped = true;
  unifac.NSUB = 0;
  unifac.NMAIN = 0;
  unifac.SUBVEC.fill(0);
  unifac.MANVEC.fill(0);
  unifac.SUBGRP.fill(0.0F);
  unifac.RTOT.fill(0.0);
  unifac.QTOT.fill(0.0);
}

// Position of a subgroup in the list of those present; it is put behind the others when it is new, and its main
// group likewise.
I4 subgroup_position(I4 subgroup) {
  for (I4 k = 1; k <= unifac.NSUB; ++k)
    if (unifac.SUBVEC(k) == subgroup) return k;
  unifac.SUBVEC(++unifac.NSUB) = subgroup;
  const I4 main_group = unifac.IMNGRP(subgroup);
  const bool listed = SUFAO2(main_group) > 0 || unifac.NMAIN == kMaxMainGroups;
  if (!listed) unifac.MANVEC(++unifac.NMAIN) = main_group;
  return unifac.NSUB;
}

void report_no_groups(I4 i) {
  unifac.all_grouped = false;
  MessageText message{};
  message.add("No UNIFAC groups for component ").add(comp.ICS(i).view());
  SERPU0(severity::warning, "SUFAO3", message.view());
}

}  // namespace

// SDBUF0: load the group table of a UNIFAC model.
//
// In       CODE    I4  model::unifac, lyngby_unifac, unifac_dm, liquid_unifac, linear_unifac or
//                      free_volume_unifac
// Shared   writes the table in unifac: subgroups by their number, interaction by the numbers of the main groups
// Status   ok; model_error for any other code; not_available without a table that can be read, which is empty
//          then; input for a table of too many subgroups
// Reports  "Requested UNIFAC model not available", "Loading UNIFAC data failed", severity 3
// Oddity   a table of too many subgroups ends the reading without a message, and its file stays open
void SDBUF0(const I4& CODE, I4& NFAIL) {
  NFAIL = status::ok;
  const int file = table_file(CODE);
  if (file == 0) {
    NFAIL = status::model_error;
    SERPU0(severity::error, "SDBUF0", "Requested UNIFAC model not available");
    return;
  }
  if (!data_file_exists(file)) return fail(NFAIL);
  I4 unit = setup.units.unifac;
  SFLAO1(unit, NFAIL);
  if (NFAIL == status::ok) SFLOP0(unit, setup.files(file).view(), "SEQUENTIAL", "FORMATTED", 0, NFAIL);
  if (NFAIL != status::ok) return fail(NFAIL);

  clear_table();
  TableSize size{};
  const bool sized = read_size(unit, size);
  if (sized && size.subgroups > kMaxSubgroups) {
    NFAIL = status::input;
    return;
  }
  const bool sound = sized && read_subgroups(unit, size.subgroups, size.main_groups) &&
                     read_interactions(unit, size.main_groups);
  SFLCL0(unit, "KEEP");
  if (sound) return;
  clear_table();
  fail(NFAIL);
}

// SUFAO2: position of a main group in the list of those present, or -1.
I4 SUFAO2(const I4& MAIN) {
  for (I4 k = 1; k <= unifac.NMAIN; ++k)
    if (unifac.MANVEC(k) == MAIN) return k;
  return -1;
}

// SUFAO3: find the groups of the component list in the group table.
//
// In       N     I4  components
//          CODE  I4  UNIFAC model
// Shared   reads comp.NGRP, GRPTYP and GRPNUM and the table in unifac; writes its lists of the subgroups and main
//          groups present, the counts of each component and the totals of volume and surface, and all_grouped
// Status   ok; model_error for a code without a table
// Reports  "No UNIFAC groups for component " and its code, severity 1
// Oddity   a subgroup that the table does not have brings main group 0 into the list; a number that no subgroup
//          can have, as an override may leave it, counts as no group
void SUFAO3(const I4& N, const I4& CODE, I4& NFAIL) {
  clear_groups();
  NFAIL = table_file(CODE) != 0 ? status::ok : status::model_error;
  if (NFAIL != status::ok) return;
  for (I4 i = 1; i <= N; ++i) {
    if (comp.NGRP(i) == 0) report_no_groups(i);
    for (I4 k = 1; k <= comp.NGRP(i); ++k) {
      const I4 subgroup = comp.GRPTYP(i, k);
      if (subgroup < 1 || subgroup > kMaxSubgroups) {
        unifac.all_grouped = false;
        continue;
      }
      const R8 number = comp.GRPNUM(i, k);
      const I4 position = subgroup_position(subgroup);
      unifac.SUBGRP(i, position) += static_cast<R4>(number);
      unifac.RTOT(i) += number * widen(unifac.RSBGRP(subgroup));
      unifac.QTOT(i) += number * widen(unifac.QSBGRP(subgroup));
    }
  }
}

}  // namespace talix
