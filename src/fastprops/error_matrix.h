// When each kind of failure of the flash layer last occurred, and the report of it.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kErrorRoutines = 38;
inline constexpr int kErrorNumbers = 10;

// Rows of the error matrix.
namespace error_row {
inline constexpr int DCBRT = 1, ENTHAL = 2, FKW = 3, FLPQ = 4, FLVP = 5, FLTP = 6, FLVT = 7, KGMOL = 8,
                     KLIQ = 9, KVAL = 10, MOL = 11, MOLFR = 12, MULO = 13, REDLAB = 14, RHO = 15, RKS = 16,
                     RKSCRT = 17, RKSCRT2 = 18, RKSF = 19, RKSF1 = 20, VRDO11 = 21, VRDO12 = 22, VRDOE1 = 23,
                     VRDOE2 = 24, VRDOE3 = 25, SURTEN = 26, SURTEN1 = 27, TELOP = 28, TRY = 29, VISLIQ = 30,
                     TALIX = 31, VLINIT = 32, WFR = 33, WRLIN = 34, ENTHAL1 = 35, KLO = 36, FLPQ2 = 37,
                     ZERO = 38;
}  // namespace error_row

struct ErrorMatrix {
  I4 NERRS;                                       // running count of events
  Mat<I4, kErrorRoutines, kErrorNumbers> ERRMAT;  // count at the last event of (routine, number), 0 for none
  Vec<Text<10>, kErrorRoutines> ROUTINE;          // names of the rows
};

extern constinit ErrorMatrix errmat;

// Clears the matrix and fills the names.
void ERRINIT();
// Appends the events to talix.err in the install directory.
void ERRREPORT();
// Counts an event of a routine (error_row::*) and number.
void mark_error(int routine, int number);

}  // namespace talix
