// SSTPW1: binary corrections of the parachor method.
#include <bit>
#include <cstdint>
#include <utility>

#include "fastprops/surface_tension.h"
#include "fastprops/surface_tension_tables.h"

namespace talix {

namespace {

constexpr I4 kOutside = 0;  // position of a code that is not in the table

// Four characters at once: this runs for every pair of every property column.
constexpr std::uint32_t word(const Text<4>& code) { return std::bit_cast<std::uint32_t>(code.c); }

I4 position(const Text<4>& code) {
  const std::uint32_t key = word(code);
  for (I4 i = 1; i <= kSurfaceCodes; ++i)
    if (word(CICS(i)) == key) return i;
  return kOutside;
}

// The last two characters tell the family.
constexpr bool is_paraffin(const Text<4>& code) { return code.sub(3, 4) == "P "; }
constexpr bool is_olefin(const Text<4>& code) { return code.sub(3, 4) == "O "; }

template <std::size_t N>
constexpr SurfaceCorrection default_of(const std::array<SurfaceDefault, N>& table, I4 code,
                                       SurfaceCorrection otherwise) {
  for (const SurfaceDefault& row : table)
    if (row.code == code) return row.correction;
  return otherwise;
}

// Two codes of the table without a row of their own.
constexpr SurfaceCorrection without_row(I4 lower, I4 upper) {
  const bool paraffin = is_paraffin(CICS(lower));
  if (paraffin && !is_paraffin(CICS(upper))) return kNoCorrection;
  return default_of(kAsLower, lower, paraffin ? kParaffins : kNoCorrection);
}

// All pairs of the table; a substance needs no correction with itself.
constexpr Mat<SurfaceCorrection, kSurfaceCodes, kSurfaceCodes> kInside = [] {
  Mat<SurfaceCorrection, kSurfaceCodes, kSurfaceCodes> table{};
  for (I4 lower = 1; lower <= kSurfaceCodes; ++lower) {
    table(lower, lower) = kNoCorrection;
    for (I4 upper = lower + 1; upper <= kSurfaceCodes; ++upper)
      table(lower, upper) = without_row(lower, upper);
  }
  for (const SurfacePair& row : kSurfacePairs) table(row.lower, row.upper) = row.correction;
  return table;
}();

SurfaceCorrection both_outside(const Text<4>& first, const Text<4>& second) {
  if (is_paraffin(first) && is_paraffin(second)) return kUnknownParaffin;
  const bool mixed = (is_paraffin(first) && is_olefin(second)) || (is_olefin(first) && is_paraffin(second));
  return mixed ? kParaffinOlefin : kNoCorrection;
}

SurfaceCorrection one_outside(I4 known, const Text<4>& other) {
  if (is_paraffin(other)) return default_of(kWithUnknownParaffin, known, kUnknownParaffin);
  return is_olefin(other) && is_paraffin(CICS(known)) ? kParaffinOlefin : kNoCorrection;
}

SurfaceCorrection correction(const Text<4>& first, I4 PI, const Text<4>& second) {
  const I4 PJ = position(second);
  if (PI == kOutside && PJ == kOutside) return both_outside(first, second);
  if (PJ == kOutside) return one_outside(PI, second);
  if (PI == kOutside) return one_outside(PJ, first);
  return PI < PJ ? kInside(PI, PJ) : kInside(PJ, PI);
}

}  // namespace

// SSTPW1: corrections of component I with all higher components.
//
// In       ICS    text(50)  component codes
//          I      I4        component
//          NC     I4        number of components
// Out      ASURT, BSURT  R8(50)  entries I + 1 to NC: the correction is ASURT + BSURT (T - 273.15), T in K
// Oddity   the family is told by the end of a code alone: water, "H2O ", counts as an olefin
void SSTPW1(const Vec<Text<4>, kMaxComponents>& ICS, const I4& I, CompVec& ASURT, CompVec& BSURT,
            const I4& NC) {
  const I4 PI = position(ICS(I));
  for (int j = I + 1; j <= NC; ++j) {
    const SurfaceCorrection pair = correction(ICS(I), PI, ICS(j));
    ASURT(j) = widen(pair.ASURT);
    BSURT(j) = widen(pair.BSURT);
  }
}

}  // namespace talix
