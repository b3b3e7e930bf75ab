#include "engine/codes.h"

#include <gtest/gtest.h>

#include "support/golden.h"

namespace talix {
namespace {

TEST(CodeTable, EveryCodeCarriesItsText) {
  const auto rows = test::golden_rows("code_texts.csv");
  ASSERT_EQ(rows.size(), 146U);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_EQ(rows[i].size(), 2U);
    const int number = std::stoi(rows[i][0]);
    EXPECT_EQ(number, static_cast<int>(i) + 1);
    EXPECT_EQ(trimmed(ETOA(number)), rows[i][1]);
    EXPECT_EQ(ETOA(number).view().size(), 31U);
  }
}

}  // namespace
}  // namespace talix
