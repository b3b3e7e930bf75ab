#include "liquid/snl_nrtl.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "database/pair_record.h"
#include "engine/reset.h"
#include "engine/setup_record.h"
#include "support/eos_difference.h"
#include "support/golden.h"

namespace talix::test {
namespace {

constexpr ActivityOptions kAll{{true, true, true, true, true, true}};

ActivityOptions only(int option) {
  ActivityOptions options{};
  options(option) = true;
  return options;
}

// Energy term of the component j around i, straight from the shared tables.
R8 tau(int j, int i, R8 T) {
  if (i == j) return 0.0;
  return pairs.TAUT0(j, i) + pairs.TAUT1(j, i) / T + pairs.TAUT2(j, i) / (T * T);
}

R8 g(int j, int i, R8 T) {
  const R8 alpha =
      i == j ? 0.0
             : pairs.ALFA(std::min(i, j), std::max(i, j)) + pairs.ALFA(std::max(i, j), std::min(i, j)) * T;
  return std::exp(-alpha * tau(j, i, T));
}

// The equation as published, for the components 1 to n.
R8 published_excess(const CompVec& x, int n, R8 T) {
  R8 sum = 0.0;
  for (int i = 1; i <= n; ++i) {
    R8 energy = 0.0;
    R8 share = 0.0;
    for (int j = 1; j <= n; ++j) {
      energy += tau(j, i, T) * g(j, i, T) * x(j);
      share += g(j, i, T) * x(j);
    }
    sum += x(i) * energy / share;
  }
  return sum;
}

// The published activity coefficient of a multicomponent mixture.
R8 published_ln_gamma(const CompVec& x, int n, int i, R8 T) {
  const auto share = [&](int j) {
    R8 sum = 0.0;
    for (int k = 1; k <= n; ++k) sum += g(k, j, T) * x(k);
    return sum;
  };
  const auto energy = [&](int j) {
    R8 sum = 0.0;
    for (int k = 1; k <= n; ++k) sum += tau(k, j, T) * g(k, j, T) * x(k);
    return sum;
  };
  R8 result = energy(i) / share(i);
  for (int j = 1; j <= n; ++j) result += x(j) * g(i, j, T) / share(j) * (tau(i, j, T) - energy(j) / share(j));
  return result;
}

class Nrtl : public ::testing::Test {
 protected:
  void SetUp() override { reset_engine(); }
  void TearDown() override { reset_engine(); }

  R8 uniform(R8 low, R8 high) { return std::uniform_real_distribution<R8>(low, high)(random_); }

  // Parameters of all kinds for the components 1 to n.
  void random_parameters(int n) {
    for (int i = 1; i <= n; ++i) {
      for (int j = 1; j <= n; ++j) {
        if (i == j) continue;
        pairs.TAUT0(i, j) = uniform(-1.0, 1.5);
        pairs.TAUT1(i, j) = uniform(-300.0, 600.0);
        pairs.TAUT2(i, j) = uniform(-3E4, 3E4);
        pairs.ALFA(i, j) = i < j ? uniform(0.1, 0.47) : uniform(-3E-4, 3E-4);
      }
    }
    ++setup.generation;
  }

  CompVec random_composition(int n) {
    CompVec x{};
    R8 sum = 0.0;
    for (int i = 1; i <= n; ++i) sum += x(i) = uniform(0.05, 1.0);
    for (int i = 1; i <= n; ++i) x(i) /= sum;
    return x;
  }

  // Pair 1, 2 with the coefficients 12 and 21 of the first power of 1/T.
  static void set_binary(R8 t12, R8 t21, R8 alpha) {
    pairs.TAUT1(1, 2) = t12;
    pairs.TAUT1(2, 1) = t21;
    pairs.ALFA(1, 2) = alpha;
    ++setup.generation;
  }

  static ExcessGibbs& evaluate(R8 T, const CompVec& x, int first, int last,
                               const ActivityOptions& options = kAll) {
    SNLAC0(T, x, excess_, first, last, options);
    return excess_;
  }

