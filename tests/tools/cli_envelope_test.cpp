#include "cli/envelope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "cli/app.h"
#include "cli/child_process.h"
#include "cli/envelope_line.h"
#include "cli/envelope_plot.h"
#include "cli/envelope_report.h"
#include "cli/failure.h"
#include "support/test_support.h"
#include "tools/cli_fixture.h"

namespace talix::cli {
namespace {

using nlohmann::json;

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A made-up mixture in closed form: with the lines meeting at 0 C and 50 bar, the bubble line is
// T = -w and the dew line T = +w, where w = 40 sqrt(ln(50/P)).
double half_width(double P) { return P < 50 ? 40 * std::sqrt(std::log(50 / P)) : 0; }
double width_pressure(double w) { return 50 * std::exp(-(w / 40) * (w / 40)); }

PhaseResult made_up_phase(double first, double density) {
  PhaseResult phase;
  phase.composition = {static_cast<float>(first), static_cast<float>(1 - first)};
  phase.properties[1] = static_cast<float>(density);
  return phase;
}

FlashResult made_up_answer(double T, double P, double vapour_fraction) {
  const double w = half_width(P);
  FlashResult result;
  result.ok = true;
  result.T_C = static_cast<float>(T);
  result.P_bar = static_cast<float>(P);
  result.vapour_fraction = static_cast<float>(vapour_fraction);
  result.vapour = made_up_phase(0.5 + w / 400, 200 - w);
  result.liquid = made_up_phase(0.5 - w / 400, 200 + w);
  return result;
}

FlashResult made_up_flash(const FlashRequest& request) {
  const double w = half_width(request.P_bar);
  switch (request.type) {
    case FlashType::bubble_t:
      return made_up_answer(-w, request.P_bar, 0);
    case FlashType::dew_t:
      return made_up_answer(w, request.P_bar, 1);
    case FlashType::bubble_p:
    case FlashType::dew_p:
      // Neither line goes on beyond the critical point.
      if ((request.type == FlashType::dew_p) != (request.T_C > 0)) return FlashResult{};
      return made_up_answer(request.T_C, width_pressure(request.T_C),
                            request.type == FlashType::dew_p ? 1 : 0);
    default: {
      const double share = w > 0 ? (request.T_C + w) / (2 * w) : (request.T_C > 0 ? 1 : 0);
      FlashResult result = made_up_answer(request.T_C, request.P_bar, std::fmin(std::fmax(share, 0), 1));
      result.vapour->fraction = static_cast<float>(share);
      result.liquid->fraction = static_cast<float>(1 - share);
      if (share <= 0) result.vapour.reset();
      if (share >= 1) result.liquid.reset();
      return result;
    }
  }
}

void expect_on_the_lines(const Envelope& envelope, double tolerance) {
  for (const auto* line : {&envelope.bubble, &envelope.dew}) {
    for (const EnvelopePoint& point : *line) {
      if (!point.ok) continue;
      const double sign = line == &envelope.dew ? 1 : -1;
      EXPECT_NEAR(point.T_C, sign * half_width(point.P_bar), tolerance) << point.P_bar << " " << point.method;
    }
  }
}

TEST(CliEnvelope, BothLinesRunUpToTheCriticalPoint) {
  int seen = 0;
  const Envelope envelope =
      trace_envelope(test::two_component_request(), {}, made_up_flash, [&](const EnvelopePoint&) { ++seen; });
  expect_on_the_lines(envelope, 0.02);
  ASSERT_NE(end_of(envelope.bubble), nullptr);
  ASSERT_NE(end_of(envelope.dew), nullptr);
  EXPECT_NEAR(envelope.bubble.front().P_bar, 1, 1e-6);
  EXPECT_NEAR(envelope.dew.front().P_bar, 1, 1e-6);
  EXPECT_NEAR(end_of(envelope.bubble)->T_C, 0, 0.1);
  EXPECT_NEAR(end_of(envelope.dew)->T_C, 0, 0.1);
  EXPECT_GE(seen, static_cast<int>(envelope.bubble.size() + envelope.dew.size()));
  EXPECT_GT(seen, 60);
  ASSERT_TRUE(envelope.critical && envelope.cricondenbar);
  EXPECT_NEAR(envelope.critical->T_C, 0, 0.05);
  EXPECT_NEAR(envelope.critical->P_bar, 50, 0.01);
  EXPECT_NEAR(envelope.cricondenbar->P_bar, 50, 0.001);
  // The made-up dew line is hottest where it begins: it may go on beyond.
  EXPECT_FALSE(envelope.cricondentherm);
}

TEST(CliEnvelope, WhereNoBubblePointIsFoundTheEdgeOfTheTwoPhaseRegionIs) {
  // Between 5 and 20 bar no bubble flash converges.
  const FlashFunction flash = [](const FlashRequest& request) {
    const bool bubble = request.type == FlashType::bubble_t || request.type == FlashType::bubble_p;
    if (bubble && request.P_bar > 5 && request.P_bar < 20) return FlashResult{};
    return made_up_flash(request);
  };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, flash, nullptr);
  expect_on_the_lines(envelope, 0.02);
  int edges = 0;
  for (const EnvelopePoint& point : envelope.bubble) {
    EXPECT_TRUE(point.ok) << point.P_bar << " " << point.message;
    edges += point.method == "edge" ? 1 : 0;
  }
  EXPECT_GT(edges, 4);
  EXPECT_TRUE(envelope.critical);
}

TEST(CliEnvelope, AnswersThatAreNoneAreLeftOutWithoutTheCheckOfTheLibrary) {
  FlashRequest mixture = test::two_component_request();
  mixture.verify = 0;
  // From 12 bar on the dew flash gives an answer far away, from 30 bar on the bubble flash the same phase twice.
  const FlashFunction flash = [](const FlashRequest& request) {
    EXPECT_EQ(request.verify, 0);
    FlashResult result = made_up_flash(request);
    const bool dew = request.type == FlashType::dew_t || request.type == FlashType::dew_p;
    const bool bubble = request.type == FlashType::bubble_t || request.type == FlashType::bubble_p;
    if (dew && request.P_bar > 12) result.T_C = 300.0F;
    if (bubble && request.P_bar > 30) result.liquid = result.vapour;
    return result;
  };
  const Envelope envelope = trace_envelope(mixture, {}, flash, nullptr);
  expect_on_the_lines(envelope, 0.02);
  ASSERT_NE(end_of(envelope.dew), nullptr);
  EXPECT_LT(end_of(envelope.dew)->P_bar, 12.5);
  EXPECT_FALSE(envelope.dew.back().ok);
  ASSERT_NE(end_of(envelope.bubble), nullptr);
  EXPECT_LT(end_of(envelope.bubble)->P_bar, 30.5);
  EXPECT_EQ(envelope.bubble.back().message, "both phases are alike");
  EXPECT_FALSE(envelope.critical);
  // Nothing is known of the gap.
  EXPECT_FALSE(envelope.cricondenbar);
}

TEST(CliEnvelope, AnAnswerWithTheSamePhaseAroundItIsNoneWithoutTheCheckOfTheLibrary) {
  FlashRequest mixture = test::two_component_request();
  mixture.verify = 0;
  const FlashFunction flash = [](const FlashRequest& request) {
    FlashResult result = made_up_flash(request);
    if (request.type == FlashType::tp && request.P_bar > 20) result.vapour_fraction = 1.0F;
    return result;
  };
  const Envelope envelope = trace_envelope(mixture, {}, flash, nullptr);
  ASSERT_NE(end_of(envelope.bubble), nullptr);
  EXPECT_LT(end_of(envelope.bubble)->P_bar, 20.5);
  EXPECT_EQ(envelope.bubble.back().message, "the same phases on both sides of the answer");
}

TEST(CliEnvelope, ALineThatLeavesTheRangeOfTheLibraryIsOpen) {
  // A bubble line that rises with falling temperature, P = 100 exp(-T/50), from 20 C up.
  const FlashFunction flash = [](const FlashRequest& request) {
    const double P = 100 * std::exp(-request.T_C / 50);
    if (request.type != FlashType::bubble_p || request.T_C > 20 || P > 900) return FlashResult{};
    return made_up_answer(request.T_C, P, 0);
  };
  const FlashFunction lines = [&](const FlashRequest& request) {
    FlashResult result = flash(request);
    if (result.ok) {
      result.vapour = made_up_phase(0.9, 100);
      result.liquid = made_up_phase(0.5, 700);
    }
    return result;
  };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, lines, nullptr);
  EXPECT_TRUE(envelope.bubble_open);
  EXPECT_FALSE(envelope.dew_open);
  ASSERT_NE(end_of(envelope.bubble), nullptr);
  // Along the line from its open end.
  EXPECT_GT(envelope.bubble[1].P_bar, 800);
  EXPECT_NEAR(end_of(envelope.bubble)->T_C, 20, 1);
  EXPECT_FALSE(envelope.critical || envelope.cricondenbar);
  EXPECT_TRUE(
      holds(envelope_table(test::two_component_request(), envelope), "The bubble line is open: it goes on"));
  EXPECT_TRUE(holds(envelope.bubble_end, "no further bubble point was found")) << envelope.bubble_end;
}

