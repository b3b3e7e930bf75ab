// A small catalogue and made-up results for the tests of the command line.
#pragma once

#include <limits>
#include <string>
#include <vector>

#include "cli/catalogue.h"
#include "cli/flash_case.h"

namespace talix::test {

inline cli::CatalogueEntry catalogue_entry(int number, std::string code, std::string name, std::string cas,
                                           std::string formula, std::vector<std::string> synonyms) {
  cli::CatalogueEntry entry;
  entry.number = number;
  entry.code = std::move(code);
  entry.name = std::move(name);
  entry.cas = std::move(cas);
  entry.formula = std::move(formula);
  entry.synonyms = std::move(synonyms);
  return entry;
}

inline cli::Catalogue small_catalogue() {
  std::vector<cli::CatalogueEntry> entries = {
      catalogue_entry(15, "N2  ", "nitrogen", "7727-37-9", "N2", {"dinitrogen"}),
      catalogue_entry(20, " 1P ", "methane", "74-82-8", "CH4", {"R50", "marsh gas"}),
      catalogue_entry(21, " 2P ", "ethane", "74-84-0", "C2H6", {"R170"}),
      catalogue_entry(23, " 4P ", "n-butane", "106-97-8", "C4H10", {"butane"}),
      catalogue_entry(24, " 4P1", "isobutane", "75-28-5", "C4H10", {"2-methylpropane"}),
      catalogue_entry(29, " 6P1", "2,2-dimethylbutane", "75-83-2", "C6H14",
                      {"neohexane", "butane, 2,2-dimethyl-"}),
      catalogue_entry(116, "10P ", "n-decane", "124-18-5", "C10H22", {"decane"}),
      catalogue_entry(176, " 4D ", "1,3-butadiene", "106-99-0", "C4H6", {"divinyl"}),
  };
  entries[1].molar_mass_g_mol = 16.0425;
  entries[1].tc_K = 190.564;
  entries[1].pc_bar = 45.992;
  entries[1].omega = 0.01142;
  entries[1].tb_K = 111.6672;
  return cli::Catalogue(std::move(entries));
}

inline cli::FlashRequest two_component_request() {
  cli::FlashRequest request;
  request.numbers = {20, 116};
  request.names = {"methane", "n-decane"};
  request.feed = {1.5, 0.5};
  request.T_C = 25;
  request.P_bar = 50;
  return request;
}

// Two phases; the transport rows of the liquid are missing, as where the library has no value.
inline cli::FlashResult two_phase_result() {
  cli::FlashResult result;
  result.ok = true;
  result.vapour_fraction = 0.6F;
  cli::PhaseResult vapour;
  vapour.flow = 1.2F;
  vapour.fraction = 0.6F;
  vapour.composition = {0.99995F, 0.00005F};
  for (std::size_t i = 0; i < vapour.properties.size(); ++i)
    vapour.properties[i] = 0.1F + static_cast<float>(i);
  vapour.properties[14].reset();
  cli::PhaseResult liquid = vapour;
  liquid.flow = 0.8F;
  liquid.fraction = 0.4F;
  liquid.composition = {0.375F, 0.625F};
  liquid.properties[12].reset();
  liquid.properties[13].reset();
  result.vapour = vapour;
  result.liquid = liquid;
  return result;
}

}  // namespace talix::test
