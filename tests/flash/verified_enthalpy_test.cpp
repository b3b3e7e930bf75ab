// The adiabatic flashes with the check behind them, against the reference flash.
#include <gtest/gtest.h>

#include "fastprops/flash_record.h"
#include "support/reference_report.h"

namespace talix {
namespace {

using namespace test::reference;  // NOLINT: the test is about nothing else

constexpr int kStates = 60;

class VerifiedEnthalpy : public ::testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

TEST_F(VerifiedEnthalpy, SeededStatesComeBackFromTheirEnthalpy) {
  Expectation found;
  const int states = states_to_run(kStates);
  for (int k = 0; k < states; ++k) compare_enthalpy(kSuiteSeed, k, found);
  EXPECT_GT(found.asked, states);
  EXPECT_LE(found.unanswered, found.asked / 200);
}

TEST_F(VerifiedEnthalpy, APureComponentStaysOnItsPlateau) {
  for (const int number : {22, 4, 9}) {
    const Case c = case_of({number}, {2.0F});
    load_list(c);
    const Mixture m = mixture_of(c.feed);
    const R8 P = 10.0;
    R8 T = 0.0;
    ASSERT_TRUE(pure_saturation_temperature(m, P, T));
    R8 liquid = 0.0, vapour = 0.0;
    ASSERT_TRUE(enthalpy(m, T - 1.0E-6, P, m.z, liquid));
    ASSERT_TRUE(enthalpy(m, T + 1.0E-6, P, m.z, vapour));
    ASSERT_GT(vapour - liquid, 1000.0);
    for (const R8 share : {0.02, 0.3, 0.7, 0.98}) {
      const R8 target = 2.0 * (liquid + share * (vapour - liquid));
      for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
        const Reply r = ask(c, code, T + 30.0, P, 0.5, target);
        EXPECT_TRUE(r.answered) << number << ", code " << code << ": " << r.message;
        EXPECT_NEAR(r.T, T, 0.02) << number << ", code " << code << ", share " << share;
        EXPECT_NEAR(r.vapour, share, 1.0E-3) << number << ", code " << code;
      }
    }
  }
}

TEST_F(VerifiedEnthalpy, NarrowBoilingIsomersMeetTheirEnthalpy) {
  const Case c = case_of({31, 32, 28}, {0.4F, 0.35F, 0.25F});
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  const Scan edges = scan({m, Axis::temperature, 2.0}, -1.0, 120);
  ASSERT_EQ(edges.boundaries.size(), 2U);
  const R8 bubble = edges.boundaries[0].at, dew = edges.boundaries[1].at;
  ASSERT_LT(dew - bubble, 5.0);
  for (const R8 part : {0.05, 0.5, 0.95}) {
    const R8 T = bubble + part * (dew - bubble);
    R8 h = 0.0;
    Answer truth;
    ASSERT_TRUE(total_enthalpy(m, T, 2.0, h, truth));
    for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
      const Outcome o =
          judge_enthalpy(m, ask(c, code, T - 40.0, 2.0, 0.5, h), h, {T, truth.vapour_share, false});
      EXPECT_EQ(o.verdict, Verdict::right) << "code " << code << ", part " << part << "\n" << o.detail;
    }
  }
}

TEST_F(VerifiedEnthalpy, ATargetOutOfReachGetsAText) {
  const Case c = case_of({20, 21, 22}, {0.8F, 0.15F, 0.05F});
  load_list(c);
  for (const R8 target : {-1.0E7, 1.0E7}) {
    for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
      const Reply r = ask(c, code, 300.0, 20.0, 0.5, target);
      EXPECT_FALSE(r.answered) << "code " << code << " gave " << r.T << " K";
      EXPECT_FALSE(r.message.empty());
    }
  }
}

}  // namespace
}  // namespace talix
