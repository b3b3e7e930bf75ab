// The group tables as the library loads them, put into the published equations: the activity coefficients of an
// independent program come out, so numbers, order of the indices and numbering of the groups are right.
#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "bank/tables.h"
#include "database/component_record.h"
#include "database/database_fixture.h"
#include "database/sdb_unifac.h"
#include "liquid/unifac_record.h"

namespace talix::test {
namespace {

using bank::SourceTable;

struct Variant {
  const char* table;
  I4 code;
  double power;     // of the volume in the combinatorial part
  bool staverman;   // with the term of Staverman and Guggenheim
  int interaction;  // form of psi: 1 exp(-a/T), 2 exp(-(a + bT + cT2)/T), 3 around 298.15 K
};
constexpr Variant kVariants[] = {{"original", model::unifac, 1.0, true, 1},
                                 {"dortmund", model::unifac_dm, 0.75, true, 2},
                                 {"lyngby", model::lyngby_unifac, 2.0 / 3.0, false, 3},
                                 {"linear", model::linear_unifac, 1.0, true, 3}};

std::vector<double> numbers(const std::string& text) {
  std::istringstream in(text);
  std::vector<double> result;
  for (double value; in >> value;) result.push_back(value);
  return result;
}

double psi(const Variant& variant, I4 n, I4 m, double T) {
  const auto set = [&](int k) { return static_cast<double>(unifac.AMNINT(n, m, k)); };
  switch (variant.interaction) {
    case 1:
      return std::exp(-set(1) / T);
    case 2:
      return std::exp(-(set(1) + set(2) * T + set(3) * T * T) / T);
    default: {
      constexpr double T0 = 298.15;
      return std::exp(-(set(1) + set(2) * (T - T0) + set(3) * (T * std::log(T0 / T) + T - T0)) / T);
    }
  }
}

// Logarithms of the group activity coefficients for the group amounts of one mixture.
std::vector<double> group_logarithms(const Variant& variant, const std::vector<double>& amounts, double T) {
  const auto n = amounts.size();
  std::vector<double> theta(n), sums(n), result(n);
  double total = 0;
  const auto number = [](std::size_t k) { return unifac.SUBVEC(static_cast<int>(k) + 1); };
  const auto surface = [&](std::size_t k) { return static_cast<double>(unifac.QSBGRP(number(k))); };
  const auto pair = [&](std::size_t k, std::size_t l) {
    return psi(variant, unifac.IMNGRP(number(k)), unifac.IMNGRP(number(l)), T);
  };
  for (std::size_t k = 0; k < n; ++k) total += theta[k] = amounts[k] * surface(k);
  for (double& value : theta) value /= total;
  for (std::size_t l = 0; l < n; ++l)
    for (std::size_t k = 0; k < n; ++k) sums[l] += theta[k] * pair(k, l);
  for (std::size_t k = 0; k < n; ++k) {
    double last = 0;
    for (std::size_t m = 0; m < n; ++m) last += theta[m] * pair(k, m) / sums[m];
    result[k] = surface(k) * (1 - std::log(sums[k]) - last);
  }
  return result;
}

class GroupTables : public DatabaseTest {
 protected:
  GroupTables() {
    I4 NFAIL = 0;
    SSYAO2(install_directory() + "\\Zandor\\", NFAIL);
    const SourceTable table =
        SourceTable::read(std::filesystem::path(TALIX_TEST_SOURCE) / "data" / "unifac_subgroups.csv");
    for (std::size_t row = 0; row < table.rows(); ++row)
      numbering[{table.text(row, "table"), table.integer(row, "published_subgroup", 1, 300)}] =
          table.integer(row, "subgroup", 1, 160);
  }
  // Puts the groups of a mixture into the component record; gives the number of components.
  I4 set_groups(const std::string& table, const std::string& groups) {
    std::istringstream components(groups);
    std::string component;
    I4 i = 0;
    while (std::getline(components, component, ';')) {
      std::istringstream items(component);
      comp.NGRP(++i) = 0;
      for (std::string item; items >> item;) {
        const std::size_t colon = item.find(':');
        const I4 k = ++comp.NGRP(i);
        comp.GRPTYP(i, k) = numbering.at({table, std::stoi(item.substr(0, colon))});
        comp.GRPNUM(i, k) = std::stod(item.substr(colon + 1));
      }
    }
    return i;
  }

  std::map<std::pair<std::string, int>, int> numbering;
};

TEST_F(GroupTables, ActivityCoefficientsOfAnIndependentProgram) {
  const SourceTable cases = SourceTable::read(std::filesystem::path(TALIX_TEST_SOURCE) / "tests" / "golden" /
                                              "unifac_activity.csv");
  ASSERT_EQ(cases.rows(), 67U);
  for (std::size_t row = 0; row < cases.rows(); ++row) {
    SCOPED_TRACE(cases.text(row, "case") + " " + cases.text(row, "mixture"));
    const std::string& table = cases.text(row, "table");
    const Variant& variant = *std::find_if(std::begin(kVariants), std::end(kVariants),
                                           [&](const Variant& v) { return v.table == table; });
    I4 NFAIL = 0;
    SDBUF0(variant.code, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);
    const I4 count = set_groups(table, cases.text(row, "groups"));
    SUFAO3(count, variant.code, NFAIL);
    ASSERT_EQ(NFAIL, status::ok);

    const double T = cases.required(row, "T_K", {"K", 100, 1000});
    const std::vector<double> x = numbers(cases.text(row, "x"));
    const std::vector<double> combinatorial = numbers(cases.text(row, "ln_gamma_combinatorial"));
    const std::vector<double> residual = numbers(cases.text(row, "ln_gamma_residual"));
    ASSERT_EQ(x.size(), static_cast<std::size_t>(count));
    std::vector<double> amounts(static_cast<std::size_t>(unifac.NSUB));
    double power = 0, volume = 0, surface = 0;
    for (I4 i = 1; i <= count; ++i) {
      const double xi = x[static_cast<std::size_t>(i - 1)];
      for (I4 k = 1; k <= unifac.NSUB; ++k)
        amounts[static_cast<std::size_t>(k - 1)] += xi * static_cast<double>(unifac.SUBGRP(i, k));
      power += xi * std::pow(unifac.RTOT(i), variant.power);
      volume += xi * unifac.RTOT(i);
      surface += xi * unifac.QTOT(i);
    }
    const std::vector<double> mixed = group_logarithms(variant, amounts, T);
    for (I4 i = 1; i <= count; ++i) {
      const double phi = std::pow(unifac.RTOT(i), variant.power) / power;
      double part = 1 - phi + std::log(phi);
      const double ratio = unifac.RTOT(i) / volume / (unifac.QTOT(i) / surface);
      if (variant.staverman) part -= 5 * unifac.QTOT(i) * (1 - ratio + std::log(ratio));
      EXPECT_NEAR(part, combinatorial[static_cast<std::size_t>(i - 1)], 2e-6);

      std::vector<double> own(amounts.size());
      for (I4 k = 1; k <= unifac.NSUB; ++k)
        own[static_cast<std::size_t>(k - 1)] = static_cast<double>(unifac.SUBGRP(i, k));
      const std::vector<double> pure = group_logarithms(variant, own, T);
      double rest = 0;
      for (std::size_t k = 0; k < own.size(); ++k)
        if (own[k] > 0) rest += own[k] * (mixed[k] - pure[k]);
      EXPECT_NEAR(rest, residual[static_cast<std::size_t>(i - 1)], 2e-6);
    }
  }
}

}  // namespace
}  // namespace talix::test
