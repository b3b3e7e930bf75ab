// The engine through its public header, with the compiled bank.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "api/morve_engine.h"
#include "engine/reset.h"
#include "support/flash_case.h"

namespace talix::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
const std::string kMethaneButane = " 1P  4P ";

class MorveCalls : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_engine();
    ::CLEARMORVEERRORS();
  }
  void TearDown() override { reset_engine(); }
};

std::string code_text(std::int32_t code, std::int32_t length = MORVE_CODE_LENGTH) {
  std::string text(static_cast<std::size_t>(length), '?');
  ::GETMORVECODETEXT(&code, text.data(), length);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

TEST_F(MorveCalls, SetUpInItsOrderGivesAPhase) {
  const std::int32_t slot = set_up(kMethaneButane, MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  Mix mix(slot, {0.9, 0.1});
  mix.P = 30E5;
  mix.want({MORVE_CP, MORVE_CV, MORVE_SPEED_OF_SOUND, MORVE_JOULE_THOMSON});
  ASSERT_EQ(mix.run(), MORVE_OK);
  EXPECT_EQ(mix.found, MORVE_VAPOUR);
  EXPECT_NEAR(mix.ZVOL, 0.897, 0.005);
  EXPECT_EQ(mix.ZFUG, mix.ZVOL);
  EXPECT_LT(mix.FUG[1], mix.FUG[0]);
  EXPECT_GT(mix.RESRV[0], mix.RESRV[1]);
  EXPECT_NEAR(mix.RESRV[2], 369.0, 4.0);
  EXPECT_GT(mix.RESRV[3], 0.0);
}

TEST_F(MorveCalls, DerivativesAreThoseThatTheHeaderStates) {
  const std::int32_t slot = set_up(kMethaneButane, MORVE_SRK);
  ASSERT_EQ(slot, 1);
  Mix mix(slot, {0.6, 0.4});
  mix.phase = MORVE_LIQUID;
  mix.T = 300.0;
  mix.P = 120E5;
  mix.want({MORVE_THERMAL_EXPANSION, MORVE_ISOTHERMAL_COMPRESSIBILITY, MORVE_CP, MORVE_JOULE_THOMSON});
  ASSERT_EQ(mix.run(), MORVE_OK);
  const auto at = [&](double T, double P, double n1, double n2) {
    Mix other(slot, {n1, n2});
    other.phase = MORVE_LIQUID;
    other.T = T;
    other.P = P;
    EXPECT_EQ(other.run(), MORVE_OK);
    return other;
  };
  const double dT = 0.01;
  const double dP = 1000.0;
  const double dn = 1E-5;
  const Mix warm = at(mix.T + dT, mix.P, 0.6, 0.4);
  const Mix cold = at(mix.T - dT, mix.P, 0.6, 0.4);
  const Mix high = at(mix.T, mix.P + dP, 0.6, 0.4);
  const Mix low = at(mix.T, mix.P - dP, 0.6, 0.4);
  const Mix more = at(mix.T, mix.P, 0.6 + dn, 0.4);
  const Mix less = at(mix.T, mix.P, 0.6 - dn, 0.4);
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_NEAR(mix.DFDT[i], mix.T * (warm.FUG[i] - cold.FUG[i]) / (2 * dT), 1E-6);
    EXPECT_NEAR(mix.DFDP[i], mix.P * (high.FUG[i] - low.FUG[i]) / (2 * dP), 1E-6);
    EXPECT_NEAR(mix.dfdn(i + 1, 1), (more.FUG[i] - less.FUG[i]) / (2 * dn), 1E-6);
  }
  EXPECT_NEAR(mix.DZDN[0], (more.ZVOL - less.ZVOL) / (2 * dn), 1E-6);
  EXPECT_NEAR(mix.DZDT, mix.T * (warm.ZVOL - cold.ZVOL) / (2 * dT), 1E-6);
  EXPECT_NEAR(mix.DZDP, mix.P * (high.ZVOL - low.ZVOL) / (2 * dP), 1E-6);
  // H and S stand over RT and R; their derivatives are scaled as the header tells.
  const auto enthalpy = [](const Mix& m) { return m.H * m.T; };
  EXPECT_NEAR(mix.DHDT, (enthalpy(warm) - enthalpy(cold)) / (2 * dT), 1E-5);
  EXPECT_NEAR(mix.DHDP, mix.P * (high.H - low.H) / (2 * dP), 1E-6);
  EXPECT_NEAR(mix.DSDT, mix.T * (warm.S - cold.S) / (2 * dT), 1E-5);
  EXPECT_NEAR(mix.DSDP, mix.P * (high.S - low.S) / (2 * dP), 1E-6);
  EXPECT_NEAR(0.6 * mix.DHDN[0] + 0.4 * mix.DHDN[1], mix.H, 1E-9);
  const auto volume = [](const Mix& m) { return m.ZVOL * m.T / m.P; };
  EXPECT_NEAR(mix.RESRV[0] * mix.T, mix.T * (volume(warm) - volume(cold)) / (2 * dT) / volume(mix), 1E-6);
  EXPECT_NEAR(mix.RESRV[1] * mix.P, -mix.P * (volume(high) - volume(low)) / (2 * dP) / volume(mix), 1E-6);
  EXPECT_NEAR(mix.RESRV[2], mix.DHDT * 8.314471, 1E-9);
  EXPECT_NEAR(mix.RESRV[3], -mix.DHDP * mix.T / mix.P / mix.DHDT, 1E-6 * std::fabs(mix.RESRV[3]));
}

TEST_F(MorveCalls, EveryModelComputesWhatTheListSays) {
  std::array<std::int32_t, MORVE_MODEL_COUNT> codes{}, classes{}, fugacity{}, volume{}, enthalpy{};
  std::int32_t count = 0;
  ::GETMORVEMODELS(&count, codes.data(), classes.data(), fugacity.data(), volume.data(), enthalpy.data());
  ASSERT_EQ(count, MORVE_MODEL_COUNT);
  int serving = 0;
  for (std::size_t k = 0; k < codes.size(); ++k) {
    const std::int32_t slot = set_up(kMethaneButane, codes[k]);
    // One model's data are refused by the load.
    if (codes[k] == 35) {
      EXPECT_EQ(slot, -MORVE_NOT_AVAILABLE);
      EXPECT_EQ(fugacity[k] | volume[k] | enthalpy[k], 0);
      continue;
    }
    ASSERT_GE(slot, 1) << codes[k];
    const auto works = [&](bool f, bool v, bool h) {
      Mix mix(slot, {0.9, 0.1});
      if (!f) mix.LNOF = 0;
      if (!v) mix.LNOV = 0;
      if (!h) mix.LNOH = 0;
      return mix.run() == MORVE_OK && std::isfinite(mix.FUG[0]) && std::isfinite(mix.ZVOL) &&
             std::isfinite(mix.H);
    };
    // These two read parameter files of the bank.
    if (codes[k] == MORVE_SRK_SIMSCI || codes[k] == MORVE_SRK_ASPEN) {
      Mix mix(slot, {0.9, 0.1});
      EXPECT_EQ(mix.run(), MORVE_OK) << codes[k];
      // Near the 0.9712 of model 47.
      EXPECT_NEAR(mix.ZVOL, 0.973, 0.001) << codes[k];
      EXPECT_NE(fugacity[k] & volume[k] & enthalpy[k], 0) << codes[k];
    }
    EXPECT_EQ(works(true, false, false), fugacity[k] != 0) << codes[k];
    EXPECT_EQ(works(false, true, false), volume[k] != 0) << codes[k];
    EXPECT_EQ(works(false, false, true), enthalpy[k] != 0) << codes[k];
    if (volume[k] != 0) ++serving;
  }
  EXPECT_EQ(serving, 14);
}

// Far from every state that a model is made for it ends with a status or gives finite numbers.
TEST_F(MorveCalls, NoModelHandsOutWhatIsNoNumber) {
  int served = 0;
  int refused = 0;
  for (const std::int32_t model : {27, 38, 41, 42, 43, 44, 45, 46, 47, 85, 121}) {
    const std::int32_t slot = set_up(" 1P 10P H2O H2  ", model);
    ASSERT_EQ(slot, 1) << model;
    for (const std::int32_t phase : {MORVE_VAPOUR, MORVE_LIQUID, MORVE_GIBBS}) {
      for (const double T : {1.5, 20.0, 90.0, 250.0, 400.0, 900.0, 3000.0, 50000.0}) {
        for (const double P : {1E-20, 1.0, 1E5, 1E7, 1E9, 1E13}) {
          for (const std::vector<double>& x :
               {std::vector<double>{1, 1, 1, 1}, std::vector<double>{1, 0, 0, 0},
                std::vector<double>{0, 0, 1, 1E-30}}) {
            Mix mix(slot, x);
            mix.phase = phase;
            mix.T = T;
            mix.P = P;
            mix.want(
                {MORVE_CP, MORVE_CV, MORVE_SPEED_OF_SOUND, MORVE_JOULE_THOMSON, MORVE_THERMAL_EXPANSION});
            if (mix.run() != MORVE_OK) {
              ++refused;
              continue;
            }
            ++served;
            const std::string where =
                std::to_string(model) + " " + std::to_string(T) + " " + std::to_string(P);
            EXPECT_GT(mix.ZVOL, 0.0) << where;
            bool finite = std::isfinite(mix.ZVOL) && std::isfinite(mix.H) && std::isfinite(mix.S);
            for (std::size_t i = 0; i < 4; ++i) {
              finite = finite && std::isfinite(mix.FUG[i]) && std::isfinite(mix.DFDT[i]) &&
                       std::isfinite(mix.DFDP[i]);
              for (std::size_t j = 1; j <= 4; ++j) finite = finite && std::isfinite(mix.dfdn(i + 1, j));
            }
            for (std::size_t k = 0; k < 5; ++k) finite = finite && std::isfinite(mix.RESRV[k]);
            EXPECT_TRUE(finite) << where;
          }
        }
      }
    }
  }
  EXPECT_GT(served, 3500);
  EXPECT_GT(refused, 0);
}

TEST_F(MorveCalls, SlotsAreFoundAndTheTableOfModelsHasTen) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_VARDO1), 1);
  const std::int32_t code = MORVE_VARDO1;
  std::int32_t slot = -1;
  ::SMDAO1(&code, &slot);
  EXPECT_EQ(slot, 1);
  EXPECT_EQ(load_model_slot(MORVE_VARDO1), 1);
  const std::int32_t absent = MORVE_PENG_ROBINSON;
  ::SMDAO1(&absent, &slot);
  EXPECT_EQ(slot, 0);
  for (const std::int32_t model : {27, 38, 42, 43, 44, 45, 46, 47, 85}) EXPECT_GT(load_model_slot(model), 1);
  EXPECT_EQ(load_model_slot(MORVE_VAN_DER_WAALS), -MORVE_RANGE);
}