TEST(CliEnvelope, ALineThatCannotGoOnEndsWithTheMessage) {
  const FlashFunction flash = [](const FlashRequest& request) {
    if (request.P_bar < 10) return made_up_flash(request);
    FlashResult result;
    result.message = "No convergence";
    return result;
  };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, flash, nullptr);
  ASSERT_FALSE(envelope.dew.empty());
  EXPECT_FALSE(envelope.dew.back().ok);
  EXPECT_EQ(envelope.dew.back().message, "No convergence");
  EXPECT_GT(end_of(envelope.dew)->P_bar, 8);
  EXPECT_LT(end_of(envelope.dew)->P_bar, 10);
}

TEST(CliEnvelope, TheReasonForTheEndOfALineTellsWhatStandsBeyondIt) {
  // Neither saturation flash converges above 10 bar; what the isothermal flash finds beyond is told.
  const auto end_with = [](double width_beyond) {
    const FlashFunction flash = [width_beyond](const FlashRequest& request) {
      FlashResult result = made_up_flash(request);
      if (request.P_bar <= 10) return result;
      if (request.type != FlashType::tp) {
        result = FlashResult{};
        result.message = "No convergence";
      } else if (width_beyond > 0) {
        result = made_up_answer(request.T_C, request.P_bar, 0.5);
      } else {
        result.liquid.reset();
        result.vapour_fraction = 1.0F;
      }
      return result;
    };
    return trace_envelope(test::two_component_request(), {}, flash, nullptr);
  };
  const Envelope two = end_with(1);
  EXPECT_EQ(two.dew_end,
            "no further dew point was found (No convergence); beyond it there are two phases on both sides: "
            "a third "
            "one begins near there");
  EXPECT_TRUE(holds(envelope_table(test::two_component_request(), two), " bar: " + two.dew_end + ".\n"));
  EXPECT_EQ(json::parse(envelope_json(test::two_component_request(), two))["dew_end"], two.dew_end);
  const Envelope one = end_with(0);
  EXPECT_EQ(one.bubble_end,
            "no further bubble point was found (No convergence); beyond it there is one phase on both sides");
  const Envelope whole = trace_envelope(test::two_component_request(), {}, made_up_flash, nullptr);
  EXPECT_EQ(whole.bubble_end, "it meets the dew line at the critical point");
  EXPECT_EQ(whole.dew_end, "it meets the bubble line at the critical point");
  const FlashFunction none = [](const FlashRequest&) { return FlashResult{}; };
  EXPECT_EQ(trace_envelope(test::two_component_request(), {}, none, nullptr).dew_end, "");
}

