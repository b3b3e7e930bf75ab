#include "bank/check.h"

#include <array>
#include <cmath>
#include <iostream>
#include <set>
#include <sstream>

#include "bank/accuracy.h"
#include "bank/check_exceptions.h"
#include "bank/check_transport.h"
#include "bank/dump.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

// Atomic masses in the order of the first nine element counts [g/mol].
constexpr std::array kAtomicMass{12.011, 1.008, 14.007, 15.999, 32.065, 18.998, 35.453, 79.904, 126.904};

// Bounds of single cells, for every component.
struct Bound {
  std::string_view field;
  double low;
  double high;
};
constexpr auto kBounds = std::to_array<Bound>({
    {"TC", 3, 4000},     {"PC", 0.1, 200},   {"VC", 0.02, 10}, {"OMEGA", -0.5, 3}, {"RMOLW", 1, 1500},
    {"ATBP", 1, 2000},   {"TMELT", 0, 1500}, {"RHO", 0, 30},   {"UOPK", 0, 60},    {"HCRAT", 0, 8},
    {"PACHOR", 0, 3000}, {"VLIQ25", 0, 5},   {"SL25", 0, 200}, {"HF", -1e7, 1e7},  {"SOFF", -1e4, 1e4},
    {"GF", -1e7, 1e7},   {"HCD", 0, 1e8},    {"HCW", 0, 1e8},  {"HVAP", 0, 5e5},   {"HFUS", 0, 5e5},
    {"DIPOLE", 0, 20},
});

// b at Tc/T of 1.04 where the fixed light-gas form takes over.
struct LightGas {
  std::string_view code;
  double b;
};
constexpr auto kLightGases =
    std::to_array<LightGas>({{"H2  ", 0.083814}, {"HE  ", 0.108219}, {"N2  ", 0.080835}});

// Collects the faults of one record.
class Record {
 public:
  Record(std::string file, std::size_t number, int bytes, std::vector<std::string>& faults)
      : where_(std::move(file) + ", record " + std::to_string(number) + " (byte offset " +
               std::to_string((number - 1) * static_cast<std::size_t>(bytes)) + ")"),
        faults_(faults) {}
  void fault(const std::string& what) { faults_.push_back(where_ + ": " + what); }
  void fault(std::string_view field, double value, std::string_view unit, const std::string& what) {
    std::ostringstream out;
    out << field << " is " << value;
    if (!unit.empty()) out << ' ' << unit;
    fault(out.str() + ", " + what);
  }

 private:
  std::string where_;
  std::vector<std::string>& faults_;
};

double real(const PureRecord& record, std::string_view field, int offset = 0) {
  return static_cast<double>(record.real(pure_field(field).cell + offset));
}

int integer(const PureRecord& record, std::string_view field, int offset = 0) {
  return record.integer(pure_field(field).cell + offset);
}

std::string texts(const PureRecord& record, std::string_view field) {
  const CellField& at = pure_field(field);
  return record.text(at.cell, at.cells);
}

// Whether the curves were fitted to data of the component.
bool fitted(const PureRecord& record) {
  const std::string basis = texts(record, "curves");
  return basis == "EOS " || basis == "COR ";
}

// One sigmoid of the curves at X = Tc/T: five constants from cell FIRST on.
double sigmoid(const PureRecord& record, int first, double x) {
  const auto p = [&](int i) { return static_cast<double>(record.real(first + i - 1)); };
  const double t = p(3) * (x - p(4));
  const double e = std::abs(t) > 50 ? std::abs(t) / 2 : std::log(2 * std::cosh(t / 2));
  return p(1) + (p(2) + p(5)) * t / 2 + (p(2) - p(5)) * e;
}

// The a curve above the critical temperature at X = Tc/T.
double rational(const PureRecord& record, int first, double x) {
  const auto p = [&](int i) { return static_cast<double>(record.real(first + i - 1)); };
  const double u = 1 - x;
  return ((p(3) * u + p(2)) * u + p(1)) / (1 + (p(5) * u + p(4)) * u);
}

void check_cells(const PureRecord& record, Record& out) {
  for (const CellField& field : pure_fields()) {
    for (int i = 0; i < field.cells; ++i) {
      const int cell = field.cell + i;
      if (field.kind == Kind::real && !std::isfinite(record.real(cell))) {
        out.fault(std::string(field.name) + ", cell " + std::to_string(cell) + ", is no finite number");
      }
    }
    if (field.kind != Kind::text) continue;
    for (const char c : record.text(field.cell, field.cells)) {
      if (c < ' ' || c > '~') {
        out.fault(std::string(field.name) + " holds a character that is not printable");
        break;
      }
    }
  }
  for (const Bound& bound : kBounds) {
    const double value = real(record, bound.field);
    if (!(value >= bound.low && value <= bound.high)) {
      std::ostringstream what;
      what << "outside " << bound.low << " to " << bound.high;
      out.fault(bound.field, value, pure_field(bound.field).unit, what.str());
    }
  }
}

