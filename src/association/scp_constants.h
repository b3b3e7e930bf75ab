// Working constants of the association model: what is given, and else what the critical point gives.
#pragma once

#include "base/array.h"
#include "base/real.h"

namespace talix {

// The physical part of the model for one component.
struct CpaConstants {
  bool DATAOK;  // the component has usable data
  R8 AC;        // a at the critical point [J m3/mol2]
  R8 B;         // b [m3/mol]
  R8 AK;        // slope of the temperature function above the critical point [-]
  Vec<R8, 6>
      AKK;  // curve below the critical point [-]: 1, 3 to 6 of the powers 1 to 5 of w = 1 - sqrt(T/TC),
            // 2 of sqrt(w)
};

CpaConstants cpa_constants(I4 ICOMP);

// Selectors of SCPDB4; the curve coefficients are counted from kappa_0 on.
namespace cpa_value {
inline constexpr I4 a_critical = 6;
inline constexpr I4 b_critical = 7;
inline constexpr I4 kappa_0 = 8;
inline constexpr I4 kappa_6 = 14;
inline constexpr I4 supercritical = 15;
}  // namespace cpa_value

// The working constant SELECT, 6 to 15, of component ICOMP.
void SCPDB4(const I4& ICOMP, const I4& SELECT, R8& VALUE);

}  // namespace talix
