#include "flash/fltp2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "fastprops/error_matrix.h"
#include "fastprops/small_arrays.h"
#include "flash/fltp.h"
#include "flash/kval.h"
#include "support/flash_case.h"
#include "support/random_mixtures.h"

namespace talix {
namespace {

class OlderFlash : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    test::load(test::natural_gas());
    fl.T = 253.15F;
    fl.P = 40.0F;
  }
  // The kept text; STR has to stay as it is.
  static std::string flash() {
    Message STR{};
    STR = "untouched";
    fl.NCAL = flash_status::fresh;
    FLTP2(STR);
    EXPECT_EQ(trimmed(STR), "untouched");
    return std::string{trimmed(FLTP2_TEXT)};
  }
};

TEST_F(OlderFlash, AgreesWithTheNewerForm) {
  Message STR{};
  for (const R4 T : {200.0F, 230.0F, 253.15F, 290.0F, 400.0F}) {
    fl.T = T;
    fl.FRV = 1.0F;
    fl.NCAL = flash_status::fresh;
    STR.blank();
    FLTP(STR);
    const R4 newer = fl.FRV;
    fl.FRV = 1.0F;
    EXPECT_EQ(flash(), "");
    EXPECT_NEAR(fl.FRV, newer, 1.0E-4F) << T;
    EXPECT_NEAR(TELOP(fl.NC, fl.FV) + TELOP(fl.NC, fl.FL), 1.0F, 1.0E-5F);
  }
}

TEST_F(OlderFlash, FeedsOutOfRangeAreToldInSixtyCharacters) {
  fl.F(2) = -1.0F;
  EXPECT_EQ(flash(), " One feed stream negative or too big, no flash calculation (");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  fl.F.fill(0.0F);
  EXPECT_EQ(flash(), " Total feed rate greater than 1.0e+9, no flash calculation (");
  fl.F(1) = 1.0F;
  fl.P = 0.0F;
  EXPECT_EQ(flash(), " Pressure not above 0, no flash calculation (FLTP2)");
  EXPECT_EQ(errmat.NERRS, 0) << "nothing is counted";
}

TEST_F(OlderFlash, NegligibleFeedTakesTheFractionAtEntry) {
  for (int i = 1; i <= fl.NC; ++i) fl.F(i) = 1.0E-9F;
  fl.FRV = 0.25F;
  EXPECT_EQ(flash(), "");
  EXPECT_EQ(fl.FRV, 0.25F);
}

TEST_F(OlderFlash, NewtonWithoutConvergenceIsTold) {
  test::FlashCase c;
  c.numbers = {3, 134};
  c.feed = {0.5F, 0.5F};
  test::load(c);
  fl.T = 200.0F;
  fl.P = 1.0E-7F;
  // Started from all liquid with the last trace of a vapour.
  for (int i = 1; i <= 2; ++i) {
    fl.FV(i) = 1.0E-30F;
    fl.FL(i) = 0.5F;
  }
  fl.NCAL = flash_status::warm_start;
  Message STR{};
  FLTP2(STR);
  EXPECT_EQ(trimmed(FLTP2_TEXT), " Flash unable to converge to a solution (FLTP2)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
}

TEST_F(OlderFlash, EndsAfterEightyPasses) {
  // Mixtures near their critical point need more passes than this form has.
  test::MixtureSource source(17);
  int ended = 0;
  for (int k = 0; k < 400 && ended == 0; ++k) {
    const test::FlashCase mixture = source.next();
    test::load(mixture);
    const R8 P = source.uniform(60.0, 150.0);
    fl.T = static_cast<R4>(test::temperature_between(mixture, P, source.uniform(0.1, 0.9)));
    fl.P = static_cast<R4>(P);
    fl.FRV = 1.0F;
    const std::string text = flash();
    if (text.empty()) continue;
    EXPECT_EQ(text, " K-values unusually dependent on composition, no convergence");
    EXPECT_EQ(fl.NCAL, flash_status::failed);
    ++ended;
  }
  EXPECT_EQ(ended, 1);
}

TEST_F(OlderFlash, WarmStartTakesTheLiquidOfTheFlows) {
  fl.FRV = 1.0F;
  ASSERT_EQ(flash(), "");
  const R4 cold = fl.FRV;
  Message STR{};
  fl.NCAL = flash_status::warm_start;
  FLTP2(STR);
  EXPECT_EQ(trimmed(FLTP2_TEXT), "");
  EXPECT_NEAR(fl.FRV, cold, 1.0E-5F);
}

}  // namespace
}  // namespace talix
