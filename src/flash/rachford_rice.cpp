#include "flash/rachford_rice.h"

namespace talix {

namespace {

R4 denominator(R4 KA, R4 KB, R4 FLA, R4 FLB) { return KA * KB * (1.0F - FLA - FLB) + FLA * KB + FLB * KA; }

// Without a second liquid only three of the sums are read.
SplitSums two_phase_sums(const SplitEquations& e, R4 FLA, R4 FLB) {
  SplitSums s{};
  for (int i = 1; i <= e.count; ++i) {
    const R4 D = denominator(e.KA(i), e.KB(i), FLA, FLB);
    const R4 a = (1.0F - e.KA(i)) * e.KB(i) / D;
    const R4 b = (1.0F - e.KB(i)) * e.KA(i) / D;
    s.SUMA += e.ZZ(i) * a;
    s.SUMAA += e.ZZ(i) * (a * a);
    s.SUMBB += e.ZZ(i) * (b * b);
  }
  return s;
}

}  // namespace

SplitSums split_sums(const SplitEquations& e, R4 FLA, R4 FLB) {
  if (!e.second_liquid) return two_phase_sums(e, FLA, FLB);
  SplitSums s{};
  for (int i = 1; i <= e.count; ++i) {
    const R4 ONEMKA = (1.0F - e.KA(i)) * e.KB(i);
    const R4 ONEMKB = (1.0F - e.KB(i)) * e.KA(i);
    const R4 D = denominator(e.KA(i), e.KB(i), FLA, FLB);
    const R4 a = ONEMKA / D;
    const R4 b = ONEMKB / D;
    const R4 l = (e.KB(i) - e.KA(i)) / D;
    s.SUMA += e.ZZ(i) * a;
    s.SUMB += e.ZZ(i) * b;
    s.SUMAA += e.ZZ(i) * (a * a);
    s.SUMBB += e.ZZ(i) * (b * b);
    s.SUMAB += e.ZZ(i) * a * b;
    s.SUMLL += e.ZZ(i) * (l * l);
  }
  return s;
}

}  // namespace talix
