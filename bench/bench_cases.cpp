#include "bench_cases.h"

#include <cstdlib>

#include "api/small_calls.h"
#include "api/talix_call.h"
#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "transport/dense_fluid_record.h"

namespace talix::bench {

namespace {

// Components in the order in which a mixture takes them: the light and the heavy end first, so that even the
// smallest mixture splits. Flows in mol.
struct Entry {
  int number;
  float feed;
};
constexpr std::array<Entry, 50> kEntries{{
    {20, 70.0F}, {28, 8.0F},  {22, 6.0F},  {21, 8.0F},  {116, 4.0F}, {23, 3.0F},  {25, 2.0F},  {4, 2.5F},
    {15, 1.5F},  {33, 2.0F},  {24, 1.5F},  {26, 1.0F},  {42, 1.5F},  {277, 0.5F}, {278, 0.5F}, {11, 0.5F},
    {102, 1.0F}, {232, 0.5F}, {27, 0.1F},  {125, 0.5F}, {17, 0.1F},  {58, 0.1F},  {81, 0.1F},  {82, 0.1F},
    {63, 0.1F},  {200, 0.1F}, {201, 0.1F}, {202, 0.1F}, {203, 0.1F}, {204, 0.1F}, {206, 0.1F}, {228, 0.1F},
    {229, 0.1F}, {238, 0.1F}, {279, 0.1F}, {280, 0.1F}, {281, 0.1F}, {283, 0.1F}, {285, 0.1F}, {29, 0.1F},
    {30, 0.1F},  {31, 0.1F},  {32, 0.1F},  {34, 0.1F},  {123, 0.1F}, {127, 0.1F}, {128, 0.1F}, {129, 0.1F},
    {130, 0.1F}, {43, 0.1F},
}};

// Results of a driver call, outside the timed path.
struct DriverResults {
  Vec<I4, kMaxComponents> IC{};
  Flags3 none{};
  Flags3 with_temperature{L4{-1}, L4{0}, L4{0}};
  ReservedCodes IRESRV{};
  I4 NRESRV = 0;
  I4 IPHRTN = 0;
  L4 AMBIG{};
  R8 ZFUG = 0.0, ZVOL = 0.0, DZDT = 0.0, DZDP = 0.0;
  CompVec DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  CompMat DFDN{};
  R8 H = 0.0, DHDT = 0.0, DHDP = 0.0, S = 0.0, DSDT = 0.0, DSDP = 0.0;
  ReservedValues RESRV{};
  I4 NFAIL = 0;
};

DriverResults results;

void load_install_directory() {
  const char* given = std::getenv("TALIX_HOME");
  const std::string path = given != nullptr ? given : TALIX_BENCH_INSTALL;
  const auto length = static_cast<I4>(path.size());
  SETTALIXINSTALL(path.data(), length, &length);
  I4 usage = 0;
  I4 hook = 0;
  I4 unit = -1;
  SETTALIXUSAGE(&usage, &hook, &unit);
}

}  // namespace

Mixture mixture(int count) {
  Mixture m{{}, {}, 20.0F, 30.0F};
  for (int i = 0; i < count; ++i) {
    m.numbers.push_back(static_cast<float>(kEntries[static_cast<std::size_t>(i)].number));
    m.feed.push_back(kEntries[static_cast<std::size_t>(i)].feed);
  }
  return m;
}

const char* name_of(Region region) {
  switch (region) {
    case Region::two_phases:
      return "two phases";
    case Region::gas:
      return "gas";
    case Region::dense_gas:
      return "dense gas";
    case Region::liquid:
      return "liquid";
  }
  return "";
}

FlashCase::FlashCase(int count, int code, int level, Region region) : FlashCase(count, code, level) {
  // The mixture has its decane whatever its size: hot enough for all of it, and cold enough for its methane.
  if (region == Region::gas) {
    mixture_.temperature_C = 300.0F;
    mixture_.pressure_bar = 5.0F;
  } else if (region == Region::dense_gas) {
    mixture_.temperature_C = 300.0F;
    mixture_.pressure_bar = 300.0F;
  } else if (region == Region::liquid) {
    mixture_.temperature_C = -120.0F;
    mixture_.pressure_bar = 100.0F;
  }
}

FlashCase::FlashCase(int count, int code, int level) : mixture_(mixture(count)), code_(code), level_(level) {
  load_install_directory();
  if (code == flash_type::bubble_pressure || code == flash_type::bubble_temperature) {
    mixture_.temperature_C = -120.0F;
    mixture_.pressure_bar = 10.0F;
  }
  if (code < flash_type::pressure_at_fraction || code > flash_type::adiabatic_nested) return;
  FlashCase isothermal(count, flash_type::isothermal, level);
  isothermal.run();
  given_fraction_ = isothermal.fraction_;
  enthalpy_ = isothermal.scal_[52 + mixture_.numbers.size() + 1];
  // Start values next to the answer, not on it.
  if (code == flash_type::pressure_at_fraction)
    mixture_.pressure_bar *= 0.8F;
  else
    mixture_.temperature_C -= 10.0F;
}

bool FlashCase::run() {
  auto nc = static_cast<I4>(mixture_.numbers.size());
  for (std::size_t i = 0; i < mixture_.numbers.size(); ++i) {
    scal_[i] = mixture_.numbers[i];
    scal_[52 + i] = mixture_.feed[i];
  }
  float T = mixture_.temperature_C;
  float P = mixture_.pressure_bar;
  fraction_ = given_fraction_;
  scal_[52 + mixture_.numbers.size() + 1] = enthalpy_;
  SETTALIXVERIFY(&level_);
  const I4 before = fl.NENGINE;
  char unit = 'M';
  I4 code_of_flash = code_;
  TALIX(&nc, &T, &P, &fraction_, &unit, 1, &code_of_flash, reinterpret_cast<ScalTable*>(scal_.data()),
        reinterpret_cast<PropertyTable*>(tprops_.data()), text_.data(), static_cast<I4>(text_.size()));
  engine_calls_ = fl.NENGINE - before;
  return text_[0] == '.' || (text_[0] == ' ' && text_[1] == ' ');
}

void FlashCase::forget_list() { load_install_directory(); }

std::string FlashCase::message() const { return {text_.data(), text_.size()}; }

DriverCase::DriverCase(int count) : count_(count) {
  FlashCase flash(count);
  flash.run();
  const Mixture m = mixture(count);
  double total = 0.0;
  for (float f : m.feed) total += static_cast<double>(f);
  for (int i = 1; i <= count; ++i) {
    composition_(i) = static_cast<double>(m.feed[static_cast<std::size_t>(i - 1)]) / total;
    results.IC(i) = i;
  }
  temperature_ = static_cast<double>(m.temperature_C) + 273.15;
  pressure_ = static_cast<double>(m.pressure_bar) * 1.0e5;
  constexpr std::array<I4, 12> wanted{reserved::thermal_expansion,
                                      reserved::adiabatic_compressibility,
                                      reserved::isothermal_compressibility,
                                      reserved::phase_indicator,
                                      reserved::heat_capacity_p,
                                      reserved::heat_capacity_v,
                                      reserved::isentropic_thermal,
                                      reserved::thermal_pressure,
                                      reserved::hildebrand,
                                      reserved::joule_thomson,
                                      reserved::speed_of_sound,
                                      reserved::phase_indicator};
  for (std::size_t i = 0; i < wanted.size(); ++i) results.IRESRV(static_cast<int>(i) + 1) = wanted[i];
}

double DriverCase::call(bool with_thermal) {
  const I4 none = 0;
  const I4 slot = fl.MODELID;
  DriverResults& r = results;
  r.NRESRV = with_thermal ? 12 : 0;
  SHMIX0(phase::liquid, root_option::real_only, temperature_, pressure_, count_, r.IC, composition_, none,
         r.none, slot, r.none, with_thermal ? slot : none, thermal::total,
         with_thermal ? r.with_temperature : r.none, r.IRESRV, r.NRESRV, r.IPHRTN, r.AMBIG, r.ZFUG, r.ZVOL,
         r.DZDT, r.DZDP, r.DZDN, r.FUG, r.DFDT, r.DFDP, r.DFDN, r.H, r.DHDT, r.DHDP, r.DHDN, r.S, r.DSDT,
         r.DSDP, r.DSDN, r.RESRV, r.NFAIL);
  return r.FUG(1) + r.H;
}

double DriverCase::fugacities() { return call(false); }

double DriverCase::thermal() { return call(true); }

TransportCase::TransportCase(int count) {
  FlashCase flash(count);
  flash.run();
  const Mixture m = mixture(count);
  clear_group(group_);
  for (int i = 1; i <= count; ++i)
    add_to_group(group_, i, static_cast<double>(m.feed[static_cast<std::size_t>(i - 1)]));
}

namespace {

constexpr double kTransportTemperature = 400.0;  // [K]
constexpr double kTransportPressure = 1.5e7;     // [Pa]
constexpr double kTransportDensity = 5.0;        // [mol/L]

}  // namespace

double TransportCase::viscosity() {
  dense_call.filled = false;
  return group_viscosity(group_, false, kTransportTemperature, kTransportPressure, kTransportDensity);
}

double TransportCase::conductivity() {
  dense_call.filled = false;
  return group_conductivity(group_, false, kTransportTemperature, kTransportPressure, kTransportDensity);
}

double TransportCase::both() {
  return viscosity() +
         group_conductivity(group_, false, kTransportTemperature, kTransportPressure, kTransportDensity);
}

}  // namespace talix::bench
