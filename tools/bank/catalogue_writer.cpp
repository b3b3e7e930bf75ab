#include "bank/catalogue_writer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

namespace talix::bank {

namespace {

constexpr double kPascalPerBar = 1e5;

// In the fewest digits that give the same value back.
std::string digits(double value) {
  std::array<char, 64> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} ? std::string(text.data(), end) : std::string();
}

std::string digits(std::optional<double> value) { return value ? digits(*value) : std::string(); }

// In quotes where the text holds a comma or a quote.
std::string field(std::string_view text) {
  if (text.find_first_of(",\"") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + '"';
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The synonyms and the short name, which is one more name that users type. What is the name of another component is
// none: sources list a few isomers under each other's.
std::string names_of(const SourceTable& table, std::size_t row, const std::set<std::string>& main_names) {
  std::istringstream synonyms(table.text(row, "synonyms") + ";" + table.text(row, "short_name"));
  const std::string own = lowered(table.text(row, "name"));
  std::string names;
  for (std::string name; std::getline(synonyms, name, ';');) {
    const std::string key = lowered(name);
    if (name.empty() || (key != own && main_names.contains(key))) continue;
    names += (names.empty() ? "" : ";") + name;
  }
  return names;
}

}  // namespace

void write_catalogue(const std::filesystem::path& data_dir, const std::filesystem::path& share_dir) {
  write_catalogue(SourceTable::read(data_dir / "components.csv"), share_dir);
}

void write_catalogue(const SourceTable& table, const std::filesystem::path& share_dir) {
  std::filesystem::create_directories(share_dir);
  const std::filesystem::path file = share_dir / "catalogue.csv";
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out << "number,code,name,cas,formula,molar_mass_g_mol,tc_K,pc_bar,omega,tb_K,synonyms\n";
  std::set<std::string> names;
  for (std::size_t row = 0; row < table.rows(); ++row) names.insert(lowered(table.text(row, "name")));
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::optional<double> pascal = table.number(row, "pc_Pa", {"Pa", 1, 1e10});
    out << table.integer(row, "number", 2, 1246)                              //
        << ",\"" << table.text(row, "code") << '"'                            //
        << ',' << field(table.text(row, "name"))                              //
        << ',' << field(table.text(row, "cas"))                               //
        << ',' << field(table.text(row, "formula"))                           //
        << ',' << digits(table.number(row, "mw", {"g/mol", 0.1, 1e5}))        //
        << ',' << digits(table.number(row, "tc_K", {"K", 1, 1e5}))            //
        << ',' << (pascal ? digits(*pascal / kPascalPerBar) : std::string())  //
        << ',' << digits(table.number(row, "omega", {"-", -1, 10}))           //
        << ',' << digits(table.number(row, "tb_K", {"K", 1, 1e4}))            //
        << ',' << field(names_of(table, row, names)) << '\n';
  }
  out.close();
  if (!out) throw BankError(file.string() + ": cannot be written; check the directory and the space left");
}

}  // namespace talix::bank
