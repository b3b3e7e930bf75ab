#include "api/phase_properties.h"

#include "fastprops/enthal.h"
#include "fastprops/rksf.h"
#include "fastprops/small_arrays.h"

namespace talix {

namespace {

// What the calls give beside the column.
struct Scratch {
  FlashVec PHI, HN;
  FugacityVector FUG, FUGTL, FUGPL;
  FugacityMatrix FUGN;
  PropertyColumn column;
};
constinit Scratch scratch{};

// ENTHAL in mode 0 into the rows of a column.
I4 thermal_rows(I4 PH, const FlashVec& X, R4& Z, PropertyColumn& OUT) {
  I4 PHOUT = 0;
  R4 DHDT = 0.0F;
  ENTHAL(0, PH, PHOUT, fl.NC, fl.RGAS, OUT(property::density), fl.T, fl.P, Z, X, OUT(property::molar_mass),
         OUT(property::ideal_enthalpy), OUT(property::ideal_entropy), OUT(property::ideal_heat_capacity),
         OUT(property::enthalpy), DHDT, OUT(property::entropy), OUT(property::heat_capacity_v),
         OUT(property::heat_capacity_p), OUT(property::speed_of_sound), OUT(property::joule_thomson),
         OUT(property::compressibility), scratch.FUG, scratch.FUGTL, scratch.FUGPL, scratch.FUGN, scratch.HN);
  return PHOUT;
}

}  // namespace

// The engine's molar mass replaces the one formed from the constants of the flash layer.
void phase_properties(I4 PH, const FlashVec& X, R4& Z, PropertyColumn& OUT) {
  I4 root_type = 0;
  RKSF(fl.NC, PH, fl.T, X, scratch.PHI, Z, fl.P, root_type);
  MOL(fl.NC, X, OUT(property::molar_mass));
  thermal_rows(PH, X, Z, OUT);
}

I4 phase_identity(I4 PH, const FlashVec& X) {
  R4 Z = PH == flash_phase::vapour ? fl.ZV : fl.ZL;
  return thermal_rows(PH, X, Z, scratch.column);
}

}  // namespace talix
