// The Benedict-Webb-Rubin equation as one phase: the root that answers a request, composition slopes.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Compressibility of the phase asked for.
void bwrs_phase(I4 IPHASE, I4 IFCOM, I4 ILCOM, R8 T, R8 P, const CompVec& X, R8& Z, R8& ZOTHER, R8& PV,
                R8& PTCN, I4& IPHRTN, I4& ICODE);

// Composition slope of the pressure at the density of the last result.
void bwrs_composition_slope(I4 IFCOM, I4 ILCOM, CompVec& PN);

}  // namespace talix
