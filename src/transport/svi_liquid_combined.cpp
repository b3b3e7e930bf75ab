#include "transport/svi_liquid_combined.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "transport/liquid_class.h"
#include "transport/liquid_split.h"
#include "transport/phase_state.h"
#include "transport/svi_liquid_heavy.h"
#include "transport/svi_liquid_standard.h"

namespace talix {

namespace {

constexpr R8 kPascalPerBar = 100000.0;
constexpr R8 kMolesPerLitre = 0.001;  // of 1 mol/m3

// The logarithms are those of viscosities in micropoise: this many in 1 mPa s.
constexpr R8 kMicropoise = 10000.0;

// Result when the volume of the mixture is not known.
constexpr R8 kNoViscosity = -1.0;

// Bound of the logarithm of a viscosity.
constexpr R8 kLogarithmBound = widen(80.5905F);

// exp of an argument held to a range.
R8 bounded_exp(R8 argument) { return std::exp(std::clamp(argument, -50.0, 50.0)); }

// Hydrogen as a dilute gas of Lennard-Jones molecules [mPa s].
R8 hydrogen_viscosity(R8 T, R8 RMOLW) {
  constexpr R8 diameter = widen(2.827F);  // [A]
  constexpr R8 energy = widen(59.7F);     // [K]
  const R8 trv = T / energy;
  const R8 omega = widen(1.16145F) / std::pow(trv, widen(0.14874F)) +
                   widen(0.52487F) / bounded_exp(widen(0.7732F) * trv) +
                   widen(2.16178F) / bounded_exp(widen(2.43787F) * trv);
  return widen(0.002669F) * std::sqrt(RMOLW * T) / (diameter * diameter * omega);
}

// Viscosity at low pressure.
void base_viscosity(R8 T, R8 P, I4 I, R8& ETA, I4& STATUS) {
  const LiquidClass kind = liquid_class(I);
  STATUS = status::ok;
  if (!kind.ISZAN) return SVICR0(T, I, ETA, STATUS);
  if (kind.HYDGEN) {
    ETA = hydrogen_viscosity(T, comp.RMOLW(I));
    return;
  }
  if (kind.HEAVY) return SVICR0(T, I, ETA, STATUS);
  if (kind.LIGHT) {
    STATUS = status::not_available;
    return;
  }
  R8 lneta = 0.0;
  SVISO0(T, P, I, lneta, STATUS);
  if (STATUS == status::ok) ETA = std::exp(std::clamp(lneta, -kLogarithmBound, kLogarithmBound));
}

// Effect of pressure after Kouzel; PBAR in bar.
R8 kouzel_factor(R8 PBAR, R8 ETA) {
  const R8 exponent =
      widen(0.0145F) * PBAR * (widen(0.0239F) + widen(0.01638F) * std::pow(ETA, widen(0.278F)));
  return std::pow(10.0, std::clamp(exponent, -20.0, 20.0));
}

}  // namespace

// SVICM1: viscosity of a pure liquid for the combined method.
//
// In       T, P    R8   [K], [Pa]
//          I       I4   component
// Out      ETA     R8   [mPa s]; 0 when the status is not ok
//          STATUS  I4   status
// Shared   reads comp.ELEM, RMOLW, the directory of components
// Status   ok; not_available (a light component, no data, or too strong an effect of pressure); range (no
//          positive number); as SVICR0, SVISO0
// Oddity   hydrogen is a dilute gas at any temperature, so that liquid hydrogen comes out 17 times too thin;
//          above 1.01325 bar the whole effect of pressure sets in at once, 0.1 % in a light liquid
// Source   B. Kouzel, Hydrocarbon Processing 44 (1965) 120; P. D. Neufeld, A. R. Janzen, R. A. Aziz, J. Chem.
//          Phys. 57 (1972) 1100
void SVICM1(const R8& T, const R8& P, const I4& I, R8& ETA, I4& STATUS) {
  constexpr R8 lowest_corrected = 1.01325;  // [bar]
  constexpr R8 largest_factor = 1000.0;
  R8 eta = 0.0;
  ETA = 0.0;
  base_viscosity(T, P, I, eta, STATUS);
  if (STATUS != status::ok) return;

  const R8 pbar = P / kPascalPerBar;
  if (pbar > lowest_corrected) {
    const R8 factor = kouzel_factor(pbar, eta);
    STATUS = status::not_available;
    if (factor > largest_factor) return;
    eta *= factor;
  }
  STATUS = status::range;
  if (!(eta > 0.0 && std::isfinite(eta))) return;
  ETA = eta;
  STATUS = status::ok;
}

// SVICM0: liquid viscosity by the combined method: a logarithmic rule over the components with a viscosity of
// their own and one group that the corresponding-states method serves.
//
// In       X       R8(50)  mole fractions [-]
//          P       R8      [Pa]; 1 is taken when it is not above 0
//          T       R8      [K]
//          IC      I4(50)  component index list, passed on
//          NC      I4      number of components
// Out      ETA     R8      [mPa s]; -1 when the status is not ok
//          STATUS  I4      status
// Shared   reads comp
// Status   ok; no_equation_of_state (not loaded); no_root (neither liquid nor vapour); range (neither a
//          component nor the group has a viscosity); as SHMIX0
// Source   J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 20 (1981) 323
void SVICM0(const CompVec& X, const R8& P, const R8& T, const Vec<I4, kMaxComponents>& IC, const I4& NC,
            R8& ETA, I4& STATUS) {
  ETA = kNoViscosity;
  const R8 p = P > 0.0 ? P : 1.0;
  const PhaseState liquid = transport_phase(phase::liquid, T, p, X, NC, IC, false);
  STATUS = liquid.status;
  if (STATUS != status::ok) return;
  STATUS = status::no_root;
  if (liquid.IPHRTN != phase::liquid && liquid.IPHRTN != phase::vapour) return;

  R8 ETASUM = 0.0;
  R8 SNOTRX = 0.0;
  LiquidSplit split;
  clear_split(split);
  for (int i = 1; i <= NC; ++i) {
    const R8 volume = count_component(split, i, X(i));
    R8 eta = 0.0;
    I4 failure = status::ok;
    SVICM1(T, p, i, eta, failure);
    if (failure == status::ok) {
      ETASUM += X(i) * std::log(kMicropoise * eta);
      SNOTRX += X(i);
    } else if (X(i) >= kGroupFloor) {
      group_component(split, i, X(i), volume);
    }
  }
  if (split.group.total >= kGroupFloor) {
    const R8 density = kMolesPerLitre / liquid.V * density_correction(split);
    const R8 eta = group_viscosity(split.group, true, T, p, density);
    if (eta > 0.0) {
      ETASUM += split.group.total * std::log(kMicropoise * eta);
      SNOTRX += split.group.total;
    }
  }

  STATUS = status::range;
  if (!(SNOTRX > 0.0)) return;
  ETA = std::exp(ETASUM / SNOTRX) / kMicropoise;
  STATUS = status::ok;
}

}  // namespace talix
