#include "database/overrides.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "database/key_access.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "engine/reset.h"
#include "engine/setup.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "liquid/snl_nrtl.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"
#include "support/eos_fixture.h"

namespace talix {
namespace {

using test::KeyAnswer;

KeyAnswer call(I4 section, I4 act, const std::vector<R8>& values = {}) {
  return test::model_keys(section, act, values);
}

class OverridesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    I4 nfail = 0;
    SHINI0(1, "C1  ", 4, nfail);
  }
};

TEST_F(OverridesTest, DatumIsReadAndReplaced) {
  const KeyAnswer before = call(model::ideal_gas, action::information);
  EXPECT_EQ(before.nfail, status::ok);
  EXPECT_EQ(before.names(), std::vector<std::string>{"H-datum"});
  EXPECT_EQ(before.keys(1).view(), "H-datum   ");
  EXPECT_FLOAT_EQ(static_cast<R4>(before.values(1)), 111.111111F);

  const KeyAnswer written = call(model::ideal_gas, action::input, {273.15});
  EXPECT_EQ(written.nfail, status::ok);
  EXPECT_EQ(written.count, 1);
  EXPECT_EQ(setup.TREF, 273.15);
  EXPECT_EQ(call(model::ideal_gas, action::information).values(1), 273.15);
}

TEST_F(OverridesTest, WriteMovesTheDataGenerationAndReadDoesNot) {
  const I4 generation = setup.generation;
  call(model::ideal_gas, action::information);
  EXPECT_EQ(setup.generation, generation);
  call(model::ideal_gas, action::input, {273.15});
  EXPECT_EQ(setup.generation, generation + 1);
}

TEST_F(OverridesTest, FitSettingsAreReadAndReplaced) {
  const KeyAnswer before = call(model::nrtl, action::information);
  EXPECT_EQ(before.names(), (std::vector<std::string>{"UFIL Tlow", "UFIL Tupp", "UFIL Alpha", "UFIL on?"}));
  EXPECT_FLOAT_EQ(static_cast<R4>(before.values(1)), 273.15F);
  EXPECT_FLOAT_EQ(static_cast<R4>(before.values(2)), 373.15F);
  EXPECT_FLOAT_EQ(static_cast<R4>(before.values(3)), 0.3F);
  EXPECT_EQ(before.values(4), 1.0);
  call(model::nrtl, action::input, {280.0, 350.0, 0.2, 0.0});
  EXPECT_EQ(unifill.Tlow, 280.0);
  EXPECT_EQ(unifill.Tupp, 350.0);
  EXPECT_EQ(unifill.Alpha, 0.2);
  EXPECT_FALSE(unifill.on);
  EXPECT_EQ(call(model::nrtl, action::information).values(4), 0.0);
}

TEST_F(OverridesTest, FitIsOnWhenTheWholePartOfTheValueIsOne) {
  const std::vector<std::pair<R8, bool>> cases{{1.0, true},    {0.99995, true},  {0.9998, false},
                                               {1.9998, true}, {1.99995, false}, {2.0, false},
                                               {0.0, false},   {-1.0, false},    {1e300, false}};
  for (const auto& [value, expected] : cases) {
    call(model::nrtl, action::input, {280.0, 350.0, 0.2, value});
    EXPECT_EQ(static_cast<bool>(unifill.on), expected) << value;
  }
}

TEST_F(OverridesTest, FitPointNeedsItsModel) {
  const KeyAnswer written = call(model::vardo3, action::input, {300.0, 1e5});
  EXPECT_EQ(written.nfail, status::model_error);
  EXPECT_EQ(written.names(), (std::vector<std::string>{"Tkij", "Pkij"}));
  EXPECT_EQ(call(model::vardo3, action::information).list(), (std::vector<R8>{300.0, 1e5}));
  I4 slot = 0;
  I4 nfail = 0;
  SHMLD0(model::vardo3, slot, nfail);
  const KeyAnswer read = call(model::vardo3, action::information);
  EXPECT_EQ(read.nfail, status::ok);
  EXPECT_FLOAT_EQ(static_cast<R4>(read.values(1)), 298.15F);
  EXPECT_EQ(read.values(2), 101325.0);
}

