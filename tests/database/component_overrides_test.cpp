#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "association/cpa_record.h"
#include "association/scp_constants.h"
#include "database/component_record.h"
#include "database/key_access.h"
#include "database/pair_record.h"
#include "database/ssm_pair_estimates.h"
#include "engine/model_table.h"
#include "engine/shmix_driver.h"
#include "fastprops/surface_tension.h"
#include "liquid/s0r_saturated_density.h"
#include "solids/hydrate_record.h"
#include "support/liquid_fixture.h"
#include "transport/liquid_class.h"
#include "transport/stc_liquid.h"
#include "transport/svi_liquid_heavy.h"
#include "transport/svi_liquid_standard.h"

namespace talix::test {
namespace {

constexpr I4 kOne = kHexane;
constexpr R8 kTemperature = 350.0;  // [K]

Access section_of(I4 section, I4 i = kOne) {
  return [=](I4 act, const std::vector<R8>& values) { return component_keys(i, section, act, values); };
}

std::vector<std::string> numbered(const std::string& stem, int count) {
  std::vector<std::string> names;
  for (int k = 1; k <= count; ++k) names.push_back(stem + std::to_string(k));
  return names;
}

// Fugacity coefficient, compressibility and enthalpy of the pure component.
void add_phase(std::vector<R8>& results, I4 slot, R8 T, I4 root) {
  Call call;
  call.args.NCOMP = -kOne;
  call.args.MODEL = slot;
  call.args.IPHASE = root;
  call.args.T = T;
  call.args.P = 5e5;
  call.want_all();
  call.run();
  EXPECT_EQ(call.args.ICODE, status::ok);
  results.insert(results.end(), {call.FUG(kOne), call.args.Z, call.args.H, call.args.WSOUND});
}

std::vector<R8> phases() {
  std::vector<R8> results;
  add_phase(results, kCubic, kTemperature, phase::liquid);
  add_phase(results, kCubic, 600.0, phase::vapour);
  return results;
}

R8 vapour_pressure(I4 method, R8 T = kTemperature) {
  R8 ps = 0.0;
  R8 dps = 0.0;
  I4 nfail = 0;
  SPSAT0(T, 0.0, kOne, logical(true), logical(false), method, ps, dps, nfail);
  return nfail == status::ok ? ps : -nfail;
}

R8 saturated_density(I4 method) {
  R8 rsat = 0.0;
  R8 slope = 0.0;
  I4 nfail = 0;
  S0RSC1(kTemperature, 1e5, kOne, logical(true), logical(false), method, rsat, slope, nfail);
  return rsat;
}

R8 surface_tension() {
  PhaseCompositions XX{};
  XX(kOne, 1) = XX(kOne, 2) = 1.0;
  Vec<R8, 3> volumes{{0.02, 1.3e-4, 0.0}};
  Vec<R8, 3> sigma{};
  SSTPW0(kOne, kTemperature, XX, 1, 2, 0, volumes, sigma);
  return sigma(1);
}

// Estimate of the interaction with a component whose rule reads carbon and hydrogen.
R8 estimated_interaction() {
  constexpr I4 other = kWater;
  comp.ICSTD(other) = 1011;
  comp.NOTRY(other) = 1;
  comp.ICSTD(kOne) = 31;
  comp.NOTRY(kOne) = 0;
  I4 nfail = 0;
  SSMBI0(other, kOne, nfail);
  EXPECT_EQ(nfail, status::ok);
  return pairs.TETA0(other, kOne);
}

class ComponentOverrides : public ::testing::Test {
 protected:
  void SetUp() override {
    reset_liquid_fixture();
    reset_cpa_record();
    reset_hydrate_record();
  }
};

TEST_F(ComponentOverrides, EveryGeneralKey) {
  const std::vector<std::string> names{"Atbp", "Gf",  "Hf",    "Href",  "Hvap", "Lvis50", "Omega", "Pachor",
                                       "Pc",   "Rho", "Rmolw", "Tboil", "Tc",   "Uopk",   "Vc",    "Dipole"};
  set_fraction(kOne);
  comp.UOPK(kOne) = 11.7;
  comp.PACHOR(kOne) = 270.0;
  comp.TBOIL(kOne) = 540.0;
  comp.IPSA(kOne) = 1;
  comp.PSAT(kOne, 1) = 2.0;
  comp.PSAT(kOne, 2) = -900.0;
  const auto results = [] {
    std::vector<R8> all = phases();
    all.push_back(saturated_density(method::riedel));
    all.push_back(vapour_pressure(method::frost_kalkwarf, 800.0));
    all.push_back(surface_tension());
    R8 eta = 0.0;
    I4 nfail = 0;
    SVICR0(kTemperature, kOne, eta, nfail);
    EXPECT_EQ(nfail, status::ok);
    all.push_back(eta);
    return all;
  };
  EXPECT_EQ(component_keys(kOne, key_section::general, 0).names(), names);
  // The constants of formation and the like serve no method.
  walk_keys(section_of(key_section::general), results, shift,
            {"Gf", "Hf", "Href", "Hvap", "Lvis50", "Dipole"});
}

TEST_F(ComponentOverrides, GeneralKeysNameTheirConstants) {
  std::vector<R8> values;
  for (int k = 1; k <= 16; ++k) values.push_back(100.0 + k);
  const I4 generation = setup.generation;
  ASSERT_EQ(component_keys(kOne, key_section::general, action::input, values).nfail, status::ok);
  EXPECT_EQ(setup.generation, generation + 1);
  EXPECT_EQ(comp.ATBP(kOne), 101.0);
  EXPECT_EQ(comp.GF(kOne), 102.0);
  EXPECT_EQ(comp.HF(kOne), 103.0);
  EXPECT_EQ(comp.HREF(kOne), 104.0);
  EXPECT_EQ(comp.HVAP(kOne), 105.0);
  EXPECT_EQ(comp.LVIS50(kOne), 106.0);
  EXPECT_EQ(comp.OMEGA(kOne), 107.0);
  EXPECT_EQ(comp.PACHOR(kOne), 108.0);
  EXPECT_EQ(comp.PC(kOne), 109.0);
  EXPECT_EQ(comp.RHO(kOne), 110.0);
  EXPECT_EQ(comp.RMOLW(kOne), 111.0);
  EXPECT_EQ(comp.TBOIL(kOne), 112.0);
  EXPECT_EQ(comp.TC(kOne), 113.0);
  EXPECT_EQ(comp.UOPK(kOne), 114.0);
  EXPECT_EQ(comp.VC(kOne), 115.0);
  EXPECT_EQ(comp.DIPOLE(kOne), 116.0);
  EXPECT_NE(comp.IDIP(kOne), 0);
}

TEST_F(ComponentOverrides, EveryKeyOfTheCurves) {
  std::vector<std::string> names = numbered("Asub-", 5);
  for (const std::string& name : numbered("Bsub-", 5)) names.push_back(name);
  for (const std::string& name : numbered("Asup-", 5)) names.push_back(name);
  for (const I4 section : {41, 42, 43, 44, 45}) {
    EXPECT_EQ(component_keys(kOne, section, 0).names(), names);
    walk_keys(section_of(section), phases);
  }
  for (int k = 1; k <= 15; ++k)
    EXPECT_EQ(component_keys(kOne, 41, action::information).values(k), comp.PARABF(kOne, k));
}

TEST_F(ComponentOverrides, EveryKeyOfTheIdealHeatCapacity) {
  EXPECT_EQ(component_keys(kOne, key_section::ideal_heat_capacity, 0).names(), numbered("Cp_Ideal-", 8));
  EXPECT_EQ(component_keys(kOne, key_section::ideal_heat_capacity, 0).keys(8).view(), "Cp_Ideal-8");
  const auto scale = [](std::size_t, R8 value) { return value == 0.0 ? 1.0 : 1.1 * value; };
  const auto set = [](I4 form, const std::vector<R8>& values) {
    comp.ICPIG(kOne) = form;
    component_keys(kOne, key_section::ideal_heat_capacity, action::input, values);
  };
  set(7, {52000.0, 166000.0, 802.0, 116000.0, 2445.0});
  walk_keys(section_of(key_section::ideal_heat_capacity), phases, scale,
            {"Cp_Ideal-6", "Cp_Ideal-7", "Cp_Ideal-8"});
  set(1, {20.0, 0.1, 1e-4, 1e-7, 1e-10, 1e-13, 1e3, 1e6});
  walk_keys(section_of(key_section::ideal_heat_capacity), phases, scale);
}

TEST_F(ComponentOverrides, EveryKeyOfTheVapourPressureSets) {
  const auto sets = [] {
    return std::vector<R8>{vapour_pressure(method::frost_kalkwarf), vapour_pressure(method::wagner),
                           vapour_pressure(method::antoine), vapour_pressure(method::antoine_extended)};
  };
  const auto scale = [](std::size_t, R8 value) { return 1.01 * value; };

  comp.IPSA(kOne) = 1;
  for (int k = 1; k <= 5; ++k) comp.PSAT(kOne, k) = Vec<R8, 5>{{8.0, -1900.0, 0.0, -0.9, 1e-3}}(k);
  EXPECT_EQ(component_keys(kOne, 80, 0).names(),
            (std::vector<std::string>{"FK-A", "FK-B", "FK-C", "FK-D", "FK-E"}));
  walk_keys(section_of(80), sets, [](std::size_t k, R8 value) { return k == 2 ? value + 1.0 : 1.01 * value; },
            {"FK-C"});

  comp.IPWA(kOne) = 1;
  for (int k = 1; k <= 4; ++k) comp.PWAG(kOne, k) = Vec<R8, 4>{{-7.5, 1.5, -3.0, -4.0}}(k);
  EXPECT_EQ(component_keys(kOne, 60, 0).names(),
            (std::vector<std::string>{"WAG-A", "WAG-B", "WAG-C", "WAG-D"}));
  walk_keys(section_of(60), sets, scale);

  comp.IPAN(kOne) = 1;
  for (int k = 1; k <= 3; ++k) comp.PANT(kOne, k) = Vec<R8, 3>{{3.0, -1200.0, -48.0}}(k);
  EXPECT_EQ(component_keys(kOne, 3, 0).names(), (std::vector<std::string>{"ANT-A", "ANT-B", "ANT-C"}));
  walk_keys(section_of(3), sets, scale);

  comp.IPANO(kOne) = 7;
  const Vec<R8, 9> extended{{60.0, -6000.0, 2.0, 0.001, -6.0, 1e-17, 6.0, 200.0, 340.0}};
  for (int k = 1; k <= 9; ++k) comp.PANTO(kOne, k) = extended(k);
  EXPECT_EQ(component_keys(kOne, 144, 0).names(), numbered("PLXANT", 9));
  // The temperature lies above the upper end of the range; from below the other end counts.
  const auto both_ends = [] { return std::vector<R8>{vapour_pressure(144), vapour_pressure(144, 150.0)}; };
  walk_keys(section_of(144), both_ends, scale);
}

// The third constant decides on the form of the set.
TEST_F(ComponentOverrides, TheThirdConstantOfTheSharedSetMakesItAntoine) {
  comp.IPSA(kOne) = 1;
  ASSERT_EQ(component_keys(kOne, 80, action::input, {3.0, -1200.0, 0.0, -0.1, 0.0}).nfail, status::ok);
  EXPECT_EQ(component_keys(kOne, 36, 0).keys(1).view(), "FK-A      ");
  ASSERT_EQ(component_keys(kOne, 80, action::input, {3.0, -1200.0, -48.0, 0.0, 0.0}).nfail, status::ok);
  for (const I4 section : {36, 5}) {
    const KeyAnswer read = component_keys(kOne, section, action::information);
    EXPECT_EQ(read.names(), (std::vector<std::string>{"ANT-A", "ANT-B", "ANT-C"}));
    EXPECT_EQ(read.list(), (std::vector<R8>{3.0, -1200.0, -48.0}));
    walk_keys(section_of(section), [section] { return std::vector<R8>{vapour_pressure(section)}; });
  }
}

TEST_F(ComponentOverrides, DefaultMethodsMeanTheSetThatTheyTake) {
  const auto first_key = [](I4 section) {
    const KeyAnswer a = component_keys(kOne, section, 0);
    return a.nfail == status::ok ? std::string{trimmed(a.keys(1))} : std::to_string(a.nfail);
  };
  EXPECT_EQ(first_key(36), "102");
  EXPECT_EQ(first_key(5), "102");
  expect_refused(component_keys(kOne, 36, action::input));

  comp.IPANO(kOne) = 7;
  EXPECT_EQ(first_key(36), "PLXANT1");
  EXPECT_EQ(first_key(5), "102");
  comp.IPAN(kOne) = 1;
  EXPECT_EQ(first_key(36), "ANT-A");
  EXPECT_EQ(first_key(5), "ANT-A");
  comp.IPSA(kOne) = 7;
  EXPECT_EQ(first_key(36), "ANT-A");
  EXPECT_EQ(first_key(5), "FK-A");
  comp.IPSA(kOne) = 1;
  EXPECT_EQ(first_key(36), "FK-A");
  comp.IPWA(kOne) = 1;
  EXPECT_EQ(first_key(36), "WAG-A");
  EXPECT_EQ(first_key(5), "FK-A");
}

TEST_F(ComponentOverrides, ASetThatIsWrittenIsThereFromThenOn) {
  EXPECT_LT(vapour_pressure(method::wagner), 0.0);
  // Zeros, as they are read, make no set.
  component_keys(kOne, 60, action::input, {0, 0, 0, 0});
  component_keys(kOne, 29, action::input, {0, 0, 0});
  EXPECT_EQ(comp.IPWA(kOne), 0);
  EXPECT_EQ(comp.IDLI(kOne), 0);
  component_keys(kOne, 80, action::input, {8.0, -1900.0, 0.0, -0.9, 0.0});
  component_keys(kOne, 60, action::input, {-7.5, 1.5, -3.0, -4.0});
  component_keys(kOne, 3, action::input, {3.0, -1200.0, -48.0});
  component_keys(kOne, 144, action::input, {60.0, -6000.0, 0, 0, -6.0, 0, 0, 0, 0});
  for (const I4 method : {method::frost_kalkwarf, method::wagner, method::antoine, method::antoine_extended})
    EXPECT_GT(vapour_pressure(method), 0.0) << method;
  component_keys(kOne, 34, action::input, {230.0, 1.6, 0.9});
  component_keys(kOne, 129, action::input, {1.0});
  EXPECT_EQ(comp.IDLI(kOne), 1);
  EXPECT_EQ(comp.IHVA(kOne), 1);
  EXPECT_EQ(comp.IPANO(kOne), 7);
}

TEST_F(ComponentOverrides, TheFormOfASetIsKept) {
  comp.IPSA(kOne) = 7;
  comp.IDLI(kOne) = 8;
  comp.IHVA(kOne) = 7;
  component_keys(kOne, 80, action::input, {8.0, -1900.0, 0.0, -0.9, 0.0});
  component_keys(kOne, 34, action::input, {0.26, 1.6, 0.9});
  component_keys(kOne, 129, action::input, {1.0});
  EXPECT_EQ(comp.IPSA(kOne), 7);
  EXPECT_EQ(comp.IDLI(kOne), 8);
  EXPECT_EQ(comp.IHVA(kOne), 7);
}

TEST_F(ComponentOverrides, EveryKeyOfTheLiquidDensity) {
  comp.IDLI(kOne) = 1;
  component_keys(kOne, 34, action::input, {230.0, 1.6, 0.9});
  for (const I4 section : {29, 34}) {
    EXPECT_EQ(component_keys(kOne, section, 0).names(), numbered("Riedel-", 3));
    walk_keys(section_of(section), [section] { return std::vector<R8>{saturated_density(section)}; });
  }
}

TEST_F(ComponentOverrides, EveryKeyOfTheElements) {
  const std::vector<std::string> names{"C atoms",  "H atoms",    "N atoms",  "O atoms",    "S atoms",
                                       "F atoms",  "Cl atoms",   "Br atoms", "I atoms",    "Atom nb X1",
                                       "X1 atoms", "Atom nb X2", "X2 atoms", "Atom nb X3", "X3 atoms"};
  EXPECT_EQ(component_keys(kOne, key_section::elements, 0).names(), names);
  comp.ELEM(kOne, 1) = 5;
  const auto results = [] {
    return std::vector<R8>{liquid_class(kOne).LIGHT ? 1.0 : 0.0, estimated_interaction()};
  };
  walk_keys(section_of(key_section::elements), results, one_more, {"Atom nb X1", "Atom nb X2", "Atom nb X3"});
}

TEST_F(ComponentOverrides, WholeNumbersAreCutToThem) {
  std::vector<R8> values(15, 0.0);
  const std::vector<std::pair<R8, I4>> cases{{2.0, 2},   {2.7, 2},   {2.99995, 3}, {2.9998, 2},
                                             {-1.0, -1}, {-0.5, -1}, {0.0, 0}};
  for (const auto& [value, expected] : cases) {
    values[0] = value;
    component_keys(kOne, key_section::elements, action::input, values);
    EXPECT_EQ(comp.ELEM(kOne, 1), expected) << value;
  }
  for (const R8 value : {1e300, -1e300, std::nan("")}) {
    values[0] = value;
    component_keys(kOne, key_section::elements, action::input, values);
    EXPECT_EQ(comp.ELEM(kOne, 1), 0) << value;
  }
}

TEST_F(ComponentOverrides, EveryKeyOfTheLiquidViscosity) {
  std::vector<std::string> names = numbered("Vil-", 7);
  names.insert(names.begin(), "Ivil");
  EXPECT_EQ(component_keys(kOne, key_section::liquid_viscosity, 0).names(), names);
  const auto results = [] {
    R8 lneta = 0.0;
    I4 nfail = 0;
    SVISO0(kTemperature, 1e5, kOne, lneta, nfail);
    return std::vector<R8>{lneta, static_cast<R8>(nfail)};
  };
  const auto change = [](std::size_t k, R8 value) { return k == 0 ? 0.0 : shift(k, value); };
  component_keys(kOne, key_section::liquid_viscosity, action::input,
                 {1, -5.0, 10.0, 2.0, 0.5, 0.03, 0.002, 0});
  walk_keys(section_of(key_section::liquid_viscosity), results, change, {"Vil-7"});
}

TEST_F(ComponentOverrides, EveryKeyOfTheThermalConductivity) {
  std::vector<std::string> names = numbered("Tcl-", 7);
  names.insert(names.begin(), "Itcl");
  EXPECT_EQ(component_keys(kOne, key_section::thermal_conductivity, 0).names(), names);
  // Once above the range of the polynomial, once below.
  const auto results = [] {
    std::vector<R8> all;
    for (const R8 T : {kTemperature, 280.0}) {
      R8 lambda = 0.0;
      I4 nfail = 0;
      STCCM1(T, 1e5, kOne, lambda, nfail);
      all.insert(all.end(), {lambda, static_cast<R8>(nfail)});
    }
    return all;
  };
  const auto change = [](std::size_t k, R8 value) { return k == 0 ? 0.0 : 1.01 * value; };
  component_keys(kOne, key_section::thermal_conductivity, action::input,
                 {7, 0.2, -3e-4, 1e-7, 1e-10, 1e-13, 290.0, 340.0});
  walk_keys(section_of(key_section::thermal_conductivity), results, change);
}

TEST_F(ComponentOverrides, EveryKeyOfTheSetsThatOnlyStand) {
  EXPECT_EQ(component_keys(kOne, key_section::heat_of_vaporisation, 0).names(), numbered("Hvap-", 17));
  walk_keys(section_of(key_section::heat_of_vaporisation), [] {
    std::vector<R8> all;
    for (int k = 1; k <= 17; ++k) all.push_back(comp.HVAPCF(kOne, k));
    return all;
  });
  EXPECT_EQ(component_keys(kOne, model::freeze_out, 0).names(),
            (std::vector<std::string>{"HFus", "DCpFus", "DvFus", "Tfreeze"}));
  walk_keys(section_of(model::freeze_out), [] {
    std::vector<R8> all;
    for (int k = 1; k <= 4; ++k) all.push_back(comp.SPAR(k, kOne));
    return all;
  });
}

TEST_F(ComponentOverrides, HenryFlag) {
  const Access henry = section_of(key_section::henry);
  EXPECT_EQ(henry(0, {}).names(), std::vector<std::string>{"ISHEN"});
  for (const R8 value : {1.0, 2.0, -1.0, 0.5, 1e-300}) {
    comp.ISHEN(kOne) = false;
    henry(action::input, {value});
    EXPECT_TRUE(static_cast<bool>(comp.ISHEN(kOne))) << value;
    EXPECT_EQ(henry(action::information, {}).values(1), 1.0);
  }
  henry(action::input, {0.0});
  EXPECT_FALSE(static_cast<bool>(comp.ISHEN(kOne)));
  EXPECT_EQ(henry(action::information, {}).values(1), 0.0);
}

TEST_F(ComponentOverrides, EveryKeyOfTheGroups) {
  std::vector<std::string> names = numbered("Group-", 8);
  names.insert(names.begin(), "Nb groups");
  EXPECT_EQ(component_keys(kOne, key_section::groups, 0).names(), names);
  component_keys(kOne, key_section::groups, action::input, {2, 1002, 2004.5});
  EXPECT_EQ(comp.NGRP(kOne), 2);
  EXPECT_EQ(comp.GRPTYP(kOne, 1), 1);
  EXPECT_EQ(comp.GRPNUM(kOne, 1), 2.0);
  EXPECT_EQ(comp.GRPTYP(kOne, 2), 2);
  EXPECT_EQ(comp.GRPNUM(kOne, 2), 4.5);
  walk_keys(
      section_of(key_section::groups),
      [] {
        std::vector<R8> all{static_cast<R8>(comp.NGRP(kOne))};
        for (int k = 1; k <= 8; ++k)
          all.insert(all.end(), {1.0 * comp.GRPTYP(kOne, k), comp.GRPNUM(kOne, k)});
        return all;
      },
      [](std::size_t k, R8 value) { return k == 0 ? value + 1.0 : value + 3001.0; });
}

TEST_F(ComponentOverrides, GroupsThatCannotBeAreLeftOut) {
  component_keys(kOne, key_section::groups, action::input, {1, 1002});
  component_keys(kOne, key_section::groups, action::input, {99, -1.0, 1e300, std::nan("")});
  EXPECT_EQ(comp.NGRP(kOne), 8);
  EXPECT_EQ(comp.GRPTYP(kOne, 1), 1);
  EXPECT_EQ(comp.GRPTYP(kOne, 2), 0);
  component_keys(kOne, key_section::groups, action::input, {-3, 1002});
  EXPECT_EQ(comp.NGRP(kOne), 0);
}

TEST_F(ComponentOverrides, HydrateSections) {
  for (const I4 section : {55, 56, 57, 58}) {
    expect_refused(component_keys(kOne, section, action::information));
    expect_refused(component_keys(kOne, section, action::input));
  }
  hydrate.INDXH(kOne) = kOne;
  for (int k = 1; k <= 19; ++k) hydrate.COHPC(k, kOne) = 10.0 * k;
  EXPECT_EQ(component_keys(kOne, 55, 0).names(),
            (std::vector<std::string>{"A(I-1)", "B(I-1)", "A(I-2)", "B(I-2)", "C(I-1)", "D(I-1)", "C(I-2)",
                                      "D(I-2)"}));
  EXPECT_EQ(component_keys(kOne, 57, 0).names(),
            (std::vector<std::string>{"A(II-1)", "B(II-1)", "A(II-2)", "B(II-2)", "C(II-1)", "D(II-1)",
                                      "C(II-2)", "D(II-2)"}));
  // Rows 4 to 19 hold A, B, C, D, each by structure and then by cavity.
  EXPECT_EQ(component_keys(kOne, 55, action::information).list(),
            (std::vector<R8>{40, 80, 50, 90, 120, 160, 130, 170}));
  EXPECT_EQ(component_keys(kOne, 57, action::information).list(),
            (std::vector<R8>{60, 100, 70, 110, 140, 180, 150, 190}));
  const auto record = [] {
    std::vector<R8> all;
    for (int k = 1; k <= 19; ++k) all.push_back(hydrate.COHPC(k, kOne));
    return all;
  };
  for (const I4 section : {56, 58}) {
    const KeyAnswer read = component_keys(kOne, section, action::information);
    EXPECT_EQ(read.names(), (std::vector<std::string>{"alpha", "sigma", "epsilon"}));
    EXPECT_EQ(read.list(), (std::vector<R8>{10, 20, 30}));
  }
  for (const I4 section : {55, 56, 57, 58}) {
    walk_keys(section_of(section), record);
    setup.hydrate_initialised = true;
    component_keys(kOne, section, action::information);
    EXPECT_TRUE(static_cast<bool>(setup.hydrate_initialised));
    component_keys(kOne, section, action::input);
    EXPECT_FALSE(static_cast<bool>(setup.hydrate_initialised));
  }
}

TEST_F(ComponentOverrides, EveryKeyOfTheAssociationModel) {
  const std::vector<std::string> names{"Beta",   "Eps",    "Gamma",  "Delta",  "#sites/2",
                                       "Acrit",  "Bcrit",  "Kappa0", "Kappa1", "Kappa2",
                                       "Kappa3", "Kappa4", "Kappa5", "Kappa6", "K-supcrit"};
  EXPECT_EQ(component_keys(kOne, model::cpa, 0).names(), names);
  const auto results = [] {
    std::vector<R8> all{cpa_sets.ASB(kOne), cpa_sets.ASA(kOne), cpa_sets.ASC(kOne), cpa_sets.ASD(kOne),
                        cpa_sets.ASF(kOne)};
    for (I4 selector = 6; selector <= 15; ++selector) {
      R8 value = 0.0;
      SCPDB4(kOne, selector, value);
      all.push_back(value);
    }
    return all;
  };
  std::vector<R8> values;
  for (int k = 1; k <= 13; ++k) values.push_back(0.1 * k);
  values.insert(values.end(), {1.4, 1.4});
  component_keys(kOne, model::cpa, action::input, values);
  EXPECT_EQ(component_keys(kOne, model::cpa, action::information).list(), values);
  EXPECT_EQ(cpa_sets.EOSK(7, kOne), values[7]);
  for (int k = 1; k <= 5; ++k) EXPECT_EQ(cpa_sets.EOSK(k, kOne), values[static_cast<std::size_t>(7 + k)]);
  EXPECT_EQ(cpa_sets.EOSK(6, kOne), 1.4);

  // All but the last two keys, which name one constant, stand for themselves.
  const std::vector<R8> base = results();
  for (std::size_t k = 0; k < 15; ++k) {
    std::vector<R8> changed = values;
    changed[k] += 0.05;
    component_keys(kOne, model::cpa, action::input, changed);
    if (k >= 13) changed[13] = changed[14] = values[k] + 0.05;
    EXPECT_EQ(component_keys(kOne, model::cpa, action::information).list(), changed) << names[k];
    EXPECT_NE(results(), base) << names[k];
    component_keys(kOne, model::cpa, action::input, values);
    EXPECT_EQ(results(), base) << names[k];
  }
  std::vector<R8> both = values;
  both[13] = 1.5;
  both[14] = 1.6;
  component_keys(kOne, model::cpa, action::input, both);
  EXPECT_EQ(cpa_sets.EOSK(6, kOne), 1.6);
}

TEST_F(ComponentOverrides, AbsentAssociationConstantsReadAsTheModelTakesThem) {
  const KeyAnswer read = component_keys(kOne, model::cpa, action::information);
  const R8 tc = comp.TC(kOne);
  const R8 pc = comp.PC(kOne) * 1e5;
  const R8 w = comp.OMEGA(kOne);
  const R8 slope = 0.48508 + 1.55171 * w - 0.15613 * w * w;
  for (int k = 1; k <= 5; ++k) EXPECT_EQ(read.values(k), 0.0);
  EXPECT_NEAR(read.values(6) / (0.427480234 * std::pow(8.314471 * tc, 2) / pc), 1.0, 1e-7);
  EXPECT_NEAR(read.values(7) / (0.08664035 * 8.314471 * tc / pc), 1.0, 1e-6);
  EXPECT_EQ(read.values(8), 0.0);
  EXPECT_NEAR(read.values(9), slope, 1e-14);
  for (int k = 10; k <= 13; ++k) EXPECT_EQ(read.values(k), 0.0);
  EXPECT_NEAR(read.values(14), slope, 1e-14);
  EXPECT_NEAR(read.values(15), slope, 1e-14);
  // The reading itself stores nothing.
  EXPECT_EQ(cpa_sets.EOSA(kOne), 0.0);
  EXPECT_EQ(cpa_sets.EOSK(1, kOne), 0.0);

  // The slope below the critical point serves above it as well; 1e-35 itself counts as given here.
  cpa_sets.EOSK(1, kOne) = 0.7;
  cpa_sets.EOSA(kOne) = 1e-35;
  const KeyAnswer given = component_keys(kOne, model::cpa, action::information);
  EXPECT_EQ(given.values(6), 1e-35);
  EXPECT_EQ(given.values(9), 0.7);
  EXPECT_EQ(given.values(15), 0.7);
}

TEST_F(ComponentOverrides, AConstantThatNothingGivesReadsAsZero) {
  comp.TC(kOne) = comp.PC(kOne) = comp.OMEGA(kOne) = 0.0;
  EXPECT_EQ(component_keys(kOne, model::cpa, action::information).list(), std::vector<R8>(15, 0.0));
  EXPECT_FALSE(cpa_constants(kOne).DATAOK);
  R8 value = 1.0;
  SCPDB4(kOne, 5, value);
  EXPECT_EQ(value, 0.0);
}

TEST_F(ComponentOverrides, AnUnknownSectionOrComponentHasNoKeys) {
  setup.NUMH = 5;
  const I4 generation = setup.generation;
  for (const I4 act : {action::information, action::input, 0}) {
    for (const I4 section : {-1, 1, 23, 27, 46, 47, 85, 121, 133, 138, 139, 148})
      expect_refused(component_keys(1, section, act));
    for (const I4 i : {-1, 0, 6, 50, 51})
      for (const I4 section : {0, 41, 135, 147}) expect_refused(component_keys(i, section, act));
  }
  EXPECT_EQ(setup.generation, generation);
}

}  // namespace
}  // namespace talix::test
