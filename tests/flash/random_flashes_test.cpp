// Random isothermal flashes of mixtures from the bank: balances, equality of fugacities, and how often the answer
// agrees with an independent stability check.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "engine/codes.h"
#include "fastprops/error_matrix.h"
#include "fastprops/flash_record.h"
#include "support/flash_case.h"
#include "support/stability_check.h"

namespace talix {
namespace {

constexpr int kFlashes = 500;
constexpr std::uint32_t kSeed = 20240611;
// Passes up to which a flash ends only by convergence.
constexpr I4 kDampedPasses = 80;

// What the mixtures are made of: gases, hydrocarbons to C20, common alcohols, glycols, ethers, amines, mercaptans,
// refrigerants. The shares of right answers below are those of this list; the whole bank, with more polar liquids, brings
// far more second liquids.
constexpr auto kCommon = std::to_array<int>(
    {2,   3,   4,   5,   6,   7,   8,   9,   10,  11,  12,  13,  14,  15,  16,  17,  18,  19,  20,  21,  22,
     23,  24,  25,  26,  27,  28,  29,  30,  31,  32,  33,  34,  35,  38,  39,  40,  41,  42,  43,  54,  58,
     59,  61,  62,  63,  81,  82,  84,  102, 116, 123, 125, 127, 128, 129, 130, 131, 132, 133, 134, 150, 175,
     176, 179, 192, 193, 200, 201, 202, 203, 204, 206, 208, 221, 222, 228, 229, 232, 238, 277, 278, 279, 280,
     281, 283, 284, 285, 286, 289, 292, 321, 323, 328, 329, 330, 332, 337, 403, 404, 408, 415, 417, 440, 450,
     455, 461, 496, 719, 725, 742, 800, 801, 802, 810, 811, 818, 904, 910, 911, 913, 939, 1011});

std::vector<int> bank_numbers() { return {kCommon.begin(), kCommon.end()}; }

// 2 to 12 components, 150 to 600 K, 0.1 to 300 bar (pressure even in its logarithm, every fifth even itself).
test::FlashCase random_case(std::mt19937& engine, const std::vector<int>& bank, int index) {
  const auto uniform = [&engine] { return static_cast<R8>(engine()) / 4294967296.0; };
  test::FlashCase c;
  const int n = 2 + static_cast<int>(uniform() * 11.0);
  while (c.nc() < n) {
    const int number = bank[static_cast<std::size_t>(uniform() * static_cast<R8>(bank.size()))];
    if (std::find(c.numbers.begin(), c.numbers.end(), number) == c.numbers.end()) c.numbers.push_back(number);
  }
  for (int i = 0; i < n; ++i) c.feed.push_back(static_cast<R4>(-std::log(1.0 - uniform())));
  c.T = static_cast<R4>(150.0 + 450.0 * uniform() - 273.15);
  c.P = static_cast<R4>(index % 5 == 0 ? 0.1 + 299.9 * uniform()
                                       : 0.1 * std::exp(std::log(3000.0) * uniform()));
  return c;
}

std::vector<R8> column(const test::FlashCase& c, int number) {
  std::vector<R8> x;
  R8 sum = 0.0;
  for (int i = 1; i <= c.nc(); ++i) {
    x.push_back(static_cast<R8>(c.SCAL(i, number)));
    sum += x.back();
  }
  for (R8& v : x) v /= sum;
  return x;
}

bool two_phases(const test::FlashCase& c) { return c.total(3) > kPhaseLimit && c.total(4) > kPhaseLimit; }

// Largest |ln(x/y)| of the two phases: 0 for phases that are alike.
R8 separation(const test::FlashCase& c) {
  const std::vector<R8> y = column(c, 3), x = column(c, 4);
  R8 largest = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i)
    if (x[i] > 0.0 && y[i] > 0.0) largest = std::max(largest, std::fabs(std::log(x[i] / y[i])));
  return largest;
}

// Largest error of ln fugacity between two columns of flows, over components with a share of both phases.
R8 fugacity_error(const test::FlashCase& c, int lighter, I4 lighter_root, I4 denser_root) {
  const std::vector<R8> y = column(c, lighter), x = column(c, 4);
  std::vector<R8> phi_y, phi_x;
  const R8 T = static_cast<R8>(fl.T);
  const R8 P = static_cast<R8>(fl.P);
  EXPECT_TRUE(test::log_phi(lighter_root, T, P, y, phi_y));
  EXPECT_TRUE(test::log_phi(denser_root, T, P, x, phi_x));
  R8 largest = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i)
    if (x[i] > 1.0E-10 && y[i] > 1.0E-10)
      largest = std::max(largest, std::fabs(std::log(x[i] / y[i]) + phi_x[i] - phi_y[i]));
  return largest;
}

