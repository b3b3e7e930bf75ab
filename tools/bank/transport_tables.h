// The table of the fitted saturation and transport sets, data/transport.csv.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "bank/fit_sets.h"

namespace talix::bank {

// Sets of one component, in the order of the table; what has no source is left out.
std::vector<FittedSet> fit_transport(const ReferenceTables& tables, const FitComponent& c,
                                     const Curves& curves);

// Fits the components and writes the table into the data directory, with the curves of curves.csv there. Rows of
// components that are not fitted stay. False with a message where a table is missing or cannot be written.
bool fit_transport_table(const std::string& data_dir, const ReferenceTables& tables,
                         const std::vector<const FitComponent*>& components, bool keep_others,
                         std::string& message);

// Curves of the components by number, as curves.csv has them.
bool read_curves(const std::string& data_dir, const ReferenceTables& tables, std::map<int, Curves>& curves);

}  // namespace talix::bank
