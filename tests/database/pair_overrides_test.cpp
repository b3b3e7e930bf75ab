#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "database/component_record.h"
#include "database/key_access.h"
#include "database/pair_record.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "liquid/snl_nrtl.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

constexpr I4 kFirst = kMethane;
constexpr I4 kLast = kCarbonDioxide;

const std::vector<std::string> kQuadratic{"TETA0", "TETA0T", "TETA1", "TETA1T"};
const std::vector<std::string> kActivity{"T-t0-ji", "T-t1-ji",  "T-t2-ji", "Alfa-ji", "T-t0-ij", "T-t1-ij",
                                         "T-t2-ij", "AlfaT-ji", "Henry-1", "Henry-2", "Henry-3", "Henry-4"};
const std::vector<std::string> kHenryOfActivity{"Henry-1", "Henry-2", "Henry-3", "Henry-4"};

Access section_of(I4 i, I4 j, I4 section) {
  return [=](I4 act, const std::vector<R8>& values) { return pair_keys(i, j, section, act, values); };
}

// Logarithms of the fugacity coefficients of a liquid by a model that is loaded for it.
std::vector<R8> fugacities(I4 code) {
  I4 slot = 0;
  I4 nfail = 0;
  SHMLD0(code, slot, nfail);
  EXPECT_EQ(nfail, status::ok);
  Call call;
  call.composition({0.3, 0.1, 0.1, 0.1, 0.4});
  call.args.LFUG = true;
  call.args.LTHERM = true;
  call.args.LDTHERM(1) = true;
  call.args.MODEL = slot;
  call.args.IPHASE = phase::liquid;
  call.args.T = 250.0;
  call.args.P = 60e5;
  call.run();
  EXPECT_EQ(call.args.ICODE, status::ok) << code;
  std::vector<R8> result{call.args.Z, call.args.H};
  for (int i = 1; i <= 5; ++i) result.push_back(call.FUG(i));
  return result;
}

// Logarithms of the activity coefficients.
std::vector<R8> activities() {
  CompVec x{};
  x(kFirst) = 0.3;
  x(kLast) = 0.7;
  ActivityOptions options{};
  options.fill(true);
  static ExcessGibbs excess;
  SNLAC0(300.0, x, excess, 1, kLast, options);
  return {excess.GE, excess.CHIN(kFirst), excess.CHIN(kLast)};
}

void set_activity_data() {
  for (int i = 1; i <= 5; ++i) {
    for (int j = 1; j <= 5; ++j) {
      if (i == j) continue;
      pairs.TAUT0(i, j) = 0.1 + 0.02 * i - 0.01 * j;
      pairs.TAUT1(i, j) = 10.0 + i - 2.0 * j;
      pairs.TAUT2(i, j) = 100.0 * i - 30.0 * j;
      pairs.ALFA(i, j) = i < j ? 0.2 : 1e-4;
    }
  }
  ++setup.generation;
}

class PairOverrides : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_fixture();
    set_pair_parameters();
    models = {};
    reset_nrtl_cache();
    pairs.NPAIR = setup.NUMH;
  }
};

TEST_F(PairOverrides, EveryKeyOfTheQuadraticRule) {
  for (const I4 section : {model::vardo1, model::srk, model::peng_robinson, model::van_der_waals}) {
    EXPECT_EQ(pair_keys(kFirst, kLast, section, 0).names(), kQuadratic);
    walk_keys(section_of(kFirst, kLast, section), [section] { return fugacities(section); });
    walk_keys(section_of(kLast, kFirst, section), [section] { return fugacities(section); });
  }
}

TEST_F(PairOverrides, SymmetriesOfTheInteractions) {
  const I4 generation = setup.generation;
  ASSERT_EQ(pair_keys(kLast, kFirst, model::srk, action::input, {0.11, 0.22, 0.33, 0.44}).nfail, status::ok);
  EXPECT_EQ(setup.generation, generation + 1);
  EXPECT_EQ(pairs.TETA0(kFirst, kLast), 0.11);
  EXPECT_EQ(pairs.TETA0T(kFirst, kLast), 0.22);
  EXPECT_EQ(pairs.TETA1(kFirst, kLast), -0.33);
  EXPECT_EQ(pairs.TETA1T(kFirst, kLast), -0.44);
  EXPECT_EQ(pair_keys(kFirst, kLast, model::vardo1, action::information).list(),
            (std::vector<R8>{0.11, 0.22, -0.33, -0.44}));
}

TEST_F(PairOverrides, ThePairListsFollow) {
  const I4 quadratic = pairs.NT0;
  const I4 familywise = pairs.NT1;
  ASSERT_NE(pairs.TETA1(kFirst, kLast), 0.0);
  pair_keys(kFirst, kLast, model::vardo1, action::input, {0.0, 0.0, 0.0, 0.0});
  EXPECT_EQ(pairs.NT0, quadratic - 2);
  EXPECT_EQ(pairs.NT1, familywise - 2);
  pair_keys(kFirst, kLast, model::vardo1, action::input, {0.0, 1e-5, 0.0, 1e-5});
  EXPECT_EQ(pairs.NT0, quadratic);
  EXPECT_EQ(pairs.NT1, familywise);
}

