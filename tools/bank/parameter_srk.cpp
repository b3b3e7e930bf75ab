#include <array>
#include <map>

#include "bank/parameter_field.h"
#include "bank/parameter_files.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kHeaderWidth = 4;
constexpr int kClosingKey = 9999;
constexpr int kTextColumns = 28;
constexpr int kSimSciColumns = 71;
constexpr int kAspenColumns = 74;

constexpr int kSoaveAlpha = 1;  // forms of the alpha function
constexpr int kTwuAlpha = 6;
constexpr int kPlainAlpha = 2;

// Slope of the alpha function of Soave (1972) from the acentric factor.
double soave_slope(double omega) { return 0.480 + omega * (1.574 - 0.176 * omega); }

std::string keyed(int number) { return " " + integer_text(number, 4); }

struct Twu {
  double L, M, N;
};

std::map<std::string, Twu> read_twu(const std::filesystem::path& data_dir) {
  const SourceTable table = SourceTable::read(data_dir / "srk_twu.csv");
  std::map<std::string, Twu> sets;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const Twu set{table.required(row, "L", {"-", -20, 20}), table.required(row, "M", {"-", -20, 20}),
                  table.required(row, "N", {"-", -20, 20})};
    if (!sets.emplace(table.text(row, "cas"), set).second)
      table.fail(row, "cas", "this component stands in the table already");
  }
  return sets;
}

std::string simsci_record(int number, const std::string& name, int form,
                          const std::array<std::string, 3>& values) {
  std::string text = keyed(number) + padded_text(name, kTextColumns) + integer_text(form, 2);
  for (const std::string& value : values) text += "      " + value;
  return text;
}

struct Polar {
  double tc, pc, omega;  // [K], [bar], [-]
  int form;
  double p1;
};

std::string aspen_record(int number, const Polar& set) {
  std::string text = keyed(number);
  text +=
      "   " + real_text(set.tc, 6, 2) + "   " + real_text(set.pc, 6, 2) + "   " + real_text(set.omega, 6, 4);
  text += " " + integer_text(set.form, 2);
  for (const double value : {set.p1, 0.0, 0.0}) text += "      " + real_text(value, 7, 4);
  return text;
}

}  // namespace

std::string simsci_text(const std::filesystem::path& data_dir, std::span<const ParameterComponent> components,
                        std::size_t& records) {
  const std::map<std::string, Twu> sets = read_twu(data_dir);
  KeyedFile file(kSimSciColumns, kHeaderWidth);
  for (const ParameterComponent& component : components) {
    const auto found = sets.find(component.cas);
    if (found != sets.end()) {
      const Twu& set = found->second;
      file.add(component.number,
               simsci_record(component.number, component.name, kTwuAlpha,
                             {exact_text(set.L, 6, 4), exact_text(set.M, 6, 4), exact_text(set.N, 6, 4)}));
    } else {
      file.add(component.number, simsci_record(component.number, component.name, kSoaveAlpha,
                                               {real_text(soave_slope(component.omega), 6, 4),
                                                real_text(0, 6, 4), real_text(0, 6, 4)}));
    }
  }
  records = file.size();
  const std::string zero = real_text(0, 6, 4);
  return file.text(simsci_record(kClosingKey, "", kSoaveAlpha, {zero, zero, zero}));
}

std::string aspen_text(const std::filesystem::path& data_dir, std::span<const ParameterComponent> components,
                       std::size_t& records) {
  const SourceTable table = SourceTable::read(data_dir / "srk_polar.csv");
  std::map<int, Polar> sets;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const Polar set{table.required(row, "tc_K", {"K", 1, 4000}),
                    table.required(row, "pc_bar", {"bar", 1, 2000}),
                    table.required(row, "omega", {"-", -0.5, 3}), table.integer(row, "form", 1, 5),
                    table.required(row, "p1", {"-", -20, 20})};
    if (!sets.emplace(table.integer(row, "number", 2, kHighestNumber), set).second)
      table.fail(row, "number", "this component stands in the table already");
  }
  KeyedFile file(kAspenColumns, kHeaderWidth);
  for (const ParameterComponent& component : components) {
    // A component that was not fitted has the alpha function of its acentric factor.
    const auto found = sets.find(component.number);
    const Polar plain{component.tc, component.pc, component.omega, kPlainAlpha, 0};
    file.add(component.number, aspen_record(component.number, found != sets.end() ? found->second : plain));
  }
  records = file.size();
  return file.text(aspen_record(kClosingKey, {1, 1, 0, kPlainAlpha, 0}));
}

}  // namespace talix::bank
