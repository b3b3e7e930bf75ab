// Hydrate constants: lattice and water data of the two structures, and what the hydrate database gives.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

struct HydrateRecord {
  // Cavity constants (row, column): columns 1 and 2 are the small and the large cavity of structure I, 3 and
  // 4 those of structure II. Rows: 1 cavities per water molecule [-], 2 radius [Angstrom], 3 coordination
  // number [-]; rows 4 to 9 are empty.
  Mat<R8, 9, 4> COHCV;
  // Water reference data (row, structure): 1 DMIW0 [J/mol], 2 DHW0 [J/mol], 3 DVW [cm3/mol],
  // 4 DCPW0 [J/(mol K)], 5 B [J/(mol K2)].
  Mat<R8, 5, 2> COHST;
  Cube<L4, 2, kMaxComponents, 2> ENTERS;  // (cavity, component, structure): the component fits the cavity
  Mat<R8, 19, kMaxComponents> COHPC;      // (I, component): coefficients of the hydrate database
  Vec<I4, kMaxComponents> INDXH;          // slot of the component in the hydrate data, 0 for none
};

extern constinit HydrateRecord hydrate;

// Rows of COHPC: the parameters of the cell potential, then the Langmuir coefficients.
namespace hydrate_row {
inline constexpr int core_radius = 1;  // [Angstrom]
inline constexpr int diameter = 2;     // collision diameter [Angstrom]
inline constexpr int well_depth = 3;   // over the Boltzmann constant [K]
// Coefficient A, B, C or D of the Langmuir correlation for a cavity of a structure; A [K/bar], B [K], C [K2], D [K3].
constexpr int langmuir(char letter, int cavity, int structure) {
  return 4 + 4 * (letter - 'A') + 2 * (structure - 1) + (cavity - 1);
}
static_assert(langmuir('D', 2, 2) == 19);
}  // namespace hydrate_row

// Copies the constant tables to COHCV and COHST.
void set_hydrate_constants();
// Empties the record.
void reset_hydrate_record();

}  // namespace talix
