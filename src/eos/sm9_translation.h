// Volume translation of a mixture.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

void SM9VS0(const I4& IFCOM, const I4& ILCOM, const CompVec& X, const R8& P, const R8& T, R8& VSC, R8& VSCT,
            CompVec& VSCN, CompVec& VSCTN, R8& VSCTT);

}  // namespace talix
