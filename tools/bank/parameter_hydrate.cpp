#include <array>
#include <map>

#include "bank/parameter_field.h"
#include "bank/parameter_files.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kTextCells = 10;
constexpr int kFirstFlag = 11;
constexpr int kFirstCoefficient = 26;
constexpr int kFirstLangmuir = 3;  // behind the three of the cell potential
constexpr std::size_t kCavities = 4;

// Cavities in the order of the coefficients, and where the flag of each stands among the four.
struct Cavity {
  const char* name;
  int flag;
};
constexpr std::array<Cavity, kCavities> kCavityOrder{
    {{"I_small", 0}, {"I_large", 2}, {"II_small", 1}, {"II_large", 3}}};

HydrateRecord former_record(const SourceTable& table, std::size_t row, const ParameterComponent& component) {
  HydrateRecord record;
  record.set_text(1, kTextCells, padded_text(component.name, 28) + component.cas);
  const auto coefficient = [&](int index, double value) {
    record.set_real(kFirstCoefficient + index, static_cast<float>(value));
  };
  coefficient(0, table.number(row, "core_radius_A", {"Angstrom", -2, 3}).value_or(0));
  coefficient(1, table.number(row, "sigma_A", {"Angstrom", 0.5, 8}).value_or(0));
  coefficient(2, table.number(row, "eps_over_k_K", {"K", 1, 1000}).value_or(0));
  for (std::size_t k = 0; k < kCavities; ++k) {
    const std::string cavity = kCavityOrder[k].name;
    const auto A = table.number(row, "A_" + cavity + "_K_per_bar", {"K/bar", 1e-20, 1e6});
    const auto B = table.number(row, "B_" + cavity + "_K", {"K", -1e4, 2e4});
    if (A.has_value() != B.has_value())
      table.fail(row, "B_" + cavity + "_K", "write both figures of a cavity or none");
    record.set_integer(kFirstFlag + kCavityOrder[k].flag, A ? 1 : 0);
    const int at = kFirstLangmuir + static_cast<int>(k);
    coefficient(at, A.value_or(0));
    coefficient(at + static_cast<int>(kCavities), B.value_or(0));
  }
  return record;
}

}  // namespace

void add_hydrate_formers(Bank& bank, const std::filesystem::path& data_dir) {
  const std::filesystem::path file = data_dir / "hydrate_formers.csv";
  std::map<int, HydrateRecord> records;
  std::map<int, std::string> codes;
  if (std::filesystem::exists(file)) {
    std::map<std::string, ParameterComponent> by_cas;
    for (const ParameterComponent& component : parameter_components(bank.pure))
      by_cas.emplace(component.cas, component);
    const SourceTable table = SourceTable::read(file);
    for (std::size_t row = 0; row < table.rows(); ++row) {
      const auto found = by_cas.find(table.text(row, "cas"));
      if (found == by_cas.end()) continue;
      const ParameterComponent& component = found->second;
      if (!records.emplace(component.number, former_record(table, row, component)).second)
        table.fail(row, "cas", "this component stands in the table already");
      codes[component.number] = component.code;
    }
  }
  for (const auto& [number, record] : records) {
    bank.hydrate.push_back(record);
    bank.hydrate_directory.push_back({integer_text(number, 4), codes[number]});
  }
  if (!bank.hydrate.empty()) return;
  // Without a former the file has one entry that is no component.
  HydrateRecord own;
  own.set_text(1, kTextCells, kEdition);
  bank.hydrate.push_back(own);
  bank.hydrate_directory.push_back({integer_text(1, 4), "    "});
}

}  // namespace talix::bank
