/*
 * Properties of one phase by a model of the engine, without a flash: methane with n-butane as a vapour by
 * Peng-Robinson, once with the constants of the bank and once with another interaction parameter of the pair.
 *
 * Compile and run from the root of the project, after ./dev build:
 *   cc -std=c99 -I include examples/c/phase.c build/release/lib/libtalix_core.a -lstdc++ -lm -o phase
 *   ./phase build/release/share/talix
 *
 * The argument is the install directory; without it the variable TALIX_HOME is used.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "talix/morve.h"

#define COMPONENTS 2
#define RGAS 8.314471 /* of the engine, J/(mol K) */
#define DFDN_AT(i, j) DFDN[((i)-1) + MORVE_MAX_COMPONENTS * ((j)-1)]

static const char codes[] = " 1P  4P "; /* methane, n-butane: four characters each */

/* Prints what the engine said, and ends. */
static int failed(const char* call, int32_t status) {
  char name[MORVE_ROUTINE_LENGTH], text[MORVE_MESSAGE_LENGTH], word[MORVE_CODE_LENGTH];
  int32_t count = 0, k, severity, ignored;
  GETMORVECODETEXT(&status, word, MORVE_CODE_LENGTH);
  fprintf(stderr, "%s: status %d, %.*s\n", call, (int)status, MORVE_CODE_LENGTH, word);
  GETMORVEERRORCOUNT(&count);
  for (k = 1; k <= count; ++k) {
    GETMORVEERROR(&k, &severity, name, MORVE_ROUTINE_LENGTH, text, MORVE_MESSAGE_LENGTH, &ignored);
    fprintf(stderr, "%.*s %.*s\n", MORVE_ROUTINE_LENGTH, name, MORVE_MESSAGE_LENGTH, text);
  }
  return 1;
}

/* The vapour at 298.15 K and 30 bar; prints its properties and returns the status. */
static int32_t print_vapour(int32_t slot) {
  static double DZDN[50], FUG[50], DFDT[50], DFDP[50], DFDN[50 * 50], DHDN[50], DSDN[50], RESRV[20];
  const double T = 298.15, P = 30E5, X[50] = {0.9, 0.1};
  const int32_t phase = MORVE_VAPOUR, root = MORVE_REAL_ROOT, kind = MORVE_TOTAL, components = COMPONENTS;
  const int32_t wanted[20] = {MORVE_CP, MORVE_SPEED_OF_SOUND}, wanted_count = 2;
  const int32_t none[3] = {0, 0, 0}, all[3] = {1, 1, 1}, indices[50] = {0};
  double ZFUG, ZVOL, DZDT, DZDP, H, DHDT, DHDP, S, DSDT, DSDP;
  int32_t found = MORVE_NONE, ambiguous, status, i;

  SHMIX0(&phase, &root, &T, &P, &components, indices, X, &slot, none, &slot, all, &slot, &kind, none, wanted,
         &wanted_count, &found, &ambiguous, &ZFUG, &ZVOL, &DZDT, &DZDP, DZDN, FUG, DFDT, DFDP, DFDN, &H,
         &DHDT, &DHDP, DHDN, &S, &DSDT, &DSDP, DSDN, RESRV, &status);
  if (status != MORVE_OK) return status;
  printf("Z %.8f, volume %.4f cm3/mol\n", ZVOL, 1E6 * ZVOL * RGAS * T / P);
  printf("H %.4f J/mol, S %.5f J/(mol K), cp %.5f J/(mol K), speed of sound %.4f m/s\n", H * RGAS * T,
         S * RGAS, RESRV[0], RESRV[1]);
  for (i = 1; i <= COMPONENTS; ++i)
    printf("component %d: ln phi %.8f, d/dT %.8f 1/K, d/dP %.8f 1/bar, d/dn %.8f %.8f\n", (int)i, FUG[i - 1],
           DFDT[i - 1] / T, DFDP[i - 1] / P * 1E5, DFDN_AT(i, 1), DFDN_AT(i, 2));
  return status;
}

int main(int argc, char** argv) {
  const int32_t platform = 25, components = COMPONENTS, width = 4, model = MORVE_PENG_ROBINSON;
  const int32_t read = MORVE_READ, write = MORVE_WRITE, key_width = MORVE_KEY_LENGTH;
  const int32_t datum = MORVE_IDEAL_GAS_MODEL, pairs = MORVE_PENG_ROBINSON, first = 1, second = 2;
  const char* install = argc > 1 ? argv[1] : getenv("TALIX_HOME");
  char path[256], keys[MORVE_MAX_KEYS * MORVE_KEY_LENGTH];
  double values[MORVE_MAX_KEYS] = {273.15};
  int32_t status, slot = 0, count;

  if (install == NULL || strlen(install) > 230) {
    fprintf(stderr, "usage: phase INSTALL_DIRECTORY\n");
    return 2;
  }
  snprintf(path, sizeof path, "%s/Zandor/", install);

  /* Set-up, in its order. */
  SURPL0(&platform, &status);
  SURPT0(path, (int32_t)strlen(path), "INPUT", 5, &status);
  if (status != 0) return failed("SURPT0", status);
  SHINI0(&components, codes, (int32_t)strlen(codes), &width, &status);
  if (status != MORVE_OK) return failed("SHINI0", status);
  SHMLD0(&model, &slot, &status);
  if (status != MORVE_OK) return failed("SHMLD0", status);
  SHDBS0(&status);
  if (status != MORVE_OK) return failed("SHDBS0", status);
  /* Enthalpies and entropies count from the ideal gas at 0 C. */
  SURMD0(&count, keys, (int32_t)sizeof keys, &key_width, values, &write, &datum, &status);
  if (status != MORVE_OK) return failed("SURMD0", status);

  status = print_vapour(slot);
  if (status != MORVE_OK) return failed("SHMIX0", status);

  /* Read the constants of the pair, change the first one, "TETA0", and write them back. */
  SURBI0(&count, keys, (int32_t)sizeof keys, &key_width, values, &read, &first, &second, &pairs, &status);
  if (status != MORVE_OK) return failed("SURBI0", status);
  printf("%.*s was %.6f\n", MORVE_KEY_LENGTH, keys, values[0]);
  values[0] = 0.05;
  SURBI0(&count, keys, (int32_t)sizeof keys, &key_width, values, &write, &first, &second, &pairs, &status);
  if (status != MORVE_OK) return failed("SURBI0", status);
  status = print_vapour(slot);
  return status == MORVE_OK ? 0 : failed("SHMIX0", status);
}
