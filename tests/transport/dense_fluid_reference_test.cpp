// Pure fluids and mixtures against scripts/dense_fluid_reference.py, a second writing of the method in double precision.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/dense_fluid_cases.h"
#include "support/golden.h"

namespace talix::test {
namespace {

// The case of a row: name:fraction;name:fraction..., liquid, T [K], density [mol/L].
DenseCase case_of(const GoldenRow& row) {
  std::vector<std::string> names;
  std::vector<R4> fractions;
  std::istringstream shares(row[0]);
  for (std::string share; std::getline(shares, share, ';');) {
    const std::size_t colon = share.find(':');
    names.push_back(share.substr(0, colon));
    fractions.push_back(std::stof(share.substr(colon + 1)));
  }
  std::vector<DenseShare> mixture;
  for (std::size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(dense_component(names[i]).name, names[i]);
    mixture.push_back({dense_component(names[i]).name, fractions[i]});
  }
  return dense_case(mixture, std::stof(row[2]), std::stof(row[3]), row[1] == "1");
}

TEST(DenseFluidReference, MixturesAgreeWithDoublePrecision) {
  reset_dense_fluid_record();
  set_dense_fluid_constants();
  const auto rows = golden_rows("dense_fluid_mixtures.csv");
  ASSERT_EQ(rows.size(), 15U);
  for (const GoldenRow& row : rows) {
    ASSERT_EQ(row.size(), 6U);
    const DenseAnswer a = dense_answer(case_of(row));
    EXPECT_EQ(a.IERR, 0);
    const std::string state = row[0] + " " + row[2] + " K " + row[3] + " mol/L";
    // Single precision: the excess of a cold liquid is a difference of exponentials.
    const double tolerance = row[1] == "1" ? 2e-4 : 2e-5;
    EXPECT_NEAR(static_cast<double>(a.viscosity) / std::stod(row[4]), 1.0, tolerance) << state;
    EXPECT_NEAR(static_cast<double>(a.conductivity) / std::stod(row[5]), 1.0, tolerance) << state;
  }
}

}  // namespace
}  // namespace talix::test