R8 pseudo_critical_temperature(const std::vector<R8>& z) {
  R8 sum = 0.0;
  for (std::size_t i = 0; i < z.size(); ++i) sum += z[i] * static_cast<R8>(fl.TC(static_cast<int>(i) + 1));
  return sum;
}

struct Bin {
  int states = 0, right = 0, alike = 0, false_split = 0, second_liquid = 0, missed = 0;
};

std::string bin_name(R8 T, R8 P, R8 Tpc) {
  const char* side = T < Tpc ? "below Tpc" : "above Tpc";
  const char* range = P < 10.0    ? "0.1-10 bar"
                      : P < 50.0  ? "10-50 bar"
                      : P < 100.0 ? "50-100 bar"
                                  : "100-300 bar";
  return std::string(side) + ", " + range;
}

class RandomFlashes : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_flashes_alone();
    bank = bank_numbers();
  }
  std::vector<int> bank;
};

TEST_F(RandomFlashes, BalancesHoldAndFugacitiesAgreeByTheFlashesAlone) {
  std::mt19937 engine(kSeed);
  std::vector<R8> errors;
  std::vector<std::string> messages;
  std::vector<int> damped;
  int split = 0;
  for (int k = 0; k < kFlashes; ++k) {
    test::FlashCase c = random_case(engine, bank, k);
    const std::string STR = c.run();
    if (!STR.empty()) {
      messages.push_back(std::to_string(k) + STR);
      continue;
    }
    R4 feed = 0.0F;
    for (const R4 f : c.feed) feed += f;
    for (int i = 1; i <= c.nc(); ++i)
      EXPECT_NEAR(c.SCAL(i, 3) + c.SCAL(i, 4), c.SCAL(i, 2), 1.0E-5F * c.SCAL(i, 2) + 4.0E-8F) << k;
    EXPECT_NEAR(c.total(3) + c.total(4), feed, 1.0E-5F * feed) << k;
    EXPECT_EQ(c.total(5), 0.0F);
    for (int row = 1; row <= 12; ++row)
      for (int phase = 1; phase <= 2; ++phase)
        EXPECT_TRUE(std::isfinite(c.TPROPS(row, phase))) << k << " row " << row;
    if (!two_phases(c)) continue;
    ++split;
    const R8 error = fugacity_error(c, 3, phase::vapour, phase::liquid);
    if (fl.PASSES <= kDampedPasses) {
      errors.push_back(error);
      EXPECT_LT(error, 1.0E-3) << "state " << k << " T " << c.T << " P " << c.P;
    } else if (error >= 1.0E-3) {
      damped.push_back(k);
    }
  }
  ASSERT_GT(split, 100);
  std::sort(errors.begin(), errors.end());
  std::printf(
      "%d flashes, %d with two phases; ln fugacity error median %.1e, worst %.1e; %zu end with a message\n",
      kFlashes, split, errors[errors.size() / 2], errors.back(), messages.size());
  for (const std::string& m : messages) std::printf("  state %s\n", m.c_str());
  // Beyond pass 80 the damping brings the split to rest whether or not the K-values have settled. Such states are
  // one phase in truth; they are known and held here against becoming more.
  std::printf("%zu two-phase answers came to rest by damping with unequal fugacities:", damped.size());
  for (const int k : damped) std::printf(" %d", k);
  std::printf("\n");
  EXPECT_LE(static_cast<int>(damped.size()), split / 12);
  EXPECT_LE(messages.size(), 5U);
}