TEST_F(MorveCalls, WrongSetUpsGiveTheirStatus) {
  EXPECT_EQ(set_up(kMethaneButane, 0), -MORVE_UNKNOWN);
  EXPECT_EQ(set_up(kMethaneButane, 999), -MORVE_UNKNOWN);
  EXPECT_EQ(set_up(kMethaneButane, -27), -MORVE_UNKNOWN);
  EXPECT_EQ(set_up("QQQQ", MORVE_PENG_ROBINSON), -MORVE_UNKNOWN);
  EXPECT_EQ(ring_texts().back(), "Pure component QQQQ     not found in database");
  EXPECT_EQ(start_list(""), MORVE_RANGE);
  std::string codes;
  for (int i = 0; i < 51; ++i) codes += " 1P ";
  EXPECT_EQ(start_list(codes), MORVE_RANGE);
  EXPECT_EQ(start_list(codes.substr(4)), MORVE_OK);

  std::int32_t status = -1;
  const std::int32_t none = 7;
  ::SURPL0(&none, &status);
  EXPECT_EQ(status, MORVE_FAILED);
  EXPECT_EQ(store_directory(std::string(245, 'x')), 3);
  std::string path(4, ' ');
  ::SURPT0(path.data(), 4, "OUTPUT", 6, &status);
  EXPECT_EQ(status, MORVE_INPUT);
}

