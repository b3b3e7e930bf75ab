// Bubble points, dew points and given vapour fractions with the check behind the flashes, against the reference flash.
#include <gtest/gtest.h>

#include "fastprops/flash_record.h"
#include "support/reference_report.h"

namespace talix {
namespace {

using namespace test::reference;  // NOLINT: the test is about nothing else

constexpr int kStates = 28;

class VerifiedSaturation : public ::testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

TEST_F(VerifiedSaturation, SeededStatesAreSaturatedAtTheAskedFraction) {
  Expectation found;
  const int states = states_to_run(kStates);
  for (int k = 0; k < states; ++k) compare_saturation(kSuiteSeed, k, found);
  EXPECT_GT(found.asked, 2 * states);
  EXPECT_LE(found.unanswered, 1 + found.asked / 200);
}

TEST_F(VerifiedSaturation, PureComponentsFollowTheirVapourPressureAtEveryFraction) {
  for (const int number : {4, 15, 20, 22, 28, 277, 9, 134}) {
    const Case c = case_of({number}, {1.0F});
    load_list(c);
    const Mixture m = mixture_of(c.feed);
    for (const R8 reduced : {0.6, 0.75, 0.9}) {
      const R8 T = kelvin(celsius(reduced * static_cast<R8>(fl.TC(1))));
      R8 P = 0.0;
      ASSERT_TRUE(pure_saturation_pressure(m, T, P)) << number << " at " << T << " K";
      for (const I4 code :
           {flash_type::bubble_pressure, flash_type::dew_pressure, flash_type::pressure_at_fraction}) {
        const Reply r = ask(c, code, T, 0.7 * P, 0.4);
        EXPECT_TRUE(r.answered) << number << ", code " << code << ": " << r.message;
        EXPECT_NEAR(r.P / P, 1.0, 1.0E-4) << number << ", code " << code << " at " << T << " K";
      }
      for (const I4 code : {flash_type::bubble_temperature, flash_type::dew_temperature,
                            flash_type::temperature_at_fraction}) {
        const Reply r = ask(c, code, 1.05 * T, P, 0.4);
        EXPECT_TRUE(r.answered) << number << ", code " << code << ": " << r.message;
        EXPECT_NEAR(r.T, T, 1.0E-2) << number << ", code " << code << " at " << P << " bar";
      }
    }
  }
}

// Methane with propane has two dew temperatures at high pressure and two dew pressures at one temperature.
TEST_F(VerifiedSaturation, OfTwoDewPressuresTheOneNearestToTheStartIsGiven) {
  const Case c = case_of({20, 22}, {0.85F, 0.15F});
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  const R8 T = kelvin(celsius(255.0));
  const Scan found = scan({m, Axis::pressure, T}, -1.0, 120);
  ASSERT_EQ(found.boundaries.size(), 2U);
  ASSERT_FALSE(found.boundaries[0].bubble);
  ASSERT_FALSE(found.boundaries[1].bubble);
  for (const Boundary& b : found.boundaries) {
    const Reply r = ask(c, flash_type::dew_pressure, T, 1.02 * b.at, 1.0);
    ASSERT_TRUE(r.answered) << r.message;
    EXPECT_NEAR(r.P / b.at, 1.0, 1.0E-3);
  }
}

TEST_F(VerifiedSaturation, BeyondTheEnvelopeATextTakesThePlaceOfATrivialSolution) {
  const Case c = case_of({20, 21, 22}, {0.90F, 0.07F, 0.03F});
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  const R8 T = kelvin(celsius(330.0));
  ASSERT_TRUE(scan({m, Axis::pressure, T}, -1.0, 120).boundaries.empty());
  for (const I4 code :
       {flash_type::bubble_pressure, flash_type::dew_pressure, flash_type::pressure_at_fraction}) {
    const Reply r = ask(c, code, T, 50.0, 0.5);
    EXPECT_FALSE(r.answered) << "code " << code << " gave " << r.P << " bar";
    ASSERT_FALSE(r.message.empty());
    EXPECT_EQ(r.message.front(), ' ');
  }
  ASSERT_TRUE(scan({m, Axis::temperature, 250.0}, -1.0, 120).boundaries.empty());
  for (const I4 code :
       {flash_type::bubble_temperature, flash_type::dew_temperature, flash_type::temperature_at_fraction}) {
    const Reply r = ask(c, code, 250.0, 250.0, 0.5);
    EXPECT_FALSE(r.answered) << "code " << code << " gave " << r.T << " K";
  }
}

}  // namespace
}  // namespace talix