TEST_F(RandomFlashes, BalancesHoldAndFugacitiesAgreeInEveryCheckedSplit) {
  test::verify(1);
  std::mt19937 engine(kSeed);
  std::vector<R8> errors;
  int two_liquids = 0, warnings = 0;
  for (int k = 0; k < kFlashes; ++k) {
    test::FlashCase c = random_case(engine, bank, k);
    const std::string STR = c.run();
    ASSERT_TRUE(STR.empty() || STR.front() == '.') << k << STR;
    if (!STR.empty()) {
      EXPECT_NE(STR.find("A third phase"), std::string::npos) << k << STR;
      ++warnings;
    }
    R4 feed = 0.0F;
    for (const R4 f : c.feed) feed += f;
    for (int i = 1; i <= c.nc(); ++i)
      EXPECT_NEAR(c.SCAL(i, 3) + c.SCAL(i, 4) + c.SCAL(i, 5), c.SCAL(i, 2), 1.0E-5F * c.SCAL(i, 2)) << k;
    EXPECT_NEAR(c.total(3) + c.total(4) + c.total(5), feed, 1.0E-5F * feed) << k;
    EXPECT_TRUE(c.total(3) == 0.0F || c.total(5) == 0.0F) << k;
    const int lighter = c.total(5) > kPhaseLimit ? 5 : 3;
    if (!(c.total(lighter) > kPhaseLimit && c.total(4) > kPhaseLimit)) continue;
    two_liquids += lighter == 5 ? 1 : 0;
    errors.push_back(fugacity_error(c, lighter, phase::gibbs, phase::gibbs));
    EXPECT_LT(errors.back(), 1.0E-3) << "state " << k << " T " << c.T << " P " << c.P;
  }
  ASSERT_GT(errors.size(), 100U);
  std::sort(errors.begin(), errors.end());
  std::printf(
      "%d flashes, %zu with two phases, %d of them liquids; ln fugacity error median %.1e, worst %.1e; "
      "%d warn of a third phase\n",
      kFlashes, errors.size(), two_liquids, errors[errors.size() / 2], errors.back(), warnings);
}

TEST_F(RandomFlashes, ShareOfRightAnswersByRegion) {
  // A two-phase answer is right when its phases differ, a one-phase answer when no trial phase lowers the Gibbs
  // energy. Above the pseudo-critical temperature at high pressure the successive substitution often ends with two
  // phases that are alike; these shares are known and held here against getting worse. A liquid that would split
  // into two counts as wrong too (column "liquid 2"): a second liquid is not sought.
  std::mt19937 engine(kSeed + 1);
  std::map<std::string, Bin> bins;
  for (int k = 0; k < kFlashes; ++k) {
    test::FlashCase c = random_case(engine, bank, k);
    if (!c.run().empty()) continue;
    const std::vector<R8> z = column(c, 2);
    const R8 T = static_cast<R8>(fl.T);
    const R8 P = static_cast<R8>(fl.P);
    Bin& bin = bins[bin_name(T, P, pseudo_critical_temperature(z))];
    ++bin.states;
    const bool splits = test::tangent_plane_distance(T, P, z) < -1.0E-7;
    const bool alike = two_phases(c) && separation(c) < 1.0E-2;
    const bool reported_split = two_phases(c) && !alike;
    bin.alike += alike ? 1 : 0;
    const bool one_liquid = !two_phases(c) && c.FRV == 0.0F;
    bin.false_split += reported_split && !splits ? 1 : 0;
    bin.second_liquid += splits && one_liquid ? 1 : 0;
    bin.missed += splits && !reported_split && !one_liquid ? 1 : 0;
    bin.right += !alike && splits == reported_split ? 1 : 0;
  }
  std::printf("%-26s %7s %7s %9s %9s %9s %9s\n", "region", "states", "right", "alike", "false", "liquid 2",
              "missed");
  for (const auto& [name, bin] : bins)
    std::printf("%-26s %7d %6.1f%% %9d %9d %9d %9d\n", name.c_str(), bin.states,
                100.0 * bin.right / bin.states, bin.alike, bin.false_split, bin.second_liquid, bin.missed);
  EXPECT_GE(bins["below Tpc, 0.1-10 bar"].right, 0.90 * bins["below Tpc, 0.1-10 bar"].states);
  EXPECT_GE(bins["above Tpc, 0.1-10 bar"].right, 0.97 * bins["above Tpc, 0.1-10 bar"].states);
}

// Mixture, feed, temperature [C], pressure [bar].
struct Known {
  std::vector<int> numbers;
  std::vector<R4> feed;
  R4 T, P;
};

