// Bubble and dew points and given vapour fractions of hydrocarbon and gas mixtures: how many answers are right.
// The states are solved by an independent search in double precision first, from several start pressures; an
// answer of the library is right when both phases have the same fugacities, differ from each other and meet the
// fraction, whichever of several solutions it is. The compositions are those of the flows: the composition columns
// of an incipient phase are one pass older.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/stability_check.h"

namespace talix {
namespace {

constexpr int kMixtures = 1200;
constexpr std::uint32_t kSeed = 20240917;
// Largest error of ln fugacity of an answer that counts as right, and smallest largest |ln(y/x)| of two phases.
constexpr R8 kFugacityTolerance = 1.0E-3;
constexpr R8 kDifferent = 1.0E-2;

// Nitrogen, carbon dioxide and the alkanes from methane to n-decane.
constexpr std::array<int, 13> kNumbers = {15, 4, 20, 21, 22, 24, 23, 26, 25, 28, 33, 42, 116};

enum class Side { bubble, dew };

struct Mixture {
  std::vector<int> numbers;
  std::vector<R8> z;
};

// A saturated state: the other phase and the pressure [bar].
struct Saturation {
  bool found = false;
  R8 P = 0.0;
};

R8 sum_of(const std::vector<R8>& v) {
  R8 sum = 0.0;
  for (const R8 x : v) sum += x;
  return sum;
}

Mixture random_mixture(std::mt19937& engine) {
  const auto uniform = [&engine] { return static_cast<R8>(engine()) / 4294967296.0; };
  Mixture m;
  const std::size_t n = 2 + static_cast<std::size_t>(uniform() * 7.0);
  while (m.numbers.size() < n) {
    const int number = kNumbers[static_cast<std::size_t>(uniform() * static_cast<R8>(kNumbers.size()))];
    if (std::find(m.numbers.begin(), m.numbers.end(), number) != m.numbers.end()) continue;
    m.numbers.push_back(number);
    m.z.push_back(-std::log(1.0 - uniform()));
  }
  const R8 sum = sum_of(m.z);
  for (R8& z : m.z) z /= sum;
  return m;
}

test::FlashCase host(const Mixture& m, I4 code, R8 T, R8 P, R8 FRV) {
  test::FlashCase c;
  c.numbers = m.numbers;
  for (const R8 z : m.z) c.feed.push_back(static_cast<R4>(z));
  c.IFLASH = code;
  c.T = static_cast<R4>(T - 273.15);
  c.P = static_cast<R4>(P);
  c.FRV = static_cast<R4>(FRV);
  return c;
}

std::vector<R8> wilson(std::size_t n, R8 T) {
  std::vector<R8> p(n);
  for (std::size_t i = 0; i < n; ++i) {
    const int k = static_cast<int>(i) + 1;
    p[i] = static_cast<R8>(fl.PC(k)) *
           std::exp(5.37 * (1.0 + static_cast<R8>(fl.OMEG(k))) * (1.0 - static_cast<R8>(fl.TC(k)) / T));
  }
  return p;
}

// Successive substitution from one start pressure.
Saturation substitute(Side side, const std::vector<R8>& z, R8 T, const std::vector<R8>& p_ideal, R8 P) {
  const std::size_t n = z.size();
  std::vector<R8> w(n), phi_z, phi_w;
  for (std::size_t i = 0; i < n; ++i) w[i] = side == Side::bubble ? z[i] * p_ideal[i] : z[i] / p_ideal[i];
  for (int step = 0; step < 400; ++step) {
    const R8 total = sum_of(w);
    std::vector<R8> x = w;
    for (R8& v : x) v /= total;
    const I4 own = side == Side::bubble ? phase::liquid : phase::vapour;
    const I4 other = side == Side::bubble ? phase::vapour : phase::liquid;
    if (!test::log_phi(own, T, P, z, phi_z) || !test::log_phi(other, T, P, x, phi_w)) return {};
    R8 away = 0.0, change = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
      const R8 next = z[i] * std::exp(phi_z[i] - phi_w[i]);
      change = std::max(change, std::fabs(std::log(next / x[i])));
      away = std::max(away, std::fabs(std::log(next / z[i])));
      w[i] = next;
    }
    if (away < kDifferent) return {};
    if (change < 1.0E-7) return {true, P};
    const R8 factor = std::clamp(sum_of(w), 0.5, 2.0);
    P *= side == Side::bubble ? factor : 1.0 / factor;
    if (!(P > 1.0E-4) || !(P < 500.0)) return {};
  }
  return {};
}

Saturation solve(Side side, const std::vector<R8>& z, R8 T) {
  const std::vector<R8> p_ideal = wilson(z.size(), T);
  R8 P = 0.0;
  for (std::size_t i = 0; i < z.size(); ++i)
    P += side == Side::bubble ? z[i] * p_ideal[i] : z[i] / p_ideal[i];
  if (side == Side::dew) P = 1.0 / P;
  P = std::clamp(P, 1.0E-3, 300.0);
  for (const R8 factor : {1.0, 0.5, 2.0, 0.25, 0.1}) {
    const Saturation s = substitute(side, z, T, p_ideal, P * factor);
    if (s.found) return s;
  }
  return {};
}

std::vector<R8> fractions(const test::FlashCase& c, int column) {
  std::vector<R8> x;
  for (int i = 1; i <= c.nc(); ++i) x.push_back(static_cast<R8>(c.SCAL(i, column)));
  const R8 sum = sum_of(x);
  for (R8& v : x) v /= sum;
  return x;
}

bool right(const Mixture& m, const test::FlashCase& c, R8 beta) {
  const std::vector<R8> y = fractions(c, 3), x = fractions(c, 4);
  const R8 T = static_cast<R8>(c.T) + 273.15, P = static_cast<R8>(c.P);
  std::vector<R8> phi_y, phi_x;
  if (!test::log_phi(phase::vapour, T, P, y, phi_y) || !test::log_phi(phase::liquid, T, P, x, phi_x))
    return false;
  R8 away = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (!(x[i] > 1.0E-9) || !(y[i] > 1.0E-9)) continue;
    const R8 ratio = std::log(y[i] / x[i]);
    away = std::max(away, std::fabs(ratio));
    if (!(std::fabs(ratio + phi_y[i] - phi_x[i]) < kFugacityTolerance)) return false;
    if (!(std::fabs(beta * y[i] + (1.0 - beta) * x[i] - m.z[i]) < 1.0E-4)) return false;
  }
  return away > kDifferent;
}