TEST(CliEnvelope, AnAnswerWithOnePhaseEndsTheLine) {
  const FlashFunction flash = [](const FlashRequest& request) {
    FlashResult result = made_up_flash(request);
    if (request.P_bar > 10) result.liquid.reset();
    return result;
  };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, flash, nullptr);
  EXPECT_LT(end_of(envelope.dew)->P_bar, 10.01);
  EXPECT_EQ(envelope.dew.back().message, "the answer has one phase only");
}

TEST(CliEnvelope, ALineThatCannotBeginHasNoEnd) {
  const FlashFunction flash = [](const FlashRequest&) { return FlashResult{}; };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, flash, nullptr);
  EXPECT_EQ(end_of(envelope.bubble), nullptr);
  EXPECT_EQ(end_of(envelope.dew), nullptr);
  EXPECT_FALSE(envelope.critical || envelope.cricondenbar || envelope.cricondentherm);
}

TEST(CliEnvelope, MorePointsMakeShorterSteps) {
  const auto count = [](int points) {
    return trace_envelope(test::two_component_request(), {1, points}, made_up_flash, nullptr).dew.size();
  };
  EXPECT_GT(count(160), 3 * count(40) / 2);
}

TEST(CliEnvelope, PhasesAreAlikeByDensityOrByCompositionToo) {
  FlashResult result = made_up_answer(0, 10, 0.5);
  EXPECT_FALSE(phases_alike(result));
  result.vapour->properties[1] = 200.0F;
  result.liquid->properties[1] = 201.0F;
  EXPECT_TRUE(phases_alike(result));
  result.liquid->properties[1] = 208.0F;
  EXPECT_FALSE(phases_alike(result));
  result.liquid->composition = result.vapour->composition;
  EXPECT_TRUE(phases_alike(result));
  // An azeotrope has one composition and two densities.
  result.liquid->properties[1] = 600.0F;
  EXPECT_FALSE(phases_alike(result));
  result.liquid.reset();
  EXPECT_FALSE(phases_alike(result));
}

