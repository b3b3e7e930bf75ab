#include "api/feed_scale.h"

#include <cmath>

#include "fastprops/flash_record.h"

namespace talix {

namespace {

// Totals between these are flashed as they are [mol]. The flow of 2E-8 that stands for an absent phase would miss the
// balance of a smaller feed by more than 1E-5 of its mass.
constexpr R4 kSmallFeed = 0.1F;
constexpr R4 kLargeFeed = 1.0E+4F;
// The flashes refuse a feed above this, or a component's [mol].
constexpr R4 kLargestFeed = 1.0E+9F;

bool runs_flash() {
  return fl.IFLASH >= flash_type::bubble_pressure && fl.IFLASH <= flash_type::isothermal_fast;
}

bool is_refused() {
  for (int i = 1; i <= fl.NC; ++i)
    if (!(fl.F(i) <= kLargestFeed)) return true;
  return !(fl.FT > kPhaseLimit) || !(fl.FT <= kLargestFeed);
}

}  // namespace

// The limits of the flashes are flows in mol: the smallest phase, the tolerances of their balances. A feed far from
// 1 meets other limits relative to itself than one of 1; a power of two changes no digit of it.
R4 feed_factor() {
  if (!runs_flash() || is_refused()) return 1.0F;
  if (fl.FT >= kSmallFeed && fl.FT <= kLargeFeed) return 1.0F;
  int exponent = 0;
  std::frexp(fl.FT, &exponent);
  return std::ldexp(1.0F, -exponent);
}

void scale_feed(R4 factor) {
  if (factor == 1.0F) return;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.F(i) *= factor;
    fl.SF(i) *= factor;
  }
  fl.FT *= factor;
  fl.SFT *= factor;
  fl.SF(fl.NC + 2) *= factor;
  fl.QSPEC *= factor;
}

void scale_state(R4 factor) {
  if (factor == 1.0F) return;
  scale_feed(factor);
  fl.SF(fl.NC + 1) *= factor;
  for (int i = 1; i <= fl.NC; ++i) {
    fl.FV(i) *= factor;
    fl.FL(i) *= factor;
    fl.FLS(i) *= factor;
  }
  fl.FTV *= factor;
  fl.FTL *= factor;
  fl.FTLS *= factor;
}

// Columns 3 to 5 hold flows in the rows of the components, column 2 as well in the row of the totals; the row of the
// enthalpies is written in columns 2 to 5.
void scale_results(R4 factor, ScalTable& SCAL) {
  if (factor == 1.0F) return;
  for (int column = 3; column <= 5; ++column)
    for (int row = 1; row <= fl.NC + 2; ++row) SCAL(row, column) *= factor;
  SCAL(fl.NC + 1, 2) *= factor;
  SCAL(fl.NC + 2, 2) *= factor;
}

}  // namespace talix
