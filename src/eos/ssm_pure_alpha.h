// Pure-component parameters from a generalised temperature function, and the log-polynomial form.
#pragma once

#include "base/real.h"

namespace talix {

// Temperature function of the model's constants. IPARA 0: values; 1: with first, 2: with second temperature
// derivatives; so for all.
void SWLPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);
// Temperature function in the acentric factor with two ranges.
void SWLPC1(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);
// Clears the translation of the log-polynomial form.
void SM9IN0(const I4& IFCOM, const I4& ILCOM, I4& ICODE);
// Polynomials in ln(T/Tc).
void SM9PC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE);

}  // namespace talix