TEST(CliEnvelope, ReportsCarryStatusMessageAndDensities) {
  Envelope envelope;
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -10.5, 1, "bubble-t", "", 2.5F, 600.0F});
  envelope.dew.push_back({EnvelopeLine::dew, false, 20, 2, "", "No, not \"here\"", {}, {}});
  envelope.critical = {15, 3};
  envelope.cricondenbar = {14, 4};
  EXPECT_EQ(envelope_csv(envelope),
            "branch,T_C,P_bar,status,method,message,vapour_density_kg_m3,liquid_density_kg_m3\n"
            "bubble,-10.5,1,ok,bubble-t,,2.5,600\n"
            "dew,20,2,failed,,\"No, not \"\"here\"\"\",,\n"
            "critical_point,15,3,ok,,,,\n"
            "cricondenbar,14,4,ok,,,,\n");
  const json report = json::parse(envelope_json(test::two_component_request(), envelope));
  EXPECT_EQ(report["components"], json({"methane", "n-decane"}));
  EXPECT_EQ(report["bubble"][0]["T_C"], -10.5);
  EXPECT_EQ(report["bubble"][0]["liquid_density_kg_m3"], 600);
  EXPECT_EQ(report["dew"][0]["status"], "failed");
  EXPECT_TRUE(report["dew"][0]["vapour_density_kg_m3"].is_null());
  EXPECT_EQ(report["critical_point"]["T_C"], 15);
  EXPECT_EQ(report["cricondenbar"]["P_bar"], 4);
  EXPECT_TRUE(report["cricondentherm"].is_null());
  EXPECT_EQ(report["bubble_open"], false);
  const std::string table = envelope_table(test::two_component_request(), envelope);
  EXPECT_TRUE(holds(table, "Critical point: 15.00 C, 3.00 bar")) << table;
  EXPECT_FALSE(holds(table, "Cricondentherm")) << table;
  EXPECT_TRUE(holds(table, "failed: No, not \"here\"")) << table;
  EXPECT_TRUE(holds(table, "The bubble line ends at -10.50 C, 1.00 bar.")) << table;
}