TEST_F(MorveCalls, TextsThatAreTooShortChangeNothing) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_PENG_ROBINSON), 1);
  std::int32_t status = -1;
  const std::int32_t two = 2, width = 4, zero = 0;
  ::SHINI0(&two, " 1P ", 4, &width, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  ::SHINI0(&two, kMethaneButane.data(), 8, &zero, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  EXPECT_EQ(Mix(1, {0.5, 0.5}).run(), MORVE_OK);

  const std::int32_t read = MORVE_READ, model = MORVE_IDEAL_GAS_MODEL, key_width = 10;
  std::int32_t count = 5;
  std::array<double, MORVE_MAX_KEYS> values{};
  std::string keys(199, '?');
  ::SURMD0(&count, keys.data(), 199, &key_width, values.data(), &read, &model, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(keys, std::string(199, '?'));
  // Fewer characters cut a name, more are blank.
  const std::int32_t narrow = 3, wide = 12;
  std::string room(240, '?');
  ::SURMD0(&count, room.data(), 240, &narrow, values.data(), &read, &model, &status);
  EXPECT_EQ(room.substr(0, 4), "H-d?");
  ::SURMD0(&count, room.data(), 240, &wide, values.data(), &read, &model, &status);
  EXPECT_EQ(room.substr(0, 13), "H-datum     ?");
  EXPECT_EQ(values[0], 273.15);
}

TEST_F(MorveCalls, AMissingBankIsAStatusAndNoPropertyIsComputed) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_PENG_ROBINSON), 1);
  const ScratchDirectory empty;
  ASSERT_EQ(store_directory(empty.path().string() + "/"), 0);
  ::CLEARMORVEERRORS();
  EXPECT_EQ(load_data(), MORVE_FAILED);
  EXPECT_EQ(ring_texts().back(), "Error with pure component database");
  EXPECT_EQ(Mix(1, {0.5, 0.5}).run(), MORVE_NO_PARAMETERS);
  EXPECT_EQ(ring_texts().back(), "No component data loaded (input)");
  ASSERT_EQ(store_directory(install_directory() + "/Zandor/"), 0);
  EXPECT_EQ(load_data(), MORVE_OK);
  EXPECT_EQ(Mix(1, {0.5, 0.5}).run(), MORVE_OK);
}

