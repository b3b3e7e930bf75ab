#include "cli/components_report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "cli/json_number.h"
#include "cli/words.h"

namespace talix::cli {

namespace {

// Columns of molar mass, critical temperature and pressure, acentric factor, boiling point.
constexpr std::array<std::size_t, 5> kValueWidths = {8, 8, 10, 9, 8};
constexpr std::size_t kAllValues = 8 + 8 + 10 + 9 + 8;

std::string decimals(const std::optional<double>& value, int places) {
  if (!value) return "-";
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f", places, *value);
  return text.data();
}

std::string exact(const std::optional<double>& value) { return value ? shortest(*value) : std::string(); }

}  // namespace

std::string components_table(const std::vector<const CatalogueEntry*>& entries) {
  std::size_t name_width = 16;
  for (const CatalogueEntry* const entry : entries)
    name_width = std::max(name_width, columns_of(entry->name));
  const auto row = [&](std::string_view number, std::string_view code, std::string_view name,
                       std::string_view cas, std::string_view formula,
                       const std::array<std::string, 5>& values) {
    std::string line = to_right(number, 4) + "  " + to_left(code, 4) + "  " + to_left(name, name_width) +
                       "  " + to_left(cas, 10) + "  " + to_left(formula, 9);
    for (std::size_t i = 0; i < values.size(); ++i) line += to_right(values[i], kValueWidths[i]);
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
  };
  std::string text = row("No.", "Code", "Name", "CAS", "Formula", {"M", "Tc", "Pc", "omega", "Tb"}) +
                     row("", "", "", "", "", {"g/mol", "K", "bar", "-", "K"});
  text += std::string(4 + 2 + 4 + 2 + name_width + 2 + 10 + 2 + 9 + kAllValues, '-') + "\n";
  for (const CatalogueEntry* const entry : entries) {
    text += row(std::to_string(entry->number), entry->code, entry->name, entry->cas, entry->formula,
                {decimals(entry->molar_mass_g_mol, 3), decimals(entry->tc_K, 2), decimals(entry->pc_bar, 3),
                 decimals(entry->omega, 4), decimals(entry->tb_K, 2)});
  }
  return text;
}

std::string components_json(const std::vector<const CatalogueEntry*>& entries) {
  using Json = nlohmann::ordered_json;
  Json list = Json::array();
  for (const CatalogueEntry* const entry : entries) {
    list.push_back({{"number", entry->number},
                    {"code", entry->code},
                    {"name", entry->name},
                    {"cas", entry->cas},
                    {"formula", entry->formula},
                    {"molar_mass_g_mol", json_number(entry->molar_mass_g_mol)},
                    {"tc_K", json_number(entry->tc_K)},
                    {"pc_bar", json_number(entry->pc_bar)},
                    {"omega", json_number(entry->omega)},
                    {"tb_K", json_number(entry->tb_K)}});
  }
  return list.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string components_csv(const std::vector<const CatalogueEntry*>& entries) {
  std::string text = "number,code,name,cas,formula,molar_mass_g_mol,tc_K,pc_bar,omega,tb_K\n";
  for (const CatalogueEntry* const entry : entries) {
    text += std::to_string(entry->number) + ",\"" + entry->code + "\"," + csv_field(entry->name) + "," +
            csv_field(entry->cas) + "," + csv_field(entry->formula) + "," + exact(entry->molar_mass_g_mol) +
            "," + exact(entry->tc_K) + "," + exact(entry->pc_bar) + "," + exact(entry->omega) + "," +
            exact(entry->tb_K) + "\n";
  }
  return text;
}

}  // namespace talix::cli