TEST(CliEnvelope, PlotScriptQuotesWhatItIsGiven) {
  FlashRequest mixture = test::two_component_request();
  mixture.names[0] = "it's\n`date`";
  Envelope envelope;
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -10.5, 1, "bubble-t", "", {}, {}});
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -9, 2, "bubble-t", "", {}, {}});
  envelope.dew.push_back({EnvelopeLine::dew, true, -8, 2, "dew-t", "", {}, {}});
  envelope.dew.push_back({EnvelopeLine::dew, false, 20, 2, "", "x", {}, {}});
  const std::string script = plot_script(mixture, envelope, "/tmp/a'b.svg");
  EXPECT_TRUE(holds(script, "set output '/tmp/a''b.svg'\n")) << script;
  EXPECT_TRUE(holds(script, "it''s `date` 0.75")) << script;
  EXPECT_TRUE(holds(script, "set terminal svg"));
  EXPECT_TRUE(holds(script, "$bubble << EOD\n-10.5 1\n-9 2\nEOD\n")) << script;
  EXPECT_TRUE(holds(script, "$failed << EOD\n20 2\nEOD\n")) << script;
  EXPECT_FALSE(holds(script, "$critical"));
  EXPECT_TRUE(holds(script, "$gaps << EOD\n-9 2\n-8 2\nEOD\n"));
  envelope.critical = {-9, 2.5};
  const std::string marked = plot_script(mixture, envelope, "/tmp/a.svg");
  EXPECT_TRUE(holds(marked, "$critical << EOD\n-9 2.5\nEOD\n") && holds(marked, "title 'critical point'"));
  EXPECT_FALSE(holds(marked, "$gaps"));
  EXPECT_TRUE(holds(script, "bar]") && holds(script, "Temperature ["));
  EXPECT_THROW(check_plot_file("a.pdf"), UsageError);
  EXPECT_NO_THROW(check_plot_file("a.PNG"));
}

TEST(CliEnvelope, AMissingPlottingProgramIsNamedWithAdvice) {
  try {
    write_plot("", "/tmp/none.svg", "no-such-plotting-program");
    FAIL() << "no error";
  } catch (const UsageError& error) {
    EXPECT_TRUE(holds(error.what(), "no-such-plotting-program is not there; install it with ./dev setup"))
        << error.what();
  }
}

TEST(CliEnvelope, AChildReadsItsInputAndGivesItsErrors) {
  const ChildResult result = run_child({"sh", "-c", "cat >&2; exit 3"}, "some input");
  EXPECT_TRUE(result.started);
  EXPECT_EQ(result.code, 3);
  EXPECT_EQ(result.errors, "some input");
}

// The real library.

struct Output {
  int code;
  std::string out;
  std::string err;
};

Output envelope_command(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "envelope");
  arguments.insert(arguments.end(), {"--install", test::install_directory()});
  std::ostringstream out;
  std::ostringstream err;
  const int code = run(arguments, out, err);
  return {code, out.str(), err.str()};
}

struct NamedMixture {
  const char* name;
  const char* components;
  const char* feed;
};

class RealEnvelope : public testing::TestWithParam<NamedMixture> {
 protected:
  // Few points keep the test short.
  static constexpr EnvelopeOptions kOptions{1, 25};

