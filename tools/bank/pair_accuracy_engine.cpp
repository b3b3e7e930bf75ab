#include "bank/pair_accuracy_engine.h"

#include "engine/codes.h"
#include "engine/shmix_driver.h"

namespace talix::bank {

PairPhase PairEngine::phase(double T, double P, double x, PairRoot root) const {
  static const Vec<I4, kMaxComponents> IC = [] {
    Vec<I4, kMaxComponents> list{};
    list(1) = 1;
    list(2) = 2;
    return list;
  }();
  static CompVec X{}, DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  static CompMat DFDN{};
  static const ReservedCodes IRESRV{};
  ReservedValues RESRV{};
  X = {};
  X(1) = x;
  X(2) = 1.0 - x;
  I4 IPHRTN = 0, NFAIL = status::ok;
  L4 AMBIG{};
  R8 ZFUG = 0, ZVOL = 0, DZDT = 0, DZDP = 0, H = 0, DHDT = 0, DHDP = 0, S = 0, DSDT = 0, DSDP = 0;
  const I4 asked = root == PairRoot::liquid ? phase::liquid : phase::vapour;
  SHMIX0(asked, root_option::real_only, T, P, 2, IC, X, set_.slot(), kNoDerivatives, set_.slot(),
         kNoDerivatives, 0, thermal::total, kNoDerivatives, IRESRV, 0, IPHRTN, AMBIG, ZFUG, ZVOL, DZDT, DZDP,
         DZDN, FUG, DFDT, DFDP, DFDN, H, DHDT, DHDP, DHDN, S, DSDT, DSDP, DSDN, RESRV, NFAIL);
  PairPhase result;
  result.ok = NFAIL == status::ok;
  result.Z = ZVOL;
  result.lnphi = {FUG(1), FUG(2)};
  return result;
}

}  // namespace talix::bank
