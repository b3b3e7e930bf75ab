// What of a component of the user is fitted anew, and the fit.
#pragma once

#include <map>

#include "bank/fit_reference.h"
#include "bank/user_component.h"

namespace talix::bank {

// What of a component is fitted anew.
struct Renewed {
  bool saturation = false;  // curves, vapour pressure and all sets
  bool heat = false;        // the ideal gas
  bool others = false;      // single sets
};
Renewed renewed_of(const UserComponent& c);

// Fits what rests on the figures of the user and puts the rows into the tables. REFERENCE and CURVES are those of the
// bank; a new component needs none of them.
void fit_tables(BankSources& sources, const ReferenceTables& reference, const std::map<int, Curves>& curves,
                const UserComponent& c);

}  // namespace talix::bank
