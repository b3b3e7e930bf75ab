#include "api/small_calls.h"

#include <algorithm>

#include "api/catalogue.h"
#include "fastprops/flash_record.h"
#include "fastprops/install_path.h"

namespace talix {

// SETTALIXINSTALL: the install directory, without a trailing separator.
//
// Shared   sets fl.INSTALL, fl.INSTALL_LENGTH; clears fl.NCOLD, so that the next call loads its list again
void SETTALIXINSTALL(const char* PATH, I4 PATH_LENGTH, const I4* LEN) {
  if (PATH == nullptr || LEN == nullptr) return;
  const I4 given = std::clamp(PATH_LENGTH, 0, kMaxFileName);
  fl.INSTALL = std::string_view{PATH, static_cast<std::size_t>(given)};
  fl.INSTALL_LENGTH = std::clamp(*LEN, 0, kMaxFileName);
  fl.NCOLD = 0;
}

void SETTALIXUSAGE(const I4* USAGE1, const I4* MSGHOOK, const I4* MSGUNIT) {
  if (USAGE1 == nullptr || MSGHOOK == nullptr || MSGUNIT == nullptr) return;
  fl.USAGE1 = *USAGE1;
  fl.MSGHOOK = L4{*MSGHOOK};
  fl.MSGUNIT = *MSGUNIT;
}

// SETTALIXVERIFY: the check behind the flashes, kept until it is set again.
//
// In       LEVEL  I4  verify_level::flashes_alone or verify_level::checked; anything else changes nothing
// Shared   sets fl.UNVERIFIED
void SETTALIXVERIFY(const I4* LEVEL) {
  if (LEVEL == nullptr) return;
  if (*LEVEL == verify_level::flashes_alone) fl.UNVERIFIED = true;
  if (*LEVEL == verify_level::checked) fl.UNVERIFIED = false;
}

void CLEARSCAL(ScalTable* SCAL) {
  if (SCAL != nullptr) SCAL->fill(0.0F);
}

void CLEARTPROPS(PropertyTable* TPROPS) {
  if (TPROPS != nullptr) TPROPS->fill(0.0F);
}

// NORMALISECOMPONENTS: each of N fractions divided by their sum.
//
// Oddity   a sum of zero is not guarded and gives no numbers
void NORMALISECOMPONENTS(const I4* N, R4* FRACTIONS) {
  if (N == nullptr || FRACTIONS == nullptr) return;
  R4 sum = 0.0F;
  for (I4 i = 0; i < *N; ++i) sum += FRACTIONS[i];
  for (I4 i = 0; i < *N; ++i) FRACTIONS[i] = FRACTIONS[i] / sum;
}

namespace {

// The catalogue as WEIGHTTOMOLE fetches it on each call.
struct CatalogueTables {
  Vec<R4, kLastComponentNumber> critt, critp, molwt, apbpt, frzpt, heatc;
  Vec<Text<28>, kLastComponentNumber> pname;
};
constinit CatalogueTables catalogue{};

R4 molar_mass_of(I4 number) {
  return number >= 1 && number <= kLastComponentNumber ? catalogue.molwt(number) : 0.0F;
}

}  // namespace

// WEIGHTTOMOLE: mass fractions to mole fractions.
//
// In       ZANDORNOS        I4(N)  component numbers
//          N                I4     entries
// In, out  WEIGHTFRACTIONS  R4(N)  mass fractions, normalised in place
// Out      MOLEFRACTIONS    R4(N)  mole fractions; all zero when a number has no molar mass in the catalogue
// Shared   reads the whole component file
void WEIGHTTOMOLE(const I4* ZANDORNOS, const I4* N, R4* WEIGHTFRACTIONS, R4* MOLEFRACTIONS) {
  if (ZANDORNOS == nullptr || N == nullptr || WEIGHTFRACTIONS == nullptr || MOLEFRACTIONS == nullptr) return;
  I4 count = 0;
  GETTALIXPROPS(&count, catalogue.critt.data(), catalogue.critp.data(), catalogue.molwt.data(),
                catalogue.apbpt.data(), catalogue.frzpt.data(), catalogue.heatc.data(), catalogue.pname(1).c,
                Text<28>::extent);
  NORMALISECOMPONENTS(N, WEIGHTFRACTIONS);
  R4 sum = 0.0F;
  bool known = true;
  for (I4 i = 0; i < *N; ++i) {
    const R4 molar_mass = molar_mass_of(ZANDORNOS[i]);
    known = known && molar_mass > 0.0F;
    MOLEFRACTIONS[i] = WEIGHTFRACTIONS[i] / molar_mass;
    sum += MOLEFRACTIONS[i];
  }
  for (I4 i = 0; i < *N; ++i) MOLEFRACTIONS[i] = known ? MOLEFRACTIONS[i] / sum : 0.0F;
}

}  // namespace talix
