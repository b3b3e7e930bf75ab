// Bubble points, dew points and given vapour fractions with the check behind the flashes, against the reference flash.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "fastprops/flash_record.h"
#include "flash/phase_check.h"
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

constexpr const char* kBothLiquids =
    ". Both phases are liquids: the lighter one stands in the column of the vapour (TALIX)";

// A liquid of methane, propane and decane parts into two liquids between -79 and -48 C: no vapour boils off, and the
// lighter liquid goes over into the vapour of the higher temperatures.
TEST_F(VerifiedSaturation, WhereTwoLiquidsPartTheBubblePointIsTheirs) {
  const Case c = case_of({20, 22, 116}, {0.7F, 0.2F, 0.1F});
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  test::verify(1);
  for (const R8 asked : {204.0, 208.0, 212.0, 218.0, 224.0}) {
    const R8 T = kelvin(celsius(asked));
    const Reply at_T = ask(c, flash_type::bubble_pressure, T, 60.0, 0.0);
    ASSERT_TRUE(at_T.answered) << at_T.message;
    EXPECT_EQ(at_T.message, kBothLiquids) << T;
    const Line pressures{m, Axis::pressure, T};
    EXPECT_EQ(judge_saturation(pressures, at_T, flash_type::bubble_pressure, 0.0, true).verdict,
              Verdict::right)
        << T;
    const Reply at_P = ask(c, flash_type::bubble_temperature, T, at_T.P, 0.0);
    ASSERT_TRUE(at_P.answered) << at_P.message;
    EXPECT_EQ(at_P.message, kBothLiquids) << T;
    EXPECT_NEAR(at_P.T, T, 2.0E-3);
  }
  // Below -70 C vapour beside one liquid has a point at a lower pressure, where that liquid would split: this point is
  // given with a warning.
  for (const R8 asked : {196.0, 200.0}) {
    const Line pressures{m, Axis::pressure, kelvin(celsius(asked))};
    const Reply r = ask(c, flash_type::bubble_pressure, pressures.fixed, 60.0, 0.0);
    EXPECT_TRUE(r.answered);
    EXPECT_EQ(r.message, ". A third phase, liquid, would lower the Gibbs energy further (TALIX)") << asked;
    EXPECT_TRUE(flash(m, pressures.fixed, 1.05 * r.P).two_liquids) << asked;
  }
  // On both sides of them vapour boils off.
  for (const R8 asked : {191.0, 228.0}) {
    const Reply r = ask(c, flash_type::bubble_pressure, kelvin(celsius(asked)), 60.0, 0.0);
    EXPECT_TRUE(r.answered);
    EXPECT_EQ(r.message, "") << asked;
  }
}

// Mixtures that boil nearly like a pure component: the two-phase region is narrower than the steps of any search.
TEST_F(VerifiedSaturation, NarrowTwoPhaseRegionsAreFound) {
  int asked = 0;
  for (const R4 sulphide : {0.0001F, 0.001F, 0.005F, 0.02F}) {
    const Case mixture = case_of({20, 11}, {1.0F - sulphide, sulphide});
    load_list(mixture);
    for (const R8 P : {20.0, 40.0, 46.26, 48.0}) {
      Expectation found;
      Case c = mixture;
      c.T = 191.0;
      c.P = P;
      compare_saturation_of(c, 0.4, found);
      EXPECT_EQ(found.unanswered, 0) << sulphide << ", " << P << " bar";
      asked += found.asked;
    }
  }
  EXPECT_GT(asked, 60);
  const Case c = case_of({20, 11}, {0.995F, 0.005F});
  load_list(c);
  test::verify(1);
  const Reply r = ask(c, flash_type::dew_temperature, 298.15, 46.26, 1.0);
  ASSERT_TRUE(r.answered) << r.message;
  EXPECT_NEAR(r.T, 191.5193, 2.0E-3);
}

