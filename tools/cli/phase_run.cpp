#include <cmath>

#include "cli/phase_case.h"
#include "talix/morve.h"

namespace talix::cli {

const std::array<PhaseProperty, kPhaseProperties> kPhasePropertyNames = {{
    {"Z", "Compressibility factor", "-"},
    {"molar_volume_cm3_mol", "Molar volume", "cm3/mol"},
    {"molar_mass_g_mol", "Molar mass", "g/mol"},
    {"density_kg_m3", "Density", "kg/m3"},
    {"enthalpy_J_mol", "Enthalpy", "J/mol"},
    {"entropy_J_molK", "Entropy", "J/(mol K)"},
    {"cp_J_molK", "Heat capacity cp", "J/(mol K)"},
    {"cv_J_molK", "Heat capacity cv", "J/(mol K)"},
    {"thermal_expansion_1_K", "Thermal expansion", "1/K"},
    {"isothermal_compressibility_1_bar", "Isothermal compressibility", "1/bar"},
    {"isentropic_compressibility_1_bar", "Isentropic compressibility", "1/bar"},
    {"joule_thomson_K_bar", "Joule-Thomson coefficient", "K/bar"},
    {"speed_of_sound_m_s", "Speed of sound", "m/s"},
    {"thermal_pressure_bar_K", "Thermal pressure coefficient", "bar/K"},
}};

namespace {

constexpr double kCelsiusOffset = 273.15;
constexpr double kPascalPerBar = 1e5;
constexpr double kGasConstant = 8.314471;  // of the engine [J/(mol K)]
constexpr double kCubicCentimetres = 1e6;
constexpr std::size_t kComponents = MORVE_MAX_COMPONENTS;

// Where a reserved result stands, and what makes it the unit of the table.
struct Reserved {
  std::size_t property;
  std::int32_t code;
  double factor;
};
constexpr std::array<Reserved, 8> kReserved = {{{6, MORVE_CP, 1},
                                                {7, MORVE_CV, 1},
                                                {8, MORVE_THERMAL_EXPANSION, 1},
                                                {9, MORVE_ISOTHERMAL_COMPRESSIBILITY, kPascalPerBar},
                                                {10, MORVE_ISENTROPIC_COMPRESSIBILITY, kPascalPerBar},
                                                {11, MORVE_JOULE_THOMSON, kPascalPerBar},
                                                {12, MORVE_SPEED_OF_SOUND, 1},
                                                {13, MORVE_THERMAL_PRESSURE, 1 / kPascalPerBar}}};

// Room for a call of SHMIX0.
struct Call {
  double T = 0, P = 0;
  std::array<double, kComponents> X{};
  std::array<std::int32_t, kComponents> IC{};
  std::array<std::int32_t, MORVE_MAX_RESERVED> IRESRV{};
  std::int32_t IPHRTN = MORVE_NONE, AMBIG = 0, NFAIL = 0;
  double ZFUG = 0, ZVOL = 0, DZDT = 0, DZDP = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  std::array<double, kComponents> DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  std::array<double, kComponents * kComponents> DFDN{};
  std::array<double, MORVE_MAX_RESERVED> RESRV{};

