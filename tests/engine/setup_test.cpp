#include "engine/setup.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "association/cpa_record.h"
#include "characterisation/fraction_record.h"
#include "database/component_record.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "engine/reset.h"
#include "engine/setup_record.h"
#include "eos/two_dimensional_record.h"
#include "liquid/solubility_record.h"
#include "liquid/unifac_record.h"
#include "solids/hydrate_record.h"
#include "support/test_support.h"
#include "transport/dense_fluid_record.h"

namespace talix {
namespace {

class SetupTest : public ::testing::Test {
 protected:
  void SetUp() override { reset_engine(); }
};

I4 start_set(I4 count, const std::string& codes, I4 width = 4) {
  I4 nfail = 0;
  SHINI0(count, codes.c_str(), width, nfail);
  return nfail;
}

I4 set_path(std::string path, std::string_view mode = "INPUT", I4 incoming = -5) {
  SURPT0(path.data(), static_cast<int>(path.size()), mode, incoming);
  return incoming;
}

void expect_last_message(I4 severity, std::string_view name, std::string_view message) {
  ASSERT_GT(ring.count, 0);
  EXPECT_EQ(ring.SEVER0(ring.count), severity);
  EXPECT_EQ(ring.NAMER0(ring.count).view(), name);
  EXPECT_EQ(trimmed(ring.TXTER0(ring.count)), message);
}

// ---- component set

TEST_F(SetupTest, ComponentCodesAreCutOrPaddedToEightCharacters) {
  EXPECT_EQ(start_set(2, "C1  C2  ", 4), status::ok);
  EXPECT_EQ(setup.NUMH, 2);
  EXPECT_EQ(setup.SHCOMP(1).view(), "C1      ");
  EXPECT_EQ(setup.SHCOMP(2).view(), "C2      ");
  EXPECT_EQ(start_set(1, "ABCDEFGHIJ", 10), status::ok);
  EXPECT_EQ(setup.SHCOMP(1).view(), "ABCDEFGH");
}

TEST_F(SetupTest, FiftyComponentsAreTheMost) {
  EXPECT_EQ(start_set(50, std::string(200, 'A')), status::ok);
  EXPECT_EQ(setup.NUMH, 50);
  EXPECT_EQ(start_set(51, std::string(204, 'B')), status::range);
  EXPECT_EQ(setup.NUMH, 50);
  EXPECT_EQ(setup.SHCOMP(50).view(), "AAAA    ");
  EXPECT_EQ(ring.count, 1);
  expect_last_message(3, "SHINI0", "Number of components exceeds allowed maximum");
}

TEST_F(SetupTest, ZeroComponentsAreRefusedWithAMessage) {
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  EXPECT_EQ(start_set(0, ""), status::range);
  EXPECT_EQ(setup.NUMH, 1);
  expect_last_message(3, "SHINI0", "Zero number of components");
}

TEST_F(SetupTest, NegativeNumberOfComponentsIsRefusedInSilence) {
  EXPECT_EQ(start_set(-1, ""), status::range);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(SetupTest, NewSetEmptiesTheModelTableAndTheFractions) {
  I4 slot = 0;
  I4 nfail = 0;
  SHMLD0(model::vardo1, slot, nfail);
  setup.NFRAC = 3;
  setup.hydrate_initialised = true;
  setup.IDFRAC.fill(9);
  ASSERT_EQ(start_set(2, "C1  C2  "), status::ok);
  EXPECT_EQ(models.count, 0);
  EXPECT_EQ(setup.NFRAC, 0);
  EXPECT_FALSE(setup.hydrate_initialised);
  EXPECT_EQ(setup.IDFRAC(1), 0);
  EXPECT_EQ(setup.IDFRAC(2), 0);
}

TEST_F(SetupTest, DatumIsPutBackByEveryCallAndAlsoByAFailedOne) {
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  EXPECT_FLOAT_EQ(static_cast<R4>(setup.TREF), 111.111111F);
  setup.TREF = 273.15;
  EXPECT_EQ(start_set(-1, ""), status::range);
  EXPECT_FLOAT_EQ(static_cast<R4>(setup.TREF), 111.111111F);
}

TEST_F(SetupTest, SecondSetKeepsOverriddenSettingsButNotTheDatum) {
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  I4 keys = 0;
  I4 nfail = 0;
  KeyNames names{};
  KeyValues values{};
  SURMD0(keys, names, 10, values, action::information, model::nrtl, nfail);
  values(3) = 0.47;
  SURMD0(keys, names, 10, values, action::input, model::nrtl, nfail);
  values(1) = 273.15;
  SURMD0(keys, names, 10, values, action::input, model::ideal_gas, nfail);
  ASSERT_EQ(start_set(2, "C1  C2  "), status::ok);
  EXPECT_EQ(unifill.Alpha, 0.47);
  EXPECT_FLOAT_EQ(static_cast<R4>(setup.TREF), 111.111111F);
}

// ---- first-call defaults

TEST_F(SetupTest, FirstCallSetsTheEmptyValues) {
  setup.output_unit = 99;
  setup.platform = platform::vax;
  comp.TC.fill(5.0);
  comp.PSAT.fill(5.0);
  comp.SPAR.fill(5.0);
  comp.ISHEN.fill(logical(true));
  fractions.FTB.fill(5.0);
  fractions.FX.fill(5.0);
  cpa_sets.EOSK.fill(5.0);
  solubility.RSDEL.fill(5.0);
  unifac.AMNINT.fill(5.0F);
  unifac.NSUB = 3;
  planar.A2D.fill(5.0);
  resv.CP = 5.0;
  setup.pure_records_read = 5;
  const I4 generation = setup.generation;

  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  EXPECT_EQ(setup.output_unit, 6);
  EXPECT_EQ(setup.platform, platform::pc_ftn77);
  EXPECT_EQ(setup.pure_records_read, 0);
  EXPECT_EQ(setup.date_pure.view(), "Not yet retrieved   ");
  EXPECT_EQ(setup.date_binary.view(), "Not yet retrieved   ");
  EXPECT_EQ(setup.date_hydrate.view(), "Not yet retrieved   ");
  EXPECT_EQ(setup.date_engine.view(), "October 2002        ");
  EXPECT_GT(setup.generation, generation);
  for (int i = 1; i <= kMaxComponents; ++i) {
    EXPECT_EQ(comp.TC(i), 0.0);
    EXPECT_EQ(comp.PSAT(i, 5), 0.0);
    EXPECT_EQ(comp.SPAR(4, i), 0.0);
    EXPECT_EQ(comp.ICS(i).view(), "    ");
    EXPECT_EQ(comp.TMELT(i), -1.0);
    EXPECT_FALSE(comp.ISHEN(i));
    EXPECT_EQ(planar.A2D(i), 0.0);
    EXPECT_EQ(planar.AOB(i), -1.0);
    EXPECT_EQ(fractions.FTB(i), 0.0);
    EXPECT_EQ(fractions.FX(50, i), 0.0);
    EXPECT_EQ(cpa_sets.EOSK(7, i), 0.0);
    EXPECT_EQ(solubility.RSDEL(i), 0.0);
  }
  EXPECT_EQ(resv.CP, 0.0);
  EXPECT_EQ(unifac.NSUB, 0);
  EXPECT_EQ(unifac.AMNINT(77, 77, 3), 0.0F);
  EXPECT_EQ(unifill.trace_unit, 0);
  EXPECT_FALSE(unifill.trace);
  EXPECT_FLOAT_EQ(static_cast<R4>(unifill.Tlow), 273.15F);
  EXPECT_FLOAT_EQ(static_cast<R4>(unifill.Tupp), 373.15F);
  EXPECT_FLOAT_EQ(static_cast<R4>(unifill.Alpha), 0.3F);
  EXPECT_TRUE(unifill.on);
}

TEST_F(SetupTest, DefaultsAreSetOnceInTheLifeOfTheLibrary) {
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  comp.TC(1) = 190.56;
  setup.platform = platform::sun;
  hydrate.COHST(1, 1) = 1300.0;
  ASSERT_EQ(start_set(1, "C2  "), status::ok);
  EXPECT_EQ(comp.TC(1), 190.56);
  EXPECT_EQ(setup.platform, platform::sun);
  EXPECT_EQ(hydrate.COHST(1, 1), 1300.0);
}

TEST_F(SetupTest, DefaultsAreSetEvenWhenTheSetIsRefused) {
  EXPECT_EQ(start_set(0, ""), status::range);
  EXPECT_TRUE(setup.initialised);
  EXPECT_EQ(hydrate.COHST(1, 2), 1068.0);
}

TEST_F(SetupTest, HydrateConstantsHaveTheirValues) {
  const R4 cavities[4][3] = {{0.043478258F, 3.91F, 20.0F},
                             {0.130434752F, 4.33F, 24.0F},
                             {0.117647052F, 3.902F, 20.0F},
                             {0.058823526F, 4.683F, 28.0F}};
  const R4 water[2][5] = {{1287.0F, -5071.0F, 4.6F, -37.83F, 0.0F}, {1068.0F, -5238.0F, 5.0F, -37.83F, 0.0F}};
  for (const auto setter : {SINAO0, SINAO2}) {
    reset_engine();
    hydrate.COHCV.fill(7.0);
    setter();
    for (int column = 1; column <= 4; ++column) {
      for (int row = 1; row <= 3; ++row)
        EXPECT_EQ(hydrate.COHCV(row, column), static_cast<R8>(cavities[column - 1][row - 1]));
      for (int row = 4; row <= 9; ++row) EXPECT_EQ(hydrate.COHCV(row, column), 0.0);
    }
    for (int column = 1; column <= 2; ++column)
      for (int row = 1; row <= 5; ++row)
        EXPECT_EQ(hydrate.COHST(row, column), static_cast<R8>(water[column - 1][row - 1]));
  }
}

TEST_F(SetupTest, DenseFluidConstantsStandInTheirOrder) {
  const std::vector<R4> expected{
      0.08205616F,   190.53F,      45.344F,      10.104F,      0.287046F,    0.011F,      16.04F,
      0.090569F,     -0.862762F,   0.316636F,    -0.465684F,   0.394901F,    -1.023545F,  -0.932813F,
      -0.754639F,    1.16145F,     0.14874F,     0.52487F,     0.7732F,      2.16178F,    2.43787F,
      7.67035F,      148.6F,       1.696986F,    -0.13337235F, 1.4F,         168.0F,      -10.2391605F,
      174.228226F,   17.4605465F,  -2847.63281F, 0.133685023F, 142.072403F,  5002.06689F, 0.1628F,
      -0.252762914F, 0.334328592F, 1.12F,        168.0F,       -7.14591312F, 81.3209381F, 12.4215708F,
      -950.983093F,  0.493518144F, 41.4513893F,  590.887024F,  0.1628F};
  ASSERT_EQ(expected.size(), 47U);
  SINAO3();
  for (std::size_t i = 0; i < expected.size(); ++i) {
    R4 held = 0.0F;
    std::memcpy(&held, reinterpret_cast<const char*>(&dense_fluid) + i * sizeof(R4), sizeof(R4));
    EXPECT_EQ(held, expected[i]) << "constant " << i + 1;
  }
}

// ---- data directory

TEST_F(SetupTest, DirectoryIsJoinedToEveryFileName) {
  const std::vector<std::string> names{
      "bzandir.out",  "binzan.out",  "phyddir.out", "purehyd.out", "pzandir.out", "purezan.out", "",
      "octanenb.out", "udo2002.out", "suflin.out",  "suflle.out",  "suflyn.out",  "sufori.out",  "saft1.dat",
      "saft2.dat",    "saft3.dat",   "sdbp2.dat",   "srkap.dat",   "cpapur.dat",  "cpabin.dat",  "ufgrc.dat",
      "leur1.dat",    "tfo.dat",     "henry.dat",   "usrbin.dat",  "pcdir.asc"};
  EXPECT_EQ(set_path("C:\\data\\Zandor\\"), 0);
  for (int i = 1; i <= kDataFiles; ++i) {
    const std::string expected =
        i == 7 ? "flshtest.res" : "C:\\data\\Zandor\\" + names[static_cast<std::size_t>(i - 1)];
    EXPECT_EQ(trimmed(setup.files(i)), expected);
  }
}

TEST_F(SetupTest, UnitTableHoldsThePreferredUnits) {
  EXPECT_EQ(set_path("d\\"), 0);
  EXPECT_EQ(setup.units.binary, 30);
  EXPECT_EQ(setup.units.pure, 31);
  EXPECT_EQ(setup.units.hydrate, 32);
  EXPECT_EQ(setup.units.spare_1, 33);
  EXPECT_EQ(setup.units.unifac, 34);
  EXPECT_EQ(setup.units.spare_2, 35);
}

TEST_F(SetupTest, TrailingBlanksOfTheDirectoryAreDropped) {
  EXPECT_EQ(set_path("d\\Zandor\\     "), 0);
  EXPECT_EQ(trimmed(setup.files(data_file::pure)), "d\\Zandor\\purezan.out");
}

TEST_F(SetupTest, BlankDirectoryLeavesTheBareNames) {
  EXPECT_EQ(set_path("   "), 0);
  EXPECT_EQ(trimmed(setup.files(data_file::pure)), "purezan.out");
  EXPECT_EQ(set_path(""), 0);
  EXPECT_EQ(trimmed(setup.files(data_file::binary)), "binzan.out");
}

TEST_F(SetupTest, DirectoryOf244CharactersIsTheLongest) {
  const std::string longest(244, 'p');
  EXPECT_EQ(set_path(longest), 0);
  EXPECT_EQ(setup.files(data_file::pure).view(), longest + "purezan.out");
  EXPECT_EQ(set_path(std::string(245, 'q')), 3);
  EXPECT_EQ(setup.files(data_file::pure).view(), longest + "purezan.out");
  EXPECT_EQ(trimmed(setup.path), longest);
  EXPECT_EQ(ring.count, 1);
  expect_last_message(3, "SURPT0", "File path too long");
}

TEST_F(SetupTest, LengthCountsTrailingBlanks) { EXPECT_EQ(set_path("d\\" + std::string(243, ' ')), 3); }

TEST_F(SetupTest, TablesAreRefusedForALongDirectory) {
  EXPECT_EQ(set_path("old\\"), 0);
  I4 nfail = 0;
  SSYAO2(std::string(245, 'q'), nfail);
  EXPECT_EQ(nfail, status::fatal);
  expect_last_message(3, "SSYAO2", "Filename path to long");
  EXPECT_EQ(trimmed(setup.files(data_file::pure)), "old\\purezan.out");
}

TEST_F(SetupTest, InformationReturnsTheStoredDirectoryPadded) {
  EXPECT_EQ(set_path("d\\Zandor\\"), 0);
  std::string buffer(20, '#');
  I4 nfail = -5;
  SURPT0(buffer.data(), 20, "INFO", nfail);
  EXPECT_EQ(nfail, 0);
  EXPECT_EQ(buffer, "d\\Zandor\\           ");
  std::string small(4, '#');
  SURPT0(small.data(), 4, "INFO", nfail);
  EXPECT_EQ(small, "d\\Za");
  std::string large(300, '#');
  SURPT0(large.data(), 300, "INFO", nfail);
  EXPECT_EQ(trimmed(large), "d\\Zandor\\");
}

TEST_F(SetupTest, AnyOtherModeChangesNothing) {
  EXPECT_EQ(set_path("d\\"), 0);
  EXPECT_EQ(set_path("e\\", "OUTPUT", -5), -5);
  EXPECT_EQ(set_path("e\\", "info", 77), 77);
  EXPECT_EQ(trimmed(setup.path), "d\\");
  EXPECT_EQ(trimmed(setup.files(data_file::pure)), "d\\purezan.out");
  EXPECT_EQ(ring.count, 0);
}

TEST_F(SetupTest, DirectoryOutlivesANewComponentSet) {
  EXPECT_EQ(set_path("d\\"), 0);
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  EXPECT_EQ(trimmed(setup.files(data_file::pure)), "d\\purezan.out");
}

// ---- platform

TEST_F(SetupTest, PlatformsOfTheTableAreAccepted) {
  for (const I4 code : {12, 25, 26, 30, 37, 54, 136, 137}) {
    I4 nfail = 0;
    SURPL0(code, nfail);
    EXPECT_EQ(nfail, status::ok);
    EXPECT_EQ(setup.platform, code);
  }
}

TEST_F(SetupTest, AnyOtherPlatformIsStoredAsUnknown) {
  for (const I4 code : {0, -1, 14, 119, 138}) {
    I4 nfail = 0;
    SURPL0(code, nfail);
    EXPECT_EQ(nfail, status::failed);
    EXPECT_EQ(setup.platform, platform::unknown);
  }
  EXPECT_EQ(ring.count, 0);
}

// ---- reset

TEST_F(SetupTest, ResetNeverTakesTheDataGenerationBack) {
  ASSERT_EQ(start_set(1, "C1  "), status::ok);
  const I4 generation = setup.generation;
  reset_engine();
  EXPECT_GT(setup.generation, generation);
  EXPECT_EQ(setup.NUMH, 0);
  EXPECT_FALSE(setup.initialised);
}

}  // namespace
}  // namespace talix