// A heavy liquid beside a dense light vapour may have the larger molar volume.
TEST_F(VerifiedSaturation, LiquidsOfLargeMoleculesHaveDewPoints) {
  const Case c = case_of({20, 415, 21, 4, 328, 116}, {0.298539996F, 0.0640882254F, 0.16374962F, 0.0922857374F,
                                                      0.187500685F, 0.19383575F});
  load_list(c);
  test::verify(1);
  for (const R8 start : {200.0, 298.15, 450.0}) {
    const Reply r = ask(c, flash_type::dew_temperature, start, 228.56754, 1.0);
    ASSERT_TRUE(r.answered) << r.message;
    EXPECT_NEAR(r.T, 449.8562, 2.0E-3);
    EXPECT_GT(r.x[1], 0.75);
  }
  const Answer inside = flash(mixture_of(c.feed), 449.85, static_cast<R8>(228.56754F));
  ASSERT_EQ(inside.phases, 2);
  EXPECT_GT(inside.heavy.Z, inside.light.Z);
}

// Between two liquids of a wet oil and its vapour there are 40 K with vapour beside liquid.
TEST_F(VerifiedSaturation, VapourBetweenTwoLiquidsAndOnePhaseIsFound) {
  Case c =
      case_of({9, 20, 4, 21, 116, 22, 28, 278}, {0.405447423F, 0.0659634322F, 0.122170351F, 0.0270010196F,
                                                 0.071830608F, 0.0410969481F, 0.086309731F, 0.18018049F});
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  const R8 P = static_cast<R8>(325.4946F);
  test::verify(1);
  for (const R8 fraction : {0.7, 0.7664, 0.85, 0.95}) {
    const Reply r = ask(c, flash_type::temperature_at_fraction, 460.0, P, fraction);
    ASSERT_TRUE(r.answered) << r.message;
    EXPECT_NEAR(flash(m, r.T, P).vapour_share, fraction, 1.0E-3);
  }
}

// The costliest states are those with three phases.
TEST_F(VerifiedSaturation, WetGasesStayWithinTheBoundOfEngineCalls) {
  const std::vector<int> numbers = {20, 21, 22, 23, 25, 4, 15, 9};
  int most = 0;
  for (const R4 water : {0.002F, 0.1F}) {
    const Case c = case_of(numbers, {0.85F, 0.06F, 0.03F, 0.01F, 0.005F, 0.02F, 0.02F, water});
    load_list(c);
    test::verify(1);
    for (const R8 P : {5.0, 60.0}) {
      for (const R8 fraction : {0.02, 0.5, 0.98}) {
        for (const I4 code : {flash_type::pressure_at_fraction, flash_type::temperature_at_fraction}) {
          const Reply r = ask(c, code, 290.0, P, fraction);
          EXPECT_LE(r.engine_calls, kMostEngineCalls) << code << " " << P << " bar, " << fraction;
          EXPECT_TRUE(r.finite);
          most = std::max(most, r.engine_calls);
        }
      }
    }
  }
  EXPECT_GT(most, 5000);
}

// A search that ends with the engine calls tells so, and names no limit that it has not seen.
TEST_F(VerifiedSaturation, ASearchThatRunsOutOfEngineCallsNamesNoLimit) {
  const Case c =
      case_of({20, 11, 4, 116, 9, 328, 25, 277, 403}, {0.2F, 0.1F, 0.1F, 0.1F, 0.3F, 0.1F, 0.1F, 0.1F, 0.1F});
  load_list(c);
  test::verify(1);
  int ran_out = 0;
  for (const R8 P : {0.2, 1.0, 5.0, 150.0, 350.0}) {
    for (const R8 fraction : {0.1, 0.4, 0.7}) {
      const Reply r = ask(c, flash_type::temperature_at_fraction, 450.0, P, fraction);
      EXPECT_LE(r.engine_calls, kMostEngineCalls);
      EXPECT_EQ(r.message.find("of 0 bar"), std::string::npos) << r.message;
      if (r.answered || r.engine_calls < kCheckedEngineCalls) continue;
      ++ran_out;
      EXPECT_NE(r.message.find("could not be settled"), std::string::npos) << r.message;
    }
  }
  EXPECT_GT(ran_out, 0);
}

}  // namespace
}  // namespace talix
