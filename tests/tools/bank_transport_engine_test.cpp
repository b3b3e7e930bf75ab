// The routines of the library give the sets of every component of the bank the meaning with which they were fitted.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "api/vlinit.h"
#include "bank/fit_csv.h"
#include "bank/transport_forms.h"
#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/shmix_driver.h"
#include "fastprops/fast_density.h"
#include "fastprops/flash_record.h"
#include "liquid/s0r_saturated_density.h"
#include "support/flash_case.h"
#include "transport/stc_liquid.h"
#include "transport/svi_liquid_corresponding.h"
#include "transport/svi_liquid_standard.h"

namespace talix {
namespace {

using bank::SetValues;

template <int N>
SetValues set_of(const Mat<R8, kMaxComponents, N>& table, int i) {
  SetValues c{};
  for (int k = 1; k <= N && k <= static_cast<int>(c.size()); ++k)
    c.at(static_cast<std::size_t>(k - 1)) = table(i, k);
  return c;
}

std::vector<int> numbers_of_the_bank() {
  bank::CsvTable table;
  EXPECT_TRUE(bank::read_csv(std::string(TALIX_TEST_SOURCE) + "/data/components.csv", table));
  std::vector<int> numbers;
  for (std::size_t row = 0; row < table.rows.size(); ++row)
    numbers.push_back(static_cast<int>(table.number(row, "number", 0.0)));
  return numbers;
}

// Components that have a row of the set in data/transport.csv.
int rows_of_set(const std::string& set) {
  bank::CsvTable table;
  EXPECT_TRUE(bank::read_csv(std::string(TALIX_TEST_SOURCE) + "/data/transport.csv", table));
  int rows = 0;
  for (std::size_t row = 0; row < table.rows.size(); ++row)
    if (table.text(row, "set") == set) ++rows;
  return rows;
}

// Loads all components in turn and hands their positions to VISIT.
template <class Visit>
void for_every_component(Visit visit) {
  const std::vector<int> numbers = numbers_of_the_bank();
  ASSERT_GE(numbers.size(), 950U);
  for (std::size_t first = 0; first < numbers.size(); first += kMaxComponents) {
    const int count = static_cast<int>(std::min<std::size_t>(kMaxComponents, numbers.size() - first));
    test::fresh_library();
    Vec<I4, kMaxComponents> list{};
    for (int i = 1; i <= count; ++i) list(i) = numbers[first + static_cast<std::size_t>(i) - 1];
    I4 failed = -1;
    VLINIT(count, list, failed);
    ASSERT_EQ(failed, 0);
    for (int i = 1; i <= count; ++i) visit(i);
  }
}

constexpr double kReduced[] = {0.45, 0.6, 0.75, 0.9, 0.97};

TEST(BankInTheLibrary, FrostKalkwarfSetsSolveInBothLayers) {
  for_every_component([](int i) {
    const std::string name{comp.CMFNAM(i).view()};
    const SetValues c = set_of(comp.PSAT, i);
    for (const double u : kReduced) {
      const R8 T = u * comp.TC(i);
      const double expected = 1e6 * bank::psat_pressure(c, T);
      R8 ps = 0.0, dps = 0.0;
      I4 nfail = 0;
      SPSAT0(T, 0.0, i, logical(true), logical(true), method::frost_kalkwarf, ps, dps, nfail);
      EXPECT_EQ(nfail, status::ok) << name << " at " << u;
      EXPECT_NEAR(ps / expected, 1.0, 1e-5) << name << " at " << u;
      EXPECT_GT(dps, 0.0) << name << " at " << u;
      FlashVec fast{};
      Message message{};
      FKW(i, static_cast<R4>(T), fl.PC, fl.TC, fl.NAME, fl.CP0, fast, message);
      EXPECT_NEAR(static_cast<double>(fast(i)) * 1e5 / expected, 1.0, 2e-3) << name << " at " << u;
    }
  });
}

TEST(BankInTheLibrary, LiquidDensitiesAreTheSameInBothLayers) {
  for_every_component([](int i) {
    const std::string name{comp.CMFNAM(i).view()};
    const SetValues dlip = set_of(comp.DLIP, i), ddip = set_of(comp.DDIP, i);
    for (const double u : kReduced) {
      const R8 T = u * comp.TC(i);
      const double by_form = comp.IDLI(i) != 0 ? bank::dlip_density(dlip, comp.TC(i), T)
                                               : bank::ddip_density(ddip, comp.RMOLW(i), T);
      R8 density = 0.0, slope = 0.0;
      I4 nfail = 0;
      S0RSC1(T, 1e5, i, logical(true), logical(true), method::riedel, density, slope, nfail);
      EXPECT_EQ(nfail, status::ok) << name;
      EXPECT_NEAR(density / by_form, 1.0, 1e-6) << name << " at " << u;
      EXPECT_LT(slope, 0.0) << name << " at " << u;
      FlashVec fast{};
      RHO(i, static_cast<R4>(T), fl.VC, fl.TC, fl.AMW, fl.CDEN, fast);
      // Where the engine takes the other set, both agree as far as the data go, to 0.77 Tc.
      if (comp.IDLI(i) == 0 && u > 0.77) continue;
      EXPECT_NEAR(static_cast<double>(fast(i)) / density, 1.0, comp.IDLI(i) != 0 ? 1e-4 : 0.02)
          << name << " at " << u;
    }
  });
}

TEST(BankInTheLibrary, ViscositySetsReadAsFitted) {
  int with_set = 0, with_pressure_set = 0;
  for_every_component([&](int i) {
    const std::string name{comp.CMFNAM(i).view()};
    if (comp.IVIL(i) == 0) return;
    ++with_set;
    const R8 T = 0.6 * comp.TC(i);
    const double expected = bank::vil_viscosity(comp.IVIL(i), set_of(comp.VIL, i), T);
    R8 ln_eta = 0.0;
    I4 nfail = 0;
    SVISO0(T, 1e5, i, ln_eta, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    EXPECT_NEAR(std::exp(ln_eta) / expected, 1.0, 1e-6) << name;
    if (comp.IQISS(i) == 0) return;
    ++with_pressure_set;
    // Both relations fit the same source, each inside the range of the pressure set.
    const R8 middle = 0.5 * (comp.SS(i, 5) + comp.SS(i, 6));
    SVISS2(middle, 1e5, i, ln_eta, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    EXPECT_NEAR(std::exp(ln_eta) / bank::vil_viscosity(comp.IVIL(i), set_of(comp.VIL, i), middle), 1.0, 0.11)
        << name;
    R8 compressed = 0.0;
    SVISS2(middle, 100e5, i, compressed, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    EXPECT_GT(compressed, ln_eta) << name;
    EXPECT_LT(compressed, ln_eta + 0.5) << name;
    SVISS2(comp.SS(i, 6) + 1.0, 1e5, i, ln_eta, nfail);
    EXPECT_NE(nfail, status::ok) << name;
  });
  EXPECT_EQ(with_set, rows_of_set("VIL"));
  EXPECT_GT(with_set, 700);
  EXPECT_GE(with_pressure_set, 600);
}

TEST(BankInTheLibrary, ConductivitySetsReadAsFitted) {
  int as_fitted = 0, heavy = 0;
  for_every_component([&](int i) {
    const std::string name{comp.CMFNAM(i).view()};
    const bool light = comp.NOTRY(i) == 0 && comp.ELEM(i, 1) <= 5;
    if (comp.ITCL(i) == 0 || light || comp.RMOLW(i) < 3.0) return;
    const R8 T = 0.7 * comp.TC(i);
    R8 lambda = 0.0;
    I4 nfail = 0;
    STCCM1(T, 1e5, i, lambda, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    // Above 20 atoms of carbon one line serves all, whatever the set says.
    if (comp.ELEM(i, 1) > 20) {
      ++heavy;
      EXPECT_NEAR(lambda, 0.1337 - 0.000142 * (T - 273.15), 1e-8) << name;
      return;
    }
    ++as_fitted;
    EXPECT_NEAR(lambda / bank::tcl_conductivity(set_of(comp.TCL, i), T), 1.0, 1e-6) << name;
  });
  EXPECT_GT(as_fitted, 700);
  EXPECT_GE(heavy, 10);
}

TEST(BankInTheLibrary, CorrespondingStatesSetsReadAsFitted) {
  // Carbon dioxide, nitrogen, methane, n-hexane, n-decane, cyclohexane, benzene, toluene.
  for (const int number : {4, 15, 20, 28, 116, 232, 277, 278}) {
    test::fresh_library();
    Vec<I4, kMaxComponents> list{};
    list(1) = number;
    I4 failed = -1;
    VLINIT(1, list, failed);
    ASSERT_EQ(failed, 0);
    const std::string name{comp.CMFNAM(1).view()};
    EXPECT_NE(comp.ILVT(1), 0) << name;
    CompVec x{};
    x(1) = 1.0;
    const R8 T = 0.7 * comp.TC(1), P = 1e5;
    const SetValues c = set_of(comp.PARL2, 1);
    R8 value = 0.0;
    I4 nfail = 0;
    SVILI0(x, P, T, 1, value, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    EXPECT_NEAR(value / bank::parl2_viscosity(c, comp.RMOLW(1), T, P), 1.0, 1e-6) << name;
    STCLI0(x, P, T, 1, value, nfail);
    EXPECT_EQ(nfail, status::ok) << name;
    EXPECT_NEAR(value / bank::parl2_conductivity(c, comp.RMOLW(1), T, P), 1.0, 1e-6) << name;
  }
}

}  // namespace
}  // namespace talix
