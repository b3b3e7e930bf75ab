#include "bank/accuracy_engine.h"

#include <cmath>

#include "bank/tables.h"
#include "database/component_record.h"
#include "database/load_order.h"
#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/model_table.h"
#include "engine/reset.h"
#include "engine/setup.h"
#include "engine/shmix_driver.h"

namespace talix::bank {

namespace {

constexpr I4 kCodeWidth = 4;
constexpr I4 kKeyWidth = 10;

void require(I4 status, const char* step) {
  if (status != status::ok) {
    throw BankError(std::string("the engine cannot load the bank: ") + step + " ends with status " +
                    std::to_string(status));
  }
}

I4 phase_code(RootAsked root) {
  return root == RootAsked::liquid ? phase::liquid
                                   : (root == RootAsked::vapour ? phase::vapour : phase::gibbs);
}

}  // namespace

EngineSet::EngineSet(const std::string& folder, const std::vector<std::string>& codes) {
  reset_engine();
  I4 NFAIL = status::ok;
  SURPL0(platform::pc_ftn77, NFAIL);
  std::string path = folder + "/";
  SURPT0(path.data(), static_cast<int>(path.size()), "INPUT", NFAIL);
  std::string list;
  for (const std::string& code : codes) list += code;
  SHINI0(static_cast<I4>(codes.size()), list.c_str(), kCodeWidth, NFAIL);
  require(NFAIL, "SHINI0");
  I4 slot = 0;
  SHMLD0(model::vardo1, slot, NFAIL);
  require(NFAIL, "SHMLD0");
  slot_ = slot;
  SHDBS0(NFAIL);
  require(NFAIL, "SHDBS0");
  I4 keys = 1;
  KeyNames names{};
  KeyValues values{};
  values(1) = 273.15;
  SURMD0(keys, names, kKeyWidth, values, action::input, model::ideal_gas, NFAIL);
  require(NFAIL, "SURMD0");
}

EngineState EngineSet::state(int index, double T, double P, RootAsked root, bool thermal) const {
  static const Vec<I4, kMaxComponents> IC{};
  static CompVec X{}, DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  static CompMat DFDN{};
  ReservedCodes IRESRV{};
  IRESRV(1) = reserved::heat_capacity_p;
  IRESRV(2) = reserved::joule_thomson;
  IRESRV(3) = reserved::speed_of_sound;
  ReservedValues RESRV{};
  X = {};
  X(index) = 1.0;
  I4 IPHRTN = 0, NFAIL = status::ok;
  L4 AMBIG{};
  R8 ZFUG = 0, ZVOL = 0, DZDT = 0, DZDP = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  SHMIX0(phase_code(root), root_option::real_only, T, P, -index, IC, X, slot_, kNoDerivatives, slot_,
         kNoDerivatives, thermal ? slot_ : 0, thermal::total, kNoDerivatives, IRESRV, thermal ? 3 : 0, IPHRTN,
         AMBIG, ZFUG, ZVOL, DZDT, DZDP, DZDN, FUG, DFDT, DFDP, DFDN, H, DHDT, DHDP, DHDN, S, DSDT, DSDP, DSDN,
         RESRV, NFAIL);
  EngineState s;
  s.ok = NFAIL == status::ok;
  s.Z = ZVOL;
  s.lnphi = FUG(index);
  s.H = H;
  s.CP = RESRV(1);
  s.JTC = RESRV(2);
  s.WSOUND = RESRV(3);
  return s;
}

bool EngineSet::saturation(int index, double T, double start, double& P, EngineState& liquid,
                           EngineState& vapour) const {
  double lp = std::log(start);
  for (int k = 0; k < 30; ++k) {
    P = std::exp(lp);
    liquid = state(index, T, P, RootAsked::liquid, false);
    vapour = state(index, T, P, RootAsked::vapour, false);
    if (!liquid.ok || !vapour.ok || !(vapour.Z > liquid.Z * 1.000001)) return false;
    const double step = (liquid.lnphi - vapour.lnphi) / (vapour.Z - liquid.Z);
    lp += step;
    if (std::fabs(step) < 1e-10) {
      liquid = state(index, T, P, RootAsked::liquid, true);
      vapour = state(index, T, P, RootAsked::vapour, true);
      return liquid.ok && vapour.ok;
    }
  }
  return false;
}

double EngineSet::vapour_pressure_set(int index, double T) const {
  constexpr I4 kWagner = 60;  // SPSAT0: the Wagner set alone
  R8 PS = 0.0, DPS = 0.0;
  I4 NFAIL = status::ok;
  SPSAT0(T, 0.0, index, logical(true), logical(false), kWagner, PS, DPS, NFAIL);
  return NFAIL == status::ok ? PS : 0.0;
}

std::array<double, 8> EngineSet::heat_capacity(int index) const {
  std::array<double, 8> c{};
  for (int k = 1; k <= 8; ++k) c.at(static_cast<std::size_t>(k - 1)) = comp.COFHT(index, k);
  return c;
}

Curves EngineSet::curves(int index) const {
  Curves c;
  for (int k = 1; k <= 15; ++k) c.p.at(static_cast<std::size_t>(k - 1)) = comp.PARABF(index, k);
  c.kind = quantum_of(std::string(comp.ICS(index).view()).c_str());
  c.prepare();
  return c;
}

double EngineSet::critical_temperature(int index) const { return comp.TC(index); }

double EngineSet::critical_pressure(int index) const { return comp.PC(index) * 100000.0; }

}  // namespace talix::bank
