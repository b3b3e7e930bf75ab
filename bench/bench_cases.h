// Mixtures and calls that the benchmarks and the instruction counter share.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/array.h"
#include "engine/shmix_driver.h"
#include "transport/dense_fluid_group.h"

namespace talix::bench {

// Sizes at which every figure is reported.
inline constexpr std::array<int, 5> kSizes{2, 5, 10, 20, 50};

// A natural gas with condensate of COUNT components (2 to 50) at a state where it splits in two phases.
struct Mixture {
  std::vector<float> numbers;  // catalogue numbers
  std::vector<float> feed;     // [mol]
  float temperature_C;
  float pressure_bar;
};

Mixture mixture(int count);

// Levels of SETTALIXVERIFY: the flashes alone, and with the check behind them.
inline constexpr std::array<int, 2> kLevels{0, 1};

// States of the isothermal flashes of the mixture.
enum class Region { two_phases, gas, dense_gas, liquid };
inline constexpr std::array<Region, 4> kRegions{Region::two_phases, Region::gas, Region::dense_gas,
                                                Region::liquid};
const char* name_of(Region region);

// Every code of a flash.
inline constexpr std::array<int, 11> kCodes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 33};
inline constexpr std::array<int, 4> kCodeSizes{2, 5, 10, 20};

// A flash through the public call.
class FlashCase {
 public:
  // CODE 1 to 10 or 33. Codes 6 and 7 ask for the vapour fraction and codes 8 and 9 for the enthalpy of the isothermal
  // flash, bubble points for a lower pressure or temperature: the answers are states that exist.
  explicit FlashCase(int count, int code = 5, int level = 1);
  // An isothermal flash (code 5 or 10) in a region.
  FlashCase(int count, int code, int level, Region region);
  // One call; false when it fails.
  bool run();
  // Forgets the loaded list, so that the next call loads it again.
  void forget_list();
  [[nodiscard]] std::string message() const;
  [[nodiscard]] float vapour_fraction() const { return fraction_; }
  // Calls of the mixture driver in the last run.
  [[nodiscard]] int engine_calls() const { return engine_calls_; }

 private:
  Mixture mixture_;
  std::int32_t code_;
  std::int32_t level_;
  float given_fraction_ = 1.0F;
  float enthalpy_ = 0.0F;
  int engine_calls_ = 0;
  std::array<float, 52 * 8> scal_{};
  std::array<float, 15 * 3> tprops_{};
  std::array<char, 120> text_{};
  float fraction_ = 0.0F;
};

// Calls of the mixture driver on the components that the last FlashCase loaded.
class DriverCase {
 public:
  explicit DriverCase(int count);
  // ln fugacity coefficients of the liquid-type root; the sum of them keeps the call alive.
  double fugacities();
  // Enthalpy, entropy, heat capacities and all reserved results.
  double thermal();

 private:
  struct Results;
  double call(bool with_thermal);
  int count_;
  CompVec composition_{};
  double temperature_;
  double pressure_;
};

// Sizes at which the figures of the dense-fluid transport are reported.
inline constexpr std::array<int, 3> kTransportSizes{2, 10, 20};

// Calls of the dense-fluid transport for the mixture as a gas at 5 mol/L and 400 K, as a vapour makes them. Nothing
// of the call before is remembered but where a call says so.
class TransportCase {
 public:
  explicit TransportCase(int count);
  // DCST and TRPVIS.
  double viscosity();
  // DCST and THERMC.
  double conductivity();
  // Both of one phase: the second DCST is answered from the first.
  double both();

 private:
  DenseFluidGroup group_;
};

}  // namespace talix::bench
