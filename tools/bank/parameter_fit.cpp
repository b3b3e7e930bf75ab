#include "bank/parameter_fit.h"

#include <cstdio>
#include <fstream>
#include <iostream>

#include "bank/tables.h"

namespace talix::bank {

namespace {

namespace fs = std::filesystem;

template <class... Values>
std::string formatted(const char* format, Values... values) {
  char text[256];
  std::snprintf(text, sizeof text, format, values...);
  return text;
}

void write_table(const fs::path& file, const std::string& content) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << content;
  out.close();
  if (!out) throw BankError(file.string() + ": cannot be written; check the directory and the space left");
}

std::string polar_table(const std::vector<PolarFit>& fits) {
  std::string text =
      "# sqrt(alpha) = 1 + m (1 - sqrt(Tr)) - p1 (1 - sqrt(Tr))(0.7 - Tr) of form 4, m = 0.48 + 1.57 omega - "
      "0.176 omega^2;\n"
      "# form 2 is without p1. Fitted to the saturation lines of the other tables; mean deviations of the "
      "vapour pressure\n"
      "# in percent with p1 and without. Where the acentric factor of the component does not go with its "
      "vapour pressure\n"
      "# the set has one of its own. Made by talix-bank parameters; do not edit by hand.\n"
      "number,code,tc_K,pc_bar,omega,omega_source,form,p1,points,tmin_K,tmax_K,mean_pct,plain_pct\n";
  for (const PolarFit& fit : fits)
    text += formatted("%d,\"%s\",%.9g,%.9g,%.9g,%s,%d,%.4f,%d,%.2f,%.2f,%.2f,%.2f\n", fit.number,
                      fit.code.c_str(), fit.tc, fit.pc, fit.omega, fit.own_omega ? "fitted" : "component",
                      fit.form, fit.p1, fit.points, fit.tmin, fit.tmax, fit.mean, fit.plain);
  return text;
}

std::string former_table(const std::vector<FormerFit>& fits) {
  std::string text =
      "# Hydrate formers: cell potential as published, and Langmuir coefficients C = (A/T) exp(B/T), C in "
      "1/bar, for the\n"
      "# water constants of the library. Fitted to hydrate_points.csv where points stand, otherwise matched; "
      "mean deviation\n"
      "# of the fugacity in percent. Made by talix-bank parameters; do not edit by hand.\n"
      "cas,former,core_radius_A,sigma_A,eps_over_k_K";
  for (const char* cavity : {"I_small", "I_large", "II_small", "II_large"})
    text += formatted(",A_%s_K_per_bar,B_%s_K", cavity, cavity);
  text += ",points_I,mean_I_pct,points_II,mean_II_pct\n";
  for (const FormerFit& fit : fits) {
    text += fit.cas + "," + fit.former + "," + fit.core + "," + fit.sigma + "," + fit.epsilon;
    for (const auto& structure : fit.cavity)
      for (const Langmuir& cavity : structure)
        text += cavity.A > 0 ? formatted(",%.8g,%.2f", cavity.A, cavity.B) : std::string(",,");
    for (int structure = 0; structure < 2; ++structure)
      text += fit.points[structure] > 0 ? formatted(",%d,%.1f", fit.points[structure], fit.mean[structure])
                                        : std::string(",,");
    text += "\n";
  }
  return text;
}

}  // namespace

int parameter_fit_main(const ParameterFitOptions& options) {
  try {
    const std::vector<PolarFit> polar = fit_polar(options.data_dir);
    write_table(options.data_dir / "srk_polar.csv", polar_table(polar));
    double with = 0, without = 0;
    int fitted = 0;
    for (const PolarFit& fit : polar) {
      if (fit.form != 4) continue;
      ++fitted;
      with += fit.mean;
      without += fit.plain;
    }
    std::cout << formatted(
        "srk_polar.csv: %d components, %d with a polar constant; mean deviation of the vapour "
        "pressure %.2f %%, without it %.2f %%\n",
        static_cast<int>(polar.size()), fitted, with / fitted, without / fitted);
    const std::vector<FormerFit> formers = fit_formers(options.data_dir);
    write_table(options.data_dir / "hydrate_formers.csv", former_table(formers));
    const MixtureCheck mixtures = check_mixtures(options.data_dir, formers);
    std::cout << formatted(
        "hydrate_formers.csv: %d formers; %d points of gas mixtures: mean deviation of the pressure "
        "%.1f %%, bias %.1f %%\n",
        static_cast<int>(formers.size()), mixtures.points, mixtures.mean, mixtures.bias);
    return 0;
  } catch (const BankError& error) {
    std::cerr << "talix-bank: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace talix::bank
