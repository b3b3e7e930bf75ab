// Viscosity, conductivity and surface tension through the entry call against published values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "api/phase_properties.h"
#include "support/flash_case.h"
#include "support/golden.h"

namespace talix {
namespace {

// Deviations of one group from its references [%].
struct Deviations {
  R8 sum = 0.0, largest = 0.0;
  int count = 0;
  std::string where;  // of the largest
  void add(R8 deviation, const std::string& state) {
    sum += std::fabs(deviation);
    ++count;
    if (std::fabs(deviation) > std::fabs(largest)) {
      largest = deviation;
      where = state;
    }
  }
  [[nodiscard]] R8 mean() const { return sum / count; }
};

using Groups = std::map<std::string, Deviations>;

// All figures, for the reader of a failure.
void print(const Groups& groups) {
  for (const auto& [name, d] : groups)
    std::printf("  %-44s %4d values, mean %6.2f %%, largest %7.2f %% at %s\n", name.c_str(), d.count,
                d.mean(), d.largest, d.where.c_str());
}

bool is_viscosity(const std::string& quantity) { return quantity == "viscosity_mPa_s"; }
int row_of(const std::string& quantity) {
  return is_viscosity(quantity) ? property::viscosity : property::thermal_conductivity;
}

R8 percent(R4 found, const std::string& expected) {
  return 100.0 * (static_cast<R8>(found) / std::stod(expected) - 1.0);
}

// A pure fluid at T [K].
test::FlashCase pure(const std::string& number, const std::string& T_K, I4 code) {
  test::FlashCase c;
  c.numbers = {std::stoi(number)};
  c.feed = {1.0F};
  c.T = static_cast<R4>(std::stod(T_K) - 273.15);
  c.IFLASH = code;
  return c;
}

// Mean deviation that a gas may have [%]: viscosity, conductivity, and both over 300 to 450 K and up to 100 bar. What
// the corresponding-states method against methane gives at these states, with reference densities as with the
// library's own; it was not made for quantum gases and hydrogen bonds.
struct GasLimit {
  const char* group;
  R8 viscosity, conductivity;
  R8 process_viscosity, process_conductivity;
};
constexpr GasLimit kGasLimits[] = {
    {"hydrocarbon gas", 3.8, 5.5, 3.35, 6.0},     {"nitrogen gas", 3.1, 6.25, 3.25, 6.8},
    {"carbon dioxide gas", 6.2, 19.0, 6.2, 19.5}, {"hydrogen gas", 16.0, 21.0, 16.4, 22.0},
    {"water vapour", 25.0, 26.5, 27.2, 26.0},     {"methanol vapour", 33.0, 5.2, 33.0, 7.0},
};

bool is_process_state(const test::GoldenRow& row) {
  const R8 T = std::stod(row[3]);
  return T > 299.0 && T < 451.0 && std::stod(row[4]) < 101.0;
}

TEST(TransportAccuracy, Gases) {
  test::fresh_library();
  const auto rows = test::golden_rows("transport_gas.csv");
  ASSERT_GT(rows.size(), 200U);
  Groups groups;
  for (const test::GoldenRow& row : rows) {
    test::FlashCase gas = pure(row[1], row[3], 5);
    gas.P = static_cast<R4>(std::stod(row[4]));
    const std::string state = row[0] + " " + row[3] + " K " + row[4] + " bar";
    ASSERT_EQ(gas.run(), "") << state;
    // A dense gas may stand in the column of the liquid.
    const int column = gas.TPROPS(property::density, 1) > 0.0F ? 1 : 2;
    const R8 deviation = percent(gas.TPROPS(row_of(row[5]), column), row[6]);
    groups[row[2] + ", " + row[5]].add(deviation, state);
    if (is_process_state(row)) groups[row[2] + ", process, " + row[5]].add(deviation, state);
  }
  for (const GasLimit& limit : kGasLimits) {
    const std::string group = limit.group;
    ASSERT_GT(groups[group + ", viscosity_mPa_s"].count, 4) << group;
    EXPECT_LE(groups[group + ", viscosity_mPa_s"].mean(), limit.viscosity) << group;
    EXPECT_LE(groups[group + ", conductivity_W_mK"].mean(), limit.conductivity) << group;
    EXPECT_LE(groups[group + ", process, viscosity_mPa_s"].mean(), limit.process_viscosity) << group;
    EXPECT_LE(groups[group + ", process, conductivity_W_mK"].mean(), limit.process_conductivity) << group;
  }
  if (HasFailure()) print(groups);
}

// Mean deviation that the liquids of a group may have [%]. The hydrocarbons up to five carbons have the corresponding-
// states method, whose shape factors know a branched chain by its acentric factor alone. Liquid hydrogen has the
// viscosity of its dilute gas, and a conductivity made from it.
struct LiquidLimit {
  const char* group;
  R8 viscosity, conductivity;
};
constexpr LiquidLimit kLiquidLimits[] = {
    {"light hydrocarbon", 6.0, 6.0},
    {"branched light hydrocarbon", 17.0, 6.5},
    {"hydrogen liquid", 92.0, 92.0},
    {"fitted set", 3.0, 4.0},
};

TEST(TransportAccuracy, LiquidsAtSaturation) {
  test::fresh_library();
  const auto rows = test::golden_rows("transport_liquid.csv");
  ASSERT_GT(rows.size(), 150U);
  Groups groups, fluids;
  for (const test::GoldenRow& row : rows) {
    test::FlashCase liquid = pure(row[1], row[3], 1);
    const std::string state = row[0] + " " + row[3] + " K";
    const std::string message = liquid.run();
    EXPECT_EQ(message, "") << state;
    if (!message.empty()) continue;
    const R8 deviation = percent(liquid.TPROPS(row_of(row[4]), 2), row[5]);
    groups[row[2] + ", " + row[4]].add(deviation, state);
    fluids[row[2] + ", " + row[0] + ", " + row[4]].add(deviation, state);
  }
  for (const LiquidLimit& limit : kLiquidLimits) {
    const std::string group = limit.group;
    EXPECT_LE(groups[group + ", viscosity_mPa_s"].mean(), limit.viscosity) << group;
    EXPECT_LE(groups[group + ", conductivity_W_mK"].mean(), limit.conductivity) << group;
  }
  // Sets of their own hold for every fluid by itself.
  for (const auto& [name, d] : fluids) {
    if (!name.starts_with("fitted set")) continue;
    EXPECT_LE(d.mean(), name.ends_with("viscosity_mPa_s") ? 3.0 : 4.0) << name;
  }
  if (HasFailure()) print(fluids);
}

TEST(TransportAccuracy, SurfaceTensionAtSaturation) {
  test::fresh_library();
  const auto rows = test::golden_rows("surface_tension.csv");
  ASSERT_GT(rows.size(), 80U);
  Groups groups;
  for (const test::GoldenRow& row : rows) {
    test::FlashCase liquid = pure(row[1], row[2], 1);
    const std::string state = row[0] + " " + row[2] + " K";
    const std::string message = liquid.run();
    EXPECT_EQ(message, "") << state;
    if (!message.empty()) continue;
    groups[row[0]].add(percent(liquid.TPROPS(property::surface_tension, 2), row[3]), state);
  }
  int within = 0;
  for (const auto& [name, d] : groups) within += std::fabs(d.largest) <= 6.0 ? 1 : 0;
  EXPECT_GE(within, 20);
  if (HasFailure()) print(groups);
}

// Both phases of a natural gas with condensate. The conductivity of the vapour is too high by as much as the method
// gives methane itself.
TEST(TransportAccuracy, NaturalGas) {
  test::fresh_library();
  const auto rows = test::golden_rows("transport_mixture.csv");
  ASSERT_EQ(rows.size(), 7U);
  test::FlashCase gas;
  gas.numbers = {15, 4, 20, 21, 22, 24, 23, 26, 25, 28};
  gas.feed = {0.010F, 0.020F, 0.760F, 0.100F, 0.060F, 0.012F, 0.018F, 0.008F, 0.007F, 0.005F};
  gas.T = 0.0F;
  gas.P = 60.0F;
  ASSERT_EQ(gas.run(), "");
  for (const test::GoldenRow& row : rows) {
    const bool vapour = row[0] == "vapour";
    const R8 deviation = percent(gas.TPROPS(row_of(row[3]), vapour ? 1 : 2), row[4]);
    // The correlation of the liquid's viscosity is itself good to some 15 %; the estimate from propane is within 1 %.
    const bool viscosity = is_viscosity(row[3]);
    const R8 most = vapour ? (viscosity ? 5.0 : 12.0) : (viscosity ? 6.0 : 5.0);
    EXPECT_LE(std::fabs(deviation), most) << row[0] << ' ' << row[3];
  }
}

}  // namespace
}  // namespace talix
