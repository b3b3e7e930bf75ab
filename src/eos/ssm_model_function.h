// Pressure and residual function of the cubic and of the ideal gas, with all their derivatives.
#pragma once

#include "base/real.h"
#include "eos/mixture_record.h"

namespace talix {

// Generalised cubic at compressibility Z.
void SSMMF0(const R8& Z, const R8& T, QDegrees& MQ, const QVec& Q, const R8& P, ModelFunction& function,
            const Vec<bool, 20>& OPTMOD, I4& ICODE);
// Ideal gas.
void SSMIDG(QDegrees& MQ, ModelFunction& function, const Vec<bool, 20>& OPTMOD, I4& ICODE);
// The failure of a volume at or below the co-volume.
void report_volume_below_covolume(I4& ICODE);

}  // namespace talix
