// The kinds of flash, as the command line names them.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace talix::cli {

enum class FlashType {
  tp,
  bubble_t,
  bubble_p,
  dew_t,
  dew_p,
  vfrac_t,
  vfrac_p,
  ph,
  ph_nested,
  fast,
  feed,
};

struct FlashTypeRow {
  FlashType type;
  const char* name;            // after --type
  std::int32_t code;           // of the library
  bool finds_temperature;      // T is the answer; what is given is the start value
  bool finds_pressure;         // the same for P
  bool takes_vapour_fraction;  // --vfrac is wanted
  bool takes_enthalpy;         // --H is wanted
  const char* title;           // of the report
};

inline constexpr auto kFlashTypes = std::to_array<FlashTypeRow>({
    {FlashType::tp, "tp", 5, false, false, false, false, "Isothermal flash"},
    {FlashType::bubble_t, "bubble-t", 2, true, false, false, false, "Bubble temperature"},
    {FlashType::bubble_p, "bubble-p", 1, false, true, false, false, "Bubble pressure"},
    {FlashType::dew_t, "dew-t", 4, true, false, false, false, "Dew temperature"},
    {FlashType::dew_p, "dew-p", 3, false, true, false, false, "Dew pressure"},
    {FlashType::vfrac_t, "vfrac-t", 7, true, false, true, false, "Temperature at a vapour fraction"},
    {FlashType::vfrac_p, "vfrac-p", 6, false, true, true, false, "Pressure at a vapour fraction"},
    {FlashType::ph, "ph", 8, true, false, false, true, "Adiabatic flash"},
    {FlashType::ph_nested, "ph-nested", 9, true, false, false, true, "Adiabatic flash by nested searches"},
    {FlashType::fast, "fast", 10, false, false, false, false, "Fast isothermal flash"},
    {FlashType::feed, "feed", 33, false, false, false, false, "Properties of the feed in each phase"},
});

// Rows stand in the order of the names.
constexpr const FlashTypeRow& row_of(FlashType type) { return kFlashTypes[static_cast<std::size_t>(type)]; }

// The type of that name; throws UsageError with all names.
FlashType parse_flash_type(std::string_view name);

// What was given besides the mixture.
struct GivenOptions {
  bool temperature = false;
  bool pressure = false;
  bool vapour_fraction = false;
  bool enthalpy = false;
};

// Throws UsageError where an option is missing or has no place with that type.
void check_options(FlashType type, const GivenOptions& given);

}  // namespace talix::cli