// A mixture under the A-excess rule, all of it liquid at 250 K and 60 bar.
constexpr I4 kCount = 3;

class FitPoint : public ::testing::Test {
 protected:
  void SetUp() override {
    test::reset_fixture();
    setup.NUMH = kCount;
    models = {};
    reset_nrtl_cache();
    for (int i = 1; i <= kCount; ++i) {
      for (int j = 1; j <= kCount; ++j) {
        if (i == j) continue;
        pairs.TAUT0(i, j) = 0.3 + 0.02 * i - 0.01 * j;
        pairs.ALFA(i, j) = i < j ? 0.2 : 0.0;
      }
    }
    I4 nfail = 0;
    SHMLD0(model::vardo3, slot, nfail);
  }
  [[nodiscard]] std::vector<R8> results() const {
    test::Call c;
    c.composition({0.3, 0.3, 0.4});
    c.args.LFUG = true;
    c.args.MODEL = slot;
    c.args.IPHASE = phase::liquid;
    c.args.T = 260.0;
    c.args.P = 60e5;
    c.run();
    EXPECT_EQ(c.args.ICODE, status::ok);
    return {c.args.Z, c.FUG(1), c.FUG(kCount)};
  }
  I4 slot = 0;
};

TEST_F(FitPoint, AWriteMatchesThePairsOfTheWholeSet) {
  EXPECT_EQ(pairs.BICWS(1, kCount), 0.0);
  const std::vector<R8> before = results();
  const I4 generation = setup.generation;
  ASSERT_EQ(call(model::vardo3, action::input, {250.0, 60e5}).nfail, status::ok);
  EXPECT_GT(setup.generation, generation);
  for (int i = 1; i <= kCount; ++i)
    for (int j = i + 1; j <= kCount; ++j) EXPECT_NE(pairs.BICWS(i, j), 0.0) << i << ' ' << j;
  EXPECT_NE(results(), before);
}

TEST_F(FitPoint, EveryKeyCounts) {
  ASSERT_EQ(call(model::vardo3, action::input, {250.0, 60e5}).nfail, status::ok);
  test::walk_keys([](I4 act, const std::vector<R8>& values) { return call(model::vardo3, act, values); },
                  [this] { return results(); });
}

TEST_F(FitPoint, AReadOrAListMatchesNothing) {
  call(model::vardo3, action::information);
  call(model::vardo3, 0, {250.0, 60e5});
  EXPECT_EQ(pairs.BICWS(1, kCount), 0.0);
}

TEST_F(FitPoint, AComponentThatIsNoLiquidGivesItsRootType) {
  ASSERT_EQ(call(model::vardo3, action::input, {250.0, 60e5}).nfail, status::ok);
  const KeyAnswer written = call(model::vardo3, action::input, {298.15, 101325.0});
  EXPECT_EQ(written.nfail, phase::vapour);
  EXPECT_EQ(written.count, 2);
  EXPECT_EQ(a_excess.TKIJ, 298.15);
  for (int i = 1; i <= kCount; ++i)
    for (int j = 1; j <= kCount; ++j) EXPECT_EQ(pairs.BICWS(i, j), 0.0);
}

TEST_F(OverridesTest, DatumChangesTheEnthalpyOfTheIdealGas) {
  test::reset_fixture();
  test::walk_keys([](I4 act, const std::vector<R8>& values) { return call(model::ideal_gas, act, values); },
                  [] {
                    test::Call c;
                    c.composition({0.5, 0.5});
                    c.args.LTHERM = true;
                    c.args.MODEL = test::kIdealGas;
                    c.args.IPHASE = phase::vapour;
                    c.args.IHTYPE = thermal::ideal_gas;
                    c.args.T = 300.0;
                    c.args.P = 1e5;
                    c.run();
                    return std::vector<R8>{c.args.H, c.args.S};
                  });
}

