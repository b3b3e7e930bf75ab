// The extended Antoine set and the liquid heat capacity: taken back from data of their own form, and with the meaning
// that the library gives them.
#include <gtest/gtest.h>

#include <cmath>

#include "bank/fit_sets.h"
#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/reset.h"
#include "transport/sps_vapour_pressure.h"

namespace talix::bank {
namespace {

FitComponent like_hexane() {
  FitComponent c;
  c.name = "hexane";
  c.tc = 507.82;
  c.pc = 3.0441e6;
  c.omega = 0.3;
  return c;
}

SetValues extended_antoine() { return {104.65, -6995.5, 0.0, 0.0, -12.702, 1.2e-17, 6.0, 200.0, 500.0}; }

TEST(ExtendedAntoine, TakesBackItsOwnForm) {
  const FitComponent c = like_hexane();
  Reference ref;
  for (double T = 200.0; T < 500.0; T += 10.0)
    ref.sat.push_back({T, panto_pressure(extended_antoine(), T), 0, 0, 0});
  const auto set = fit_extended_antoine(c, ref);
  ASSERT_TRUE(set.has_value());
  EXPECT_LT(set->deviation.worst, 0.05);
  EXPECT_EQ(set->count, 9);
  EXPECT_EQ(set->c[7], 200.0);
  EXPECT_EQ(set->c[8], 490.0);
  for (const double v : set->c) EXPECT_EQ(v, rounded_to_32_bits(v));
}

TEST(ExtendedAntoine, TooFewPointsMakeNoSet) {
  Reference ref;
  for (double T = 300.0; T < 350.0; T += 10.0) ref.sat.push_back({T, 1e5, 0, 0, 0});
  EXPECT_FALSE(fit_extended_antoine(like_hexane(), ref).has_value());
}

TEST(ExtendedAntoine, LibraryGivesTheSamePressure) {
  reset_engine();
  const SetValues c = extended_antoine();
  comp.IPANO(1) = 7;
  for (int k = 1; k <= 9; ++k) comp.PANTO(1, k) = c.at(static_cast<std::size_t>(k - 1));
  for (const double T : {200.0, 300.0, 450.0, 500.0}) {
    R8 p = 0.0, slope = 0.0;
    I4 failed = -1;
    SPSAN2(T, 1, logical(true), logical(false), p, slope, failed);
    EXPECT_EQ(failed, status::ok);
    EXPECT_NEAR(p, panto_pressure(c, T), 1e-9 * p) << T;
  }
  reset_engine();
}

TEST(LiquidHeatCapacity, FewestTermsThatFollowTheSource) {
  const FitComponent c = like_hexane();
  const auto line_of = [&](auto value) {
    SourceLine line;
    line.source = "made up";
    for (double T = 200.0; T <= 450.0; T += 5.0) line.points.push_back({T, value(T), 1.0, true});
    line.tmin = 200.0;
    line.tmax = 450.0;
    return line;
  };
  const auto straight = fit_liquid_heat_capacity(c, line_of([](double T) { return 100.0 + 0.3 * T; }));
  ASSERT_TRUE(straight.has_value());
  EXPECT_LT(straight->deviation.worst, 1e-3);
  EXPECT_EQ(straight->c[2], 0.0);
  EXPECT_EQ(straight->flag, kTabulatedForm);
  const auto bent = fit_liquid_heat_capacity(
      c, line_of([](double T) { return 100.0 + 0.3 * T + 1e-3 * (T - 300.0) * (T - 300.0); }));
  ASSERT_TRUE(bent.has_value());
  EXPECT_LT(bent->deviation.worst, 0.05);
  EXPECT_NE(bent->c[2], 0.0);
  // Outside its limits it stays level.
  EXPECT_EQ(ccpl_heat_capacity(bent->c, 100.0), ccpl_heat_capacity(bent->c, 200.0));
  EXPECT_EQ(ccpl_heat_capacity(bent->c, 600.0), ccpl_heat_capacity(bent->c, 450.0));
}

TEST(LiquidHeatCapacity, NothingPublishedMakesNoSet) {
  EXPECT_FALSE(fit_liquid_heat_capacity(like_hexane(), SourceLine{}).has_value());
}

}  // namespace
}  // namespace talix::bank
