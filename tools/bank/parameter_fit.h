// talix-bank parameters: the tables of data/ that are fitted for the parameter files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace talix::bank {

struct ParameterFitOptions {
  std::filesystem::path data_dir = "data";
};

// Polar constant of one component for the cubic with critical data of its own.
struct PolarFit {
  int number;
  std::string code;
  double tc, pc, omega;  // as the file holds them [K], [bar], [-]
  bool own_omega;        // the acentric factor was fitted with the constant
  int form;              // of the alpha function: 4, or 2 where no constant is fitted
  double p1;             // [-]
  int points;
  double tmin, tmax;   // range of the fit [K]
  double mean, plain;  // mean deviation of the vapour pressure with and without the constant [%]
};

// Fits to the saturation lines of DATA_DIR that are no estimates. Throws BankError for a fault in a table.
std::vector<PolarFit> fit_polar(const std::filesystem::path& data_dir);

// Langmuir coefficients C = (A/T) exp(B/T) of a former in one cavity [K/bar], [K]; A is 0 where it does not enter.
struct Langmuir {
  double A, B;
};

// A hydrate former: its cell potential as published and its coefficients for the water constants of the library.
struct FormerFit {
  std::string cas, former;
  std::string core, sigma, epsilon;  // as the table has them, empty for none
  Langmuir cavity[2][2];             // structure I and II, small and large
  int points[2];                     // measured points of each structure that were used
  double mean[2];                    // mean deviation of the fugacity of the former in them [%]
};

// Fits to the measured points of DATA_DIR/hydrate_points.csv. Throws BankError for a fault in a table.
std::vector<FormerFit> fit_formers(const std::filesystem::path& data_dir);

// Measured points of gas mixtures, none of which is used in a fit, against the formers.
struct MixtureCheck {
  int points;
  double mean, bias;  // deviation of the pressure, without and with its sign [%]
};
MixtureCheck check_mixtures(const std::filesystem::path& data_dir, const std::vector<FormerFit>& fits);

// Writes srk_polar.csv and hydrate_formers.csv; prints what was made. Gives the exit code: 0, or 1 after a fault.
int parameter_fit_main(const ParameterFitOptions& options);

}  // namespace talix::bank