  void run(const PhaseRequest& request, std::int32_t slot) {
    // A model without a calculation is asked for everything: the engine says why it gives nothing.
    const bool all = !request.model.computes();
    const std::int32_t LNOV = all || request.model.volume ? slot : 0;
    const std::int32_t LNOF = all || request.model.fugacity ? slot : 0;
    const std::int32_t LNOH = all || request.model.enthalpy ? slot : 0;
    const std::array<std::int32_t, 3> none = {0, 0, 0};
    const std::array<std::int32_t, 3> every = {1, 1, 1};
    const std::int32_t IPHTYP = request.root;
    const std::int32_t IROOTO = request.pseudo_root ? MORVE_PSEUDO_ROOT : MORVE_REAL_ROOT;
    const auto NCOMP = static_cast<std::int32_t>(request.components.size());
    const std::int32_t IHTYPE = MORVE_TOTAL;
    const std::int32_t NRESRV = static_cast<std::int32_t>(kReserved.size());
    SHMIX0(&IPHTYP, &IROOTO, &T, &P, &NCOMP, IC.data(), X.data(), &LNOV, none.data(), &LNOF, every.data(),
           &LNOH, &IHTYPE, none.data(), IRESRV.data(), &NRESRV, &IPHRTN, &AMBIG, &ZFUG, &ZVOL, &DZDT, &DZDP,
           DZDN.data(), FUG.data(), DFDT.data(), DFDP.data(), DFDN.data(), &H, &DHDT, &DHDP, DHDN.data(), &S,
           &DSDT, &DSDP, DSDN.data(), RESRV.data(), &NFAIL);
  }
};

// Molar mass of the mixture [g/mol], from the constants that the engine holds.
double molar_mass(const std::vector<double>& x) {
  double total = 0;
  double mass = 0;
  for (const KeySection& section : key_sections()) {
    if (section.scope != KeyScope::component || section.code != MORVE_SECTION_GENERAL) continue;
    for (std::size_t i = 0; i < x.size(); ++i) {
      for (const EngineKey& key : read_keys(section, static_cast<int>(i) + 1, 0))
        if (key.name == "Rmolw") mass += x[i] * key.value;
      total += x[i];
    }
  }
  return mass / total;
}

void take_components(const Call& call, std::size_t count, EnginePhase& result) {
  for (std::size_t i = 0; i < count; ++i) {
    result.ln_phi.push_back(call.FUG[i]);
    result.dlnphi_dT.push_back(call.DFDT[i] / call.T);
    result.dlnphi_dP.push_back(call.DFDP[i] / call.P * kPascalPerBar);
    std::vector<double> row;
    for (std::size_t j = 0; j < count; ++j) row.push_back(call.DFDN[i + kComponents * j]);
    result.dlnphi_dn.push_back(std::move(row));
  }
}

void take_properties(const Call& call, const PhaseRequest& request, EnginePhase& result) {
  const double V = call.ZVOL * kGasConstant * call.T / call.P;
  const double M = molar_mass(request.x);
  result.properties[0] = call.ZVOL;
  result.properties[1] = V * kCubicCentimetres;
  result.properties[2] = M;
  result.properties[3] = M / V / 1000;
  if (!request.model.enthalpy) return;
  result.properties[4] = call.H * kGasConstant * call.T;
  result.properties[5] = call.S * kGasConstant;
  for (std::size_t k = 0; k < kReserved.size(); ++k)
    result.properties[kReserved[k].property] = call.RESRV[k] * kReserved[k].factor;
}

}  // namespace

EnginePhase run_phase(const PhaseRequest& request, const std::filesystem::path& install) {
  EnginePhase result;
  Call call;
  try {
    start_engine(install, request.components, request.model);
    for (const KeySetting& setting : request.settings)
      apply_setting(setting, request.model, request.components.size());
    call.T = request.T_C + kCelsiusOffset;
    call.P = request.P_bar * kPascalPerBar;
    std::copy(request.x.begin(), request.x.end(), call.X.begin());
    for (std::size_t k = 0; k < kReserved.size(); ++k) call.IRESRV[k] = kReserved[k].code;
    result.call = "SHMIX0";
    call.run(request, slot_of(request.model));
    result.status = call.NFAIL;
  } catch (const EngineFailure& failure) {
    result.call = failure.call;
    result.status = failure.status;
  }
  result.messages = engine_messages();
  result.ok = result.status == MORVE_OK;
  if (!result.ok) return result;
  result.phase = call.IPHRTN;
  result.ambiguous = call.AMBIG != 0;
  if (request.model.fugacity) take_components(call, request.components.size(), result);
  if (request.model.volume) take_properties(call, request, result);
  return result;
}

}  // namespace talix::cli
