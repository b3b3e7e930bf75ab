#include "engine/model_table.h"

#include <gtest/gtest.h>

#include <cmath>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/reset.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "support/golden.h"

namespace talix {
namespace {

class ModelTableTest : public ::testing::Test {
 protected:
  void SetUp() override { reset_engine(); }
};

struct Loaded {
  I4 slot;
  I4 nfail;
};

Loaded load(I4 model_code) {
  Loaded result{-1, 0};
  SHMLD0(model_code, result.slot, result.nfail);
  return result;
}

R8 single(const std::string& figure) { return static_cast<R8>(std::stof(figure)); }

TEST_F(ModelTableTest, EveryRowIsThatOfTheTable) {
  const auto rows = test::golden_rows("model_rows.csv");
  ASSERT_EQ(rows.size(), 41U);
  for (const test::GoldenRow& row : rows) {
    SCOPED_TRACE(row.at(0) + " " + row.at(1));
    ASSERT_EQ(row.size(), 22U);
    const I4 model_code = std::stoi(row[0]);
    if (model_code != 0) {
      EXPECT_EQ(trimmed(ETOA(model_code)), row[1]);
    }
    models.count = 0;
    I4 slot = -1;
    I4 nfail = 0;
    SMDAO0(model_code, slot, nfail);
    ASSERT_EQ(nfail, status::ok);
    ASSERT_EQ(slot, 1);
    EXPECT_EQ(models.count, 1);
    EXPECT_EQ(models.MODEL(1), model_code);
    EXPECT_EQ(models.MODTYP(1), std::stoi(row[2]));
    EXPECT_EQ(models.MODPUR(1), std::stoi(row[3]));
    EXPECT_EQ(models.MODFUN(1), std::stoi(row[4]));
    EXPECT_EQ(models.MODMIX(1), std::stoi(row[5]));
    EXPECT_EQ(models.MODLIQ(1), std::stoi(row[6]));
    EXPECT_EQ(models.MODRSF(1), std::stoi(row[7]));
    EXPECT_EQ(models.MODRSP(1), std::stoi(row[8]));
    EXPECT_EQ(static_cast<bool>(models.MDFCAL(1)), row[9] == "1");
    EXPECT_EQ(static_cast<bool>(models.MDVCAL(1)), row[10] == "1");
    EXPECT_EQ(static_cast<bool>(models.MDHCAL(1)), row[11] == "1");
    EXPECT_EQ(models.C1PAR(1), single(row[12]));
    EXPECT_EQ(models.C2PAR(1), single(row[13]));
    EXPECT_EQ(models.M1PAR(1), single(row[14]));
    EXPECT_EQ(models.M2PAR(1), single(row[15]));
    EXPECT_EQ(models.M3PAR(1), single(row[16]));
    EXPECT_EQ(models.M4PAR(1), 0.0);
    for (int i = 1; i <= 5; ++i)
      EXPECT_EQ(models.MODCOR(i, 1), std::stoi(row[static_cast<std::size_t>(16 + i)]));
  }
}

TEST_F(ModelTableTest, ConstantsAreWidenedSinglePrecision) {
  ASSERT_EQ(load(model::srk).nfail, status::ok);
  EXPECT_EQ(models.M1PAR(1), 1.752560019493103);
}

TEST_F(ModelTableTest, CriticalConstantsOfTheCubicForms) {
  ASSERT_EQ(load(model::vardo1).slot, 1);
  ASSERT_EQ(load(model::van_der_waals).slot, 2);
  ASSERT_EQ(load(model::peng_robinson).slot, 3);
  EXPECT_NEAR(models.OBPAR(1), 0.08664035, 5e-9);
  EXPECT_NEAR(models.OAPAR(1), 0.42748023, 5e-9);
  EXPECT_NEAR(models.OBPAR(2), 0.125, 1e-14);
  EXPECT_NEAR(models.OAPAR(2), 0.421875, 1e-14);
  EXPECT_NEAR(models.OBPAR(3), 0.07779607, 5e-9);
  EXPECT_NEAR(models.OAPAR(3), 0.45723553, 5e-9);
  // Closed form of the first pair: (2^(1/3) - 1)/3.
  EXPECT_NEAR(models.OBPAR(1), (std::cbrt(2.0) - 1.0) / 3.0, 1e-15);
}

TEST_F(ModelTableTest, ModelsThatAreNoCubicCarryTheSoaveConstantsToo) {
  for (const I4 code : {model::saft, model::cpa, model::hard_sphere_chain, model::steam}) {
    models.count = 0;
    ASSERT_EQ(load(code).nfail, status::ok);
    EXPECT_NEAR(models.OBPAR(1), 0.08664035, 5e-9);
    EXPECT_NEAR(models.OAPAR(1), 0.42748023, 5e-9);
  }
}

TEST_F(ModelTableTest, LoadingTwiceGivesTheSameSlot) {
  EXPECT_EQ(load(model::vardo1).slot, 1);
  EXPECT_EQ(load(model::vardo1).slot, 1);
  EXPECT_EQ(models.count, 1);
}

TEST_F(ModelTableTest, FreezeOutTakesAFurtherSlotEachTime) {
  EXPECT_EQ(load(model::freeze_out).slot, 1);
  EXPECT_EQ(load(model::freeze_out).slot, 2);
  EXPECT_EQ(models.count, 2);
}

TEST_F(ModelTableTest, ReferenceModelIsLoadedBehind) {
  EXPECT_EQ(load(model::unifac_dm).slot, 1);
  EXPECT_EQ(models.count, 2);
  EXPECT_EQ(models.MODEL(2), model::vardo1);
}

TEST_F(ModelTableTest, ReferenceModelThatIsThereIsNotLoadedAgain) {
  EXPECT_EQ(load(model::vardo1).slot, 1);
  EXPECT_EQ(load(model::keldrin).slot, 2);
  EXPECT_EQ(models.count, 2);
}

TEST_F(ModelTableTest, KeldrinBringsVardo1) {
  EXPECT_EQ(load(model::keldrin).slot, 1);
  EXPECT_EQ(models.count, 2);
  EXPECT_EQ(models.MODEL(2), model::vardo1);
}

TEST_F(ModelTableTest, HydrateOverAssociationBringsItsEquation) {
  EXPECT_EQ(load(model::wpcpa1).slot, 1);
  EXPECT_EQ(models.MODEL(2), model::cpa);
}

TEST_F(ModelTableTest, ActivityModelBringsTheIdealGas) {
  EXPECT_EQ(load(model::unifac).slot, 1);
  EXPECT_EQ(models.MODEL(2), model::ideal_gas);
}

TEST_F(ModelTableTest, FullTableRefusesNewModelsOnly) {
  for (int i = 1; i <= 9; ++i) ASSERT_EQ(load(model::freeze_out).slot, i);
  ASSERT_EQ(load(model::vardo1).slot, 10);
  EXPECT_EQ(load(model::srk).nfail, status::range);
  EXPECT_EQ(models.count, 10);
  const Loaded again = load(model::vardo1);
  EXPECT_EQ(again.nfail, status::ok);
  EXPECT_EQ(again.slot, 10);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(ModelTableTest, ModelStaysWhenItsDependentDoesNotFit) {
  for (int i = 1; i <= 9; ++i) ASSERT_EQ(load(model::freeze_out).slot, i);
  const Loaded keldrin = load(model::keldrin);
  EXPECT_EQ(keldrin.nfail, status::range);
  EXPECT_EQ(keldrin.slot, 10);
  EXPECT_EQ(models.MODEL(10), model::keldrin);
}

TEST_F(ModelTableTest, UnknownCodeIsNotCounted) {
  for (const I4 code : {-1, 6, 9, 39, 66, 144, 147, 100000}) {
    const Loaded result = load(code);
    EXPECT_EQ(result.nfail, status::unknown);
    EXPECT_EQ(result.slot, 0);
  }
  EXPECT_EQ(models.count, 0);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(ModelTableTest, LookUpFindsTheFirstSlotOrNone) {
  ASSERT_EQ(load(model::freeze_out).slot, 1);
  ASSERT_EQ(load(model::freeze_out).slot, 2);
  I4 slot = -1;
  SMDAO1(model::freeze_out, slot);
  EXPECT_EQ(slot, 1);
  SMDAO1(model::vardo1, slot);
  EXPECT_EQ(slot, 0);
}

TEST_F(ModelTableTest, LookUpSeesLoadedSlotsOnly) {
  ASSERT_EQ(load(model::vardo1).slot, 1);
  models.count = 0;
  I4 slot = -1;
  SMDAO1(model::vardo1, slot);
  EXPECT_EQ(slot, 0);
}

TEST_F(ModelTableTest, AExcessModelSetsItsFitPoint) {
  ASSERT_EQ(load(model::vardo3).nfail, status::ok);
  EXPECT_EQ(a_excess.TKIJ, 298.1499938964844);
  EXPECT_EQ(a_excess.PKIJ, 101325.0);
}

TEST_F(ModelTableTest, NewSlotMovesTheDataGeneration) {
  const I4 generation = setup.generation;
  ASSERT_EQ(load(model::vardo1).nfail, status::ok);
  EXPECT_GT(setup.generation, generation);
}

}  // namespace
}  // namespace talix
