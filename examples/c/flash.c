/*
 * Isothermal flash of a natural gas with ten components.
 *
 * Compile and run from the root of the project, after ./dev build:
 *   cc -std=c99 -I include examples/c/flash.c -L build/release/lib -ltalix -Wl,-rpath,$PWD/build/release/lib
 * -o flash
 *   ./flash build/release/share/talix
 *
 * The argument is the install directory; without it the variable TALIX_HOME is used.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "talix/talix.h"

#define COMPONENTS 10
#define SCAL_AT(row, column) SCAL[((row)-1) + TALIX_SCAL_ROWS * ((column)-1)]
#define TPROPS_AT(row, column) TPROPS[((row)-1) + TALIX_PROPERTY_ROWS * ((column)-1)]

static const struct {
  int32_t number;
  float feed;
} gas[COMPONENTS] = {{15, 0.020F}, {4, 0.015F},  {20, 0.840F}, {21, 0.060F}, {22, 0.030F},
                     {24, 0.007F}, {23, 0.010F}, {25, 0.006F}, {28, 0.007F}, {116, 0.005F}};

static const char* const property_names[TALIX_PROPERTY_ROWS] = {"molar mass, g/mol",
                                                                "density, kg/m3",
                                                                "compressibility, 1/bar",
                                                                "ideal-gas enthalpy, J/mol",
                                                                "ideal-gas entropy, J/mol/K",
                                                                "ideal-gas cp, J/mol/K",
                                                                "enthalpy, J/mol",
                                                                "entropy, J/mol/K",
                                                                "cv, J/g/K",
                                                                "cp, J/g/K",
                                                                "speed of sound, m/s",
                                                                "Joule-Thomson, K/bar",
                                                                "viscosity, mPa s",
                                                                "conductivity, W/m/K",
                                                                "surface tension, mN/m"};

static void print_name(int32_t number) {
  float constants[6];
  char name[TALIX_NAME_LENGTH];
  int32_t status = 0;
  GETTALIXPROPSID(&number, &constants[0], &constants[1], &constants[2], &constants[3], &constants[4],
                  &constants[5], name, TALIX_NAME_LENGTH, &status);
  printf("%-.*s", TALIX_NAME_LENGTH, status == 0 ? name : "(unknown)                   ");
}

int main(int argc, char** argv) {
  static float SCAL[TALIX_SCAL_ROWS * TALIX_SCAL_COLUMNS];
  static float TPROPS[TALIX_PROPERTY_ROWS * TALIX_PROPERTY_COLUMNS];
  char STR[120];
  char UNIT = 'M';
  int32_t NC = COMPONENTS, IFLASH = 5, usage = 0, hook = 0, unit = -1, length;
  float T = -20.0F, P = 40.0F, FRV = 1.0F;
  const char* install = argc > 1 ? argv[1] : getenv("TALIX_HOME");
  int i;

  if (install == NULL) {
    fprintf(stderr, "usage: flash INSTALL_DIRECTORY\n");
    return 2;
  }
  length = (int32_t)strlen(install);
  SETTALIXINSTALL(install, length, &length);
  SETTALIXUSAGE(&usage, &hook, &unit); /* messages are printed here, so no extra lines */

  CLEARSCAL(SCAL);
  CLEARTPROPS(TPROPS);
  for (i = 1; i <= COMPONENTS; ++i) {
    SCAL_AT(i, 1) = (float)gas[i - 1].number;
    SCAL_AT(i, 2) = gas[i - 1].feed;
  }
  TALIX(&NC, &T, &P, &FRV, &UNIT, 1, &IFLASH, SCAL, TPROPS, STR, (int32_t)sizeof STR);
  for (length = (int32_t)sizeof STR; length > 0 && STR[length - 1] == ' '; --length) {
  }
  if (length > 0) {
    fprintf(stderr, "%.*s\n", (int)length, STR);
    if (STR[0] != '.') return 1;
  }

  printf("Natural gas at %.2f C and %.2f bar: vapour fraction %.5f\n\n", (double)T, (double)P, (double)FRV);
  printf("%-*s %12s %12s %12s\n", TALIX_NAME_LENGTH, "component", "feed", "vapour", "liquid");
  for (i = 1; i <= COMPONENTS; ++i) {
    print_name(gas[i - 1].number);
    printf(" %12.6f %12.6f %12.6f\n", (double)SCAL_AT(i, 2), (double)SCAL_AT(i, 6), (double)SCAL_AT(i, 7));
  }
  printf("\n%-*s %12s %12s %12s\n", TALIX_NAME_LENGTH, "property", "", "vapour", "liquid");
  for (i = 1; i <= TALIX_PROPERTY_ROWS; ++i)
    printf("%-*s %12s %12.5g %12.5g\n", TALIX_NAME_LENGTH, property_names[i - 1], "", (double)TPROPS_AT(i, 1),
           (double)TPROPS_AT(i, 2));
  return 0;
}
