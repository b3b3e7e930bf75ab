// The Benedict-Webb-Rubin model with the components of the bank, through the driver, against reference densities.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

#include "database/database_fixture.h"
#include "database/load_order.h"
#include "database/sdb_pure.h"
#include "engine/model_table.h"
#include "engine/shmix_driver.h"
#include "eos/ses_dispatcher.h"

namespace talix::test {
namespace {

// A volume at one state through SHMIX0.
struct Volume {
  I4 NFAIL = 0, IPHRTN = 0;
  L4 AMBIG{};
  R8 Z = 0.0, DZDT = 0.0, DZDP = 0.0;
};

Volume volume(I4 slot, I4 IPHASE, R8 T, R8 P, const CompVec& X, I4 NCOMP, I4 fugacity = 0, I4 thermal = 0) {
  static CompVec DZDN, FUG, DFDT, DFDP, DHDN, DSDN;
  static CompMat DFDN;
  const Vec<I4, kMaxComponents> IC{};
  const Flags3 wanted{{{-1}, {-1}, {-1}}};
  const ReservedCodes codes{};
  ReservedValues values{};
  Volume v;
  R8 ZFUG = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  SHMIX0(IPHASE, root_option::real_only, T, P, NCOMP, IC, X, slot, wanted, fugacity, wanted, thermal,
         thermal::total, wanted, codes, 0, v.IPHRTN, v.AMBIG, ZFUG, v.Z, v.DZDT, v.DZDP, DZDN, FUG, DFDT,
         DFDP, DFDN, H, DHDT, DHDP, DHDN, S, DSDT, DSDP, DSDN, values, v.NFAIL);
  return v;
}

class BwrsBank : public DatabaseTest {
 protected:
  BwrsBank() {
    I4 NFAIL = 0;
    SSYAO2(install_directory() + "\\Zandor\\", NFAIL);
    SDBPC0(NFAIL);
    EXPECT_EQ(NFAIL, status::ok);
  }
  void load(std::initializer_list<std::string_view> codes) {
    set_components(codes);
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << last_entry();
    SHMLD0(model::bwrs, slot, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
  }
  I4 slot = 0;
};

struct Gas {
  const char* code;
  const char* cas;
};

// Mean deviation of the density over the reference points below 200 bar, in percent.
R8 mean_deviation(I4 slot, const std::string& cas, int& points, R8& worst) {
  std::ifstream table(std::string(TALIX_TEST_SOURCE) + "/data/supercritical_points.csv");
  R8 sum = 0.0;
  points = 0;
  worst = 0.0;
  const CompVec X{{1.0}};
  for (std::string line; std::getline(table, line);) {
    R8 T = 0.0;
    R8 P = 0.0;
    R8 rho = 0.0;
    if (line.rfind(cas + ",", 0) != 0) continue;
    EXPECT_EQ(std::sscanf(line.c_str() + cas.size(), ",%lf,%lf,%lf", &T, &P, &rho), 3);
    if (P > 2E7) continue;
    const Volume v = volume(slot, phase::vapour, T, P, X, 1);
    EXPECT_EQ(v.NFAIL, status::ok) << line;
    const R8 deviation = 100.0 * std::abs(P / (kGasConstant * T * v.Z) / rho - 1.0);
    sum += deviation;
    worst = std::max(worst, deviation);
    ++points;
  }
  return sum / points;
}

TEST_F(BwrsBank, DensitiesOfLightGasesAreWithinOnePercentInTheMean) {
  for (const Gas& gas : {Gas{.code = " 1P ", .cas = "74-82-8"}, Gas{.code = " 2P ", .cas = "74-84-0"},
                         Gas{.code = " 3P ", .cas = "74-98-6"}, Gas{.code = "N2  ", .cas = "7727-37-9"},
                         Gas{.code = "CO2 ", .cas = "124-38-9"}}) {
    load({gas.code});
    int points = 0;
    R8 worst = 0.0;
    const R8 mean = mean_deviation(slot, gas.cas, points, worst);
    EXPECT_GT(points, 25) << gas.code;
    EXPECT_LT(mean, 1.0) << gas.code;
    EXPECT_LT(worst, 10.0) << gas.code;
  }
}

TEST_F(BwrsBank, HydrogenWithItsNegativeAcentricFactorStaysClose) {
  load({"H2  "});
  ASSERT_LT(comp.OMEGA(1), 0.0);
  int points = 0;
  R8 worst = 0.0;
  const R8 mean = mean_deviation(slot, "1333-74-0", points, worst);
  EXPECT_GT(points, 25);
  EXPECT_LT(mean, 3.0);
  EXPECT_LT(worst, 12.0);
}

TEST_F(BwrsBank, DriverTellsWhenTheRootsAreNotToldApart) {
  load({" 3P ", "N2  "});
  const CompVec X{{1.0, 0.0}};
  Volume v = volume(slot, phase::liquid, 300.0, 2E6, X, 2);
  EXPECT_EQ(v.NFAIL, status::ok);
  EXPECT_EQ(v.IPHRTN, phase::liquid);
  EXPECT_TRUE(v.AMBIG);
  EXPECT_LT(v.Z, 0.1);
  v = volume(slot, phase::vapour, 300.0, 2E5, X, 2);
  EXPECT_EQ(v.IPHRTN, phase::vapour);
  EXPECT_TRUE(v.AMBIG);
  EXPECT_GT(v.Z, 0.9);
  v = volume(slot, phase::gibbs, 300.0, 9.0E5, X, 2);
  EXPECT_EQ(v.NFAIL, status::ok);
  EXPECT_EQ(v.IPHRTN, phase::vapour);
  EXPECT_FALSE(v.AMBIG);
  v = volume(slot, phase::gibbs, 300.0, 11.0E5, X, 2);
  EXPECT_EQ(v.IPHRTN, phase::liquid);
  EXPECT_FALSE(v.AMBIG);
}

TEST_F(BwrsBank, DriverRefusesWhatIsNotAVolume) {
  load({" 1P "});
  const CompVec X{{1.0}};
  for (const bool thermal : {false, true}) {
    const Volume v = volume(slot, phase::vapour, 300.0, 1E6, X, 1, thermal ? 0 : slot, thermal ? slot : 0);
    EXPECT_EQ(v.NFAIL, status::not_available);
    EXPECT_EQ(v.Z, 1.23456789e34);
    EXPECT_EQ(last_entry(), "3 SHMIX0 Equation of state calculation failed");
  }
}

}  // namespace
}  // namespace talix::test
