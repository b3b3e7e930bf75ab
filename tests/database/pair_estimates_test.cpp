// The rules for pairs without data. Expected values were worked out by hand from the written formulas for one
// hydrocarbon: Tb 342 K, specific gravity 0.66 (Watson factor 12.889090323675), Tc 507 K, acentric factor 0.3,
// Vc 0.37 m3/kmol, molar mass 86, hydrogen to carbon ratio 2.3.
#include "database/ssm_pair_estimates.h"

#include <cmath>

#include "database/database_fixture.h"
#include "database/sh_component_class.h"

namespace talix::test {
namespace {

constexpr double kTight = 1e-13;

struct Expected {
  double teta0 = 0.0, teta0t = 0.0, teta1 = 0.0, teta1t = 0.0;
};

class PairEstimates : public DatabaseTest {
 protected:
  PairEstimates() { reset_exclusions(); }
  ~PairEstimates() override { reset_exclusions(); }
  static void reset_exclusions() { IXCLUD.fill(0); }

  static void named(I4 i, I4 number, bool plain = false) {
    comp.ICSTD(i) = number;
    comp.NOTRY(i) = plain ? 0 : 1;
    comp.ICS(i) = "    ";
  }
  static void hydrocarbon(I4 i, I4 number, std::string_view code = " 6P ", I4 carbon = 6, I4 hydrogen = 14) {
    named(i, number, true);
    comp.ICS(i) = code;
    comp.ATBP(i) = 342.0;
    comp.RHO(i) = 0.66;
    comp.TC(i) = 507.0;
    comp.OMEGA(i) = 0.3;
    comp.VC(i) = 0.37;
    comp.RMOLW(i) = 86.0;
    comp.HCRAT(i) = 2.3;
    comp.ELEM(i, 1) = carbon;
    comp.ELEM(i, 2) = hydrogen;
  }
  static void pseudo(I4 i) { hydrocarbon(i, -1, "    ", 0, 0); }

