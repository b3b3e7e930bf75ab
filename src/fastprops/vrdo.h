// Curves of the pure-component parameters of the direct route in Tc/T.
#pragma once

#include "base/real.h"

namespace talix {

// GA is a table of N rows, column after column; I is the row. ID 1 gives the value, 2 and 3 the first and second
// derivative with T/Tc.

// Sigmoid: two slopes with a blend; J0 columns stand before it (0 the a curve, 5 the b curve).
R4 VRDOE1(const R4* GA, const I4& N, const I4& I, const I4& J0, const R4& X, const I4& ID);
// b above the critical region.
R4 VRDOE2(const R4& B1, const R4& B2, const R4& B3, const R4& B4, const R4& X, const I4& ID);
// a above the critical region.
R4 VRDOE3(const R4* GA, const I4& N, const I4& I, const R4& X, const I4& ID);
// Parameters of a heavy pseudo-component.
void VRDO11(R4* GA, const I4& N, const I4& I, const I4& MODE, const R4& X, const R4& OMEGA, R4& A, R4& B,
            R4& DA1, R4& DB1, R4& DA2, R4& DB2, I4& IER);
// Fills row I of PARAB from the acentric factor.
void VRDO12(const R4& OMEGA, R4* PARAB, const I4& N, const I4& I, const I4& IFLAG);

// Values of IER of VRDO11.
namespace vrdo_result {
inline constexpr I4 general = 0;   // the row is filled, the general forms apply
inline constexpr I4 done = 1;      // the parameters are set
inline constexpr I4 refused = 10;  // transition band above the critical region; the row is filled
}  // namespace vrdo_result

}  // namespace talix