// How many of the states end with a text; the others have to end without one.
int count_message(const std::vector<Known>& states, const std::string& text) {
  int found = 0;
  for (const Known& state : states) {
    test::FlashCase c;
    c.numbers = state.numbers;
    c.feed = state.feed;
    c.T = state.T;
    c.P = state.P;
    const std::string STR = c.run();
    if (STR == text) ++found;
    if (STR != text) {
      EXPECT_EQ(STR, "");
    }
  }
  return found;
}

TEST_F(RandomFlashes, StatesThatNeverSettleAreTold) {
  // Dense mixtures whose trial vapour has no root of its own: the K-values run in a cycle to the last pass. Seven
  // in 80,000 random states; which of them do depends on the last digits of the fitted curves.
  const std::vector<Known> states = {
      {{323, 32, 59, 281, 417, 329, 1011, 802},
       {0.0980678871F, 0.746056199F, 2.72355938F, 0.47681734F, 0.173242971F, 5.12300444F, 0.78173691F,
        0.465028673F},
       91.1969986F,
       65.7673798F},
      {{25, 321, 24, 15, 134, 939, 128},
       {1.25630927F, 0.138512507F, 0.845252991F, 0.0552558638F, 0.0275345221F, 0.683628142F, 0.288741022F},
       48.9613075F,
       110.560425F},
      {{200, 81, 279, 134},
       {1.02132964F, 0.115317009F, 2.17133212F, 0.689228356F},
       -74.4917679F,
       296.605682F},
      {{283, 34, 910, 22, 292, 206, 15},
       {1.04703403F, 0.312158793F, 0.0930682123F, 1.03609669F, 2.26527929F, 0.740039229F, 0.0582649149F},
       72.057724F,
       151.945267F},
      {{175, 403}, {1.82419693F, 0.937352717F}, 161.311111F, 77.0113525F},
      {{285, 16, 4, 41, 61, 15, 150, 332, 415, 323},
       {6.04398012F, 1.79973352F, 0.0617854968F, 0.532232344F, 2.51100278F, 0.138595119F, 0.316909224F,
        1.12527764F, 0.102691725F, 0.368687242F},
       -23.9433022F,
       236.317627F},
      {{800, 16, 10, 81, 132, 27, 127, 742, 128},
       {1.02422917F, 0.227154046F, 1.25963533F, 0.490971327F, 0.530447543F, 1.99343348F, 0.356256068F,
        0.00990733411F, 0.02926182F},
       -98.1574707F,
       144.440964F},
      {{742, 440, 284, 16, 280, 337, 417, 221},
       {3.14708996F, 0.28135708F, 0.257932872F, 0.649105906F, 1.04700494F, 1.52895367F, 0.815774083F,
        0.19845818F},
       183.431824F,
       128.736099F},
      {{800, 417, 13, 27}, {0.658886254F, 1.08144367F, 0.343789637F, 1.95981741F}, 254.661987F, 135.087799F},
  };
  EXPECT_GE(count_message(states, " K-values unusually dependent on composition, no convergence (FLTP)"), 1);
  for (int number = 1; number <= kErrorNumbers; ++number)
    EXPECT_EQ(errmat.ERRMAT(error_row::FLTP, number), 0);
}