  // A traced envelope serves every test of its mixture.
  struct Traced {
    FlashRequest mixture;
    Envelope envelope;
    int flashes = 0;
  };

  static const Traced& traced(const NamedMixture& named) {
    static std::map<std::string, Traced> all;
    const auto [it, is_new] = all.try_emplace(named.name);
    Traced& result = it->second;
    if (!is_new) return result;
    const Catalogue catalogue = Catalogue::read(test::install_directory());
    std::vector<std::string> notes;
    result.mixture = make_request(catalogue.parse_list(named.components), parse_feed(named.feed),
                                  kStartTemperature_C, kOptions.from_P_bar, Basis::mole, notes);
    const auto count = [&](const FlashRequest& request) {
      ++result.flashes;
      return run_flash(request);
    };
    result.envelope = trace_envelope(result.mixture, kOptions, count, nullptr);
    return result;
  }

  void SetUp() override {
    open_library(test::install_directory());
    const Traced& found = traced(GetParam());
    mixture_ = found.mixture;
    envelope_ = found.envelope;
    flashes_ = found.flashes;
  }

  // Phases of the isothermal flash at a place; 0 where it fails.
  int phases_at(const Place& at) {
    FlashRequest request = mixture_;
    request.type = FlashType::tp;
    request.T_C = temperature(at);
    request.P_bar = pressure(at);
    const FlashResult result = run_flash(request);
    if (!result.ok) return 0;
    return (result.vapour ? 1 : 0) + (result.liquid ? 1 : 0) + (result.second_liquid ? 1 : 0);
  }

  // Angle between neighbouring stretches of a line, with 1 K as long as 1 bar [rad]. The last stretches before the
  // critical point are too short for one: points of the edge are true to about 0.01 K there.
  static double bend(const EnvelopePoint& a, const EnvelopePoint& b, const EnvelopePoint& c) {
    constexpr double kShortest = 0.1;
    if (std::hypot(b.T_C - a.T_C, b.P_bar - a.P_bar) < kShortest ||
        std::hypot(c.T_C - b.T_C, c.P_bar - b.P_bar) < kShortest)
      return 0;
    return turn({b.T_C - a.T_C, b.P_bar - a.P_bar}, {c.T_C - b.T_C, c.P_bar - b.P_bar});
  }

  FlashRequest mixture_;
  Envelope envelope_;
  int flashes_ = 0;
};

TEST_P(RealEnvelope, BothLinesMeetAtTheCriticalPoint) {
  const EnvelopePoint* const a = end_of(envelope_.bubble);
  const EnvelopePoint* const b = end_of(envelope_.dew);
  ASSERT_TRUE(a != nullptr && b != nullptr);
  EXPECT_NEAR(a->T_C, b->T_C, 0.15);
  EXPECT_NEAR(a->P_bar, b->P_bar, 0.15);
  ASSERT_TRUE(envelope_.critical && envelope_.cricondenbar && envelope_.cricondentherm);
  EXPECT_GE(envelope_.cricondenbar->P_bar, envelope_.critical->P_bar);
  EXPECT_GE(envelope_.cricondentherm->T_C, envelope_.critical->T_C);
  EXPECT_FALSE(envelope_.bubble_open || envelope_.dew_open);
  EXPECT_LT(flashes_, 2000);
  RecordProperty("flashes", flashes_);
  EXPECT_GT(envelope_.bubble.size(), 15U);
  EXPECT_LT(envelope_.bubble.size() + envelope_.dew.size(), 200U);
}

TEST_P(RealEnvelope, BothLinesAreSmoothAndWithoutFailedPoints) {
  // Where the liquid of a bubble line parts in two the line has a true bend of about 0.2, and the curves of the pure
  // components give small ones at Tc/T = 1.04 and 0.909.
  constexpr double kSharpest = 0.3;
  for (const auto* line : {&envelope_.bubble, &envelope_.dew}) {
    for (std::size_t i = 0; i < line->size(); ++i) {
      const EnvelopePoint& point = (*line)[i];
      EXPECT_TRUE(point.ok) << point.T_C << " C, " << point.P_bar << " bar: " << point.message;
      if (i < 2) continue;
      EXPECT_LT(bend((*line)[i - 2], (*line)[i - 1], point), kSharpest) << point.T_C << " " << point.P_bar;
    }
  }
}

