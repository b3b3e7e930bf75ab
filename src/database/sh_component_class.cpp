#include "database/sh_component_class.h"

#include "engine/codes.h"

namespace talix {

constinit Vec<I4, kExclusions> IXCLUD{};

// SHCAO0: classify a component.
//
// In       NUMBER  I4    standard number
//          CODE    text  component code; its third character is the letter of the class
// Out      CLASS     I4  family::aromatic, parafinic, naphthene or unknown
//          SUBCLASS  I4  family::alkyl_benzene, alkane, alkyl_cyclo_hexane or unknown
// Shared   reads IXCLUD
// Status   ok; nonstandard for a number of the exclusion list, class and subclass are then family::excluded
void SHCAO0(I4& CLASS, I4& SUBCLASS, const I4& NUMBER, std::string_view CODE, I4& NFAIL) {
  constexpr std::string_view kAromatic = "ABFGHIS";
  constexpr std::string_view kParaffinic = "DOPTW";
  constexpr std::string_view kNaphthenic = "CJNMV";

  NFAIL = status::ok;
  for (int i = 1; i <= kExclusions; ++i) {
    if (IXCLUD(i) != 0 && IXCLUD(i) == NUMBER) {
      NFAIL = status::nonstandard;
      CLASS = family::excluded;
      SUBCLASS = family::excluded;
      return;
    }
  }

  CLASS = family::unknown;
  SUBCLASS = family::unknown;
  const char letter = CODE.size() > 2 ? CODE[2] : ' ';
  const auto in = [letter](std::string_view letters) {
    return letters.find(letter) != std::string_view::npos;
  };
  if (in(kAromatic)) CLASS = family::aromatic;
  if (in(kParaffinic)) CLASS = family::parafinic;
  if (in(kNaphthenic)) CLASS = family::naphthene;
  if (letter == 'A') SUBCLASS = family::alkyl_benzene;
  if (letter == 'P') SUBCLASS = family::alkane;
  if (letter == 'N') SUBCLASS = family::alkyl_cyclo_hexane;
}

}  // namespace talix