TEST_F(RandomFlashes, NegativeHeatCapacitiesAreTold) {
  // Dense states whose second phase sits on a root inside the unstable region; 19 in 80,000 random states.
  const std::vector<Known> states = {
      {{58, 232, 289, 33, 330, 208, 130, 284, 202, 38, 28},
       {0.697845757F, 1.00111282F, 1.07994485F, 0.706230044F, 0.935203612F, 0.171470985F, 1.0581485F,
        1.69682372F, 0.925936878F, 0.148922801F, 0.164323345F},
       -118.915817F,
       141.944107F},
      {{7, 461, 18}, {1.24719357F, 0.302679807F, 1.4137305F}, -68.004715F, 207.651291F},
      {{404, 24, 802, 84, 59, 725, 277, 913, 125, 35, 440},
       {1.31226134F, 0.86280936F, 1.03840387F, 0.0226651486F, 0.210283592F, 1.76205695F, 0.99548465F,
        1.87853384F, 0.435526133F, 0.217317209F, 0.334757745F},
       -47.1769524F,
       202.196716F},
      {{208, 417, 286}, {0.217288226F, 0.802084386F, 0.331602454F}, -123.009499F, 102.565201F},
      {{12, 238}, {4.01768827F, 2.18047714F}, 14.4867935F, 259.768311F},
      {{802, 192, 455, 132, 6, 742, 283, 279, 719, 1011},
       {0.847691536F, 0.0508743934F, 2.30953288F, 1.14796054F, 0.267976493F, 0.454490632F, 0.241767988F,
        0.96286732F, 0.93990016F, 0.401973188F},
       -121.009758F,
       248.7948F},
      {{7, 289, 496, 238, 939, 175, 200, 337},
       {5.50303507F, 0.676151812F, 0.690672159F, 1.93402207F, 0.2596156F, 1.1390779F, 0.468812108F,
        0.348933309F},
       -70.0034485F,
       281.44635F},
      {{404, 939, 12, 200, 719, 810, 4},
       {1.07681656F, 0.39975825F, 1.36702371F, 0.171448916F, 1.06476676F, 0.18913655F, 0.8085621F},
       6.40358734F,
       176.987488F},
      {{39, 204, 725, 125}, {3.11035037F, 2.75429845F, 1.26469433F, 0.666590333F}, -40.3792686F, 145.727493F},
      {{404, 12, 32, 330}, {0.938011825F, 0.727494776F, 1.86517191F, 2.51421428F}, 13.9733229F, 158.286392F},
      {{179, 719, 232, 61, 279, 725},
       {0.755074561F, 0.638723969F, 0.587643504F, 0.262361497F, 1.09315908F, 1.07758188F},
       -39.2161903F,
       263.703186F},
      {{14, 12, 278, 328, 192},
       {0.866426468F, 2.04301858F, 0.269239455F, 1.2295512F, 1.75900495F},
       12.3937302F,
       140.89978F},
      {{417, 292, 132, 176},
       {0.856779337F, 0.245203212F, 0.102858447F, 0.174137026F},
       -122.622871F,
       131.391937F},
      {{127, 200, 132, 150, 328, 63, 131, 33, 43, 129, 17},
       {0.506106913F, 0.248439372F, 1.06777132F, 0.156079978F, 1.4093982F, 0.238547862F, 3.27445292F,
        0.337749183F, 3.09870791F, 1.35880888F, 0.311416924F},
       -117.632843F,
       265.420898F},
      {{8, 43, 719, 725, 329, 208},
       {0.151406094F, 0.982865274F, 0.30026415F, 2.49354863F, 0.338804364F, 0.674977541F},
       -44.9397621F,
       267.078278F},
  };
  EXPECT_GE(count_message(states, " Unable to find accurate specific heat, no calculation (TALIX)"), 1);
}

TEST_F(RandomFlashes, NewtonWithoutConvergenceIsTold) {
  // Started all liquid, a nearly perfect vacuum pulls the helium out with a K-value beyond what 32 bits resolve.
  test::FlashCase c;
  c.numbers = {3, 134};
  c.feed = {0.5F, 0.5F};
  c.T = -73.15F;
  c.P = 1.0E-7F;
  c.FRV = 0.0F;
  EXPECT_EQ(c.run(), " Flash unable to converge to a solution (FLTP)");
  EXPECT_EQ(fl.NCAL, flash_status::failed);
  EXPECT_EQ(errmat.NERRS, 0) << "echoed without an error count";
}

TEST_F(RandomFlashes, EnthalpyIsContinuousAlongTemperature) {
  test::verify(1);
  // Away from the ends of the two-phase region a step of 0.2 K moves the enthalpy by heat capacity times step;
  // at its ends the slope jumps but the enthalpy does not.
  test::FlashCase gas = test::natural_gas();
  R4 last = 0.0F;
  for (int k = 0; k <= 400; ++k) {
    gas.T = -60.0F + 0.2F * static_cast<R4>(k);
    gas.P = 40.0F;
    gas.FRV = 1.0F;
    ASSERT_EQ(gas.run(), "") << gas.T;
    const R4 H = gas.SCAL(12, 2);
    if (k > 0) {
      EXPECT_GT(H, last) << gas.T;
      EXPECT_LT(H - last, 0.2F * 0.25F) << gas.T << ": 0.25 kJ/(mol K) bounds the slope";
    }
    last = H;
  }
}

}  // namespace
}  // namespace talix
