// Validation of the saturation and transport sets of a record.
#pragma once

#include <string>
#include <vector>

#include "bank/record.h"

namespace talix::bank {

// What is wrong with the sets of a record, one line each; empty where all are sound or absent.
std::vector<std::string> transport_faults(const PureRecord& record);

}  // namespace talix::bank
