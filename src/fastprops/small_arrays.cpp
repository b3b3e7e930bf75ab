#include "fastprops/small_arrays.h"

#include <algorithm>

namespace talix {

namespace {

// Flows that are not above this count as none.
constexpr R4 kNoFlow = 1.0E-30F;

}  // namespace

R4 TELOP(const I4& N, const FlashVec& A) {
  R4 sum = 0.0F;
  for (int i = 1; i <= N; ++i) sum += A(i);
  return sum;
}

void ZERO(const I4& N, FlashVec& X) {
  for (int i = 1; i <= N; ++i) X(i) = 0.0F;
}

void ZERO(const I4& N, PropertyColumn& X) {
  for (int i = 1; i <= N; ++i) X(i) = 0.0F;
}

// KGMOL: mass flows F [kg] become mole flows [kmol], in place.
void KGMOL(const I4& N, FlashVec& F, const FlashVec& AMW) {
  for (int i = 1; i <= N; ++i) F(i) = F(i) / AMW(i);
}

// MOL: mean molar mass MW [g/mol] of the mole fractions Y.
void MOL(const I4& N, const FlashVec& Y, R4& MW) {
  MW = 0.0F;
  for (int i = 1; i <= N; ++i) MW += Y(i) * fl.AMW(i);
}

// MOLFR: fractions X of the flows A, whose total is FT.
//
// Oddity   flows not above 1E-30 are set to 0 in A itself
void MOLFR(const I4& N, const R4& FT, FlashVec& A, FlashVec& X) {
  const R4 reciprocal = 1.0F / FT;
  for (int i = 1; i <= N; ++i) {
    if (!(A(i) > kNoFlow)) A(i) = 0.0F;
    X(i) = A(i) * reciprocal;
  }
}

// WFR: mass flows DUM [kg], their total FTW and mass fractions X of the mole flows XMOL [kmol].
//
// Oddity   the total is at least 2E-8, so a phase without flow gets fractions of zero
void WFR(const I4& N, const FlashVec& AMW, const FlashVec& XMOL, FlashVec& X, FlashVec& DUM, R4& FTW) {
  for (int i = 1; i <= N; ++i) DUM(i) = XMOL(i) * AMW(i);
  FTW = std::max(TELOP(N, DUM), kFlowFloor);
  MOLFR(N, FTW, DUM, X);
}

}  // namespace talix