  std::mt19937 random_{20261121U};
  static inline ExcessGibbs excess_{};
};

void expect_close(R8 value, R8 expected, R8 relative, const char* what) {
  EXPECT_NEAR(value, expected, relative * std::max(std::abs(expected), 1E-2)) << what;
}

TEST_F(Nrtl, ValueAndActivityCoefficientsAreThoseOfThePublishedEquation) {
  for (int state = 0; state < 200; ++state) {
    const int n = 2 + state % 9;
    random_parameters(n);
    const CompVec x = random_composition(n);
    const R8 T = uniform(250.0, 450.0);
    const ExcessGibbs& e = evaluate(T, x, 1, n);
    expect_close(e.GE, published_excess(x, n, T), 1E-12, "excess");
    for (int i = 1; i <= n; ++i) expect_close(e.CHIN(i), published_ln_gamma(x, n, i, T), 1E-12, "gamma");
  }
}

TEST_F(Nrtl, BinaryFollowsTheTwoComponentForm) {
  set_binary(363.1301, 582.9864, 0.4694);
  const R8 T = 331.0;
  const R8 t12 = 363.1301 / T;
  const R8 t21 = 582.9864 / T;
  const R8 g12 = std::exp(-0.4694 * t12);
  const R8 g21 = std::exp(-0.4694 * t21);
  for (const R8 x1 : {0.0, 0.1, 0.5, 0.9, 1.0}) {
    const R8 x2 = 1.0 - x1;
    CompVec x{};
    x(1) = x1;
    x(2) = x2;
    const ExcessGibbs& e = evaluate(T, x, 1, 2);
    const R8 around1 = x1 + x2 * g21;
    const R8 around2 = x2 + x1 * g12;
    EXPECT_NEAR(e.CHIN(1), x2 * x2 * (t21 * std::pow(g21 / around1, 2) + t12 * g12 / (around2 * around2)),
                1E-14);
    EXPECT_NEAR(e.CHIN(2), x1 * x1 * (t12 * std::pow(g12 / around2, 2) + t21 * g21 / (around1 * around1)),
                1E-14);
  }
}

TEST_F(Nrtl, CompositionDerivativesAreSlopes) {
  for (int state = 0; state < 200; ++state) {
    const int n = 2 + state % 6;
    random_parameters(n);
    CompVec x = random_composition(n);
    const R8 T = uniform(250.0, 450.0);
    const ExcessGibbs e = evaluate(T, x, 1, n);
    R8 sum = 0.0;
    for (int i = 1; i <= n; ++i) {
      sum += x(i) * e.CHIN(i);
      // The value is of degree 1 in the amounts, so amounts that do not sum to 1 give n G.
      const R8 start = x(i);
      const auto shifted = [&](R8 amount) {
        x(i) = amount;
        const ExcessGibbs& shift = evaluate(T, x, 1, n);
        x(i) = start;
        return &shift;
      };
      const R8 h = 0.01 * start;
      expect_close(e.CHIN(i), slope([&](R8 amount) { return shifted(amount)->GE; }, start, h), 1E-6, "CHIN");
      for (int j = 1; j <= n; ++j) {
        expect_close(e.CHINN(j, i), slope([&](R8 amount) { return shifted(amount)->CHIN(j); }, start, h),
                     1E-6, "CHINN");
        EXPECT_EQ(e.CHINN(i, j), e.CHINN(j, i));
      }
      R8 degree = 0.0;
      for (int j = 1; j <= n; ++j) degree += x(j) * e.CHINN(i, j);
      EXPECT_NEAR(degree, 0.0, 1E-12);
    }
    expect_close(sum, e.GE, 1E-12, "Euler sum");
  }
}

TEST_F(Nrtl, TemperatureDerivativesAreScaledSlopes) {
  for (int state = 0; state < 200; ++state) {
    const int n = 2 + state % 6;
    random_parameters(n);
    const CompVec x = random_composition(n);
    const R8 T = uniform(250.0, 450.0);
    const ExcessGibbs e = evaluate(T, x, 1, n);
    const auto excess = [&](R8 at) { return evaluate(at, x, 1, n).GE; };
    expect_close(e.GET, T * slope(excess, T, 2.0), 1E-6, "GET");
    expect_close(e.GETT, T * T * curvature(excess, T, 4.0), 1E-6, "GETT");
    expect_close(e.GETT, T * slope([&](R8 at) { return evaluate(at, x, 1, n).GET; }, T, 2.0) - e.GET, 1E-6,
                 "GETT from GET");
    for (int i = 1; i <= n; ++i)
      expect_close(e.CHINT(i), T * slope([&](R8 at) { return evaluate(at, x, 1, n).CHIN(i); }, T, 2.0), 1E-6,
                   "CHINT");
  }
}

// Infinite dilution at 330 K of published parameters: ln gamma1 = tau21 + tau12 g12.
TEST_F(Nrtl, InfiniteDilutionOfPublishedPairs) {
  const auto rows = golden_rows("nrtl_infinite_dilution.csv");
  ASSERT_GE(rows.size(), 8U);
  for (const GoldenRow& row : rows) {
    ASSERT_GE(row.size(), 7U);
    set_binary(std::stod(row[2]), std::stod(row[3]), std::stod(row[4]));
    for (int solvent = 1; solvent <= 2; ++solvent) {
      CompVec x{};
      x(solvent) = 1.0;
      const ExcessGibbs& e = evaluate(330.0, x, 1, 2);
      const int solute = 3 - solvent;
      EXPECT_NEAR(e.CHIN(solute), std::stod(row[static_cast<std::size_t>(4 + solute)]), 5.1E-4)
          << row[0] << " " << row[1];
      EXPECT_EQ(e.CHIN(solvent), 0.0);
    }
  }
}

// Vapour pressure [mmHg] at t [C].
struct Antoine {
  R8 A, B, C;
  R8 ln_pressure(R8 t) const { return std::log(10.0) * (A - B / (t + C)); }
};

// Azeotrope at 760 mmHg over an ideal vapour: fraction of the first component and temperature [C].
struct Azeotrope {
  R8 x, t;
};

constexpr Antoine kMethanol{.A = 8.08097, .B = 1582.271, .C = 239.726};
constexpr Antoine kBenzene{.A = 6.90565, .B = 1211.033, .C = 220.790};
constexpr Antoine kChloroform{.A = 6.95465, .B = 1170.966, .C = 226.232};
constexpr Antoine kEthanol{.A = 8.20417, .B = 1642.890, .C = 230.300};
constexpr Antoine kWater{.A = 8.07131, .B = 1730.630, .C = 233.426};
constexpr Antoine kAcetone{.A = 7.11714, .B = 1210.595, .C = 229.664};

// Bubble temperature and the ratio of the relative volatilities, by bisection over a fine grid.
Azeotrope azeotrope(const Antoine& first, const Antoine& second) {
  static ExcessGibbs e{};
  R8 t = 0.0;
  const auto gap = [&](R8 fraction) {
    CompVec x{};
    x(1) = fraction;
    x(2) = 1.0 - fraction;
    R8 low = 20.0;
    R8 high = 120.0;
    for (int step = 0; step < 60; ++step) {
      t = 0.5 * (low + high);
      SNLAC0(t + 273.15, x, e, 1, 2, only(2));
      const R8 pressure = x(1) * std::exp(e.CHIN(1) + first.ln_pressure(t)) +
                          x(2) * std::exp(e.CHIN(2) + second.ln_pressure(t));
      (pressure < 760.0 ? low : high) = t;
    }
    return e.CHIN(1) + first.ln_pressure(t) - e.CHIN(2) - second.ln_pressure(t);
  };
  R8 low = 1E-3;
  R8 high = 1.0 - 1E-3;
  const bool rising = gap(low) < gap(high);
  for (int step = 0; step < 60; ++step) {
    const R8 middle = 0.5 * (low + high);
    ((gap(middle) < 0.0) == rising ? low : high) = middle;
  }
  return {.x = low, .t = t};
}

// The figures of the handbooks tell which of the two tau goes where: exchanged, they miss methanol with benzene
// and methanol with chloroform.
TEST_F(Nrtl, AzeotropesOfHandbooks) {
  set_binary(363.1301, 582.9864, 0.4694);
  Azeotrope z = azeotrope(kMethanol, kBenzene);
  EXPECT_NEAR(z.x, 0.61, 0.012);
  EXPECT_NEAR(z.t, 57.5, 0.9);
  set_binary(582.9864, 363.1301, 0.4694);
  EXPECT_GT(azeotrope(kMethanol, kBenzene).x, 0.64);

  set_binary(-71.35804, 711.6889, 0.2949);
  z = azeotrope(kMethanol, kChloroform);
  EXPECT_NEAR(z.x, 0.35, 0.012);
  EXPECT_NEAR(z.t, 53.4, 0.5);

  set_binary(711.6889, -71.35804, 0.2949);
  EXPECT_GT(azeotrope(kMethanol, kChloroform).x, 0.45);

  set_binary(259.7322, 536.386, 0.4774);
  z = azeotrope(kEthanol, kBenzene);
  EXPECT_NEAR(z.x, 0.448, 0.012);
  EXPECT_NEAR(z.t, 67.9, 0.5);

  set_binary(-29.16665, 624.8676, 0.2937);
  z = azeotrope(kEthanol, kWater);
  EXPECT_NEAR(z.x, 0.894, 0.016);
  EXPECT_NEAR(z.t, 78.15, 0.2);

  set_binary(-327.692, 151.8912, 0.3054);
  z = azeotrope(kAcetone, kChloroform);
  EXPECT_NEAR(z.x, 0.36, 0.03);
  EXPECT_NEAR(z.t, 64.4, 0.5);
}

TEST_F(Nrtl, PureComponentHasNoExcess) {
  random_parameters(4);
  for (int i = 1; i <= 4; ++i) {
    CompVec x{};
    x(i) = 1.0;
    const ExcessGibbs& e = evaluate(300.0, x, 1, 4);
    EXPECT_EQ(e.CHIN(i), 0.0);
    EXPECT_EQ(e.GE, 0.0);
    EXPECT_EQ(e.GET, 0.0);
    EXPECT_EQ(e.GETT, 0.0);
    EXPECT_EQ(e.CHINT(i), 0.0);
    const ExcessGibbs& alone = evaluate(300.0, x, i, i);
    EXPECT_EQ(alone.CHIN(i), 0.0);
    EXPECT_EQ(alone.CHINN(i, i), 0.0);
  }
}

TEST_F(Nrtl, LowerTriangleOfAlfaIsTheSlope) {
  set_binary(200.0, 500.0, 0.3);
  CompVec x{};
  x(1) = 0.4;
  x(2) = 0.6;
  const ExcessGibbs flat = evaluate(350.0, x, 1, 2);
  // A constant factor: with tau as 1/T the temperature enters through tau alone, T d/dT = -tau d/dtau.
  const R8 step = 1E-3;
  const auto stretched = [&](R8 factor) {
    set_binary(200.0 * factor, 500.0 * factor, 0.3);
    return evaluate(350.0, x, 1, 2).GE;
  };
  expect_close(flat.GET, -slope(stretched, 1.0, step), 1E-9, "constant factor");

  // The same value of the factor at this temperature, reached with a slope.
  set_binary(200.0, 500.0, 0.3 - 2E-4 * 350.0);
  pairs.ALFA(2, 1) = 2E-4;
  ++setup.generation;
  const ExcessGibbs sloped = evaluate(350.0, x, 1, 2);
  EXPECT_NEAR(sloped.GE, flat.GE, 1E-15);
  EXPECT_GT(std::abs(sloped.GET - flat.GET), 1E-3);
  expect_close(sloped.GET, 350.0 * slope([&](R8 T) { return evaluate(T, x, 1, 2).GE; }, 350.0, 2.0), 1E-9,
               "sloped factor");
}

TEST_F(Nrtl, DiagonalOfTheTablesIsNotUsed) {
  random_parameters(3);
  const CompVec x = random_composition(3);
  const ExcessGibbs before = evaluate(320.0, x, 1, 3);
  for (int i = 1; i <= 3; ++i)
    pairs.TAUT0(i, i) = pairs.TAUT1(i, i) = pairs.TAUT2(i, i) = pairs.ALFA(i, i) = 7.0;
  ++setup.generation;
  EXPECT_EQ(std::memcmp(&evaluate(320.0, x, 1, 3), &before, sizeof before), 0);
}

TEST_F(Nrtl, OnlyTheRangeAndTheRequestsAreTouched) {
  random_parameters(6);
  CompVec x = random_composition(6);
  const R8 nothing = std::numeric_limits<R8>::quiet_NaN();
  x(1) = x(6) = nothing;
  const ExcessGibbs full = evaluate(310.0, x, 2, 5);
  for (int option = 1; option <= 6; ++option) {
    ExcessGibbs e{};
    e.GE = e.GET = e.GETT = -9.0;
    e.CHIN.fill(-9.0);
    e.CHINT.fill(-9.0);
    e.CHINN.fill(-9.0);
    // Sums of another composition stand in the work tables.
    CompVec other{};
    for (int i = 2; i <= 5; ++i) other(i) = 0.1 * i;
    evaluate(310.0, other, 2, 5);
    SNLAC0(310.0, x, e, 2, 5, only(option));
    EXPECT_EQ(e.GE, option == 1 ? full.GE : -9.0);
    EXPECT_EQ(e.GET, option == 4 ? full.GET : -9.0);
    EXPECT_EQ(e.GETT, option == 5 ? full.GETT : -9.0);
    for (int i = 1; i <= 6; ++i) {
      const bool inside = i >= 2 && i <= 5;
      EXPECT_EQ(e.CHIN(i), inside && option == 2 ? full.CHIN(i) : -9.0);
      EXPECT_EQ(e.CHINT(i), inside && option == 6 ? full.CHINT(i) : -9.0);
      for (int j = 1; j <= 6; ++j) {
        const bool both = inside && j >= 2 && j <= 5;
        EXPECT_EQ(e.CHINN(i, j), both && option == 3 ? full.CHINN(i, j) : -9.0);
      }
    }
  }
  EXPECT_TRUE(std::isfinite(full.GE));
}

TEST_F(Nrtl, EmptyCompositionDividesByZero) {
  random_parameters(2);
  const CompVec x{};
  EXPECT_TRUE(std::isnan(evaluate(300.0, x, 1, 2).CHIN(1)));
}

TEST_F(Nrtl, LocalCompositionThatUnderflowsKeepsFiniteDerivatives) {
  set_binary(9E5, 100.0, 0.4);
  CompVec x{};
  x(1) = x(2) = 0.5;
  const ExcessGibbs& e = evaluate(300.0, x, 1, 2);
  for (const R8 value : {e.GE, e.GET, e.GETT, e.CHIN(1), e.CHIN(2), e.CHINN(1, 2), e.CHINT(1), e.CHINT(2)})
    EXPECT_TRUE(std::isfinite(value));
}

// Every result after any history is bit for bit that of a fresh engine.
TEST_F(Nrtl, CachedTablesNeverGiveStaleResults) {
  random_parameters(6);
  const CompVec x = random_composition(6);
  const R8 temperatures[] = {300.0, 301.0, 300.0 + 1E-12};
  const auto pick = [this](int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); };
  for (int call = 0; call < 4000; ++call) {
    switch (pick(6)) {
      case 0:
        pairs.TAUT0(2, 3) = uniform(-1.0, 1.0);
        ++setup.generation;
        break;
      case 1:
        pairs.ALFA(3, 2) = uniform(-3E-4, 3E-4);
        ++setup.generation;
        break;
      default:
        break;
    }
    const R8 T = temperatures[pick(3)];
    const int first = 1 + pick(3);
    const int last = first + pick(7 - first);
    ActivityOptions options{};
    for (int option = 1; option <= 6; ++option) options(option) = pick(2) == 1;
    static ExcessGibbs cached{};
    static ExcessGibbs fresh{};
    std::memset(&cached, 0, sizeof cached);
    std::memset(&fresh, 0, sizeof fresh);
    SNLAC0(T, x, cached, first, last, options);
    if (pick(3) != 0) continue;
    reset_nrtl_cache();
    SNLAC0(T, x, fresh, first, last, options);
    ASSERT_EQ(std::memcmp(&cached, &fresh, sizeof cached), 0) << call;
  }
}

}  // namespace
}  // namespace talix::test
