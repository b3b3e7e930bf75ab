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

// Rows of the table for the sets of one component.
std::vector<std::string> transport_rows(const FitComponent& c, const std::vector<FittedSet>& sets);

// First lines of the table.
extern const char* const kTransportComment;
extern const char* const kTransportHeader;

// Curves of the components by number, as curves.csv has them.
bool read_curves(const std::string& data_dir, const ReferenceTables& tables, std::map<int, Curves>& curves);

}  // namespace talix::bank