TEST_F(MorveCalls, NothingIsComputedBeforeTheDataAreLoaded) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_VARDO1), 1);
  ASSERT_EQ(start_list(" 1P  2P "), MORVE_OK);
  const std::int32_t slot = load_model_slot(MORVE_VARDO1);
  EXPECT_EQ(Mix(slot, {0.5, 0.5}).run(), MORVE_NO_PARAMETERS);
  const double T = 200.0, given = 0.0;
  const std::int32_t one = 1, yes = 1, method = MORVE_PSAT_DEFAULT;
  double PS = -1.0, DPS = -1.0;
  std::int32_t status = -1;
  ::SPSAT0(&T, &given, &one, &yes, &yes, &method, &PS, &DPS, &status);
  EXPECT_EQ(status, MORVE_NO_PARAMETERS);
  Keys keys;
  keys.move(MORVE_READ, MORVE_SECTION_GENERAL, 1);
  EXPECT_EQ(keys.status, MORVE_NO_PARAMETERS);
  keys.move(MORVE_READ, MORVE_VARDO1, 1, 2);
  EXPECT_EQ(keys.status, MORVE_NO_PARAMETERS);
  keys.move(MORVE_WRITE, MORVE_VARDO3);
  EXPECT_EQ(keys.status, MORVE_NO_PARAMETERS);
  keys.move(MORVE_READ, MORVE_VARDO3);
  EXPECT_EQ(keys.status, MORVE_OK);
}

