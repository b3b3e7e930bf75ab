#include "cli/mixture_options.h"

namespace talix::cli {

void add_mixture(CLI::App& command, MixtureOptions& options) {
  command
      .add_option("--comp", options.components,
                  "components with commas between: name, synonym, four-character code, CAS number or "
                  "catalogue number")
      ->type_name("LIST")
      ->required();
  command.add_option("--feed", options.feed, "amount of each component, with commas between")
      ->type_name("LIST")
      ->required();
  command.add_option("--basis", options.basis, "of the feed and the fractions: mole (default) or mass")
      ->type_name("BASIS")
      ->check(CLI::IsMember({"mole", "mass"}));
  command
      .add_option(
          "--verify", options.verify,
          "1 (default): what a flash finds is checked and, where it does not hold, solved anew; 0: the "
          "flashes alone")
      ->type_name("0|1")
      ->check(CLI::IsMember({0, 1}));
}

std::vector<const CatalogueEntry*> components_of(const MixtureOptions& options, const Catalogue& catalogue) {
  std::vector<const CatalogueEntry*> components;
  for (const std::string& list : options.components) {
    const std::vector<const CatalogueEntry*> part = catalogue.parse_list(list);
    components.insert(components.end(), part.begin(), part.end());
  }
  return components;
}

}  // namespace talix::cli
