// The isothermal flashes with the check behind them, against the reference flash.
#include <gtest/gtest.h>

#include <vector>

#include "fastprops/flash_record.h"
#include "support/reference_report.h"

namespace talix {
namespace {

using namespace test::reference;  // NOLINT: the test is about nothing else

constexpr int kSelfTests = 20;
constexpr int kStates = 80;

class VerifiedIsothermal : public ::testing::Test {
 protected:
  void SetUp() override { test::fresh_library(); }
};

TEST_F(VerifiedIsothermal, HundredsOfRandomTrialsAddNothingToTheReference) {
  for (int k = 0; k < kSelfTests; ++k) {
    StateSource source(kSuiteSeed, k);
    Case c = source.draw();
    load_list(c);
    source.move_to_boundary(c);
    const Mixture m = mixture_of(c.feed);
    const Answer usual = flash(m, c.T, c.P);
    const Answer more = flash(m, c.T, c.P, Effort::exhaustive);
    EXPECT_FALSE(usual.failed) << c.kind;
    EXPECT_EQ(usual.phases, more.phases) << c.kind << " at " << c.T << " K, " << c.P << " bar";
    EXPECT_NEAR(usual.g, more.g, 1.0E-11) << c.kind << " at " << c.T << " K, " << c.P << " bar";
  }
}

TEST_F(VerifiedIsothermal, SeededStatesAgreeWithTheReference) {
  Expectation found;
  const int states = states_to_run(kStates);
  for (int k = 0; k < states; ++k) compare_isothermal(kSuiteSeed, k, found);
  EXPECT_GE(found.asked, 2 * states * 99 / 100);
  // At most one state in a thousand next to a boundary, two in a small sample.
  EXPECT_LE(found.near, 2 + found.asked / 1000);
  EXPECT_LE(found.unanswered, found.asked / 200);
}

struct Gas {
  const char* name;
  std::vector<int> numbers;
  std::vector<R4> feed;
};

const std::vector<Gas>& gases() {
  static const std::vector<Gas> all = {
      {"lean", {20, 21, 22, 15, 4}, {0.94F, 0.03F, 0.01F, 0.01F, 0.01F}},
      {"lean with a tail",
       {20, 21, 22, 24, 23, 26, 25, 28, 15, 4},
       {0.90F, 0.05F, 0.02F, 0.004F, 0.004F, 0.001F, 0.001F, 0.001F, 0.009F, 0.01F}},
      {"rich",
       {20, 21, 22, 24, 23, 25, 28, 15, 4},
       {0.78F, 0.10F, 0.05F, 0.01F, 0.015F, 0.006F, 0.004F, 0.015F, 0.02F}},
      {"rich in carbon dioxide", {4, 20, 21, 22, 15}, {0.85F, 0.10F, 0.02F, 0.01F, 0.02F}},
      {"half carbon dioxide", {4, 20, 21, 11, 15}, {0.50F, 0.42F, 0.04F, 0.02F, 0.02F}},
      {"hydrogen blend", {8, 20, 21, 22, 15, 4}, {0.20F, 0.72F, 0.04F, 0.01F, 0.02F, 0.01F}},
      {"hydrogen-rich blend", {8, 20, 21, 15}, {0.70F, 0.27F, 0.02F, 0.01F}},
  };
  return all;
}

TEST_F(VerifiedIsothermal, NaturalGasesAreOnePhaseWhereverTheReferenceSaysSo) {
  int one_phase = 0;
  for (const Gas& gas : gases()) {
    const Case c = case_of(gas.numbers, gas.feed);
    load_list(c);
    for (R8 T = 250.0; T <= 450.0; T += 20.0) {
      for (const R8 P : {1.0, 5.0, 15.0, 30.0, 50.0, 70.0, 85.0, 100.0, 130.0, 170.0, 220.0, 300.0}) {
        const Mixture m = mixture_of(c.feed);
        const Answer truth = flash(m, kelvin(celsius(T)), P);
        for (const I4 code : {flash_type::isothermal, flash_type::isothermal_fast}) {
          const Outcome o = judge_isothermal(m, ask(c, code, T, P, 1.0), truth);
          EXPECT_EQ(o.verdict, Verdict::right) << gas.name << ", code " << code << " at " << T << " K, " << P
                                               << " bar: " << name_of(o.verdict) << "\n"
                                               << o.detail;
        }
        one_phase += truth.phases == 1;
      }
    }
  }
  EXPECT_GT(one_phase, 700);
}

// A state that only the check gets right, so that the tests above are known to see the difference.
TEST_F(VerifiedIsothermal, TheFlashesAloneSplitAnExportGasThatIsOnePhase) {
  const Case c = case_of(gases()[0].numbers, gases()[0].feed);
  load_list(c);
  const Mixture m = mixture_of(c.feed);
  int wrong_alone = 0;
  int wrong_checked = 0;
  for (R8 P = 60.0; P <= 200.0; P += 10.0) {
    const Answer truth = flash(m, kelvin(celsius(288.15)), P);
    ASSERT_EQ(truth.phases, 1);
    test::verify(0);
    wrong_alone +=
        is_wrong(judge_isothermal(m, ask(c, flash_type::isothermal, 288.15, P, 1.0), truth).verdict);
    test::verify(1);
    wrong_checked +=
        is_wrong(judge_isothermal(m, ask(c, flash_type::isothermal, 288.15, P, 1.0), truth).verdict);
  }
  EXPECT_GT(wrong_alone, 0);
  EXPECT_EQ(wrong_checked, 0);
}

}  // namespace
}  // namespace talix
