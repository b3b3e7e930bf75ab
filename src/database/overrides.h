// Reading and replacing constants by name, one routine for each scope: model, pair, component.
//
// A call fills KEYS with the names of a section, blank-padded, and NKEYS with their number. ACTION
// action::information then reads the constants out into VALUES, in the order of the keys, action::input writes
// them in; any other action leaves the values alone. A section that does not apply answers
// status::not_available and has no keys.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"
#include "engine/codes.h"

namespace talix {

// Sections that are named after no model and no method.
namespace key_section {
inline constexpr I4 general = 0;  // scalar constants of a component
inline constexpr I4 groups = code(7, "UNIFAC-DM");
inline constexpr I4 ideal_heat_capacity = code(15, "Isobaric heat capacity");
inline constexpr I4 elements = code(126, "Element structure");
inline constexpr I4 liquid_viscosity = code(127, "Liquid viscosity");
inline constexpr I4 thermal_conductivity = code(128, "Thermal conductivity");
inline constexpr I4 heat_of_vaporisation = code(129, "Heat of vaporisation");
inline constexpr I4 henry = 147;  // behind the last row of the code table
static_assert(henry == kCodeCount + 1);
}  // namespace key_section

inline constexpr int kMaxKeys = 20;
using KeyNames = Vec<Text<10>, kMaxKeys>;
using KeyValues = Vec<R8, kMaxKeys>;

// Constants of a model.
void SURMD0(I4& NKEYS, KeyNames& KEYS, const I4& WIDTH, KeyValues& VALUES, const I4& ACTION, const I4& MODEL,
            I4& NFAIL);
// Constants of the pair (I, J).
void SURBI0(I4& NKEYS, KeyNames& KEYS, const I4& WIDTH, KeyValues& VALUES, const I4& ACTION, const I4& I,
            const I4& J, const I4& SECTION, I4& NFAIL);
// Constants of component I.
void SURPC0(I4& NKEYS, KeyNames& KEYS, const I4& WIDTH, KeyValues& VALUES, const I4& ACTION, const I4& I,
            const I4& SECTION, I4& NFAIL);

}  // namespace talix
