// Set-up and table calls of the host.
#pragma once

#include "api/talix_call.h"
#include "base/real.h"

namespace talix {

// Levels of SETTALIXVERIFY.
namespace verify_level {
inline constexpr I4 flashes_alone = 0;
inline constexpr I4 checked = 1;  // from the load on
}  // namespace verify_level

// Install directory: LEN characters of PATH, which holds PATH_LENGTH.
void SETTALIXINSTALL(const char* PATH, I4 PATH_LENGTH, const I4* LEN);
// Route of the message lines.
void SETTALIXUSAGE(const I4* USAGE1, const I4* MSGHOOK, const I4* MSGUNIT);
// Whether a check stands behind the flashes: 0 they run alone, 1 they are checked and repaired.
void SETTALIXVERIFY(const I4* LEVEL);
// Every entry of a table becomes 0.
void CLEARSCAL(ScalTable* SCAL);
void CLEARTPROPS(PropertyTable* TPROPS);
// Divides each fraction by the sum of all.
void NORMALISECOMPONENTS(const I4* N, R4* FRACTIONS);
// Mass fractions (normalised in place) to mole fractions of the components of the catalogue.
void WEIGHTTOMOLE(const I4* ZANDORNOS, const I4* N, R4* WEIGHTFRACTIONS, R4* MOLEFRACTIONS);

}  // namespace talix
