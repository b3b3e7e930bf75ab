#include "flash/flpq2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/error_matrix.h"
#include "fastprops/small_arrays.h"
#include "flash/fobj.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

class EnthalpySearchTest : public testing::Test {
 protected:
  void SetUp() override { test::fresh_flashes_alone(); }
  static void load(const std::vector<int>& numbers, const std::vector<R4>& feed) {
    test::FlashCase c;
    c.numbers = numbers;
    c.feed = feed;
    test::load(c);
  }
  struct Result {
    std::string text;
    I4 IFAIL;
    R4 FOUT;
  };
  // QSPEC [J/mol x flow], P [bar]
  static Result search(R4 QSPEC, R4 P) {
    Message STR{};
    STR.blank();
    Result r{};
    r.IFAIL = -7;
    fl.T = 300.0F;
    fl.P = P;
    fl.QSPEC = QSPEC;
    FLPQ2(r.FOUT, r.IFAIL, STR);
    r.text = trimmed(STR);
    return r;
  }
  // Enthalpy of the feed at T, P by the flash that the search uses.
  static R4 enthalpy_at(R4 T, R4 P) {
    R4 F = 0.0F, DF = 0.0F, FTL = 0.0F, FTV = 0.0F, CPL = 0.0F, CPV = 0.0F;
    L4 LIQUID{}, VAPOUR{};
    fl.T = T;
    fl.P = P;
    fl.QSPEC = 0.0F;
    FOBJ(F, DF, FTL, FTV, CPL, CPV, LIQUID, VAPOUR, logical(true));
    return F;
  }
};

TEST_F(EnthalpySearchTest, FindsTheTemperatureInEveryRegion) {
  load({20, 22, 25}, {0.3F, 0.4F, 0.3F});
  for (const R4 T : {120.0F, 180.0F, 230.0F, 290.0F, 330.0F, 420.0F, 800.0F, 1100.0F, 1500.0F}) {
    const R4 Q = enthalpy_at(T, 8.0F);
    const Result r = search(Q, 8.0F);
    EXPECT_EQ(r.text, "") << T;
    EXPECT_EQ(r.IFAIL, 0);
    EXPECT_NEAR(fl.T, T, 0.002F) << T;
    EXPECT_LE(std::fabs(r.FOUT / Q), 1.0E-4F) << T;
  }
}

TEST_F(EnthalpySearchTest, LowTargetsMoveTheLowerEndDown) {
  load({15, 3}, {0.5F, 0.5F});
  const R4 Q = enthalpy_at(70.0F, 2.0F);
  const Result r = search(Q, 2.0F);
  EXPECT_EQ(r.text, "");
  EXPECT_NEAR(fl.T, 70.0F, 0.002F);
}

TEST_F(EnthalpySearchTest, TargetBeyondTheRangeIsToldAndCounted) {
  load({20, 22}, {0.5F, 0.5F});
  const Result high = search(1.0E+6F, 8.0F);
  EXPECT_EQ(high.text, " Unbracketed root (FLPQ2)");
  EXPECT_EQ(high.IFAIL, 1);
  const I4 first = errmat.ERRMAT(error_row::FLPQ2, 1);
  EXPECT_EQ(first, errmat.NERRS) << "the last event";
  const Result low = search(-1.0E+7F, 8.0F);
  EXPECT_EQ(low.text, " Unbracketed root (FLPQ2)");
  EXPECT_GT(errmat.ERRMAT(error_row::FLPQ2, 1), first);
}

TEST_F(EnthalpySearchTest, TargetThatIsNoNumberEndsTheSearch) {
  load({20, 22}, {0.5F, 0.5F});
  const Result r = search(std::numeric_limits<R4>::quiet_NaN(), 8.0F);
  EXPECT_EQ(r.text, " Unbracketed root (FLPQ2)");
  EXPECT_EQ(r.IFAIL, 1);
}

TEST_F(EnthalpySearchTest, PureComponentInItsJumpGetsTheSplitOfTheTwoResiduals) {
  load({22}, {2.0F});
  const R4 P = 9.98F;
  R8 PS = 0.0, DPS = 0.0;
  I4 NFAIL = 0;
  // Vapour and liquid on both sides of the jump.
  SPSAT0(300.0, 0.0, 1, logical(true), logical(true), method::bramm_default, PS, DPS, NFAIL);
  const R4 TSAT = static_cast<R4>(300.0 + (static_cast<R8>(P) * 100000.0 - PS) / DPS);
  const R4 vapour = enthalpy_at(TSAT + 0.1F, P);
  const R4 liquid = enthalpy_at(TSAT - 0.1F, P);
  EXPECT_NEAR((vapour - liquid) / 2.0F, 14600.0F, 600.0F) << "heat of vaporisation of propane at 300 K";
  for (const R4 share : {0.02F, 0.35F, 0.5F, 0.9F}) {
    const R4 Q = liquid + share * (vapour - liquid);
    const Result r = search(Q, P);
    ASSERT_EQ(r.text, "") << share;
    EXPECT_NEAR(fl.T, TSAT, 0.01F);
    EXPECT_NEAR(TELOP(1, fl.FV) / 2.0F, share, 0.002F);
    EXPECT_NEAR(fl.FV(1) + fl.FL(1), 2.0F, 1.0E-6F);
    EXPECT_LE(std::fabs(r.FOUT), 1.0F) << "the balance is met by the split";
  }
}

TEST_F(EnthalpySearchTest, SearchThatDoesNotSettleEndsAfterFiftySteps) {
  // A target of 0 makes the relative test fail always, and some temperatures then swing by their last digit.
  test::MixtureSource source(5);
  int ended = 0;
  for (int k = 0; k < 1500 && ended == 0; ++k) {
    test::load(source.next());
    const Result r = search(0.0F, static_cast<R4>(std::exp(source.uniform(std::log(0.5), std::log(300.0)))));
    ASSERT_TRUE(std::isfinite(fl.T));
    if (r.text.empty()) {
      EXPECT_EQ(r.IFAIL, 0);
      continue;
    }
    EXPECT_EQ(r.text, " More than MAXIT iterations (FLPQ2)");
    EXPECT_EQ(r.IFAIL, 1);
    EXPECT_EQ(errmat.NERRS, 0) << "echoed, not counted";
    ++ended;
  }
  EXPECT_EQ(ended, 1);
}

TEST_F(EnthalpySearchTest, StateBelongsToTheTemperatureFound) {
  test::load(test::natural_gas());
  const R4 Q = enthalpy_at(240.0F, 40.0F);
  ASSERT_EQ(search(Q, 40.0F).text, "");
  const FlashVec FV = fl.FV;
  const R4 T = fl.T;
  fl.QSPEC = Q;
  enthalpy_at(T, 40.0F);
  for (int i = 1; i <= fl.NC; ++i) EXPECT_EQ(FV(i), fl.FV(i));
}

}  // namespace
}  // namespace talix
