#include "eos/ssm_mixing_excess.h"

#include "engine/codes.h"
#include "engine/model_record.h"

namespace talix {

// excess_ratios: ratios of the pure components and their means.
//
// In       X                   R8(50)  mole fractions [-]
//          APU, D1ADT, D2ADT   R8(50)  pure a and its T d/dT, T^2 d2/dT2 [K/Pa]
//          BPU, D1BDT, D2BDT   R8(50)  the same of b [K/Pa]
//          IFCOM, ILCOM        I4      range of components
//          OPTMR               flags   4 or 6 adds the first, 5 both derivatives
// Out      ratios                      the entries asked for
void excess_ratios(const CompVec& X, const CompVec& APU, const CompVec& D1ADT, const CompVec& D2ADT,
                   const CompVec& BPU, const CompVec& D1BDT, const CompVec& D2BDT, const I4& IFCOM,
                   const I4& ILCOM, const Vec<bool, 6>& OPTMR, ExcessRatios& ratios) {
  ratios.mean = ratios.first = ratios.second = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    const R8 b = BPU(i);
    ratios.ALPHA(i) = APU(i) / b;
    ratios.mean += X(i) * ratios.ALPHA(i);
    if (!OPTMR(4) && !OPTMR(5) && !OPTMR(6)) continue;
    ratios.D1ALPH(i) = D1ADT(i) / b - APU(i) * D1BDT(i) / (b * b);
    ratios.first += X(i) * ratios.D1ALPH(i);
    if (!OPTMR(5)) continue;
    ratios.D2ALPH(i) = D2ADT(i) / b - 2.0 * D1ADT(i) * D1BDT(i) / (b * b) +
                       2.0 * APU(i) * (D1BDT(i) * D1BDT(i)) / (b * b * b) - APU(i) * D2BDT(i) / (b * b);
    ratios.second += X(i) * ratios.D2ALPH(i);
  }
}

// excess_energy: excess Gibbs energy over R T with the derivatives that a mixing rule needs.
//
// In       T             R8      temperature [K]
//          X             R8(50)  mole fractions [-]
//          IFCOM, ILCOM  I4      range of components
//          OPTMR         flags   of the mixing rule
//          MODEL         I4      slot of the model table
// Out      excess                every entry; 0 where it was not asked for or the liquid model is not NRTL
void excess_energy(const R8& T, const CompVec& X, const I4& IFCOM, const I4& ILCOM, const Vec<bool, 6>& OPTMR,
                   const I4& MODEL, ExcessGibbs& excess) {
  excess.GE = excess.GET = excess.GETT = 0.0;
  for (int i = IFCOM; i <= ILCOM; ++i) {
    excess.CHIN(i) = excess.CHINT(i) = 0.0;
    if (!OPTMR(3)) continue;
    for (int j = IFCOM; j <= ILCOM; ++j) excess.CHINN(j, i) = 0.0;
  }
  if (models.MODLIQ(MODEL) != model::nrtl) return;
  SNLAC0(T, X, excess, IFCOM, ILCOM, OPTMR);
}

}  // namespace talix
