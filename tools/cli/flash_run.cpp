#include <cmath>
#include <cstdint>
#include <string>

#include "cli/failure.h"
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

constexpr std::int32_t kNoMessageUnit = -1;

// Columns of a phase in the two tables.
struct PhaseColumns {
  std::size_t flow;
  std::size_t composition;
  std::size_t properties;
};
constexpr PhaseColumns kVapour{3, 6, 1};
constexpr PhaseColumns kLiquid{4, 7, 2};
constexpr PhaseColumns kSecondLiquid{5, 8, 3};

struct Tables {
  std::array<float, kFlowRows * kFlowColumns> SCAL{};
  std::array<float, kPropertyRows * kPhaseColumns> TPROPS{};

  float& flow(std::size_t row, std::size_t column) { return SCAL[(row - 1) + (column - 1) * kFlowRows]; }
  float property(std::size_t row, std::size_t column) {
    return TPROPS[(row - 1) + (column - 1) * kPropertyRows];
  }
};

// The library has no viscosity or conductivity where it gives 0, and surface tensions for liquids alone.
bool has_value(std::size_t row, float value, const PhaseColumns& columns) {
  constexpr std::size_t kViscosity = 13;
  constexpr std::size_t kConductivity = 14;
  constexpr std::size_t kSurfaceTension = 15;
  if (row == kViscosity || row == kConductivity) return std::isfinite(value) && value != 0.0F;
  if (row == kSurfaceTension && columns.properties == kVapour.properties) return false;
  return std::isfinite(value);
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
    if (has_value(row, value, columns)) result.properties[row - 1] = value;
  }
  return result;
}

// Molar masses of the components as the library has them [g/mol]; 0 where it has none.
std::vector<double> molar_masses(const FlashRequest& request) {
  std::vector<double> masses;
  for (const int number : request.numbers) {
    const std::int32_t ID = number;
    float CRITT = 0, CRITP = 0, MOLWT = 0, APBPT = 0, FRZPT = 0, HEATC = 0;
    std::string PNAME(TALIX_NAME_LENGTH, ' ');
    std::int32_t STATUS = 0;
    GETTALIXPROPSID(&ID, &CRITT, &CRITP, &MOLWT, &APBPT, &FRZPT, &HEATC, PNAME.data(), TALIX_NAME_LENGTH,
                    &STATUS);
    masses.push_back(STATUS == 0 ? static_cast<double>(MOLWT) : 0);
  }
  return masses;
}

// The vapour fraction that the call begins with. For the isothermal flashes it is a start value: 0.5 would come
// back as the answer where the equations have no slope.
float first_fraction(const FlashRequest& request) {
  return row_of(request.type).takes_vapour_fraction ? static_cast<float>(request.vapour_fraction) : 1.0F;
}

// Bubble and dew points give the phase that is about to form, and the feed has both by definition.
bool both_phases(FlashType type) {
  return type == FlashType::bubble_t || type == FlashType::bubble_p || type == FlashType::dew_t ||
         type == FlashType::dew_p || type == FlashType::feed;
}

// A phase that was given no composition is not there.
bool has_composition(const PhaseResult& phase) {
  for (const float fraction : phase.composition)
    if (fraction > 0.0F) return true;
  return false;
}

}  // namespace

double feed_moles(const FlashRequest& request, const std::vector<double>& masses) {
  double moles = 0;
  for (std::size_t i = 0; i < request.feed.size(); ++i) {
    if (request.basis == Basis::mole)
      moles += request.feed[i];
    else if (request.feed[i] > 0)
      moles += request.feed[i] / masses[i];
  }
  return moles;
}

double scaled_enthalpy(const FlashRequest& request, const std::vector<double>& masses) {
  double amount = 0;  // of the feed, in the unit of amount that the target is per
  for (std::size_t i = 0; i < request.feed.size(); ++i) amount += request.feed[i];
  double scaled = 0;
  if (request.enthalpy.basis == EnthalpyBasis::mole) {
    scaled = request.enthalpy.value * feed_moles(request, masses) / 1000;
  } else {
    if (request.basis == Basis::mole) {
      amount = 0;
      for (std::size_t i = 0; i < request.feed.size(); ++i) amount += request.feed[i] * masses[i];
    }
    // kg times J/kg is J; a kilomole times J/mol is 1000 J.
    scaled = request.enthalpy.value * amount / 1e6;
  }
  if (request.type == FlashType::ph && static_cast<float>(scaled) == 0.0F) {
    throw UsageError(
        "--H: a target of 0 is not taken by --type ph, which judges what is missing relative to the target; "
        "use --type ph-nested, or a target next to 0 such as 0.1 J/mol");
  }
  return scaled;
}

void open_library(const std::filesystem::path& install) {
  std::string path = install.string();
  std::int32_t length = static_cast<std::int32_t>(path.size());
  SETTALIXINSTALL(path.data(), length, &length);
  std::int32_t usage = 0;
  std::int32_t hook = 0;
  std::int32_t unit = kNoMessageUnit;
  SETTALIXUSAGE(&usage, &hook, &unit);
}

FlashResult run_flash(const FlashRequest& request, const std::filesystem::path& install) {
  open_library(install);
  return run_flash(request);
}

FlashResult run_flash(const FlashRequest& request) {
  const FlashTypeRow& row = row_of(request.type);
  const bool by_mass = request.basis == Basis::mass || row.takes_enthalpy;
  const std::vector<double> masses = by_mass ? molar_masses(request) : std::vector<double>();
  Tables tables;
  const std::size_t components = request.numbers.size();
  for (std::size_t i = 1; i <= components; ++i) {
    tables.flow(i, 1) = static_cast<float>(request.numbers[i - 1]);
    tables.flow(i, 2) = static_cast<float>(request.feed[i - 1]);
  }
  if (row.takes_enthalpy)
    tables.flow(components + 2, 2) = static_cast<float>(scaled_enthalpy(request, masses));
  std::int32_t NC = static_cast<std::int32_t>(components);
  float T = static_cast<float>(request.T_C);
  float P = static_cast<float>(request.P_bar);
  float FRV = first_fraction(request);
  char UNIT = request.basis == Basis::mass ? 'W' : 'M';
  std::int32_t IFLASH = row.code;
  std::string STR(kMessageLength, ' ');
  const std::int32_t level = request.verify;
  SETTALIXVERIFY(&level);
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, tables.SCAL.data(), tables.TPROPS.data(), STR.data(),
        static_cast<std::int32_t>(kMessageLength));

  FlashResult result;
  result.message = strip(STR);
  result.ok = result.message.empty() || result.message.front() == '.';
  if (!result.ok) return result;
  result.vapour_fraction = FRV;
  if (row.finds_temperature) result.T_C = T;
  if (row.finds_pressure) result.P_bar = P;
  if (FRV > 0.0F || both_phases(request.type)) result.vapour = phase(tables, components, kVapour);
  if (FRV < 1.0F || both_phases(request.type)) result.liquid = phase(tables, components, kLiquid);
  if (result.vapour && !has_composition(*result.vapour)) result.vapour.reset();
  if (result.liquid && !has_composition(*result.liquid)) result.liquid.reset();
  result.second_liquid = phase(tables, components, kSecondLiquid);
  if (!has_composition(*result.second_liquid)) result.second_liquid.reset();
  // The feed as two phases has no enthalpy of its own.
  const double moles = feed_moles(request, masses);
  if (request.type != FlashType::feed && moles > 0)
    result.enthalpy_J_mol = static_cast<double>(tables.flow(components + 2, 2)) * 1000 / moles;
  return result;
}

}  // namespace talix::cli
