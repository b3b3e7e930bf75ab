// The part of the accuracy report on viscosity, conductivity and surface tension of whole phases.
#pragma once

#include <filesystem>
#include <ostream>

#include "bank/record.h"

namespace talix::bank {

// Flashes the states of the tables transport_gas.csv, transport_liquid.csv, surface_tension.csv and
// transport_mixture.csv of `golden_dir` on the bank and writes how far rows 13 to 15 of the answers are from them.
// Throws BankError where a table cannot be read or a flash fails.
void write_phase_transport(std::ostream& out, const Bank& bank, const std::filesystem::path& golden_dir);

}  // namespace talix::bank
