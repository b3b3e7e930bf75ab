// talix phase: one phase by any model, with the compiled bank.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "api/morve_engine.h"
#include "cli/app.h"
#include "cli/failure.h"
#include "support/test_support.h"
#include "tools/cli_run.h"
#include "tools/process.h"

namespace talix::cli {
namespace {

using nlohmann::json;

using test::Output;
using test::talix;

Output phase(const std::string& model, const std::string& components, const std::string& x,
             const std::vector<std::string>& more = {}, const std::string& T = "25C",
             const std::string& P = "30bar") {
  std::vector<std::string> arguments = {"phase", "--model", model, "--comp", components, "-T", T, "-P", P};
  if (!x.empty()) arguments.insert(arguments.end(), {"--x", x});
  arguments.insert(arguments.end(), more.begin(), more.end());
  return talix(arguments);
}

json phase_json(const std::string& model, const std::string& components, const std::string& x,
                std::vector<std::string> more = {}, const std::string& T = "25C",
                const std::string& P = "30bar") {
  more.insert(more.end(), {"--format", "json"});
  const Output output = phase(model, components, x, more, T, P);
  EXPECT_EQ(output.code, kExitOk) << output.err;
  return json::parse(output.out, nullptr, false);
}

bool holds(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

double number(const json& report, const char* property) {
  return report.at("properties").at(property).get<double>();
}

TEST(CliPhase, NumbersAreThoseOfTheEngineInTheUnitsOfTheColumns) {
  const json report = phase_json("PR", "methane,n-butane", "0.9,0.1", {"--root", "vapour"});
  const std::int32_t slot = test::set_up(" 1P  4P ", MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  test::Mix mix(slot, {0.9, 0.1});
  mix.P = 30E5;
  mix.want({MORVE_CP, MORVE_CV, MORVE_THERMAL_EXPANSION, MORVE_ISOTHERMAL_COMPRESSIBILITY,
            MORVE_ISENTROPIC_COMPRESSIBILITY, MORVE_JOULE_THOMSON, MORVE_SPEED_OF_SOUND,
            MORVE_THERMAL_PRESSURE});
  ASSERT_EQ(mix.run(), MORVE_OK);
  const auto near = [](double a, double b) { EXPECT_NEAR(a, b, 1E-10 * std::fabs(b) + 1E-14); };
  for (std::size_t i = 0; i < 2; ++i) {
    near(report.at("ln_phi")[i].get<double>(), mix.FUG[i]);
    near(report.at("dlnphi_dT_1_K")[i].get<double>(), mix.DFDT[i] / 298.15);
    near(report.at("dlnphi_dP_1_bar")[i].get<double>(), mix.DFDP[i] / 30.0);
    for (std::size_t j = 0; j < 2; ++j)
      near(report.at("dlnphi_dn")[i][j].get<double>(), mix.dfdn(i + 1, j + 1));
  }
  constexpr double R = 8.314471;
  const double V = mix.ZVOL * R * 298.15 / 30E5;
  near(number(report, "Z"), mix.ZVOL);
  near(number(report, "molar_volume_cm3_mol"), V * 1E6);
  near(number(report, "density_kg_m3"), number(report, "molar_mass_g_mol") / V / 1000.0);
  EXPECT_NEAR(number(report, "molar_mass_g_mol"), 0.9 * 16.0425 + 0.1 * 58.1222, 1E-3);
  near(number(report, "enthalpy_J_mol"), mix.H * R * 298.15);
  near(number(report, "entropy_J_molK"), mix.S * R);
  near(number(report, "cp_J_molK"), mix.RESRV[0]);
  near(number(report, "cv_J_molK"), mix.RESRV[1]);
  near(number(report, "thermal_expansion_1_K"), mix.RESRV[2]);
  near(number(report, "isothermal_compressibility_1_bar"), mix.RESRV[3] * 1E5);
  near(number(report, "isentropic_compressibility_1_bar"), mix.RESRV[4] * 1E5);
  near(number(report, "joule_thomson_K_bar"), mix.RESRV[5] * 1E5);
  near(number(report, "speed_of_sound_m_s"), mix.RESRV[6]);
  near(number(report, "thermal_pressure_bar_K"), mix.RESRV[7] / 1E5);
  EXPECT_EQ(report.at("phase"), "vapour");
  EXPECT_EQ(report.at("status").at("code"), MORVE_OK);
  EXPECT_EQ(report.at("model").at("name"), "Peng-Robinson");
}

TEST(CliPhase, DerivativesAreThePlainOnes) {
  const auto at = [](const std::string& T, const std::string& P, const std::string& x) {
    return phase_json("SRK", "methane,CO2", x, {"--root", "vapour"}, T, P);
  };
  const json mid = at("280K", "40bar", "0.7,0.3");
  const auto slope = [](const json& high, const json& low, std::size_t i, double step) {
    return (high.at("ln_phi")[i].get<double>() - low.at("ln_phi")[i].get<double>()) / step;
  };
  const json warm = at("280.01K", "40bar", "0.7,0.3");
  const json cold = at("279.99K", "40bar", "0.7,0.3");
  const json high = at("280K", "40.01bar", "0.7,0.3");
  const json low = at("280K", "39.99bar", "0.7,0.3");
  const json more = at("280K", "40bar", "0.7,0.3001");
  const json less = at("280K", "40bar", "0.7,0.2999");
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NEAR(mid.at("dlnphi_dT_1_K")[i].get<double>(), slope(warm, cold, i, 0.02), 1E-8);
    EXPECT_NEAR(mid.at("dlnphi_dP_1_bar")[i].get<double>(), slope(high, low, i, 0.02), 1E-8);
    EXPECT_NEAR(mid.at("dlnphi_dn")[i][1].get<double>(), slope(more, less, i, 0.0002), 1E-7);
  }
}

TEST(CliPhase, EveryWayToNameModelUnitsAndAmountsGivesTheSameReport) {
  const Output reference = phase("27", "methane,n-butane", "0.9,0.1", {"--format", "json"});
  ASSERT_EQ(reference.code, kExitOk) << reference.err;
  for (const char* model : {"PR", "pr", "Peng-Robinson", "peng-robinson", " 27 "})
    EXPECT_EQ(phase(model, "methane,n-butane", "0.9,0.1", {"--format", "json"}).out, reference.out) << model;
  EXPECT_EQ(phase("27", "1P,4P", "0.9,0.1", {"--format", "json"}, "25", "3MPa").out, reference.out);
  EXPECT_EQ(json::parse(phase("27", "methane,n-butane", "9,1", {"--format", "json"}).out).at("ln_phi"),
            json::parse(reference.out).at("ln_phi"));
  EXPECT_EQ(phase("27", "methane", "", {"--format", "json"}).out,
            phase("27", "methane", "1", {"--format", "json"}).out);
}

TEST(CliPhase, RootsAreTakenAsAskedFor) {
  const json vapour = phase_json("PR", "propane", "1", {"--root", "vapour"}, "0C", "4bar");
  const json liquid = phase_json("PR", "propane", "1", {"--root", "liquid"}, "0C", "4bar");
  const json gibbs = phase_json("PR", "propane", "1", {}, "0C", "4bar");
  EXPECT_EQ(vapour.at("phase"), "vapour");
  EXPECT_EQ(liquid.at("phase"), "liquid");
  EXPECT_GT(number(vapour, "Z"), 0.8);
  EXPECT_LT(number(liquid, "Z"), 0.1);
  EXPECT_FALSE(vapour.at("one_root_not_told_apart").get<bool>());
  // Below its vapour pressure of 4.7 bar the vapour has the lower Gibbs energy.
  EXPECT_LT(vapour.at("ln_phi")[0].get<double>(), liquid.at("ln_phi")[0].get<double>());
  EXPECT_EQ(gibbs.at("phase"), "vapour");
  EXPECT_EQ(phase_json("PR", "propane", "1", {}, "0C", "6bar").at("phase"), "liquid");
}

TEST(CliPhase, OneRootThatCannotBeToldApartCountsAsThePhaseAskedFor) {
  for (const char* root : {"vapour", "liquid"}) {
    const json gas = phase_json("PR", "methane", "1", {"--root", root}, "100C", "1bar");
    EXPECT_EQ(gas.at("phase"), root);
    EXPECT_TRUE(gas.at("one_root_not_told_apart").get<bool>());
    EXPECT_GT(number(gas, "Z"), 0.99);
  }
  EXPECT_EQ(phase_json("PR", "methane", "1", {"--root", "gibbs"}, "100C", "1bar").at("phase"), "vapour");
}

TEST(CliPhase, AModelOfVolumesAloneLeavesTheRestEmpty) {
  const json report = phase_json("BWRS", "propane", "1", {"--root", "liquid"}, "250K", "40bar");
  EXPECT_NEAR(number(report, "density_kg_m3"), 560.0, 12.0);
  EXPECT_TRUE(report.at("properties").at("enthalpy_J_mol").is_null());
  EXPECT_TRUE(report.at("properties").at("speed_of_sound_m_s").is_null());
  EXPECT_TRUE(report.at("ln_phi").empty());
  // The cubic pass that this model leaves out is noted by the engine.
  EXPECT_TRUE(holds(report.at("messages").dump(), "Incorrect model function"));
}

TEST(CliPhase, OverridesGoThroughToTheResult) {
  const json own = phase_json("SRK", "methane,CO2", "0.7,0.3");
  const json pair = phase_json("SRK", "methane,CO2", "0.7,0.3", {"--set", "TETA0:1,2=0.2"});
  const json named = phase_json("SRK", "methane,CO2", "0.7,0.3", {"--set", "interaction.teta0:2,1=0.2"});
  EXPECT_GT(number(pair, "Z"), number(own, "Z") + 0.001);
  EXPECT_EQ(number(named, "Z"), number(pair, "Z"));
  EXPECT_EQ(pair.at("set"), json({"TETA0:1,2=0.2"}));
  const json critical =
      phase_json("SRK", "methane,CO2", "0.7,0.3", {"--set", "Tc:2=250", "--set", "Pc:2=60"});
  EXPECT_NE(number(critical, "Z"), number(own, "Z"));
  const json datum = phase_json("SRK", "methane,CO2", "0.7,0.3", {"--set", "H-datum=298.15"});
  EXPECT_EQ(number(datum, "Z"), number(own, "Z"));
  EXPECT_LT(number(datum, "enthalpy_J_mol"), number(own, "enthalpy_J_mol") - 500.0);
  // The constants of the bank are back at the next call.
  EXPECT_EQ(phase_json("SRK", "methane,CO2", "0.7,0.3"), own);
}

TEST(CliPhase, WrongKeysAreRefusedWithTheOnesThatAreThere) {
  const auto refused = [](const std::string& setting) {
    const Output output = phase("PR", "methane,n-butane", "0.9,0.1", {"--set", setting});
    EXPECT_EQ(output.code, kExitUsage) << setting;
    EXPECT_EQ(output.out, "") << setting;
    return output.err;
  };
  EXPECT_TRUE(holds(refused("Zc:1=0.3"), "no key 'Zc' of a component; keys: Atbp, Gf, "))
      << refused("Zc:1=0.3");
  EXPECT_TRUE(holds(refused("kij:1,2=0.3"), "no key 'kij' of a pair; keys: TETA0, TETA0T, TETA1, TETA1T. "))
      << refused("kij:1,2=0.3");
  EXPECT_TRUE(holds(refused("Tc=190"), "no key 'Tc' of a model; keys: H-datum. ")) << refused("Tc=190");
  EXPECT_TRUE(
      holds(refused("nowhere.Tc:1=190"), "no section 'nowhere' of a component; there are general, curves,"));
  EXPECT_TRUE(holds(refused("wagner.Tc:1=190"), "no key 'Tc' of a component; keys: WAG-A"));
  EXPECT_TRUE(holds(refused("Tc:3=190"), "no component 3; --comp lists 2"));
  EXPECT_TRUE(holds(refused("TETA0:1,3=0"), "no component 3"));
  EXPECT_TRUE(holds(refused("TETA0:1,1=0"), "two different components"));
  EXPECT_TRUE(holds(refused("TETA0:1,2,3=0"), "more than two components"));
  EXPECT_TRUE(holds(refused("Tc:0=190"), "no component number"));
  EXPECT_TRUE(holds(refused("Tc:x=190"), "'x' is no component number"));
  for (const char* value : {"nan", "inf", "", "1x", "1e999"})
    EXPECT_TRUE(holds(refused(std::string("Tc:1=") + value), "is no finite number")) << value;
  EXPECT_TRUE(holds(refused("Tc:1"), "write KEY=VALUE"));
  EXPECT_TRUE(holds(refused("=3"), "write KEY=VALUE"));
}

TEST(CliPhase, WrongArgumentsExitWithTwo) {
  const auto refused = [](const std::string& model, const std::string& components, const std::string& x,
                          const std::string& T = "25C", const std::string& P = "30bar",
                          const std::vector<std::string>& more = {}) {
    const Output output = phase(model, components, x, more, T, P);
    EXPECT_EQ(output.code, kExitUsage) << model << components << x << T << P;
    EXPECT_EQ(output.out, "");
    return output.err;
  };
  EXPECT_TRUE(holds(refused("Peng-Robinsen", "methane", "1"), "nearest: Peng-Robinson (27)"));
  EXPECT_TRUE(holds(refused("999", "methane", "1"), "unknown model '999'"));
  EXPECT_TRUE(holds(refused("", "methane", "1"), "unknown model ''"));
  EXPECT_TRUE(holds(refused("0", "methane", "1"), "unknown model '0'"));
  EXPECT_TRUE(holds(refused("PR", "etane", "1"), "unknown component 'etane'; nearest: "));
  EXPECT_TRUE(holds(refused("PR", "", "1"), "a component is empty"));
  EXPECT_TRUE(holds(refused("PR", "methane,ethane", "1"), "2 components but 1 values of --x"));
  EXPECT_TRUE(holds(refused("PR", "methane", "0.5,0.5"), "1 components but 2 values of --x"));
  EXPECT_TRUE(holds(refused("PR", "methane,ethane", ""), "2 components but 0 values of --x"));
  EXPECT_TRUE(holds(refused("PR", "methane,ethane", "0.5,nan"), "value of --x 2 'nan': not a number"));
  EXPECT_TRUE(holds(refused("PR", "methane,ethane", "0.5,-1"), "value of --x 2 '-1': negative"));
  EXPECT_TRUE(holds(refused("PR", "methane", "1", "nan"), "not a number"));
  EXPECT_TRUE(holds(refused("PR", "methane", "1", "25C", "nan"), "not a number"));
  EXPECT_TRUE(holds(refused("PR", "methane", "1", "25C", "5barg"), "gauge"));
  refused("PR", "methane", "1", "25C", "1bar", {"--root", "solid"});
  std::string many = "methane", x = "1";
  for (int i = 1; i < 51; ++i) {
    many += ",methane";
    x += ",1";
  }
  EXPECT_TRUE(holds(refused("PR", many, x), "51 components; the library takes at most 50"));
  EXPECT_EQ(talix({"phase"}).code, kExitUsage);
  EXPECT_EQ(talix({"phase", "--model", "PR", "--comp", "methane", "-T", "25"}).code, kExitUsage);
}

TEST(CliPhase, FiftyComponentsAreServed) {
  std::string many = "methane", x = "1";
  for (int i = 1; i < 50; ++i) {
    many += ",methane";
    x += ",1";
  }
  const json report = phase_json("PR", many, x);
  EXPECT_EQ(report.at("ln_phi").size(), 50U);
  EXPECT_NEAR(number(report, "Z"), number(phase_json("PR", "methane", "1"), "Z"), 1E-12);
}

TEST(CliPhase, WhatTheEngineRefusesExitsWithOneAndItsMessages) {
  const Output cold = phase("PR", "methane", "1", {}, "-273.15C");
  EXPECT_EQ(cold.code, kExitFlashFailed);
  EXPECT_TRUE(holds(cold.err, "SHMIX0 failed with status 87, input")) << cold.err;
  EXPECT_TRUE(holds(cold.err, "SHMIX0: Pressure or temperature too low (input)")) << cold.err;
  EXPECT_EQ(phase("PR", "methane", "1", {}, "25C", "0bar").code, kExitFlashFailed);

  const Output empty = phase("PR", "methane,ethane", "0,0", {"--format", "json"});
  EXPECT_EQ(empty.code, kExitFlashFailed);
  EXPECT_TRUE(holds(empty.err, "Sum of mole fractions too low")) << empty.err;
  const json report = json::parse(empty.out);
  EXPECT_EQ(report.at("status").at("code"), MORVE_INPUT);
  EXPECT_TRUE(report.at("phase").is_null());
  EXPECT_TRUE(report.at("ln_phi").empty());
  EXPECT_TRUE(report.at("properties").at("Z").is_null());
  EXPECT_TRUE(holds(report.at("messages").dump(), "Sum of mole fractions too low"));

  const Output association = phase("CPA", "methane", "1");
  EXPECT_EQ(association.code, kExitFlashFailed);
  EXPECT_TRUE(holds(association.err, "not available")) << association.err;
  EXPECT_TRUE(holds(phase("NRTL", "methane", "1").err, "Could not compute properties of liquid phase"));
  EXPECT_TRUE(holds(phase("SAFT", "methane", "1").err, "SHDBS0 failed with status 102"))
      << phase("SAFT", "methane", "1").err;
}

TEST(CliPhase, AMissingBankIsNamed) {
  std::ostringstream out;
  std::ostringstream err;
  EXPECT_EQ(
      run({"phase", "--model", "PR", "--comp", "methane", "-T", "25", "-P", "1", "--install", "/nowhere"},
          out, err),
      kExitUsage);
  EXPECT_TRUE(holds(err.str(), "no data bank")) << err.str();

  // The files that the program looks for are there, one that the engine needs is not.
  const test::ScratchDirectory scratch;
  std::filesystem::copy(test::install_directory(), scratch.path(), std::filesystem::copy_options::recursive);
  std::filesystem::remove(scratch.path() / "Zandor" / "binzan.out");
  std::ostringstream engine_err;
  EXPECT_EQ(run({"phase", "--model", "PR", "--comp", "methane", "-T", "25", "-P", "1", "--install",
                 scratch.path().string()},
                out, engine_err),
            kExitFlashFailed);
  EXPECT_TRUE(holds(engine_err.str(), "SHDBS0 failed with status 125, yes")) << engine_err.str();
  EXPECT_TRUE(holds(engine_err.str(), "binary database")) << engine_err.str();
}

TEST(CliPhase, TableAndCsvTellUnitsBesideTheNumbers) {
  const std::vector<std::string> more = {"--root", "vapour", "--set", "TETA0:1,2=0.02"};
  const Output table = phase("PR", "methane,n-butane", "0.9,0.1", more);
  ASSERT_EQ(table.code, kExitOk) << table.err;
  for (const char* part :
       {"Peng-Robinson, model 27", "25 C", "30 bar (absolute)", "asked for: vapour", "98 (no): no failure",
        "Replaced         TETA0:1,2=0.02", "d(ln phi)/dT", "1/K", "1/bar", "d(ln phi_i)/dn_j for one mole",
        "Speed of sound", "m/s", "Isentropic compressibility", "J/(mol K)", "severity 1"})
    EXPECT_TRUE(holds(table.out, part)) << part << "\n" << table.out;
  std::vector<std::string> as_csv = more;
  as_csv.insert(as_csv.end(), {"--format", "csv"});
  const Output csv = phase("PR", "methane,n-butane", "0.9,0.1", as_csv);
  EXPECT_EQ(csv.out.rfind("quantity,component,second_component,unit,value\n", 0), 0U);
  EXPECT_TRUE(holds(csv.out, "\ndlnphi_dT,methane,,1/K,")) << csv.out;
  EXPECT_TRUE(holds(csv.out, "\ndlnphi_dn,methane,n-butane,-,"));
  EXPECT_TRUE(holds(csv.out, "\nDensity,,,kg/m3,"));
}

TEST(CliPhase, HelpTellsKeysUnitsAndExitCodes) {
  const Output help = talix({"phase", "--help", "--model", "PR", "--comp", "1", "-T", "1", "-P", "1"});
  EXPECT_EQ(help.code, kExitOk);
  for (const char* part : {"KEY:1,2=VALUE", "SECTION.KEY", "1/bar", "Exit codes", "Example", "--pseudo-root"})
    EXPECT_TRUE(holds(help.out, part)) << part;
}

struct PeerState {
  double T, P, x1;
};

// ln phi of two components at each state by a package with the constants of the engine, in one run of its interpreter;
// none where it has no vapour.
std::vector<std::vector<double>> peer_ln_phi(const std::string& mixture,
                                             const std::vector<std::vector<double>>& constants, double kij,
                                             const std::vector<PeerState>& states) {
  json list = json::array();
  for (const PeerState& state : states) list.push_back({state.T, state.P, state.x1});
  const std::string script =
      "from thermo import " + mixture + " as M\nr=[]\nfor T,P,x in " + list.dump() +
      ":\n m=M(T=T,P=P,Tcs=" + json(constants[0]).dump() + ",Pcs=" + json(constants[1]).dump() +
      ",omegas=" + json(constants[2]).dump() + ",zs=[x,1-x],kijs=[[0," + std::to_string(kij) + "],[" +
      std::to_string(kij) +
      ",0]])\n r.append(list(map(float,getattr(m,'lnphis_g',[]))))\nimport json\nprint(json.dumps(r))";
  const test::ProcessResult result = test::run_process("python3 -c " + test::quoted(script));
  EXPECT_EQ(result.code, 0);
  return json::parse(result.output).get<std::vector<std::vector<double>>>();
}

class PeerPackage : public ::testing::TestWithParam<std::pair<std::int32_t, const char*>> {};

TEST_P(PeerPackage, FugacitiesAgreeWithinAThousandth) {
  if (test::run_process("python3 -c 'import thermo' 2>/dev/null").code != 0)
    GTEST_SKIP() << "thermo is not installed";
  const auto& [model, mixture] = GetParam();
  const std::int32_t slot = test::set_up(" 1P  3P ", model);
  ASSERT_EQ(slot, 1);
  std::vector<std::vector<double>> constants(3);
  for (const std::int32_t i : {1, 2}) {
    test::Keys general;
    general.move(MORVE_READ, MORVE_SECTION_GENERAL, i);
    constants[0].push_back(general.values[12]);       // Tc
    constants[1].push_back(general.values[8] * 1E5);  // Pc
    constants[2].push_back(general.values[6]);        // Omega
  }
  test::Keys pair;
  pair.move(MORVE_READ, model, 1, 2);
  pair.values.fill(0.0);
  pair.values[0] = 0.01;
  pair.move(MORVE_WRITE, model, 1, 2);
  std::vector<PeerState> states;
  for (const double T : {250.0, 300.0, 400.0})
    for (const double P : {2E5, 20E5, 60E5})
      for (const double x1 : {0.6, 0.95}) states.push_back({T, P, x1});
  const std::vector<std::vector<double>> peer = peer_ln_phi(mixture, constants, 0.01, states);
  ASSERT_EQ(peer.size(), states.size());
  int compared = 0;
  for (std::size_t k = 0; k < states.size(); ++k) {
    test::Mix mix(slot, {states[k].x1, 1.0 - states[k].x1});
    mix.T = states[k].T;
    mix.P = states[k].P;
    ASSERT_EQ(mix.run(), MORVE_OK);
    if (peer[k].size() != 2) continue;
    for (std::size_t i = 0; i < 2; ++i) EXPECT_NEAR(mix.FUG[i], peer[k][i], 1E-3) << mix.T << " " << mix.P;
    ++compared;
  }
  EXPECT_GE(compared, 12);
}

INSTANTIATE_TEST_SUITE_P(CliPhase, PeerPackage,
                         ::testing::Values(std::pair(MORVE_PENG_ROBINSON, "PRMIX"),
                                           std::pair(MORVE_SRK, "SRKMIX")));

}  // namespace
}  // namespace talix::cli
