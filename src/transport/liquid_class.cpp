#include "transport/liquid_class.h"

#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/sdb_pure.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr R8 kHeaviestHydrogen = 3.0;  // molar mass [g/mol]
constexpr I4 kHeaviestLight = 5;       // carbon atoms
constexpr I4 kLightestHeavy = 20;      // the same

// Atoms other than carbon and hydrogen.
I4 foreign_atoms(I4 I) {
  I4 sum = 0;
  for (int k = 3; k <= 9; ++k) sum += comp.ELEM(I, k);
  // Each further element stands as atomic number and count.
  for (int k = 11; k <= 15; k += 2) sum += comp.ELEM(I, k);
  return sum;
}

// Directory entry in which the code of a component was found last. It is only a hint: the code is compared again,
// so that no change of components or of the directory can make it wrong.
constinit Vec<I4, kMaxComponents> entry_hint{};

bool has_code(I4 entry, I4 I) {
  return entry >= 2 && entry <= directory.NDIR &&
         directory.CDENT(entry).sub(5, 8) == setup.CUCOMP(I).sub(1, 4);
}

// SDBAO0, without its search where the entry is known from the last time.
bool is_listed(I4 I) {
  if (has_code(entry_hint(I), I)) return true;
  if (!SDBAO0(I)) return false;
  I4 entry = 2;
  while (entry < directory.NDIR && !has_code(entry, I)) ++entry;
  entry_hint(I) = entry;
  return true;
}

}  // namespace

// liquid_class: which kind of correlation serves component I in a liquid.
//
// Shared   reads comp.ELEM, RMOLW, the directory of components
LiquidClass liquid_class(I4 I) {
  const I4 carbon = comp.ELEM(I, 1);
  return {.ISZAN = is_listed(I),
          .LIGHT = carbon >= 1 && carbon <= kHeaviestLight && foreign_atoms(I) == 0,
          .HYDGEN = comp.RMOLW(I) < kHeaviestHydrogen,
          .HEAVY = carbon > kLightestHeavy};
}

}  // namespace talix
