// Sections of the engine's constants, the units of their keys, and which model reads which.
#include <array>

#include "cli/engine_keys.h"
#include "talix/morve.h"

namespace talix::cli {

namespace {

constexpr int kHydrateLangmuir1 = 55;
constexpr int kHydratePotential = 56;
constexpr int kHydrateLangmuir2 = 57;

}  // namespace

const std::vector<KeySection>& key_sections() {
  static const std::vector<KeySection> sections = {
      {KeyScope::model, MORVE_IDEAL_GAS_MODEL, "ideal-gas", {"K"}},
      {KeyScope::model, MORVE_VARDO3, "a-excess", {"K", "Pa"}},
      {KeyScope::model, MORVE_NRTL, "nrtl", {"K", "K", "-", "-"}},
      {KeyScope::model,
       kHydrateLangmuir1,
       "hydrate-1",
       {"J/mol", "J/mol", "cm3/mol", "J/(mol K)", "J/(mol K2)", "-", "-", "Angstrom", "Angstrom", "-", "-"}},
      {KeyScope::model,
       kHydrateLangmuir2,
       "hydrate-2",
       {"J/mol", "J/mol", "cm3/mol", "J/(mol K)", "J/(mol K2)", "-", "-", "Angstrom", "Angstrom", "-", "-"}},
      {KeyScope::component,
       MORVE_SECTION_GENERAL,
       "general",
       {"K", "J/mol", "J/mol", "J/mol", "J/mol", "", "-", "", "bar", "g/cm3", "g/mol", "K", "K", "-",
        "m3/kmol", "debye"}},
      {KeyScope::component, MORVE_VARDO1, "curves", {}},
      {KeyScope::component, MORVE_SECTION_IDEAL_CP, "ideal-cp", {}},
      {KeyScope::component,
       MORVE_SECTION_ASSOCIATION,
       "association",
       {"-", "J/mol", "-", "1/K", "-", "J m3/mol2", "m3/mol", "-", "-", "-", "-", "-", "-", "-", "-"}},
      {KeyScope::component, MORVE_WAGNER, "wagner", {}},
      {KeyScope::component, MORVE_FROST_KALKWARF, "frost-kalkwarf", {}},
      {KeyScope::component, MORVE_ANTOINE, "antoine", {}},
      {KeyScope::component, MORVE_ANTOINE_EXTENDED, "antoine-extended", {}},
      {KeyScope::component, MORVE_SECTION_LIQUID_DENSITY, "liquid-density", {}},
      {KeyScope::component, MORVE_SECTION_HEAT_OF_VAPORISATION, "heat-of-vaporisation", {}},
      {KeyScope::component, MORVE_SECTION_LIQUID_VISCOSITY, "liquid-viscosity", {}},
      {KeyScope::component, MORVE_SECTION_LIQUID_CONDUCTIVITY, "liquid-conductivity", {}},
      {KeyScope::component, MORVE_SECTION_ELEMENTS, "elements", {}},
      {KeyScope::component, MORVE_SECTION_GROUPS, "groups", {}},
      {KeyScope::component, MORVE_SECTION_HENRY, "henry", {"-"}},
      {KeyScope::component, MORVE_SECTION_SOLID, "solid", {"J/mol", "J/(mol K)", "", "K"}},
      {KeyScope::component,
       kHydrateLangmuir1,
       "hydrate-1",
       {"K/bar", "K", "K/bar", "K", "K2", "K3", "K2", "K3"}},
      {KeyScope::component,
       kHydrateLangmuir2,
       "hydrate-2",
       {"K/bar", "K", "K/bar", "K", "K2", "K3", "K2", "K3"}},
      {KeyScope::component, kHydratePotential, "hydrate-potential", {"Angstrom", "Angstrom", "K"}},
      {KeyScope::pair, MORVE_VARDO1, "interaction", {"-", "1/K", "-", "1/K"}},
      {KeyScope::pair, MORVE_NRTL, "nrtl", {"-", "K", "K2", "-", "-", "K", "K2", "1/K", "", "", "", ""}},
      {KeyScope::pair, MORVE_SECTION_ASSOCIATION, "association", {"-", "1/K", "-", "1/K", "-"}},
      {KeyScope::pair, MORVE_SECTION_HENRY, "henry", {}},
  };
  return sections;
}

bool reads_section(const EngineModel& model, const KeySection& section) {
  constexpr std::array<int, 6> curves = {MORVE_VARDO1, MORVE_VARDO2, MORVE_VARDO3,
                                         MORVE_VARDO4, MORVE_VARDO5, MORVE_VD2D1};
  // The rule of MORVE_VARDO4 makes its terms from the interaction parameters.
  constexpr std::array<int, 3> activity = {MORVE_VARDO2, MORVE_VARDO3, MORVE_NRTL};
  const auto among = [&](const auto& codes) {
    for (const int code : codes)
      if (code == model.code) return true;
    return false;
  };
  switch (section.scope) {
    case KeyScope::model:
      // Enthalpies of every model count from the ideal gas.
      return section.code == model.code || section.code == MORVE_IDEAL_GAS_MODEL;
    case KeyScope::component:
      if (section.code == MORVE_SECTION_GENERAL || section.code == MORVE_SECTION_IDEAL_CP)
        return model.computes();
      if (section.code == MORVE_VARDO1) return among(curves);
      return section.code == model.code;
    default:
      if (section.code == MORVE_NRTL) return among(activity);
      if (section.code == MORVE_VARDO1)
        return model.computes() && !among(activity) && model.code != MORVE_IDEAL_GAS_MODEL &&
               model.code != MORVE_BWRS;
      return section.code == model.code;
  }
}

const char* routine_of(KeyScope scope) {
  switch (scope) {
    case KeyScope::model:
      return "SURMD0";
    case KeyScope::component:
      return "SURPC0";
    default:
      return "SURBI0";
  }
}

}  // namespace talix::cli
