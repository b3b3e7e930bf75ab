#include "fastprops/error_matrix.h"

#include <cstdio>

#include "fastprops/install_path.h"

namespace talix {

namespace {

constexpr Vec<Text<10>, kErrorRoutines> kRoutineNames = {
    text<10>("DCBRT"),  text<10>("ENTHAL"),  text<10>("FKW"),     text<10>("FLPQ"),   text<10>("FLVP"),
    text<10>("FLTP"),   text<10>("FLVT"),    text<10>("KGMOL"),   text<10>("KLIQ"),   text<10>("KVAL"),
    text<10>("MOL"),    text<10>("MOLFR"),   text<10>("MULO"),    text<10>("REDLAB"), text<10>("RHO"),
    text<10>("RKS"),    text<10>("RKSCRT"),  text<10>("RKSCRT2"), text<10>("RKSF"),   text<10>("RKSF1"),
    text<10>("VRDO11"), text<10>("VRDO12"),  text<10>("VRDOE1"),  text<10>("VRDOE2"), text<10>("VRDOE3"),
    text<10>("SURTEN"), text<10>("SURTEN1"), text<10>("TELOP"),   text<10>("TRY"),    text<10>("VISLIQ"),
    text<10>("TALIX"),  text<10>("VLINIT"),  text<10>("WFR"),     text<10>("WRLIN"),  text<10>("ENTHAL1"),
    text<10>("KLO"),    text<10>("FLPQ2"),   text<10>("ZERO")};

static_assert(trimmed(kRoutineNames(error_row::FLTP)) == "FLTP");
static_assert(trimmed(kRoutineNames(error_row::RKSF1)) == "RKSF1");
static_assert(trimmed(kRoutineNames(error_row::TALIX)) == "TALIX");
static_assert(trimmed(kRoutineNames(error_row::ENTHAL1)) == "ENTHAL1");
static_assert(trimmed(kRoutineNames(error_row::ZERO)) == "ZERO");

constexpr char kRule[] = "--------------------------------------------------------------------------------";
static_assert(sizeof(kRule) == 81);

bool any_event() {
  for (int routine = 1; routine <= kErrorRoutines; ++routine)
    for (int number = 1; number <= kErrorNumbers; ++number)
      if (errmat.ERRMAT(routine, number) != 0) return true;
  return false;
}

}  // namespace

constinit ErrorMatrix errmat = {0, {}, kRoutineNames};

void ERRINIT() {
  errmat.NERRS = 0;
  errmat.ERRMAT.fill(0);
  errmat.ROUTINE = kRoutineNames;
}

// ERRREPORT: append the events of the error matrix to talix.err in the install directory.
//
// Shared   reads errmat, fl.INSTALL
// Oddity   no event, no file; a file that cannot be opened ends the call in silence
void ERRREPORT() {
  if (!any_event()) return;
  std::FILE* file = open_install_file(install_name("\\talix.err"), "a");
  if (file == nullptr) return;
  std::fprintf(file, "%s\nTime Routine   Error\n", kRule);
  for (int routine = 1; routine <= kErrorRoutines; ++routine)
    for (int number = 1; number <= kErrorNumbers; ++number)
      if (errmat.ERRMAT(routine, number) != 0)
        std::fprintf(file, "%4d %.10s %4d\n", errmat.ERRMAT(routine, number), errmat.ROUTINE(routine).c,
                     number);
  std::fprintf(file, "%s\n", kRule);
  std::fclose(file);
}

void mark_error(int routine, int number) {
  errmat.NERRS = errmat.NERRS + 1;
  errmat.ERRMAT(routine, number) = errmat.NERRS;
}

}  // namespace talix