TEST_F(PairOverrides, EveryKeyOfTheActivityModel) {
  set_activity_data();
  EXPECT_EQ(pair_keys(kFirst, kLast, model::nrtl, 0).names(), kActivity);
  walk_keys(section_of(kFirst, kLast, model::nrtl), activities, shift, kHenryOfActivity);
  walk_keys(section_of(kLast, kFirst, model::nrtl), activities, shift, kHenryOfActivity);
}

TEST_F(PairOverrides, EveryKeyOfTheExcessRules) {
  set_activity_data();
  for (const I4 section : {model::vardo2, model::vardo3}) {
    EXPECT_EQ(pair_keys(kFirst, kLast, section, 0).names(), kActivity);
    walk_keys(
        section_of(kFirst, kLast, section), [section] { return fugacities(section); }, shift,
        kHenryOfActivity);
  }
}

// The rule of this model has pair constants of its own.
TEST_F(PairOverrides, TheConsistentRuleTakesNoneOfItsKeys) {
  set_activity_data();
  EXPECT_EQ(pair_keys(kFirst, kLast, model::vardo4, 0).names(), kActivity);
  walk_keys(
      section_of(kFirst, kLast, model::vardo4), [] { return fugacities(model::vardo4); }, shift, kActivity);
}

TEST_F(PairOverrides, HalvesOfTheNonRandomnessKeepTheirMeaning) {
  const std::vector<R8> values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  for (const bool rising : {true, false}) {
    const I4 i = rising ? kFirst : kLast;
    const I4 j = rising ? kLast : kFirst;
    const I4 generation = setup.generation;
    ASSERT_EQ(pair_keys(i, j, model::nrtl, action::input, values).nfail, status::ok);
    EXPECT_EQ(setup.generation, generation + 1);
    EXPECT_EQ(pairs.TAUT0(i, j), 1.0);
    EXPECT_EQ(pairs.TAUT1(i, j), 2.0);
    EXPECT_EQ(pairs.TAUT2(i, j), 3.0);
    EXPECT_EQ(pairs.TAUT0(j, i), 5.0);
    EXPECT_EQ(pairs.TAUT1(j, i), 6.0);
    EXPECT_EQ(pairs.TAUT2(j, i), 7.0);
    // The constant part above the diagonal, its slope below it.
    EXPECT_EQ(pairs.ALFA(kFirst, kLast), 4.0);
    EXPECT_EQ(pairs.ALFA(kLast, kFirst), 8.0);
    EXPECT_EQ(pairs.HEN1(i, j), 9.0);
    EXPECT_EQ(pairs.HEN2(i, j), 10.0);
    EXPECT_EQ(pairs.HEN3(i, j), 11.0);
    EXPECT_EQ(pairs.HEN4(i, j), 12.0);
  }
}

TEST_F(PairOverrides, AssociationParametersHoldForBothOrders) {
  const KeyAnswer written = pair_keys(kLast, kFirst, model::cpa, action::input, {1, 2, 3, 4, 5});
  EXPECT_EQ(written.nfail, status::ok);
  EXPECT_EQ(written.names(), (std::vector<std::string>{"BCPA0", "BCPA0T", "BCPA1", "BCPA1T", "BCP1TT"}));
  for (const auto& [i, j] : {std::pair{kFirst, kLast}, std::pair{kLast, kFirst}}) {
    EXPECT_EQ(pairs.BCPA0(i, j), 1.0);
    EXPECT_EQ(pairs.BCPA0T(i, j), 2.0);
    EXPECT_EQ(pairs.BCPA1(i, j), 3.0);
    EXPECT_EQ(pairs.BCPA1T(i, j), 4.0);
    EXPECT_EQ(pairs.BCP1TT(i, j), 5.0);
    EXPECT_EQ(pair_keys(i, j, model::cpa, action::information).list(), (std::vector<R8>{1, 2, 3, 4, 5}));
  }
}

TEST_F(PairOverrides, HenryDataBelongToGasAndSolvent) {
  const KeyAnswer written = pair_keys(kLast, kFirst, key_section::henry, action::input, {1, 2, 3, 4});
  EXPECT_EQ(written.nfail, status::ok);
  EXPECT_EQ(written.names(), (std::vector<std::string>{"HEN1", "HEN2", "HEN3", "HEN4"}));
  EXPECT_EQ(pair_keys(kLast, kFirst, key_section::henry, action::information).list(),
            (std::vector<R8>{1, 2, 3, 4}));
  EXPECT_EQ(pair_keys(kFirst, kLast, key_section::henry, action::information).list(),
            (std::vector<R8>{0, 0, 0, 0}));
}

TEST_F(PairOverrides, AnUnknownSectionOrPairHasNoKeys) {
  setup.NUMH = 5;
  const I4 generation = setup.generation;
  for (const I4 act : {action::information, action::input, 0}) {
    for (const I4 section : {-1, 0, 1, 38, 45, 46, 85, 133, 138, 148})
      expect_refused(pair_keys(kFirst, kLast, section, act));
    for (const auto& [i, j] : {std::pair{0, 1}, {1, 0}, {-1, 2}, {6, 1}, {1, 6}, {51, 1}, {2, 2}})
      for (const I4 section : {model::vardo1, model::nrtl, model::cpa, key_section::henry})
        expect_refused(pair_keys(i, j, section, act));
  }
  EXPECT_EQ(setup.generation, generation);
}

}  // namespace
}  // namespace talix::test
