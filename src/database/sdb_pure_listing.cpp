#include "database/sdb_pure_listing.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "database/message_text.h"
#include "database/unit_table.h"

namespace talix {

constinit bool list_pure_records = false;

namespace {

constexpr I4 kListingUnit = 77;
constexpr int kUnflaggedCells = 50;  // cells whose line has no flag

// VALUE in an exponent field of width 14 with 7 decimals: a mantissa below 1 and a two-digit exponent.
void add_exponent_field(MessageText& line, R4 value) {
  if (!std::isfinite(value)) {
    line.add(std::isnan(value) ? "           NaN" : (value > 0.0F ? "      Infinity" : "     -Infinity"));
    return;
  }
  char scientific[32];
  std::snprintf(scientific, sizeof scientific, "%.6e", static_cast<double>(std::fabs(value)));
  const std::string_view digits{scientific};
  const int exponent = value == 0.0F ? 0 : std::atoi(scientific + digits.find('e') + 1) + 1;
  line.add(std::signbit(value) ? "-0." : " 0.").add(digits.substr(0, 1)).add(digits.substr(2, 6));
  line.add(exponent < 0 ? "E-" : "E+").add(std::abs(exponent) < 10 ? "0" : "");
  line.add(std::abs(exponent), 0);
}

}  // namespace

void list_pure_record(const PureCells& cells, const StoredCells& CHK) {
  if (open_unit(kListingUnit, {"ftdb.chk", Opening::unknown, false, false, 0}) != io::ok) return;
  for (int cell = 1; cell <= kPureCells; ++cell) {
    MessageText line{};
    line.add(cell, 4).add(";").add(cells.text(cell, cell)).add(";").add(cells.integer(cell), 14).add(";");
    add_exponent_field(line, cells.real(cell));
    line.add(";");
    if (cell > kUnflaggedCells) line.add(CHK(cell) ? "T;" : "F;");
    write_line(kListingUnit, line.view());
  }
  close_unit(kListingUnit, false);
}

}  // namespace talix
