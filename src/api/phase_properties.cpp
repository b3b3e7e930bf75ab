#include "api/phase_properties.h"

#include "fastprops/enthal.h"
#include "fastprops/fast_conductivity.h"
#include "fastprops/fast_viscosity.h"
#include "fastprops/rksf.h"
#include "fastprops/small_arrays.h"
#include "fastprops/surface_tension.h"

namespace talix {

namespace {

// What the calls give beside the column.
struct Scratch {
  FlashVec PHI, HN;
  FugacityVector FUG, FUGTL, FUGPL;
  FugacityMatrix FUGN;
  PropertyColumn column;
  FlashVec P0, DEN;  // vapour pressures and densities that the calls name and do not read
};
constinit Scratch scratch{};

// Stands in the reserved places of a call.
constexpr R4 kReserved = 0.0F;

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

// What the engine gives where it has no phase, or far outside the range of its methods, is no viscosity and no
// conductivity: such a row is 0.
void drop_impossible(PropertyColumn& OUT) {
  for (const int row : {property::viscosity, property::thermal_conductivity})
    if (!(OUT(row) > 0.0F)) OUT(row) = 0.0F;
}

}  // namespace

// The engine's molar mass replaces the one formed from the constants of the flash layer.
void phase_properties(I4 PH, const FlashVec& X, R4& Z, PropertyColumn& OUT) {
  I4 root_type = 0;
  RKSF(fl.NC, PH, fl.T, X, scratch.PHI, Z, fl.P, root_type);
  MOL(fl.NC, X, OUT(property::molar_mass));
  thermal_rows(PH, X, Z, OUT);
}

void vapour_transport(const FlashVec& Y, PropertyColumn& OUT) {
  MULO(fl.NC, fl.T, fl.P, kReserved, Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.AMW, kReserved, kReserved,
       OUT(property::viscosity), kReserved);
  KLO(fl.NC, fl.T, fl.P, kReserved, Y, fl.VC, fl.PC, fl.TC, fl.ZC, fl.CGAS, fl.COFHT, fl.AMW, kReserved,
      kReserved, OUT(property::thermal_conductivity), kReserved);
  drop_impossible(OUT);
}

void liquid_transport(const FlashVec& X, const R4& ZV, const R4& ZL, PropertyColumn& OUT) {
  VISLIQ(fl.NC, fl.T, fl.P, fl.CVISL, scratch.P0, scratch.DEN, X, OUT(property::viscosity));
  KLIQ(fl.NC, fl.T, fl.CKLIQ, scratch.DEN, X, kReserved, OUT(property::thermal_conductivity));
  SURTEN1(fl.NC, fl.T, fl.P, fl.Y, X, ZV, ZL, OUT(property::surface_tension));
  drop_impossible(OUT);
}

I4 phase_identity(I4 PH, const FlashVec& X) {
  R4 Z = PH == flash_phase::vapour ? fl.ZV : fl.ZL;
  return thermal_rows(PH, X, Z, scratch.column);
}

}  // namespace talix
