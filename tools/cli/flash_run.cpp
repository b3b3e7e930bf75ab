#include <cmath>
#include <cstdint>
#include <string>

#include "cli/flash_case.h"
#include "cli/words.h"
#include "talix/talix.h"

namespace talix::cli {

namespace {

// The tables of the call: row index fastest, rows and columns counted from 1.
constexpr std::size_t kFlowRows = TALIX_SCAL_ROWS;
constexpr std::size_t kFlowColumns = TALIX_SCAL_COLUMNS;
constexpr std::size_t kPhaseColumns = TALIX_PROPERTY_COLUMNS;
constexpr std::size_t kPropertyRows = TALIX_PROPERTY_ROWS;
static_assert(kPropertyRows == static_cast<std::size_t>(kProperties));
constexpr std::size_t kMessageLength = 255;

constexpr std::int32_t kIsothermalFlash = 5;
constexpr std::int32_t kNoMessageUnit = -1;

// Columns of a phase in the two tables.
struct PhaseColumns {
  std::size_t flow;
  std::size_t composition;
  std::size_t properties;
};
constexpr PhaseColumns kVapour{3, 6, 1};
constexpr PhaseColumns kLiquid{4, 7, 2};

struct Tables {
  std::array<float, kFlowRows * kFlowColumns> SCAL{};
  std::array<float, kPropertyRows * kPhaseColumns> TPROPS{};

  float& flow(std::size_t row, std::size_t column) { return SCAL[(row - 1) + (column - 1) * kFlowRows]; }
  float property(std::size_t row, std::size_t column) {
    return TPROPS[(row - 1) + (column - 1) * kPropertyRows];
  }
};

// Rows 13 to 15 (viscosity, conductivity, surface tension) are 0 where the library did not calculate them.
bool calculated(std::size_t row, float value) {
  constexpr std::size_t kFirstTransportRow = 13;
  return std::isfinite(value) && (row < kFirstTransportRow || value != 0.0F);
}

PhaseResult phase(Tables& tables, std::size_t components, const PhaseColumns& columns) {
  PhaseResult result;
  result.flow = tables.flow(components + 1, columns.flow);
  result.fraction = tables.flow(components + 1, columns.composition);
  for (std::size_t i = 1; i <= components; ++i) {
    result.composition.push_back(tables.flow(i, columns.composition));
  }
  for (std::size_t row = 1; row <= kPropertyRows; ++row) {
    const float value = tables.property(row, columns.properties);
    if (calculated(row, value)) result.properties[row - 1] = value;
  }
  return result;
}

void set_up(const std::filesystem::path& install) {
  std::string path = install.string();
  std::int32_t length = static_cast<std::int32_t>(path.size());
  SETTALIXINSTALL(path.data(), length, &length);
  std::int32_t usage = 0;
  std::int32_t hook = 0;
  std::int32_t unit = kNoMessageUnit;
  SETTALIXUSAGE(&usage, &hook, &unit);
}

}  // namespace

FlashResult run_flash(const FlashRequest& request, const std::filesystem::path& install) {
  set_up(install);

  Tables tables;
  const std::size_t components = request.numbers.size();
  for (std::size_t i = 1; i <= components; ++i) {
    tables.flow(i, 1) = static_cast<float>(request.numbers[i - 1]);
    tables.flow(i, 2) = static_cast<float>(request.feed[i - 1]);
  }
  std::int32_t NC = static_cast<std::int32_t>(components);
  float T = static_cast<float>(request.T_C);
  float P = static_cast<float>(request.P_bar);
  float FRV = 1.0F;  // the start value; 0.5 would come back as the answer where the equations have no slope
  char UNIT = request.basis == Basis::mass ? 'W' : 'M';
  std::int32_t IFLASH = kIsothermalFlash;
  std::string STR(kMessageLength, ' ');
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, tables.SCAL.data(), tables.TPROPS.data(), STR.data(),
        static_cast<std::int32_t>(kMessageLength));

  FlashResult result;
  result.message = strip(STR);
  result.ok = result.message.empty() || result.message.front() == '.';
  if (!result.ok) return result;
  result.vapour_fraction = FRV;
  if (FRV > 0.0F) result.vapour = phase(tables, components, kVapour);
  if (FRV < 1.0F) result.liquid = phase(tables, components, kLiquid);
  return result;
}

}  // namespace talix::cli
