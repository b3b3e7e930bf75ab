// A compiler that keeps a double where the program rounds it to 32 bits changes results.
#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "base/real.h"

namespace talix {
namespace {

struct Constants {
  std::array<R8, 15> p;
  std::array<R8, 4> others;
};

[[gnu::noinline]] Constants rounded(const Constants& from) {
  Constants c = from;
  for (R8& v : c.p) v = static_cast<R8>(static_cast<R4>(v));
  return c;
}

TEST(Rounding, EveryConversionTo32BitsIsDone) {
  Constants c{};
  for (std::size_t i = 0; i < c.p.size(); ++i) c.p[i] = 3.0 * std::sin(static_cast<R8>(i) + 1.0);
  for (const R8 v : rounded(c).p) {
    const volatile R4 stored = static_cast<R4>(v);
    EXPECT_EQ(static_cast<R8>(stored), v);
  }
}

TEST(Rounding, WidenKeepsTheSinglePrecisionValue) {
  EXPECT_EQ(widen(298.15F), 298.1499938964844);
  EXPECT_EQ(widen(1.75256F), 1.752560019493103);
}

}  // namespace
}  // namespace talix
