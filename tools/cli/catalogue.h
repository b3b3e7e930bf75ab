// The catalogue of the data bank: names, codes and constants of its components.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace talix::cli {

struct CatalogueEntry {
  int number = 0;                          // catalogue number, the number of the record in the bank
  std::string code;                        // four characters, blanks kept
  std::string name;                        // as the catalogue writes it
  std::string cas;                         // CAS registry number
  std::string formula;                     // in the order of Hill
  std::optional<double> molar_mass_g_mol;  // [g/mol]
  std::optional<double> tc_K;              // critical temperature [K]
  std::optional<double> pc_bar;            // critical pressure [bar]
  std::optional<double> omega;             // acentric factor [-]
  std::optional<double> tb_K;              // boiling point at 1.01325 bar [K]
  std::vector<std::string> synonyms;
};

class Catalogue {
 public:
  // Reads catalogue.csv of an install directory; what the bank itself holds no record of is left out. Without that
  // file the catalogue calls of the library tell number, name and critical data. Throws UsageError where a file
  // cannot be read.
  static Catalogue read(const std::filesystem::path& install);
  explicit Catalogue(std::vector<CatalogueEntry> entries) : entries_(std::move(entries)) {}

  [[nodiscard]] const std::vector<CatalogueEntry>& entries() const { return entries_; }

  // The components of that number, code (with or without blanks), CAS number, name, synonym or formula (its atoms in
  // any order): the first of these that any component has, without regard to case.
  [[nodiscard]] std::vector<const CatalogueEntry*> matches(std::string_view key) const;

  // The one match. Nothing where there is none, or more than one.
  [[nodiscard]] const CatalogueEntry* find(std::string_view key) const;

  // The same, but throws UsageError with all matches where there are several, with the nearest names where there
  // is none.
  [[nodiscard]] const CatalogueEntry& get(std::string_view key) const;

  // Entries with the text in a name, synonym, code, CAS number or formula, with the atoms of that formula, or with
  // that number: exact matches
  // first, then names that begin with it, then the others; by number within each group. An empty text gives
  // all.
  [[nodiscard]] std::vector<const CatalogueEntry*> search(std::string_view text) const;

  // At most `most` entries that look like the key, the likeliest first.
  [[nodiscard]] std::vector<const CatalogueEntry*> nearest(std::string_view key, std::size_t most) const;

  // A comma separated list of components. Names that hold commas themselves (2,2-dimethylbutane) are
  // recognised: at each place the longest run of parts that names a component is taken. A list with
  // semicolons is split at those.
  [[nodiscard]] std::vector<const CatalogueEntry*> parse_list(std::string_view text) const;

 private:
  std::vector<CatalogueEntry> entries_;
};

}  // namespace talix::cli
