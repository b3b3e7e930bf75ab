#include "cli/flash_type.h"

#include <string>

#include "cli/failure.h"

namespace talix::cli {

namespace {

constexpr bool in_order() {
  for (std::size_t i = 0; i < kFlashTypes.size(); ++i)
    if (kFlashTypes[i].type != static_cast<FlashType>(i)) return false;
  return true;
}
static_assert(in_order());

void require(bool given, const FlashTypeRow& row, const std::string& option) {
  if (!given) throw UsageError("--type " + std::string(row.name) + " needs " + option);
}

void refuse(bool given, const FlashTypeRow& row, const std::string& option, const std::string& where) {
  if (given)
    throw UsageError(option + " has no place with --type " + std::string(row.name) + "; it belongs to " +
                     where);
}

}  // namespace

FlashType parse_flash_type(std::string_view name) {
  std::string names;
  for (const FlashTypeRow& row : kFlashTypes) {
    if (name == row.name) return row.type;
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  throw UsageError("unknown type '" + std::string(name) + "'; the types are " + names);
}

void check_options(FlashType type, const GivenOptions& given) {
  const FlashTypeRow& row = row_of(type);
  if (!row.finds_temperature) require(given.temperature, row, "the temperature, -T");
  if (!row.finds_pressure) require(given.pressure, row, "the pressure, -P");
  if (row.takes_vapour_fraction) {
    require(given.vapour_fraction, row, "the vapour fraction, --vfrac");
  } else {
    refuse(given.vapour_fraction, row, "--vfrac", "--type vfrac-t and vfrac-p");
  }
  if (row.takes_enthalpy) {
    require(given.enthalpy, row, "the target enthalpy, --H");
  } else {
    refuse(given.enthalpy, row, "--H", "--type ph and ph-nested");
  }
}

}  // namespace talix::cli
