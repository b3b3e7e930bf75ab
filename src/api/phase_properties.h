// The column of properties of one phase.
#pragma once

#include "fastprops/flash_record.h"

namespace talix {

// Rows of a property column.
namespace property {
inline constexpr int molar_mass = 1;
inline constexpr int density = 2;
inline constexpr int compressibility = 3;
inline constexpr int ideal_enthalpy = 4;
inline constexpr int ideal_entropy = 5;
inline constexpr int ideal_heat_capacity = 6;
inline constexpr int enthalpy = 7;
inline constexpr int entropy = 8;
inline constexpr int heat_capacity_v = 9;
inline constexpr int heat_capacity_p = 10;
inline constexpr int speed_of_sound = 11;
inline constexpr int joule_thomson = 12;
inline constexpr int viscosity = 13;
inline constexpr int thermal_conductivity = 14;
inline constexpr int surface_tension = 15;
}  // namespace property

// Rows 1 to 12 of OUT for a phase of composition X asked for as PH; Z is its compressibility factor.
void phase_properties(I4 PH, const FlashVec& X, R4& Z, PropertyColumn& OUT);
// Rows 13 and 14 of a vapour of composition Y.
void vapour_transport(const FlashVec& Y, PropertyColumn& OUT);
// Rows 13 to 15 of a liquid of composition X and compressibility factor ZL. ZV is that of the vapour fl.Y beside it,
// 0 where there is none.
void liquid_transport(const FlashVec& X, const R4& ZV, const R4& ZL, PropertyColumn& OUT);
// The phase as the engine sees a mixture of composition X asked for as PH.
I4 phase_identity(I4 PH, const FlashVec& X);

}  // namespace talix