TEST_F(OverridesTest, EveryKeyOfTheFitSettings) {
  test::walk_keys([](I4 act, const std::vector<R8>& values) { return call(model::nrtl, act, values); },
                  [] {
                    return std::vector<R8>{unifill.Tlow, unifill.Tupp, unifill.Alpha, unifill.on ? 1.0 : 0.0};
                  },
                  [](std::size_t k, R8 value) { return k == 3 ? 1.0 - value : value + 1.0; });
}

TEST_F(OverridesTest, HydrateSectionsHoldWaterAndLatticeOfTheirStructure) {
  const std::vector<std::string> first{"D-Muw0-I", "D-Hw0-I", "D-Vw-I", "D-Cpw0-I", "b-I", "Nu-I1",
                                       "Nu-I2",    "Rad-I1",  "Rad-I2", "Z-I1",     "Z-I2"};
  const std::vector<std::string> second{"D-Muw0-II", "D-Hw0-II", "D-Vw-II", "D-Cpw0-II", "b-II", "Nu-II1",
                                        "Nu-II2",    "Rad-II1",  "Rad-II2", "Z-II1",     "Z-II2"};
  for (const auto& [section, structure] :
       {std::pair{55, 1}, std::pair{56, 1}, std::pair{57, 2}, std::pair{58, 2}}) {
    const KeyAnswer read = call(section, action::information);
    EXPECT_EQ(read.nfail, status::ok);
    EXPECT_EQ(read.names(), structure == 1 ? first : second);
    const int column = 2 * structure - 1;
    std::vector<R8> expected;
    for (int row = 1; row <= 5; ++row) expected.push_back(hydrate.COHST(row, structure));
    for (int row = 1; row <= 3; ++row)
      for (int cavity = 0; cavity <= 1; ++cavity) expected.push_back(hydrate.COHCV(row, column + cavity));
    EXPECT_EQ(read.list(), expected);
    EXPECT_EQ(read.values(1), structure == 1 ? 1287.0 : 1068.0);
    EXPECT_EQ(read.values(11), structure == 1 ? 24.0 : 28.0);
  }
}

TEST_F(OverridesTest, EveryKeyOfTheHydrateSections) {
  const auto record = [] {
    std::vector<R8> all;
    for (int column = 1; column <= 4; ++column)
      for (int row = 1; row <= 3; ++row) all.push_back(hydrate.COHCV(row, column));
    for (int structure = 1; structure <= 2; ++structure)
      for (int row = 1; row <= 5; ++row) all.push_back(hydrate.COHST(row, structure));
    return all;
  };
  for (const I4 section : {55, 56, 57, 58})
    test::walk_keys([section](I4 act, const std::vector<R8>& values) { return call(section, act, values); },
                    record);
}

TEST_F(OverridesTest, HydrateTablesArePreparedAnewAfterAWrite) {
  setup.hydrate_initialised = true;
  call(model::wp1, action::information);
  call(model::wp1, 0);
  EXPECT_TRUE(static_cast<bool>(setup.hydrate_initialised));
  call(model::wp1, action::input, {1264.0, -4858.0, 4.6, -39.16, 0, 0.0435, 0.1304, 3.9, 4.3, 20, 24});
  EXPECT_FALSE(static_cast<bool>(setup.hydrate_initialised));
}

TEST_F(OverridesTest, AnyOtherActionOnlyListsTheKeys) {
  for (const I4 other : {0, 85, 88, 98}) {
    const I4 generation = setup.generation;
    const KeyAnswer answer = call(model::nrtl, other, {1.0, 2.0, 3.0, 4.0});
    EXPECT_EQ(answer.nfail, status::ok);
    EXPECT_EQ(answer.count, 4);
    EXPECT_EQ(answer.values(2), 2.0);
    EXPECT_FLOAT_EQ(static_cast<R4>(unifill.Tupp), 373.15F);
    EXPECT_EQ(setup.generation, generation);
  }
}

TEST_F(OverridesTest, SectionThatDoesNotApplyHasNoKeys) {
  for (const I4 section : {0, -1, 41, 42, 44, 46, 47, 79, 135, 139, 142, 147}) {
    const KeyAnswer answer = call(section, action::information);
    test::expect_refused(answer);
    test::expect_refused(call(section, action::input));
  }
}

}  // namespace
}  // namespace talix
