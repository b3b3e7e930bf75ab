#include "transport/svi_liquid_heavy.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "support/liquid_fixture.h"
#include "support/test_support.h"

namespace talix {
namespace {

constexpr int kCut = 1;

struct Answer {
  R8 eta = -7.0;
  I4 status = 0;
};

Answer chart(R8 T) {
  Answer a;
  SVICR0(T, kCut, a.eta, a.status);
  return a;
}

class HeavyFraction : public ::testing::Test {
 protected:
  void SetUp() override {
    test::reset_liquid_fixture();
    test::set_fraction(kCut);
  }
};

TEST_F(HeavyFraction, FollowsTheChart) {
  // On both sides of 2.7 mm2/s, where the way back from the ordinate changes.
  EXPECT_NEAR(chart(288.15).eta, 5.124179075274839, 1e-9);
  EXPECT_NEAR(chart(310.928).eta, 2.7907099049489745, 1e-9);
  EXPECT_NEAR(chart(372.039).eta, 0.987348789892748, 1e-9);
  EXPECT_NEAR(chart(450.0).eta, 0.4388573465526325, 1e-9);
  EXPECT_EQ(chart(450.0).status, status::ok);
}

TEST_F(HeavyFraction, ViscosityFallsWithTemperature) {
  R8 last = chart(250.0).eta;
  for (R8 T = 255.0; T < 735.0; T += 5.0) {
    const Answer a = chart(T);
    EXPECT_EQ(a.status, status::ok) << T;
    EXPECT_LT(a.eta, last) << T;
    last = a.eta;
  }
}

TEST_F(HeavyFraction, AMissingWatsonFactorIsEstimatedAndStored) {
  chart(300.0);
  EXPECT_NEAR(comp.UOPK(kCut), 11.715330074684301, 1e-12);
}

TEST_F(HeavyFraction, AGivenWatsonFactorIsTaken) {
  comp.UOPK(kCut) = 12.5;
  EXPECT_NEAR(chart(310.0).eta, 2.6544959808140844, 1e-9);
  EXPECT_EQ(comp.UOPK(kCut), 12.5);
}

TEST_F(HeavyFraction, ALighterCutOnTheLowerHalfOfTheChart) {
  comp.ATBP(kCut) = 370.0;
  comp.TC(kCut) = 560.0;
  comp.PC(kCut) = 28.0;
  comp.VC(kCut) = 0.45;
  comp.RHO(kCut) = 0.73;
  EXPECT_NEAR(chart(300.0).eta, 0.4370966478208438, 1e-10);
}

TEST_F(HeavyFraction, ChartValuesAreLimited) {
  comp.ATBP(kCut) = 900.0;
  comp.TC(kCut) = 1000.0;
  comp.PC(kCut) = 10.0;
  comp.VC(kCut) = 2.0;
  comp.RHO(kCut) = 1.0;
  EXPECT_NEAR(chart(250.0).eta, 481076.2175086096, 1e-3);
  comp.ATBP(kCut) = 2000.0;
  comp.UOPK(kCut) = 11.734557792661287;
  EXPECT_NEAR(chart(250.0).eta, 481076.2175086096, 1e-3);
}

TEST_F(HeavyFraction, TheOrdinateIsLimited) {
  comp.ATBP(kCut) = 900.0;
  comp.TC(kCut) = 1000.0;
  comp.PC(kCut) = 10.0;
  comp.VC(kCut) = 2.0;
  comp.RHO(kCut) = 1.0;
  const Answer cold = chart(150.0);
  EXPECT_EQ(cold.status, status::ok);
  // exp(exp 3) - 0.7 times the density.
  EXPECT_NEAR(cold.eta, 565233382.391403, 1e-3);
}

TEST_F(HeavyFraction, FiveCarbonAtomsAreNotHeavy) {
  comp.HCRAT(kCut) = 2.0;
  comp.RMOLW(kCut) = 5.0 * (widen(12.01115F) + widen(1.00797F) * 2.0);
  const Answer a = chart(300.0);
  EXPECT_EQ(a.status, status::not_available);
  EXPECT_EQ(a.eta, 0.0);
  EXPECT_EQ(test::ring_texts(), std::vector<std::string>{"Correlation inapplicable: component not heavy"});
  comp.RMOLW(kCut) += 0.01;
  EXPECT_EQ(chart(300.0).status, status::ok);
  EXPECT_EQ(ring.count, 1);
}

TEST_F(HeavyFraction, TooHighAKinematicViscosityIsRefused) {
  Answer a;
  kinematic_to_dynamic(1.0001e15, 1.0, a.eta, a.status);
  EXPECT_EQ(a.status, status::range);
  EXPECT_EQ(a.eta, 0.0);
  EXPECT_EQ(test::ring_texts(), std::vector<std::string>{"Kinematic viscosity > 10**15"});
  kinematic_to_dynamic(1e15, 0.9, a.eta, a.status);
  EXPECT_EQ(a.status, status::ok);
  EXPECT_EQ(a.eta, 0.9e15);
}

TEST_F(HeavyFraction, AboveCriticalThereIsNoLiquid) {
  EXPECT_EQ(chart(740.0).status, status::ok);
  const Answer a = chart(740.1);
  EXPECT_EQ(a.status, status::supercritical);
  EXPECT_EQ(a.eta, 0.0);
}

TEST_F(HeavyFraction, WhereTheChartHasNoLineThereIsNoLogarithmOfANegativeNumber) {
  comp.UOPK(kCut) = 60.0;
  comp.ATBP(kCut) = 700.0;
  std::feclearexcept(FE_ALL_EXCEPT);
  const Answer a = chart(300.0);
  EXPECT_EQ(std::fetestexcept(FE_INVALID), 0);
  EXPECT_EQ(a.status, status::range);
  EXPECT_EQ(a.eta, 0.0);
}

TEST_F(HeavyFraction, MissingConstantsAreTold) {
  for (auto* constant : {&comp.ATBP, &comp.RHO, &comp.PC, &comp.VC}) {
    test::set_fraction(kCut);
    (*constant)(kCut) = 0.0;
    for (const R8 T : {250.0, 300.0}) {
      const Answer a = chart(T);
      EXPECT_EQ(a.status, status::model_error);
      EXPECT_EQ(a.eta, 0.0);
    }
    EXPECT_EQ(comp.UOPK(kCut), 0.0);
  }
}

}  // namespace
}  // namespace talix