TEST_P(RealEnvelope, EachPointHasOnePhaseOnOneSideAndTwoOnTheOther) {
  constexpr double kAside = 0.005;
  for (const auto* line : {&envelope_.bubble, &envelope_.dew}) {
    for (std::size_t i = 1; i + 1 < line->size(); i += 2) {
      const EnvelopePoint& point = (*line)[i];
      const Place here = place(point.T_C, point.P_bar);
      const Place way = direction(place((*line)[i - 1].T_C, (*line)[i - 1].P_bar),
                                  place((*line)[i + 1].T_C, (*line)[i + 1].P_bar));
      // Upwards along the bubble line the two phases are on the right, along the dew line on the left.
      const double right = line == &envelope_.bubble ? kAside : -kAside;
      const int inside = phases_at(along(here, {way.y, -way.x}, right));
      const int outside = phases_at(along(here, {way.y, -way.x}, -right));
      EXPECT_EQ(inside, 2) << point.T_C << " " << point.P_bar << " " << point.method;
      // A warning tells that the liquid that boils is two.
      EXPECT_EQ(outside, point.message.empty() ? 1 : 2)
          << point.T_C << " " << point.P_bar << " " << point.method;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    CliEnvelope, RealEnvelope,
    testing::Values(
        NamedMixture{"MethaneEthane", "methane,ethane", "0.5,0.5"},
        NamedMixture{"MethanePropaneDecane", "methane,propane,n-decane", "0.7,0.2,0.1"},
        NamedMixture{"LeanGas", "methane,ethane,propane,isobutane,n-butane,n-pentane,nitrogen,CO2",
                     "0.9,0.05,0.02,0.004,0.005,0.001,0.01,0.01"},
        NamedMixture{"RichGasCondensate",
                     "methane,ethane,propane,n-butane,n-pentane,n-hexane,n-heptane,n-decane,CO2,nitrogen",
                     "0.72,0.08,0.05,0.03,0.02,0.02,0.02,0.03,0.02,0.01"},
        NamedMixture{"RichInCarbonDioxide", "CO2,nitrogen,methane", "0.9,0.05,0.05"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(CliEnvelope, WithoutTheCheckOfTheLibraryTheLinesEndBelowTheCriticalPoint) {
  const Output output = envelope_command({"--comp", "methane,ethane", "--feed", "0.5,0.5", "--format", "json",
                                          "--points", "30", "--verify", "0"});
  ASSERT_EQ(output.code, kExitOk) << output.err;
  const json report = json::parse(output.out);
  EXPECT_TRUE(report["critical_point"].is_null());
  for (const char* line : {"bubble", "dew"}) {
    double highest = 0;
    for (const json& point : report[line])
      if (point["status"] == "ok") highest = std::fmax(highest, point["P_bar"].get<double>());
    EXPECT_GT(highest, 55) << line;
    EXPECT_LT(highest, 74.5) << line;
    EXPECT_EQ(report[line].back()["status"], "failed") << line;
    EXPECT_NE(report[line].back()["message"], "") << line;
  }
}

TEST(CliEnvelope, APureComponentEndsAtItsCriticalPoint) {
  const Output output = envelope_command({"--comp", "methane", "--feed", "1", "--format", "json"});
  ASSERT_EQ(output.code, kExitOk) << output.err;
  const json report = json::parse(output.out);
  for (const char* line : {"bubble", "dew"}) {
    double highest = 0;
    for (const json& point : report[line])
      if (point["status"] == "ok") highest = std::fmax(highest, point["P_bar"].get<double>());
    EXPECT_GT(highest, 48) << line;
    EXPECT_LT(highest, 51) << line;  // the equation of state overshoots the critical pressure of 45.99 bar
  }
  EXPECT_NEAR(report["critical_point"]["P_bar"].get<double>(), 50, 1.5);
}

TEST(CliEnvelope, ABubbleLineOfADissolvedGasBeginsOpen) {
  const Output output =
      envelope_command({"--comp", "nitrogen,n-decane", "--feed", "0.5,0.5", "--points", "20"});
  ASSERT_EQ(output.code, kExitOk) << output.err;
  EXPECT_TRUE(holds(output.out, "Critical point:")) << output.out;
  EXPECT_TRUE(holds(output.out, "The bubble line is open")) << output.out;
}

// Lines that do not meet: beside a second liquid vapour and liquid become alike unseen, and where a third phase forms
// the edge of the two-phase region changes over to another pair of phases.
TEST(CliEnvelope, LinesThatDoNotMeetEndWithAReason) {
  const struct {
    const char *components, *feed, *bubble, *dew;
  } cases[] = {
      {"methane,n-heptane", "0.9999,0.0001", "one phase on both sides: its two phases become one there",
       "beyond it there is one phase on one side and vapour and liquid on the other"},
      {"methane,ethane,propane,water", "0.9,0.05,0.03,0.02", "two phases on both sides",
       "it goes on beyond the range of the library"},
      {"methane,n-decane", "0.99,0.01", "two phases on both sides", "it goes on, but has too many points"}};
  for (const auto& tested : cases) {
    const Output output = envelope_command(
        {"--comp", tested.components, "--feed", tested.feed, "--points", "40", "--format", "json"});
    ASSERT_EQ(output.code, kExitOk) << output.err;
    const json report = json::parse(output.out);
    EXPECT_TRUE(report["critical_point"].is_null()) << tested.components;
    EXPECT_TRUE(holds(report["bubble_end"], tested.bubble)) << report["bubble_end"];
    EXPECT_TRUE(holds(report["dew_end"], tested.dew)) << report["dew_end"];
  }
}

TEST(CliEnvelope, ProgressAndPictureAreGivenWhereAsked) {
  const test::ScratchDirectory scratch;
  const std::filesystem::path file = scratch.path() / "it's a plot.svg";
  const bool there = run_child({kPlotProgram, "--version"}, "").started;
  std::vector<std::string> arguments = {"--comp", "methane,n-decane", "--feed", "0.9,0.1", "--points",
                                        "40",     "--progress"};
  if (there) arguments.insert(arguments.end(), {"--plot", file.string()});
  const Output output = envelope_command(arguments);
  EXPECT_EQ(output.code, kExitOk) << output.err;
  EXPECT_TRUE(holds(output.err, "\rtalix: dew line, point ")) << output.err;
  if (!there) GTEST_SKIP() << "no plotting program";
  std::ifstream in(file);
  const std::string picture{std::istreambuf_iterator<char>(in), {}};
  EXPECT_TRUE(holds(picture, "<svg") && holds(picture, "bubble line") && holds(picture, "methane 0.9"));
}

TEST(CliEnvelope, WrongArgumentsExitWithTwo) {
  const std::vector<std::string> mixture = {"--comp", "methane,ethane", "--feed", "0.5,0.5"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), mixture.begin(), mixture.end());
    return envelope_command(more);
  };
  EXPECT_EQ(with({"--points", "3"}).code, kExitUsage);
  EXPECT_EQ(with({"--from-P", "0bar"}).code, kExitUsage);
  EXPECT_TRUE(holds(with({"--plot", "x.pdf"}).err, ".svg or .png"));
  EXPECT_EQ(with({"--from-P", "900bar"}).code, kExitFlashFailed);
}

}  // namespace
}  // namespace talix::cli
