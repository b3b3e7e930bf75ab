// Mixtures and calls that the benchmarks and the instruction counter share.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "base/array.h"
#include "engine/shmix_driver.h"

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

// A flash of code 5 through the public call.
class FlashCase {
 public:
  explicit FlashCase(int count);
  // One call; false when it ends with a message.
  bool run();
  // Forgets the loaded list, so that the next call loads it again.
  void forget_list();
  [[nodiscard]] std::string message() const;
  [[nodiscard]] float vapour_fraction() const { return fraction_; }

 private:
  Mixture mixture_;
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

}  // namespace talix::bench
