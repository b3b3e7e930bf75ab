#include "cli/envelope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "cli/app.h"
#include "cli/child_process.h"
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
  EXPECT_GT(end_of(envelope.bubble)->P_bar, 48);
  EXPECT_GT(end_of(envelope.dew)->P_bar, 48);
  EXPECT_EQ(seen, static_cast<int>(envelope.bubble.size() + envelope.dew.size()));
  EXPECT_GT(seen, 60);
}

TEST(CliEnvelope, WrongAnswersAreLeftOutAndTheEdgeTakesTheirPlace) {
  // Between 5 and 8 bar no dew flash converges; between 12 and 20 bar all give an answer far away.
  const FlashFunction flash = [](const FlashRequest& request) {
    FlashResult result = made_up_flash(request);
    const bool dew = request.type == FlashType::dew_t || request.type == FlashType::dew_p;
    if (dew && request.P_bar > 5 && request.P_bar < 8) {
      result = FlashResult{};
      result.message = "No convergence";
    }
    if (dew && request.P_bar > 12 && request.P_bar < 20) result.T_C = 300.0F;
    return result;
  };
  const Envelope envelope = trace_envelope(test::two_component_request(), {}, flash, nullptr);
  expect_on_the_lines(envelope, 0.02);
  int edges = 0;
  for (const EnvelopePoint& point : envelope.dew) edges += point.method == "edge" ? 1 : 0;
  EXPECT_GT(edges, 4);
  EXPECT_GT(end_of(envelope.dew)->P_bar, 48);
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
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -10.5, 1, "bubble-t", "", false, 2.5F, 600.0F});
  envelope.dew.push_back({EnvelopeLine::dew, false, 20, 2, "", "No, not \"here\"", false, {}, {}});
  EXPECT_EQ(envelope_csv(envelope),
            "branch,T_C,P_bar,status,method,message,vapour_density_kg_m3,liquid_density_kg_m3\n"
            "bubble,-10.5,1,ok,bubble-t,,2.5,600\n"
            "dew,20,2,failed,,\"No, not \"\"here\"\"\",,\n");
  const json report = json::parse(envelope_json(test::two_component_request(), envelope));
  EXPECT_EQ(report["components"], json({"methane", "n-decane"}));
  EXPECT_EQ(report["bubble"][0]["T_C"], -10.5);
  EXPECT_EQ(report["bubble"][0]["liquid_density_kg_m3"], 600);
  EXPECT_EQ(report["dew"][0]["status"], "failed");
  EXPECT_TRUE(report["dew"][0]["vapour_density_kg_m3"].is_null());
  const std::string table = envelope_table(test::two_component_request(), envelope);
  EXPECT_TRUE(holds(table, "failed: No, not \"here\"")) << table;
  EXPECT_TRUE(holds(table, "The bubble line ends at -10.50 C, 1.00 bar.")) << table;
}

TEST(CliEnvelope, PlotScriptQuotesWhatItIsGiven) {
  FlashRequest mixture = test::two_component_request();
  mixture.names[0] = "it's\n`date`";
  Envelope envelope;
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -10.5, 1, "bubble-t", "", false, {}, {}});
  envelope.bubble.push_back({EnvelopeLine::bubble, true, -9, 2, "bubble-t", "", true, {}, {}});
  envelope.dew.push_back({EnvelopeLine::dew, false, 20, 2, "", "x", false, {}, {}});
  const std::string script = plot_script(mixture, envelope, "/tmp/a'b.svg");
  EXPECT_TRUE(holds(script, "set output '/tmp/a''b.svg'\n")) << script;
  EXPECT_TRUE(holds(script, "it''s `date` 0.75")) << script;
  EXPECT_TRUE(holds(script, "set terminal svg"));
  EXPECT_TRUE(holds(script, "$bubble << EOD\n-10.5 1\n\n-9 2\nEOD\n")) << script;
  EXPECT_TRUE(holds(script, "$failed << EOD\n20 2\nEOD\n")) << script;
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

TEST(CliEnvelope, MethaneAndEthaneGiveTwoSmoothLinesThatNearlyMeet) {
  const Output output =
      envelope_command({"--comp", "methane,ethane", "--feed", "0.5,0.5", "--format", "json"});
  ASSERT_EQ(output.code, kExitOk) << output.err;
  const json report = json::parse(output.out);
  double ends[2][2] = {};
  for (int line = 0; line < 2; ++line) {
    double T = 0;
    double P = 0;
    for (const json& point : report[line == 0 ? "bubble" : "dew"]) {
      if (point["status"] != "ok") continue;
      if (P > 0) {
        EXPECT_LT(std::abs(point["T_C"].get<double>() - T), 8);
        EXPECT_LT(std::abs(point["P_bar"].get<double>() - P), 6);
        // Between the highest pressure and the critical point a line falls a little.
        EXPECT_GT(point["P_bar"].get<double>(), P > 70 ? P - 0.5 : P);
      }
      T = point["T_C"].get<double>();
      P = point["P_bar"].get<double>();
    }
    ends[line][0] = T;
    ends[line][1] = P;
  }
  EXPECT_LT(std::abs(ends[0][0] - ends[1][0]), 8);
  EXPECT_LT(std::abs(ends[0][1] - ends[1][1]), 5);
  EXPECT_GT(ends[0][1], 65);
}

TEST(CliEnvelope, APureComponentEndsAtItsCriticalPoint) {
  const Output output = envelope_command({"--comp", "methane", "--feed", "1", "--format", "json"});
  ASSERT_EQ(output.code, kExitOk) << output.err;
  const json report = json::parse(output.out);
  for (const char* line : {"bubble", "dew"}) {
    double highest = 0;
    for (const json& point : report[line])
      if (point["status"] == "ok") highest = std::fmax(highest, point["P_bar"].get<double>());
    EXPECT_GT(highest, 43) << line;
    EXPECT_LT(highest, 51) << line;  // the equation of state overshoots the critical pressure of 45.99 bar
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
