// States of mixtures and pure fluids against published reference models: figures, tolerances and citations stand
// in tests/golden/reference_states.csv.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <sstream>
#include <string>

#include "support/flash_case.h"
#include "support/golden.h"

namespace talix {
namespace {

template <class T>
std::vector<T> numbers_of(const std::string& cell) {
  std::vector<T> values;
  std::istringstream in(cell);
  for (std::string part; std::getline(in, part, ';');) values.push_back(static_cast<T>(std::stod(part)));
  return values;
}

// Row of TPROPS.
const std::map<std::string, int> kRows{
    {"density_kg_m3", 2}, {"cp_J_gK", 10}, {"speed_of_sound_m_s", 11}, {"joule_thomson_K_bar", 12}};

// What may lie between result and expectation: "0.6 %" of the expectation, or "0.012 K/bar".
double allowed(const std::string& tolerance, double expected) {
  const double value = std::stod(tolerance);
  return tolerance.find('%') != std::string::npos ? std::fabs(expected) * value / 100.0 : value;
}

TEST(ReferenceStates, DensitiesAndThermalPropertiesAgree) {
  test::fresh_flashes_alone();
  const auto rows = test::golden_rows("reference_states.csv");
  ASSERT_GE(rows.size(), 100U);
  for (const test::GoldenRow& row : rows) {
    ASSERT_GE(row.size(), 10U);
    test::FlashCase state;
    state.numbers = numbers_of<int>(row[1]);
    state.feed = numbers_of<R4>(row[2]);
    state.T = static_cast<R4>(std::stod(row[3]) - 273.15);
    state.P = static_cast<R4>(std::stod(row[4]));
    const std::string name = row[0] + " at " + row[3] + " K, " + row[4] + " bar: " + row[6];
    ASSERT_EQ(state.run(), "") << name;
    const bool vapour = row[5] == "vapour";
    ASSERT_LT(state.total(vapour ? 4 : 3), 1.0E-7F) << name << " is not one " << row[5];
    const double expected = std::stod(row[7]);
    const double result = static_cast<double>(state.TPROPS(kRows.at(row[6]), vapour ? 1 : 2));
    EXPECT_NEAR(result, expected, allowed(row[8], expected))
        << name << ", off by " << 100.0 * (result / expected - 1.0) << " %";
  }
}

}  // namespace
}  // namespace talix
