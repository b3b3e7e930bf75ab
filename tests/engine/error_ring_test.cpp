#include "engine/error_ring.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/codes.h"
#include "engine/reset.h"

namespace talix {
namespace {

class ErrorRingTest : public ::testing::Test {
 protected:
  void SetUp() override { reset_engine(); }
};

void push_numbered(int count) {
  for (int i = 1; i <= count; ++i) SERPU0(i, "R" + std::to_string(i), "message " + std::to_string(i));
}

TEST_F(ErrorRingTest, StartsEmpty) {
  EXPECT_EQ(ring.count, 0);
  EXPECT_EQ(trimmed(ring.TXTER0(1)), "");
}

TEST_F(ErrorRingTest, FifteenPushesFillItFromTheOldestOn) {
  push_numbered(15);
  EXPECT_EQ(ring.count, 15);
  EXPECT_EQ(trimmed(ring.TXTER0(1)), "message 1");
  EXPECT_EQ(trimmed(ring.NAMER0(15)), "R15");
}

TEST_F(ErrorRingTest, SixteenthPushLosesTheOldestEntry) {
  push_numbered(16);
  EXPECT_EQ(ring.count, 15);
  for (int i = 1; i <= 15; ++i) {
    EXPECT_EQ(ring.SEVER0(i), i + 1);
    EXPECT_EQ(trimmed(ring.NAMER0(i)), "R" + std::to_string(i + 1));
    EXPECT_EQ(trimmed(ring.TXTER0(i)), "message " + std::to_string(i + 1));
  }
}

TEST_F(ErrorRingTest, LongTextsAndNamesAreCutAndShortOnesPadded) {
  const std::string long_text(300, 'x');
  SERPU0(severity::error, "ABCDEFGH", long_text);
  SERPU0(severity::warning, "AB", "short");
  EXPECT_EQ(ring.NAMER0(1).view(), "ABCDEF");
  EXPECT_EQ(ring.TXTER0(1).view(), long_text.substr(0, 255));
  EXPECT_EQ(ring.NAMER0(2).view(), "AB    ");
  EXPECT_EQ(ring.TXTER0(2).view(), "short" + std::string(250, ' '));
}

TEST_F(ErrorRingTest, SeverityIsStoredAsGiven) {
  SERPU0(-7, "N", "t");
  SERPU0(severity::warning, "N", "t");
  EXPECT_EQ(ring.SEVER0(1), -7);
  EXPECT_EQ(ring.SEVER0(2), 1);
}

}  // namespace
}  // namespace talix
