// S0RSC1: density of the saturated liquid of a pure component.
#pragma once

#include "base/logical.h"
#include "base/real.h"

namespace talix {

// RSAT [kg/m3] when VALUE asks for it, DRSAT [kg/(m3 K)] when DERIV does; METHOD is method::riedel,
// method::poynting or 0.
void S0RSC1(const R8& T, const R8& P, const I4& I, const L4& VALUE, const L4& DERIV, const I4& METHOD,
            R8& RSAT, R8& DRSAT, I4& STATUS);

}  // namespace talix
