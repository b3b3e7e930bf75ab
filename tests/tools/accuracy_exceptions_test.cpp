// What the accuracy report lists as missed, with which reason, and how it sums up the goals.
#include "bank/accuracy_exceptions.h"

#include <gtest/gtest.h>

#include <sstream>

#include "bank/accuracy_goals.h"

namespace talix::bank {
namespace {

// A component that holds every line.
struct Case {
  FitComponent component;
  Line line;
  std::map<int, std::string> notes;

  Case() {
    component.number = 22;
    component.name = "propane";
    component.family = "alkane";
    line.component = &component;
    line.basis = "equation of state";
    line.boiling = {.given = 231.04,
                    .cubic = 231.05,
                    .source = 231.04,
                    .hvap_given = 18770.0,
                    .hvap_cubic = 18900.0,
                    .hvap_slope = 18890.0,
                    .rhov_source = 54.6,
                    .rhov_cubic = 54.4,
                    .psat_off = 0.05};
  }
  Case(const Case&) = delete;
  Case& operator=(const Case&) = delete;
  [[nodiscard]] std::vector<Finding> findings() const { return find_exceptions({line}, notes); }
};

TEST(Exceptions, SoundComponentHasNone) {
  const Case c;
  EXPECT_TRUE(c.findings().empty());
}

TEST(Exceptions, BoilingPointOffIsAFaultUnlessTheSourceBoilsElsewhere) {
  Case c;
  c.line.boiling.cubic = 231.55;
  ASSERT_EQ(c.findings().size(), 1U);
  EXPECT_EQ(c.findings()[0].what, "boils at 231.55 K, record 231.04 K");
  EXPECT_EQ(c.findings()[0].reason, "");
  c.line.boiling.source = 231.50;
  EXPECT_EQ(c.findings()[0].reason, "the source of the vapour pressure boils at 231.50 K");
  c.line.psat_estimated = true;
  EXPECT_EQ(c.findings()[0].reason, "the estimate of the vapour pressure boils at 231.50 K");
  c.line.boiling.cubic = c.line.boiling.given + 0.49;
  EXPECT_TRUE(c.findings().empty());
  // So far off is a slip, whatever the source says.
  c.line.boiling.cubic = 260.0;
  c.line.boiling.source = 260.0;
  EXPECT_EQ(c.findings()[0].reason, "");
}

TEST(Exceptions, SublimationIsNoBoilingPoint) {
  Case c;
  c.line.boiling.cubic = 300.0;
  c.line.boiling.sublimes = true;
  EXPECT_TRUE(c.findings().empty());
}

TEST(Exceptions, HeatOfVaporisationOffWantsAReason) {
  Case c;
  c.line.boiling.hvap_cubic = 1.04 * 18770.0;
  EXPECT_TRUE(c.findings().empty());
  c.line.boiling.hvap_cubic = 1.08 * 18770.0;
  ASSERT_EQ(c.findings().size(), 1U);
  EXPECT_EQ(c.findings()[0].what, "heat of vaporisation +8.0 % off its source, 18.77 kJ/mol");
  EXPECT_NE(c.findings()[0].reason.find("another slope"), std::string::npos);
  c.line.boiling.hvap_slope = 1.08 * 18770.0;
  EXPECT_NE(c.findings()[0].reason.find("sources disagree"), std::string::npos);
  c.line.boiling.rhov_cubic = 0.93 * 54.6;
  EXPECT_EQ(c.findings()[0].reason, "the equation gives the saturated vapour -7.0 % off in density");
  c.component.family = "carboxylic acid";
  EXPECT_EQ(c.findings()[0].reason, "molecules pair up in the vapour; the equation has single ones");
}

TEST(Exceptions, CurvesThatAreNotSoundHaveNoExcuse) {
  Case c;
  c.notes[22] = "full fit: something";
  c.line.faults = {.a = 500.0, .b = 600.0, .pressure = 200.0, .density = 210.0};
  const std::vector<Finding> found = c.findings();
  ASSERT_EQ(found.size(), 4U);
  EXPECT_EQ(found[0].reason, "");
  EXPECT_EQ(found[1].reason, "");
  EXPECT_EQ(found[2].reason, "");
  EXPECT_EQ(found[3].reason, "full fit: something");
  c.component.name = "water";
  EXPECT_NE(c.findings()[3].reason.find("densest above freezing"), std::string::npos);
}

TEST(Exceptions, ReportListsWhatIsMissedAndTheFitNotes) {
  Case c;
  c.line.boiling.cubic = 232.0;
  c.notes[22] = "full fit: a rises at 400 K; fitted to corresponding states";
  std::ostringstream out;
  write_exceptions(out, c.findings(), {c.line}, c.notes);
  EXPECT_NE(out.str().find("the following 1 of 1"), std::string::npos);
  EXPECT_NE(out.str().find("| 22 | propane | boils at 232.00 K, record 231.04 K |"), std::string::npos);
  EXPECT_NE(out.str().find("| 22 | propane | full fit: a rises at 400 K"), std::string::npos);
}

TEST(Goals, MeansCountPublishedSourcesOnly) {
  Case reference, published, estimated;
  const auto mean = [](double v) {
    Deviation d;
    d.n = 10;
    d.mean = v;
    return d;
  };
  reference.line.psat_core = mean(0.1);
  reference.line.rhol_core = mean(0.4);
  reference.line.hvap_core = mean(1.5);
  reference.line.hvap_form = mean(1.7);
  published.line.basis = "correlations";
  published.line.psat_core = mean(0.3);
  published.line.rhol_core = mean(5.0);
  published.line.rhol_estimated = true;
  estimated.line.basis = "generalised";
  estimated.line.psat_core = mean(9.0);
  estimated.line.rhol_core = mean(9.0);
  estimated.line.psat_estimated = estimated.line.rhol_estimated = true;
  const GoalFigures g = goal_figures({reference.line, published.line, estimated.line});
  EXPECT_EQ(g.all, 2);
  EXPECT_NEAR(g.psat_all, 0.2, 1e-12);
  EXPECT_EQ(g.all_density, 1);
  EXPECT_NEAR(g.rhol_all, 0.4, 1e-12);
  EXPECT_EQ(g.reference, 1);
  EXPECT_NEAR(g.psat_reference, 0.1, 1e-12);
  EXPECT_NEAR(g.hvap_reference, 1.5, 1e-12);
  EXPECT_NEAR(g.hvap_form, 1.7, 1e-12);
  std::ostringstream out;
  write_goals(out, {reference.line, published.line, estimated.line});
  EXPECT_NE(out.str().find("| 2 | 0.200 | 0.5 | held |"), std::string::npos) << out.str();
  published.line.psat_core = mean(1.9);
  std::ostringstream missed;
  write_goals(missed, {reference.line, published.line});
  EXPECT_NE(missed.str().find("| 2 | 1.000 | 0.5 | missed |"), std::string::npos) << missed.str();
}

}  // namespace
}  // namespace talix::bank