void check_constants(const PureRecord& record, Record& out) {
  const double tc = real(record, "TC");
  const double boiling = real(record, "ATBP");
  if (!(boiling < tc)) out.fault("ATBP", boiling, "K", "not below the critical temperature");
  const double zc = real(record, "PC") * real(record, "VC") * 1e3 / (8.314471 * tc);
  if (!(zc > 0.1 && zc < 0.7)) out.fault("critical compressibility", zc, "", "outside 0.1 to 0.7");

  double mass = 0;
  for (int i = 0; i < 9; ++i) {
    mass += kAtomicMass.at(static_cast<std::size_t>(i)) * integer(record, "ELEM", i);
    if (integer(record, "ELEM", i) < 0) out.fault("an element count is negative");
  }
  const bool others = integer(record, "ELEM", 10) != 0;
  const double molar = real(record, "RMOLW");
  const bool deuterium = texts(record, "ICS") == "D2  " || texts(record, "ICS") == "D2O ";
  if (!others && !deuterium && !(std::abs(mass - molar) < 0.01 * molar + 0.01)) {
    out.fault("RMOLW", molar, "g/mol", "not the mass of the atoms, " + std::to_string(mass));
  }
  if (mass > 0 && others && !(mass < molar))
    out.fault("RMOLW", molar, "g/mol", "less than the mass of its atoms");
}

void check_curves(const PureRecord& record, Record& out) {
  const std::string basis = texts(record, "curves");
  if (!fitted(record) && basis != "GEN ") {
    out.fault("the basis of the curves is \"" + basis + "\", not EOS, COR or GEN");
  }
  const int a_cell = pure_field("PARABF 1-5").cell;
  const int b_cell = pure_field("PARABF 6-10").cell;
  const double critical = sigmoid(record, a_cell, 1);
  const double hot = rational(record, pure_field("PARABF 11-15").cell, 1 / 1.1);
  if (!(hot > 0.6 * critical && hot < critical)) {
    out.fault("a at 1.1 Tc", hot, "", "not 0.6 to 1 of a at the critical point, " + std::to_string(critical));
  }
  for (const double x : {1.0, 1.2, 1.5, 2.0, 2.5}) {
    const double a = sigmoid(record, a_cell, x);
    const double b = 0.01 * sigmoid(record, b_cell, x);
    if (!(a > 0.001 && a < 10)) out.fault("a at Tc/T of " + std::to_string(x), a, "", "outside 0.001 to 10");
    if (!(b > 0.005 && b < 0.2))
      out.fault("b at Tc/T of " + std::to_string(x), b, "", "outside 0.005 to 0.2");
  }
  for (const LightGas& gas : kLightGases) {
    const double b = 0.01 * sigmoid(record, b_cell, 1.04);
    if (texts(record, "ICS") == gas.code && fitted(record) && !(std::abs(b - gas.b) < 5e-5)) {
      out.fault("b at Tc/T of 1.04", b, "",
                "does not meet the fixed light-gas value " + std::to_string(gas.b));
    }
  }
}

void check_sets(const PureRecord& record, Record& out) {
  for (const CellField& field : pure_fields()) {
    if (field.flag == 0 || field.kind != Kind::real || record.integer(field.flag) == 0) continue;
    bool zero = true;
    for (int i = 0; i < field.cells; ++i) zero = zero && !(std::abs(record.real(field.cell + i)) > 0);
    if (zero && field.name != "DIPOLE")
      out.fault(std::string(field.name) + " is flagged as there, but all 0");
  }
  if (integer(record, "IPWA") != 0) {
    // The acentric factor is defined by the vapour pressure at 0.7 Tc.
    const double q = 0.3;
    const double ln = (real(record, "PWAG", 0) * q + real(record, "PWAG", 1) * std::pow(q, 1.5) +
                       real(record, "PWAG", 2) * std::pow(q, 3) + real(record, "PWAG", 3) * std::pow(q, 6)) /
                      0.7;
    const double omega = -1 - ln / std::log(10.0);
    // The source of the vapour pressure need not be that of OMEGA.
    const double given = real(record, "OMEGA");
    if (!(std::abs(omega - given) < 0.05 + 0.05 * std::abs(given))) {
      out.fault("acentric factor of PWAG", omega, "", "far off OMEGA, " + std::to_string(given));
    }
  }
  const int form = integer(record, "ICPIG");
  const bool given = std::abs(real(record, "COFHT")) > 0 || std::abs(real(record, "COFHT", 1)) > 0;
  if (given && form != 7) {
    const double t = 298.15;
    double cp = real(record, "COFHT", 6) / t + real(record, "COFHT", 7) / (t * t);
    for (int i = 0; i < 6; ++i) cp += real(record, "COFHT", i) * std::pow(t, i);
    if (!(cp > 15 && cp < 2000))
      out.fault("ideal-gas heat capacity at 298.15 K", cp, "J/(mol K)", "outside 15 to 2000");
  }
  for (int i = 0; i < 8; ++i) {
    const double subgroup = real(record, "UNIFAC", 2 * i);
    const double count = real(record, "UNIFAC", 2 * i + 1);
    if (!(subgroup >= 0 && subgroup < 161 && count >= 0 && (subgroup > 0) == (count > 0))) {
      out.fault("UNIFAC subgroup " + std::to_string(i + 1), subgroup, "",
                "no subgroup of 1 to 160 with its count");
    }
  }
}

