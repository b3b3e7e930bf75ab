#include "eos/ssm_pure_planar.h"

#include <cmath>

#include "database/pair_record.h"
#include "engine/codes.h"
#include "eos/cubic_record.h"
#include "eos/ssm_pure_vardo.h"
#include "eos/two_dimensional_record.h"

namespace talix {

namespace {

constexpr R8 kForm = 2.2754548213704653e17;  // fixed constant of the form
constexpr R8 kThird = 0.333333333;

void clear_slopes(int i) {
  planar.D1A2DT(i) = planar.D1B2DT(i) = 0.0;
  planar.D2A2DT(i) = planar.D2B2DT(i) = 0.0;
}

// a from the ratio of a to b that AOB gives, at constant b.
void parameters_of_ratio(int i, const R8& T, const I4& IPARA) {
  const R8 AOB = planar.AOB(i);
  const R8 B2D = planar.B2D(i);
  planar.A2D(i) = AOB * B2D / T;
  if (IPARA > 0) {
    planar.D1B2DT(i) = 0.0;
    planar.D1A2DT(i) = AOB * (planar.D1B2DT(i) - B2D / T);
  }
  if (IPARA == 2) {
    planar.D2B2DT(i) = 0.0;
    planar.D2A2DT(i) = AOB * (planar.D2B2DT(i) - 2.0 * planar.D1B2DT(i) + 2.0 * B2D / T);
  }
}

// From the parameters of the bulk.
void parameters_of_bulk(int i, const I4& IPARA) {
  const R8 a = pures.ARK(i);
  const R8 b = pures.BRK(i);
  const R8 TMP = std::pow(3.0 * b / (2.0 * kForm), kThird);
  planar.B2D(i) = kForm / 2.0 * (TMP * TMP);
  planar.A2D(i) = planar.B2D(i) * a / (2.0 * b);
  const R8 D1TMP = pures.D1BDT(i) / (2.0 * kForm) / (TMP * TMP);
  if (IPARA > 0) {
    planar.D1B2DT(i) = kForm * TMP * D1TMP;
    planar.D1A2DT(i) = 3.0 / (8.0 * TMP) * (pures.D1ADT(i) - a / TMP * D1TMP);
  }
  if (IPARA == 2) {
    const R8 S = pures.D2BDT(i) / (2.0 * kForm) / (TMP * TMP) - 2.0 / 3.0 * (pures.D1BDT(i) * D1TMP / b);
    planar.D2B2DT(i) = kForm * (TMP * S + D1TMP * D1TMP);
    planar.D2A2DT(i) =
        3.0 / (8.0 * TMP) *
        (pures.D2ADT(i) - a / TMP * S - 2.0 * D1TMP / TMP * (pures.D1ADT(i) - a / TMP * D1TMP));
  }
}

}  // namespace

// S2DPC0: a and b of the two-dimensional form, beside those of the bulk.
//
// AOB tells the origin for each component: below -1 the tables hold what the data put there; above 0 it is
// the ratio of a to b; from -1 to 0 both follow from a and b of the bulk.
//
// In       T             R8  temperature [K]
//          IPARA         I4  0 values, 1 with first, 2 with second derivatives
//          IFCOM, ILCOM  I4  range of components
// Shared   reads planar.AOB; writes pures through SSMPC0, and planar
// Status   ok
// Oddity   the exponent of the cube root has nine digits
void S2DPC0(const R8& T, const I4& IPARA, const I4& IFCOM, const I4& ILCOM, I4& ICODE) {
  SSMPC0(T, IPARA, IFCOM, ILCOM, ICODE);
  for (int i = IFCOM; i <= ILCOM; ++i) {
    if (planar.AOB(i) < -1.0)
      clear_slopes(i);
    else if (planar.AOB(i) > 0.0)
      parameters_of_ratio(i, T, IPARA);
    else
      parameters_of_bulk(i, IPARA);
  }
}

// S2DAO0: the mixing of the two-dimensional parameters sees the interaction data of the bulk.
//
// In       IFCOM, ILCOM  I4  range of components whose entries are copied; the lists are copied whole
// Shared   reads pairs; writes planar_pairs
void S2DAO0(const I4& IFCOM, const I4& ILCOM) {
  for (int j = IFCOM; j <= ILCOM; ++j) {
    for (int i = IFCOM; i <= ILCOM; ++i) {
      planar_pairs.TETA0(i, j) = pairs.TETA0(i, j);
      planar_pairs.TETA0T(i, j) = pairs.TETA0T(i, j);
      planar_pairs.TETA1(i, j) = pairs.TETA1(i, j);
      planar_pairs.TETA1T(i, j) = pairs.TETA1T(i, j);
      planar_pairs.IDELTA(i, j) = pairs.IDELTA(i, j);
    }
  }
  planar_pairs.NT0 = pairs.NT0;
  planar_pairs.NT1 = pairs.NT1;
  for (int L = 1; L <= pairs.NT0; ++L) {
    planar_pairs.IT0(L) = pairs.IT0(L);
    planar_pairs.JT0(L) = pairs.JT0(L);
  }
  for (int L = 1; L <= pairs.NT1; ++L) {
    planar_pairs.IT1(L) = pairs.IT1(L);
    planar_pairs.JT1(L) = pairs.JT1(L);
  }
}

}  // namespace talix
