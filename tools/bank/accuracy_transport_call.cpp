#include "bank/accuracy_transport_call.h"

#include <unistd.h>

#include <string>
#include <system_error>

#include "api/small_calls.h"
#include "bank/tables.h"
#include "engine/codes.h"
#include "engine/reset.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "transport/dense_fluid_group.h"
#include "transport/stc_conductivity.h"
#include "transport/svi_vapour.h"

namespace talix::bank {

namespace {

constexpr double kPascalPerBar = 1e5;

// The component 1 alone.
DenseFluidGroup pure_group() {
  DenseFluidGroup group;
  clear_group(group);
  add_to_group(group, 1, 1.0);
  return group;
}

}  // namespace

EntryBank::EntryBank(const Bank& bank)
    : folder_(std::filesystem::temp_directory_path() / ("talix-transport-" + std::to_string(::getpid()))) {
  std::filesystem::create_directories(folder_ / "Zandor");
  write_bank(folder_ / "Zandor", bank);
  reset_engine();
  reset_flash_record();
  ERRINIT();
  const I4 usage = 0, hook = 0, unit = -1;
  SETTALIXUSAGE(&usage, &hook, &unit);
  const std::string path = folder_.string();
  const I4 length = static_cast<I4>(path.size());
  SETTALIXINSTALL(path.c_str(), length, &length);
}

EntryBank::~EntryBank() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::optional<PropertyTable> EntryBank::flash(EntryState& state, I4 code) const {
  ScalTable SCAL{};
  PropertyTable TPROPS{};
  I4 NC = static_cast<I4>(state.numbers.size());
  for (int i = 1; i <= NC; ++i) {
    SCAL(i, 1) = static_cast<R4>(state.numbers.at(static_cast<std::size_t>(i - 1)));
    SCAL(i, 2) = static_cast<R4>(state.feed.at(static_cast<std::size_t>(i - 1)));
  }
  R4 T = static_cast<R4>(state.T - 273.15), P = static_cast<R4>(state.P), FRV = 1.0F;
  char UNIT = 'M';
  std::string STR(160, ' ');
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &code, &SCAL, &TPROPS, STR.data(), static_cast<I4>(STR.size()));
  if (STR.find_first_not_of(' ') != std::string::npos) return std::nullopt;
  state.P = static_cast<double>(P);
  return TPROPS;
}

double viscosity_at_density(bool liquid, double T, double P, double RHO) {
  DenseFluidGroup group = pure_group();
  return group_viscosity(group, liquid, T, P * kPascalPerBar, RHO);
}

double conductivity_at_density(bool liquid, double T, double P, double RHO) {
  DenseFluidGroup group = pure_group();
  return group_conductivity(group, liquid, T, P * kPascalPerBar, RHO);
}

double liquid_conductivity_at(double T, double P) {
  CompVec x{};
  x(1) = 1.0;
  Vec<I4, kMaxComponents> IC{};
  IC(1) = 1;
  double value = 0.0, derivative = 0.0;
  I4 STATUS = 0;
  STCLM1(T, P * kPascalPerBar, x, 1, IC, transport_request::value, method::mixture, value, derivative,
         STATUS);
  if (STATUS != status::ok) throw BankError("no liquid conductivity at " + std::to_string(T) + " K");
  return value;
}

}  // namespace talix::bank