void check_pure(const Bank& bank, std::vector<std::string>& faults) {
  std::set<std::string> codes;
  for (std::size_t i = 0; i < bank.pure.size(); ++i) {
    const PureRecord& record = bank.pure[i];
    const DirectoryEntry& entry = bank.directory[i];
    const std::string number = std::to_string(i + 1);
    const std::string standard = std::string(4 - number.size(), ' ') + number;
    Record out("purezan.out", i + 1, kPureBytes, faults);
    if (entry.standard != standard) out.fault("the directory has standard number \"" + entry.standard + '"');
    if (i == 0 || is_unused(record)) {
      if (entry.code != "    ")
        out.fault("the directory has code \"" + entry.code + "\" for a record without one");
      if (record.bytes != blank_pure_record().bytes) out.fault("a record without code is not blank");
      continue;
    }
    const std::string code = texts(record, "ICS");
    if (texts(record, "ICSTD") != standard)
      out.fault("its standard number is \"" + texts(record, "ICSTD") + '"');
    if (entry.code != code)
      out.fault("its code is \"" + code + "\", that of the directory \"" + entry.code + '"');
    if (!codes.insert(code).second) out.fault("its code \"" + code + "\" stands in the bank twice");
    if (integer(record, "IDDB") != static_cast<int>(i) + 1) out.fault("IDDB is not the number of the record");
    if (texts(record, "CIUPAC").front() == ' ') out.fault("its name is blank");
    check_cells(record, out);
    check_constants(record, out);
    check_curves(record, out);
    check_sets(record, out);
    for (const std::string& what : transport_faults(record)) out.fault(what);
  }
}

void check_pairs(const Bank& bank, std::vector<std::string>& faults) {
  for (std::size_t i = 0; i < bank.pairs.size(); ++i) {
    const PairRecord& pair = bank.pairs[i];
    Record out("binzan.out", i + 1, kPairBytes, faults);
    const std::int32_t key = pair.integer(1);
    if (!(key / 10000 >= 2 && key / 10000 < key % 10000 && key % 10000 <= kHighestNumber)) {
      out.fault("key " + std::to_string(key) + " is no pair of two component numbers in rising order");
    }
    const std::string digits = pair_text(pair, 17, 18);
    if (digits.find_first_not_of("0123456789") != std::string::npos || digits[0] == '0') {
      out.fault("the source digits \"" + digits + "\" read as: parameters missing");
    }
    const std::string state = pair_text(pair, 5, 5);
    bool zero = true;
    for (int k = 1; k <= 49; ++k) {
      const double value = static_cast<double>(pair_real(pair, k));
      if (!std::isfinite(value)) out.fault("real " + std::to_string(k) + " is no finite number");
      if (k <= 4) zero = zero && !(std::abs(value) > 0);
      if (k <= 4 && !(std::abs(value) <= (k % 2 == 1 ? 2.5 : 0.01))) {
        out.fault("parameter " + std::to_string(k), value, k % 2 == 1 ? "" : "1/K",
                  "too large for a pair parameter");
      }
    }
    if (state == "3" && !zero) out.fault("status 3 says no interaction, but a parameter is not 0");
  }
}

}  // namespace

std::vector<std::string> find_faults(const Bank& bank) {
  std::vector<std::string> faults;
  check_pure(bank, faults);
  check_pairs(bank, faults);
  return faults;
}

int check_main(const CheckOptions& options) {
  try {
    const std::filesystem::path folder = bank_folder(options.share);
    const Bank bank = read_bank(folder);
    ListedExceptions listed(options.data_dir);
    const std::vector<std::string> found = find_faults(bank);
    std::vector<std::string> faults = listed.unlisted(found);
    const std::size_t excused = found.size() - faults.size();
    if (!options.report.empty()) {
      const std::vector<std::string> more =
          write_accuracy_report(bank, options.data_dir, options.golden_dir, options.report);
      std::cout << "wrote " << options.report.string() << '\n';
      faults.insert(faults.end(), more.begin(), more.end());
    }
    for (const std::string& fault : faults)
      std::cerr << "talix-bank: " << folder.string() << '/' << fault << '\n';
    int with_fit = 0;
    int generalised = 0;
    for (const PureRecord& record : bank.pure) {
      with_fit += fitted(record);
      generalised += texts(record, "curves") == "GEN ";
    }
    std::cout << folder.string() << ": " << with_fit + generalised << " components (" << with_fit
              << " with fitted curves, " << generalised << " from the acentric factor), " << bank.pairs.size()
              << " pairs, " << excused << " listed exceptions, " << faults.size() << " faults\n";
    return faults.empty() ? 0 : 1;
  } catch (const BankError& error) {
    std::cerr << "talix-bank: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace talix::bank