TEST_F(MorveCalls, BadStatesAndRequestsGiveTheirStatus) {
  const std::int32_t slot = set_up(kMethaneButane, MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  const auto status = [&](auto change) {
    Mix mix(slot, {0.9, 0.1});
    mix.ZVOL = mix.FUG[0] = mix.H = -77.0;
    change(mix);
    mix.run();
    if (mix.status != MORVE_OK) {
      EXPECT_EQ(mix.FUG[0], -77.0);
      EXPECT_EQ(mix.H, -77.0);
    }
    return mix.status;
  };
  EXPECT_EQ(status([](Mix&) {}), MORVE_OK);
  for (const double T : {kNaN, kInfinity, 0.0, -5.0, 1.0})
    EXPECT_EQ(status([T](Mix& m) { m.T = T; }), MORVE_INPUT) << T;
  for (const double P : {kNaN, kInfinity, 0.0, -1E5})
    EXPECT_EQ(status([P](Mix& m) { m.P = P; }), MORVE_INPUT) << P;
  for (const double x : {kNaN, kInfinity, -kInfinity})
    EXPECT_EQ(status([x](Mix& m) { m.X[1] = x; }), MORVE_INPUT) << x;
  EXPECT_EQ(status([](Mix& m) { m.X = {}; }), MORVE_INPUT);
  for (const std::int32_t count : {0, 3, 50, 51, 1000000, -3, -51, std::numeric_limits<std::int32_t>::min()})
    EXPECT_EQ(status([count](Mix& m) { m.count = count; }), MORVE_INPUT) << count;
  EXPECT_EQ(status([](Mix& m) { m.count = -2; }), MORVE_OK);
  EXPECT_EQ(status([](Mix& m) { m.count = 1; }), MORVE_OK);
  EXPECT_EQ(status([](Mix& m) { m.LNOF = 2; }), MORVE_INPUT);
  EXPECT_EQ(status([](Mix& m) { m.LNOV = m.LNOF = m.LNOH = 0; }), MORVE_FAILED);
  EXPECT_EQ(status([](Mix& m) { m.kind = 7; }), MORVE_INPUT);
  EXPECT_EQ(status([](Mix& m) { m.phase = 7; }), MORVE_NOT_AVAILABLE);
}

TEST_F(MorveCalls, NullPointersChangeNothingButTheStatus) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_PENG_ROBINSON), 1);
  std::int32_t status = -1;
  const std::int32_t one = 1, width = 4;
  ::SURPL0(nullptr, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  ::SHINI0(&one, nullptr, 4, &width, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  ::SHDBS0(nullptr);
  ::SMDAO1(nullptr, nullptr);
  ::GETMORVEERRORCOUNT(nullptr);
  ::GETMORVECODETEXT(nullptr, nullptr, 4);
  ::GETMORVEMODELS(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  status = -1;
  ::SHMIX0(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
           nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
           nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
           nullptr, nullptr, nullptr, &status);
  EXPECT_EQ(status, MORVE_INPUT);
  for (auto* const transport : {::SVVIM1, ::SLVIM1, ::STCVM1, ::STCLM1}) {
    status = -1;
    transport(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &status);
    EXPECT_EQ(status, MORVE_INPUT);
    transport(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
  }
  EXPECT_EQ(Mix(1, {0.5, 0.5}).run(), MORVE_OK);
}

TEST_F(MorveCalls, VapourPressureFollowsTheBankAndRefusesStrangers) {
  ASSERT_EQ(set_up(" 3P ", MORVE_VARDO1), 1);
  const double given = 123.0;
  const std::int32_t yes = 1;
  double PS = -1.0, DPS = -1.0;
  std::int32_t status = -1;
  const auto call = [&](double T, std::int32_t component, std::int32_t method) {
    ::SPSAT0(&T, &given, &component, &yes, &yes, &method, &PS, &DPS, &status);
    return status;
  };
  ASSERT_EQ(call(231.04, 1, MORVE_PSAT_DEFAULT), MORVE_OK);
  EXPECT_NEAR(PS / 101325.0, 1.0, 0.01);
  const double at_boiling = PS;
  const double slope = DPS;
  ASSERT_EQ(call(231.05, 1, MORVE_PSAT_DEFAULT), MORVE_OK);
  EXPECT_NEAR((PS - at_boiling) / 0.01 / slope, 1.0, 1E-3);
  ASSERT_EQ(call(300.0, 1, MORVE_PSAT_GIVEN), MORVE_OK);
  EXPECT_EQ(PS, given);
  EXPECT_EQ(call(300.0, 1, 7), MORVE_NOT_AVAILABLE);
  EXPECT_EQ(call(kNaN, 1, MORVE_PSAT_DEFAULT), MORVE_INPUT);
  EXPECT_EQ(call(-1.0, 1, MORVE_PSAT_DEFAULT), MORVE_INPUT);
  for (const std::int32_t component : {0, 2, 51, -1})
    EXPECT_EQ(call(300.0, component, MORVE_WAGNER), MORVE_INPUT);
}

TEST_F(MorveCalls, TransportEntriesServeAGasAndALiquid) {
  ASSERT_EQ(set_up(kMethaneButane, MORVE_VARDO1), 1);
  ComponentArray X{};
  const std::array<std::int32_t, MORVE_MAX_COMPONENTS> IC{};
  std::int32_t status = -1;
  double value = -1.0, slope = -1.0;
  const auto call = [&](auto* entry, double T, double P, double x1, std::int32_t method,
                        std::int32_t count = 2, std::int32_t mode = MORVE_VALUE) {
    X[0] = x1;
    X[1] = 1.0 - x1;
    value = -1.0;
    entry(&T, &P, X.data(), &count, IC.data(), &mode, &method, &value, &slope, &status);
    return status;
  };
  ASSERT_EQ(call(::SVVIM1, 300.0, 1E5, 1.0, MORVE_THODOS_WILKE_DEAN), MORVE_OK);
  EXPECT_NEAR(value, 0.0112, 0.0006);
  ASSERT_EQ(call(::STCVM1, 300.0, 1E5, 1.0, MORVE_MIXTURE), MORVE_OK);
  EXPECT_NEAR(value, 0.0342, 0.003);
  ASSERT_EQ(call(::SLVIM1, 273.15, 10E5, 0.0, MORVE_MIXTURE), MORVE_OK);
  EXPECT_NEAR(value, 0.206, 0.02);
  ASSERT_EQ(call(::STCLM1, 273.15, 10E5, 0.0, MORVE_MIXTURE), MORVE_OK);
  EXPECT_NEAR(value, 0.116, 0.012);
  for (auto* const entry : {::SVVIM1, ::SLVIM1, ::STCVM1, ::STCLM1}) {
    EXPECT_EQ(call(entry, 300.0, 1E5, 1.0, 7), MORVE_NOT_AVAILABLE);
    EXPECT_EQ(call(entry, 300.0, 1E5, 1.0, MORVE_MIXTURE, 2, MORVE_DERIVATIVE), MORVE_NOT_AVAILABLE);
    for (const std::int32_t count : {0, 3, 51, -1})
      EXPECT_EQ(call(entry, 300.0, 1E5, 1.0, MORVE_MIXTURE, count), MORVE_INPUT) << count;
    EXPECT_EQ(call(entry, kNaN, 1E5, 1.0, MORVE_MIXTURE), MORVE_INPUT);
    EXPECT_EQ(call(entry, 300.0, -1E5, 1.0, MORVE_MIXTURE), MORVE_INPUT);
    EXPECT_EQ(call(entry, 300.0, 1E5, kNaN, MORVE_MIXTURE), MORVE_INPUT);
    EXPECT_EQ(value, -1.0);
  }
  // Without the model that gives the density there is no vapour viscosity.
  ASSERT_EQ(set_up(kMethaneButane, MORVE_PENG_ROBINSON), 1);
  EXPECT_EQ(call(::SVVIM1, 300.0, 1E5, 1.0, MORVE_THODOS_WILKE_DEAN), MORVE_NO_EQUATION_OF_STATE);
}

TEST_F(MorveCalls, OverridesAreReadWrittenAndChangeResults) {
  const std::int32_t slot = set_up(kMethaneButane, MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  Mix before(slot, {0.9, 0.1});
  ASSERT_EQ(before.run(), MORVE_OK);

  Keys pair;
  pair.move(MORVE_LIST, MORVE_PENG_ROBINSON, 1, 2);
  EXPECT_EQ(pair.names, (std::vector<std::string>{"TETA0", "TETA0T", "TETA1", "TETA1T"}));
  pair.move(MORVE_READ, MORVE_PENG_ROBINSON, 1, 2);
  const double own = pair.values[0];
  pair.values[0] = own + 0.05;
  pair.move(MORVE_WRITE, MORVE_PENG_ROBINSON, 1, 2);
  ASSERT_EQ(pair.status, MORVE_OK);
  Keys again;
  again.move(MORVE_READ, MORVE_PENG_ROBINSON, 2, 1);
  EXPECT_EQ(again.values[0], own + 0.05);
  Mix after(slot, {0.9, 0.1});
  ASSERT_EQ(after.run(), MORVE_OK);
  EXPECT_GT(after.FUG[1], before.FUG[1]);

  // What is no number is refused as a whole.
  Keys component;
  component.move(MORVE_READ, MORVE_SECTION_GENERAL, 1);
  ASSERT_EQ(component.count, 16);
  const double tc = component.values[12];
  component.values[12] = kNaN;
  component.values[6] = 0.5;
  component.move(MORVE_WRITE, MORVE_SECTION_GENERAL, 1);
  EXPECT_EQ(component.status, MORVE_INPUT);
  component.move(MORVE_READ, MORVE_SECTION_GENERAL, 1);
  EXPECT_EQ(component.values[12], tc);
  EXPECT_NEAR(component.values[6], 0.0114, 1E-3);

  Keys none;
  none.move(MORVE_READ, MORVE_SECTION_GENERAL, 3);
  EXPECT_EQ(none.status, MORVE_NOT_AVAILABLE);
  EXPECT_EQ(none.count, 0);
  none.move(MORVE_READ, 999, 1);
  EXPECT_EQ(none.status, MORVE_NOT_AVAILABLE);
  none.move(MORVE_READ, MORVE_PENG_ROBINSON, 1, 1);
  EXPECT_EQ(none.status, MORVE_NOT_AVAILABLE);
  none.move(MORVE_READ, MORVE_PENG_ROBINSON);
  EXPECT_EQ(none.status, MORVE_NOT_AVAILABLE);

  // A new load brings the constants of the bank back.
  ASSERT_EQ(load_data(), MORVE_OK);
  pair.move(MORVE_READ, MORVE_PENG_ROBINSON, 1, 2);
  EXPECT_EQ(pair.values[0], own);
}

TEST_F(MorveCalls, TheDatumMovesEnthalpyAndEntropy) {
  const std::int32_t slot = set_up(" 1P ", MORVE_IDEAL_GAS_MODEL);
  ASSERT_EQ(slot, 1);
  Mix mix(slot, {1.0});
  mix.T = 273.15;
  mix.P = 1E5;
  ASSERT_EQ(mix.run(), MORVE_OK);
  EXPECT_NEAR(mix.H, 0.0, 1E-12);
  EXPECT_NEAR(mix.S, 0.0, 1E-12);
  set_datum(298.15);
  mix.T = 298.15;
  ASSERT_EQ(mix.run(), MORVE_OK);
  EXPECT_NEAR(mix.H, 0.0, 1E-12);
  mix.T = 273.15;
  ASSERT_EQ(mix.run(), MORVE_OK);
  EXPECT_LT(mix.H, -0.3);
}

TEST_F(MorveCalls, TheErrorRingIsReadEntryByEntryAndCleared) {
  std::int32_t count = -1;
  ::GETMORVEERRORCOUNT(&count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(start_list(""), MORVE_RANGE);
  ::GETMORVEERRORCOUNT(&count);
  ASSERT_EQ(count, 1);
  std::int32_t severity = 0, status = -1;
  std::string name(8, '?'), text(MORVE_MESSAGE_LENGTH, '?');
  const std::int32_t first = 1;
  ::GETMORVEERROR(&first, &severity, name.data(), 8, text.data(), MORVE_MESSAGE_LENGTH, &status);
  EXPECT_EQ(status, MORVE_OK);
  EXPECT_EQ(severity, 3);
  EXPECT_EQ(name, "SHINI0  ");
  EXPECT_EQ(text.substr(0, 26), "Zero number of components ");
  for (const std::int32_t k : {0, 2, -1, 16}) {
    ::GETMORVEERROR(&k, &severity, name.data(), 8, text.data(), MORVE_MESSAGE_LENGTH, &status);
    EXPECT_EQ(status, MORVE_RANGE) << k;
  }
  for (int i = 0; i < 20; ++i) start_list("");
  ::GETMORVEERRORCOUNT(&count);
  EXPECT_EQ(count, MORVE_RING_ENTRIES);
  ::CLEARMORVEERRORS();
  ::GETMORVEERRORCOUNT(&count);
  EXPECT_EQ(count, 0);
}

TEST_F(MorveCalls, CodesHaveTheirTexts) {
  EXPECT_EQ(code_text(MORVE_OK), "no");
  EXPECT_EQ(code_text(MORVE_PENG_ROBINSON), "Peng-Robinson");
  EXPECT_EQ(code_text(MORVE_NO_ROOT), "no root");
  EXPECT_EQ(code_text(MORVE_SECTION_HENRY), "Henry");
  EXPECT_EQ(code_text(MORVE_PENG_ROBINSON, 4), "Peng");
  for (const std::int32_t code : {0, -1, 148, 1000000}) EXPECT_EQ(code_text(code), "") << code;
}

TEST_F(MorveCalls, FlashesAndEngineShareOneStateWithoutSpoilingEachOther) {
  fresh_library();
  FlashCase gas = natural_gas();
  ASSERT_EQ(gas.run(), "");
  const float fraction = gas.FRV;

  // Another list in the engine: the flash loads its own again.
  const std::int32_t slot = set_up(kMethaneButane, MORVE_PENG_ROBINSON);
  ASSERT_EQ(slot, 1);
  Mix mix(slot, {0.9, 0.1});
  ASSERT_EQ(mix.run(), MORVE_OK);
  FlashCase same = natural_gas();
  ASSERT_EQ(same.run(), "");
  EXPECT_EQ(same.FRV, fraction);
  EXPECT_EQ(Mix(slot, {0.9, 0.1}).run(), MORVE_OK);
}

}  // namespace
}  // namespace talix::test
