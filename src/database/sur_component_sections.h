// Sections of a component's constants that belong to one model: association, hydrates, groups, elements.
#pragma once

#include "database/key_list.h"

namespace talix {

void association_keys(KeyList& list, I4 i);
void element_keys(KeyList& list, I4 i);
void group_keys(KeyList& list, I4 i);
// Coefficients of structure 1 or 2, parameters of the cell potential; false for a component without hydrate data.
bool langmuir_keys(KeyList& list, I4 i, int structure);
bool potential_keys(KeyList& list, I4 i);

}  // namespace talix
