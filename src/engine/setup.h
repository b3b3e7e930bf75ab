// Engine set-up: component list, data directory, platform, first-call defaults.
#pragma once

#include <string_view>

#include "base/real.h"
#include "base/text.h"

namespace talix {

// Starts a component set of N codes, each WIDTH characters long, stored one behind the other.
void SHINI0(const I4& N, const char* CODES, const I4& WIDTH, I4& NFAIL);
// Data directory: MODE "INPUT" stores PATH, "INFO" copies the stored one to PATH. Status 0 or 3.
void SURPT0(char* PATH, int PATH_LENGTH, std::string_view MODE, I4& NFAIL);
// Builds the file and unit tables for a directory.
void SSYAO2(std::string_view PATH, I4& NFAIL);
// Selects the host platform.
void SURPL0(const I4& CODE, I4& NFAIL);
// First-call defaults, in the order in which SHINI0 runs them.
void SINAO0();
void SINAO1();
void SINAO2();
void SINAO3();

}  // namespace talix