struct Share {
  const char* bin;
  R8 from, to;  // [bar]
  R8 wanted;    // [%]
  int states = 0, correct = 0, told = 0;
};

class Shares {
 public:
  Shares(const char* name, std::vector<Share> bins) : name_(name), bins_(std::move(bins)) {}

  void run(const Mixture& m, I4 code, R8 T, R8 P, R8 P_true, R8 beta) {
    test::FlashCase c = host(m, code, T, P, beta);
    const std::string STR = c.run();
    const bool correct = STR.empty() && right(m, c, beta);
    for (Share& s : bins_) {
      if (P_true < s.from || P_true >= s.to) continue;
      ++s.states;
      s.correct += correct ? 1 : 0;
      s.told += STR.empty() ? 0 : 1;
    }
  }
  void print_and_hold() const {
    for (const Share& s : bins_) {
      const R8 share = s.states > 0 ? 100.0 * s.correct / s.states : 0.0;
      std::printf("%-34s %-14s %5d states %6.2f%% right, %4d wrong without a text, %4d with\n", name_, s.bin,
                  s.states, share, s.states - s.correct - s.told, s.told);
      if (s.wanted > 0.0) {
        EXPECT_GE(share, s.wanted - 2.0) << name_ << ", " << s.bin;
        EXPECT_GT(s.states, 50);
      }
    }
  }

 private:
  const char* name_;
  std::vector<Share> bins_;
};

constexpr R8 kHostPressure = 10.0;      // [bar]
constexpr R8 kHostTemperature = 300.0;  // [K]

TEST(SaturationShares, RightAnswersByPressure) {
  test::fresh_flashes_alone();
  Shares bubble_p("code 1, bubble pressure",
                  {{"below 30 bar", 0, 30, 100}, {"30-60 bar", 30, 60, 89}, {"above 60 bar", 60, 1e9, 0}});
  Shares bubble_t("code 2, bubble temperature",
                  {{"below 30 bar", 0, 30, 97}, {"30-60 bar", 30, 60, 0}, {"above 60 bar", 60, 1e9, 0}});
  Shares dew_p("code 3, dew pressure", {{"all", 0, 1e9, 99.9},
                                        {"below 30 bar", 0, 30, 0},
                                        {"30-60 bar", 30, 60, 0},
                                        {"above 60 bar", 60, 1e9, 0}});
  Shares dew_t("code 4, dew temperature",
               {{"below 10 bar", 0, 10, 99.6}, {"10-30 bar", 10, 30, 90}, {"above 30 bar", 30, 1e9, 0}});
  Shares fraction_t("code 6, pressure at fraction",
                    {{"below 30 bar", 0, 30, 99.8}, {"30-60 bar", 30, 60, 0}, {"above 60 bar", 60, 1e9, 0}});
  Shares fraction_p("code 7, temperature at fraction",
                    {{"below 30 bar", 0, 30, 98}, {"30-60 bar", 30, 60, 0}, {"above 60 bar", 60, 1e9, 0}});
  std::mt19937 engine(kSeed);
  const auto uniform = [&engine] { return static_cast<R8>(engine()) / 4294967296.0; };
  for (int k = 0; k < kMixtures; ++k) {
    const Mixture m = random_mixture(engine);
    const R8 T = 150.0 + 350.0 * uniform();
    const R8 share = 0.02 + 0.96 * uniform();
    host(m, flash_type::feed_properties, T, 1.0, 0.5).run();
    const Saturation bubble = solve(Side::bubble, m.z, T);
    const Saturation dew = solve(Side::dew, m.z, T);
    if (bubble.found) {
      bubble_p.run(m, flash_type::bubble_pressure, T, kHostPressure, bubble.P, 0.0);
      bubble_t.run(m, flash_type::bubble_temperature, kHostTemperature, bubble.P, bubble.P, 0.0);
    }
    if (dew.found) {
      dew_p.run(m, flash_type::dew_pressure, T, kHostPressure, dew.P, 1.0);
      dew_t.run(m, flash_type::dew_temperature, kHostTemperature, dew.P, dew.P, 1.0);
    }
    if (!bubble.found || !dew.found) continue;
    const R8 P = dew.P * std::pow(bubble.P / dew.P, share);
    test::FlashCase split = host(m, flash_type::isothermal, T, P, 1.0);
    if (!split.run().empty() || !(split.FRV > 0.001F && split.FRV < 0.999F)) continue;
    const R8 beta = static_cast<R8>(split.FRV);
    if (!right(m, split, beta)) continue;
    fraction_t.run(m, flash_type::pressure_at_fraction, T, kHostPressure, P, beta);
    fraction_p.run(m, flash_type::temperature_at_fraction, kHostTemperature, P, P, beta);
  }
  for (const Shares* s : {&bubble_p, &bubble_t, &dew_p, &dew_t, &fraction_t, &fraction_p})
    s->print_and_hold();
}

}  // namespace
}  // namespace talix
