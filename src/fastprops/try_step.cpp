#include "fastprops/try_step.h"

#include <cmath>

namespace talix {

// TRY: one step of an outer iteration, accelerated by its dominant eigenvalue.
//
// In       XNEW   R4  the value that plain substitution would take
// In, out  X      R4  current value
//          DX     R4  last step; the caller sets it to 0 to start
//          DXOLD  R4  last plain difference
//          R      R4  limit of the acceleration factor; starts at 20 and moves halfway to each accepted
//          factor
void TRY(R4& X, const R4& XNEW, R4& DX, R4& DXOLD, R4& R) {
  const R4 DX2 = XNEW - X;
  const R4 DDX = DX2 - DXOLD;
  if (DX == 0.0F) {
    R = 20.0F;
    DX = DX2;
  } else {
    R4 RR = R;
    if (DDX != 0.0F) {
      RR = -DX / DDX;
      const R4 RABS = std::fabs(RR);
      if (!(RABS < R))
        RR = std::copysign(R, RR);
      else
        R = (RABS + R) / 2.0F;
    }
    DX = RR * DX2;
  }
  X = X + DX;
  DXOLD = DX2;
}

}  // namespace talix
