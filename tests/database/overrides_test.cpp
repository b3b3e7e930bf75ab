#include "database/overrides.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "engine/codes.h"
#include "engine/model_table.h"
#include "engine/reset.h"
#include "engine/setup.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"
#include "liquid/unifac_record.h"

namespace talix {
namespace {

struct Answer {
  I4 nfail = -1;
  I4 count = -1;
  KeyNames keys{};
  KeyValues values{};

  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> list;
    for (int i = 1; i <= count; ++i) list.emplace_back(trimmed(keys(i)));
    return list;
  }
};

Answer call(I4 section, I4 act, const std::vector<R8>& values = {}) {
  Answer answer;
  for (std::size_t i = 0; i < values.size(); ++i) answer.values(static_cast<int>(i) + 1) = values[i];
  SURMD0(answer.count, answer.keys, 10, answer.values, act, section, answer.nfail);
  return answer;
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
  const Answer before = call(model::ideal_gas, action::information);
  EXPECT_EQ(before.nfail, status::ok);
  EXPECT_EQ(before.names(), std::vector<std::string>{"H-datum"});
  EXPECT_EQ(before.keys(1).view(), "H-datum   ");
  EXPECT_FLOAT_EQ(static_cast<R4>(before.values(1)), 111.111111F);

  const Answer written = call(model::ideal_gas, action::input, {273.15});
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
  const Answer before = call(model::nrtl, action::information);
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

TEST_F(OverridesTest, FitPointIsReadButNotReplacedWithoutItsMixingRule) {
  I4 slot = 0;
  I4 nfail = 0;
  SHMLD0(model::vardo3, slot, nfail);
  const Answer read = call(model::vardo3, action::information);
  EXPECT_EQ(read.nfail, status::ok);
  EXPECT_EQ(read.names(), (std::vector<std::string>{"Tkij", "Pkij"}));
  EXPECT_FLOAT_EQ(static_cast<R4>(read.values(1)), 298.15F);
  EXPECT_EQ(read.values(2), 101325.0);
  const Answer written = call(model::vardo3, action::input, {300.0, 1e5});
  EXPECT_EQ(written.nfail, status::not_available);
  EXPECT_EQ(written.count, 0);
  EXPECT_FLOAT_EQ(static_cast<R4>(a_excess.TKIJ), 298.15F);
}

TEST_F(OverridesTest, AnyOtherActionOnlyListsTheKeys) {
  for (const I4 other : {0, 85, 88, 98}) {
    const I4 generation = setup.generation;
    const Answer answer = call(model::nrtl, other, {1.0, 2.0, 3.0, 4.0});
    EXPECT_EQ(answer.nfail, status::ok);
    EXPECT_EQ(answer.count, 4);
    EXPECT_EQ(answer.values(2), 2.0);
    EXPECT_FLOAT_EQ(static_cast<R4>(unifill.Tupp), 373.15F);
    EXPECT_EQ(setup.generation, generation);
  }
}

TEST_F(OverridesTest, SectionThatDoesNotApplyHasNoKeys) {
  for (const I4 section : {0, -1, 41, 47, 55, 56, 57, 58, 79, 135, 147}) {
    const Answer answer = call(section, action::information);
    EXPECT_EQ(answer.nfail, status::not_available);
    EXPECT_EQ(answer.count, 0);
  }
}

}  // namespace
}  // namespace talix