  static I4 estimate(I4 a, I4 b) {
    pairs.TETA0.fill(0.0);
    pairs.TETA0T.fill(0.0);
    pairs.TETA1.fill(0.0);
    pairs.TETA1T.fill(0.0);
    I4 NFAIL = 0;
    SSMBI0(a, b, NFAIL);
    return NFAIL;
  }
  static void expect(I4 a, I4 b, const Expected& e) {
    EXPECT_NEAR(pairs.TETA0(a, b), e.teta0, kTight);
    EXPECT_NEAR(pairs.TETA0(b, a), e.teta0, kTight);
    EXPECT_NEAR(pairs.TETA0T(a, b), e.teta0t, kTight);
    EXPECT_NEAR(pairs.TETA0T(b, a), e.teta0t, kTight);
    EXPECT_NEAR(pairs.TETA1(a, b), e.teta1, kTight);
    EXPECT_NEAR(pairs.TETA1(b, a), -e.teta1, kTight);
    EXPECT_NEAR(pairs.TETA1T(a, b), e.teta1t, kTight);
    EXPECT_NEAR(pairs.TETA1T(b, a), -e.teta1t, kTight);
  }
  // Components 1 and 2 in both orders; the terms are written in the order of the call.
  static void expect_both_orders(const Expected& e) {
    EXPECT_EQ(estimate(1, 2), status::ok);
    expect(1, 2, e);
    EXPECT_EQ(estimate(2, 1), status::ok);
    expect(2, 1, e);
  }
  static void expect_with_hydrocarbon(I4 number, const Expected& e) {
    SCOPED_TRACE(number);
    named(1, number);
    hydrocarbon(2, 31);
    expect_both_orders(e);
  }
};

TEST_F(PairEstimates, Rule1Hydrogen) {
  expect_with_hydrocarbon(8, {-0.1249537910185376, 0.0011250493096646944});
}
TEST_F(PairEstimates, Rule2CarbonDioxide) { expect_with_hydrocarbon(4, {0.0847, 9.901380670611441e-05}); }
TEST_F(PairEstimates, Rule3Helium) { expect_with_hydrocarbon(3, {0.38297}); }
TEST_F(PairEstimates, Rule4Nitrogen) { expect_with_hydrocarbon(15, {0.094}); }
TEST_F(PairEstimates, Rule5Oxygen) { expect_with_hydrocarbon(17, {0.12}); }

TEST_F(PairEstimates, Rule6Benzene) {
  hydrocarbon(1, 277, " 6A ");
  hydrocarbon(2, 31);
  expect_both_orders({0.01319});
  hydrocarbon(2, 277, " 6A ");  // two of them are a pair of plain hydrocarbons
  expect_both_orders({});
}

TEST_F(PairEstimates, Rule7Methanol) { expect_with_hydrocarbon(328, {0.0062, 0.0, -0.2446, 0.0005}); }

TEST_F(PairEstimates, Rules8To10MercuryWithNamedComponents) {
  const auto with = [](I4 number, const Expected& e) {
    named(1, 1011);
    named(2, number);
    expect_both_orders(e);
  };
  with(9, {0.072542958, 0.00167531602});
  with(328, {0.225799695, 0.00095647102});
  with(415, {-0.120425999, 0.00233864202});
}

TEST_F(PairEstimates, Rule11Mercury) {
  expect_with_hydrocarbon(1011, {0.10105, 0.0005});
  named(1, 1011);
  hydrocarbon(2, 277, " 6A ", 6, 6);  // lacks eight hydrogen atoms
  EXPECT_EQ(estimate(1, 2), status::ok);
  expect(1, 2, {0.13305, 0.0005});
}

TEST_F(PairEstimates, Rule11TakesTheRatioOfTheSecondComponentInBothOrders) {
  named(1, 1011);
  comp.HCRAT(1) = 0.0;
  pseudo(2);
  EXPECT_EQ(estimate(1, 2), status::ok);
  expect(1, 2, {0.10184806433106067, 0.0005});
  EXPECT_EQ(estimate(2, 1), status::ok);
  expect(2, 1, {0.1004579834154099, 0.0005});
}

TEST_F(PairEstimates, Rule12HydrogenSulphide) {
  expect_with_hydrocarbon(11, {-0.059, 0.0002800788954635108});
}

struct GlycolCase {
  I4 glycol;
  Expected alkane, benzene, cyclohexane, other, pseudo;
};
constexpr GlycolCase kGlycols[] = {
    {403,
     {.teta0 = 0.115, .teta1 = -0.235},
     {.teta0 = 0.09, .teta1 = -0.11},
     {.teta0 = 0.17, .teta1 = -0.17},
     {.teta0 = 0.1025, .teta1 = -0.1725},
     {.teta0 = 0.1143699605502907, .teta1 = -0.23187667981656973}},
    {408,
     {.teta0 = 0.13, .teta1 = -0.16},
     {.teta0 = 0.021666666666666667, .teta1 = -0.051666666666666666},
     {.teta0 = 0.15, .teta1 = -0.09},
     {.teta0 = 0.07583333333333334, .teta1 = -0.10583333333333333},
     {.teta0 = 0.12729222660552325, .teta1 = -0.15729222660552325}},
    {415,
     {.teta0 = 0.15, .teta1 = -0.12},
     {.teta0 = 0.041666666666666664, .teta1 = -0.061666666666666667},
     {.teta0 = 0.145, .teta1 = -0.075},
     {.teta0 = 0.09583333333333333, .teta1 = -0.09083333333333334},
     {.teta0 = 0.14729222660552324, .teta1 = -0.11853886697238372}},
};

TEST_F(PairEstimates, Rules13To15GlycolsWithFamilies) {
  for (const GlycolCase& g : kGlycols) {
    SCOPED_TRACE(g.glycol);
    named(1, g.glycol);
    hydrocarbon(2, 31, " 6P ");
    expect_both_orders(g.alkane);
    hydrocarbon(2, 31, " 6A ");
    expect_both_orders(g.benzene);
    hydrocarbon(2, 31, " 6N ");
    expect_both_orders(g.cyclohexane);
    hydrocarbon(2, 31, " 6X ", 6, 10);  // lacks four hydrogen atoms: halfway
    expect_both_orders(g.other);
    pseudo(2);
    expect_both_orders(g.pseudo);
  }
}

TEST_F(PairEstimates, Rule16WaterByClass) {
  struct Case {
    std::string_view code;
    Expected e;
  };
  const Case cases[] = {
      {" 6A ", {0.6276016326050957, -0.0017272558139311822, 0.2175122891715085, -0.002126212368413009}},
      {" 6S ", {0.6276016326050957, -0.0017272558139311822, 0.2175122891715085, -0.002126212368413009}},
      {" 6P ", {-0.11696, 0.0003995, -0.55106, 0.0004562}},
      {" 6D ", {-0.11696, 0.0003995, -0.55106, 0.0004562}},
      {" 6N ", {-0.278994, 0.000978276, -0.428498, 0.00017802}},
      {" 6V ", {-0.278994, 0.000978276, -0.428498, 0.00017802}},
      {" 6X ", {-0.13233748574810217, 0.00044418556109108043, -0.5441484711067733, 0.0004293834905951697}},
      {"    ", {-0.13233748574810217, 0.00044418556109108043, -0.5441484711067733, 0.0004293834905951697}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.code);
    named(1, 9);
    hydrocarbon(2, 31, c.code);
    expect_both_orders(c.e);
  }
}

TEST_F(PairEstimates, Rule16TakesTheLastRowForAPseudoComponent) {
  named(1, 9);
  pseudo(2);
  comp.ICS(2) = " 6A ";  // its code is not looked at
  expect_both_orders(
      {-0.13233748574810217, 0.00044418556109108043, -0.5441484711067733, 0.0004293834905951697});
}

TEST_F(PairEstimates, Rule16EndsWithTheStatusOfTheClassification) {
  named(1, 9);
  hydrocarbon(2, 31, " 6A ");
  IXCLUD(4) = 31;
  EXPECT_EQ(estimate(1, 2), status::nonstandard);
  expect(1, 2, {});
}

TEST_F(PairEstimates, AGravityOfZeroDoesNotDivide) {
  named(1, 8);
  hydrocarbon(2, 31);
  comp.RHO(2) = 0.0;
  comp.TC(2) = 0.0;
  EXPECT_EQ(estimate(1, 2), status::ok);
  EXPECT_TRUE(std::isfinite(pairs.TETA0(1, 2)));
  EXPECT_TRUE(std::isfinite(pairs.TETA0T(1, 2)));
}

TEST_F(PairEstimates, Rule17Salt) {
  named(1, 1001);
  named(2, 9);
  expect_both_orders({1.0});
  hydrocarbon(2, 31);
  expect_both_orders({1.0});
}

TEST_F(PairEstimates, Rule17LeavesStoredParametersAlone) {
  named(1, 1001);
  named(2, 9);
  for (PairRecord::Table* table : {&pairs.TETA0, &pairs.TETA0T, &pairs.TETA1, &pairs.TETA1T}) {
    pairs.TETA0.fill(0.0);
    pairs.TETA0T.fill(0.0);
    pairs.TETA1.fill(0.0);
    pairs.TETA1T.fill(0.0);
    (*table)(1, 2) = 0.25;
    I4 NFAIL = 0;
    SSMBI0(1, 2, NFAIL);
    EXPECT_EQ(NFAIL, status::ok);
    EXPECT_EQ((*table)(1, 2), 0.25);
    EXPECT_EQ(pairs.TETA0(2, 1), 0.0);
  }
}

TEST_F(PairEstimates, Rule17IsReachedOnlyBehindTheOthers) {
  named(1, 1001, true);  // a plain component with the number of the salt
  named(2, 15);
  expect_both_orders({0.094});
}

TEST_F(PairEstimates, Rule18GlycolEthers) {
  // Carbon numbers by molar mass, with no hydrogen: 4, 6, 10, then the gases.
  struct Case {
    I4 ether;
    double at4, at6, at10, at1, at2, at3;
  };
  const Case cases[] = {
      {712, 0.0679, 0.0583, 0.0391, 0.0495, 0.058, 0.0665},
      {898, 0.1042279229160082, 0.07381803980789589, 0.035506118025446565, 0.0495, 0.058, 0.0639},
      {900, 0.09465538318571692, 0.07644999983166034, 0.05351392932456735, 0.0495, 0.058, 0.0639},
      {899, 0.08238685499131636, 0.0662087971778006, 0.04582685478953756, 0.0495, 0.058, 0.0639},
      {901, 0.11992700848279077, 0.09486926480170621, 0.06330024125296796, 0.0495, 0.058, 0.0639},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.ether);
    named(1, c.ether);
    hydrocarbon(2, 31);
    comp.HCRAT(2) = 0.0;
    const auto with_carbon = [](double carbon, double expected) {
      comp.RMOLW(2) = 12.01115 * carbon;
      expect_both_orders({expected});
    };
    with_carbon(4.0, c.at4);
    with_carbon(6.0, c.at6);
    with_carbon(10.0, c.at10);
    with_carbon(1.0, c.at1);
    with_carbon(1.09, c.at1);
    with_carbon(1.91, c.at2);
    with_carbon(3.05, c.at3);
    with_carbon(1.5, 0.0);
    with_carbon(0.8, 0.0);
    with_carbon(3.5, 0.0);
  }
}

TEST_F(PairEstimates, Rule18LeavesEveryOtherPairOfAHydrocarbonAtZero) {
  named(1, 500);
  hydrocarbon(2, 31);
  expect_both_orders({});
  hydrocarbon(1, 32);
  expect_both_orders({});
}

TEST_F(PairEstimates, Rule19WaterWithSolvents) {
  struct Case {
    I4 solvent;
    Expected e;
  };
  const Case cases[] = {
      {712, {-0.27613, 0.000438632}},
      {898, {-0.38794, 0.00051114}},
      {900, {-0.48956, 0.000568851}},
      {899, {-0.4308, 0.000524167}},
      {901, {-0.591, 0.000638897}},
      {904, {-0.83, 0.002}},
      {500, {}},
      {4, {}},
      {9, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.solvent);
    named(1, 9);
    named(2, c.solvent);
    expect_both_orders(c.e);
  }
}

TEST_F(PairEstimates, Rule20NoRule) {
  named(1, 328);
  named(2, 4);
  EXPECT_EQ(estimate(1, 2), status::failed);
  EXPECT_EQ(estimate(2, 1), status::failed);
  expect(1, 2, {});
}

TEST_F(PairEstimates, TheFirstRuleThatAppliesEndsTheList) {
  named(1, 8, true);  // plain hydrogen, with plain carbon dioxide: rule 1 before rule 2
  hydrocarbon(2, 4);
  EXPECT_EQ(estimate(1, 2), status::ok);
  expect(1, 2, {-0.1249537910185376, 0.0011250493096646944});
}

TEST_F(PairEstimates, TwoComponentsOfTheSameNameAreNoRuleOfTheirOwn) {
  named(1, 1011);
  named(2, 1011);
  EXPECT_EQ(estimate(1, 2), status::failed);
}

TEST(ComponentClass, FollowsTheThirdCharacter) {
  struct Row {
    std::string_view letters;
    I4 kind, subclass;
  };
  const Row rows[] = {
      {"A", 64, 62}, {"BFGHIS", 64, 119}, {"P", 106, 61},   {"DOTW", 106, 119},
      {"N", 97, 63}, {"CJMV", 97, 119},   {"XY", 119, 119}, {" EKLQRUZ12ap", 119, 119},
  };
  for (const Row& row : rows) {
    for (const char letter : row.letters) {
      I4 kind = 0;
      I4 subclass = 0;
      I4 NFAIL = 0;
      SHCAO0(kind, subclass, 31, std::string("AP") + letter + "N", NFAIL);
      EXPECT_EQ(kind, row.kind) << letter;
      EXPECT_EQ(subclass, row.subclass) << letter;
      EXPECT_EQ(NFAIL, status::ok);
    }
  }
}

TEST(ComponentClass, AnExcludedNumberIsNotClassified) {
  IXCLUD(10) = 31;
  I4 kind = 0;
  I4 subclass = 0;
  I4 NFAIL = 0;
  SHCAO0(kind, subclass, 31, " 6P ", NFAIL);
  EXPECT_EQ(NFAIL, status::nonstandard);
  EXPECT_EQ(kind, 102);
  EXPECT_EQ(subclass, 102);
  SHCAO0(kind, subclass, 32, " 6P ", NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  IXCLUD.fill(0);
  SHCAO0(kind, subclass, 0, " 6P ", NFAIL);  // an empty entry excludes nothing
  EXPECT_EQ(NFAIL, status::ok);
}

}  // namespace
}  // namespace talix::test
