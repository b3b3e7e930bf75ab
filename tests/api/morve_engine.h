// The calls of the engine's public header with values in place of pointers, for the tests.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/test_support.h"
#include "talix/morve.h"

namespace talix::test {

using ComponentArray = std::array<double, MORVE_MAX_COMPONENTS>;

inline std::int32_t store_directory(std::string path) {
  std::int32_t status = -1;
  ::SURPT0(path.data(), static_cast<std::int32_t>(path.size()), "INPUT", 5, &status);
  return status;
}

inline std::int32_t start_list(const std::string& codes) {
  const std::int32_t width = 4;
  const auto count = static_cast<std::int32_t>(codes.size()) / width;
  std::int32_t status = -1;
  ::SHINI0(&count, codes.data(), static_cast<std::int32_t>(codes.size()), &width, &status);
  return status;
}

// Slot of a model, or minus the status.
inline std::int32_t load_model_slot(std::int32_t code) {
  std::int32_t slot = 0;
  std::int32_t status = -1;
  ::SHMLD0(&code, &slot, &status);
  return status == MORVE_OK ? slot : -status;
}

inline std::int32_t load_data() {
  std::int32_t status = -1;
  ::SHDBS0(&status);
  return status;
}

// An override routine: 0 SURMD0, 1 SURPC0, 2 SURBI0.
struct Keys {
  std::int32_t count = 0;
  std::int32_t status = -1;
  std::vector<std::string> names;
  std::array<double, MORVE_MAX_KEYS> values{};

  void move(std::int32_t action, std::int32_t section, std::int32_t i = 0, std::int32_t j = 0) {
    const std::int32_t width = MORVE_KEY_LENGTH;
    std::string text(std::size_t{MORVE_MAX_KEYS} * MORVE_KEY_LENGTH, '?');
    const auto length = static_cast<std::int32_t>(text.size());
    if (j != 0)
      ::SURBI0(&count, text.data(), length, &width, values.data(), &action, &i, &j, &section, &status);
    else if (i != 0)
      ::SURPC0(&count, text.data(), length, &width, values.data(), &action, &i, &section, &status);
    else
      ::SURMD0(&count, text.data(), length, &width, values.data(), &action, &section, &status);
    names.clear();
    for (std::int32_t k = 0; k < count; ++k) {
      const std::string name = text.substr(static_cast<std::size_t>(k) * MORVE_KEY_LENGTH, MORVE_KEY_LENGTH);
      names.push_back(name.substr(0, name.find_last_not_of(' ') + 1));
    }
  }
};

inline void set_datum(double T_K) {
  Keys keys;
  keys.values[0] = T_K;
  keys.move(MORVE_WRITE, MORVE_IDEAL_GAS_MODEL);
}

// Everything for a list of components with one model; its slot, or minus the status that stopped it.
inline std::int32_t set_up(const std::string& codes, std::int32_t model) {
  const std::int32_t platform = 25;
  std::int32_t status = -1;
  ::SURPL0(&platform, &status);
  if (store_directory(install_directory() + "/Zandor/") != 0) return -MORVE_FATAL;
  if (status = start_list(codes); status != MORVE_OK) return -status;
  const std::int32_t slot = load_model_slot(model);
  if (slot < 1) return slot;
  if (status = load_data(); status != MORVE_OK) return -status;
  set_datum(273.15);
  return slot;
}

// Arguments and results of SHMIX0.
struct Mix {
  std::int32_t phase = MORVE_VAPOUR, root = MORVE_REAL_ROOT, count = 0, LNOV = 0, LNOF = 0, LNOH = 0;
  std::int32_t kind = MORVE_TOTAL, reserved_count = 0, found = MORVE_NONE, ambiguous = 0, status = -1;
  double T = 298.15, P = 1E6;
  ComponentArray X{};
  std::array<std::int32_t, MORVE_MAX_COMPONENTS> IC{};
  std::array<std::int32_t, 3> DV{1, 1, 1}, DF{1, 1, 1}, DH{1, 1, 1};
  std::array<std::int32_t, MORVE_MAX_RESERVED> IRESRV{};
  double ZFUG = 0, ZVOL = 0, DZDT = 0, DZDP = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  ComponentArray DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  std::array<double, std::size_t{MORVE_MAX_COMPONENTS} * MORVE_MAX_COMPONENTS> DFDN{};
  std::array<double, MORVE_MAX_RESERVED> RESRV{};

  Mix() = default;
  // All properties of a mixture by the model of a slot.
  Mix(std::int32_t slot, const std::vector<double>& x)
      : count(static_cast<std::int32_t>(x.size())), LNOV(slot), LNOF(slot), LNOH(slot) {
    for (std::size_t i = 0; i < x.size(); ++i) X.at(i) = x[i];
  }
  void want(const std::vector<std::int32_t>& codes) {
    reserved_count = static_cast<std::int32_t>(codes.size());
    for (std::size_t k = 0; k < codes.size(); ++k) IRESRV.at(k) = codes[k];
  }
  [[nodiscard]] double dfdn(std::size_t i, std::size_t j) const { return DFDN.at((i - 1) + 50 * (j - 1)); }
  std::int32_t run() {
    ::SHMIX0(&phase, &root, &T, &P, &count, IC.data(), X.data(), &LNOV, DV.data(), &LNOF, DF.data(), &LNOH,
             &kind, DH.data(), IRESRV.data(), &reserved_count, &found, &ambiguous, &ZFUG, &ZVOL, &DZDT, &DZDP,
             DZDN.data(), FUG.data(), DFDT.data(), DFDP.data(), DFDN.data(), &H, &DHDT, &DHDP, DHDN.data(),
             &S, &DSDT, &DSDP, DSDN.data(), RESRV.data(), &status);
    return status;
  }
};

}  // namespace talix::test
