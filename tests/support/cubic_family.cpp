#include "support/cubic_family.h"

#include <gtest/gtest.h>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/model_table.h"
#include "engine/setup_record.h"
#include "eos/cubic_record.h"
#include "eos/two_dimensional_record.h"
#include "eos/vardo95_record.h"
#include "support/eos_fixture.h"

namespace talix::test {

namespace {

// Twu's constants of methane, as published for the Soave-Redlich-Kwong equation, spread over the others.
void set_variants(int i) {
  srk_variants.P2ALPH(i) = i % 4 == 0 ? 1 : 6;
  srk_variants.CSRKP2(i, 1) = i % 4 == 0 ? 0.48 + 1.57 * comp.OMEGA(i) : 0.30 + 0.5 * comp.OMEGA(i);
  srk_variants.CSRKP2(i, 2) = 0.86 + 0.005 * i;
  srk_variants.CSRKP2(i, 3) = 1.6 - 0.01 * i;
  srk_variants.APALPH(i) = i % 3 == 0 ? 4 : (i % 3 == 1 ? 3 : 2);
  srk_variants.CSRKAP(i, 1) = 0.05 + 0.002 * i;
  srk_variants.TCASP(i) = 1.001 * comp.TC(i);
  srk_variants.PCASP(i) = 0.998 * comp.PC(i);
  srk_variants.OMASP(i) = comp.OMEGA(i) + 0.002;
}

void set_pair(int i, int j) {
  const int low = i < j ? i : j;
  const int high = i < j ? j : i;
  pairs.ALFA(low, high) = 0.2 + 0.01 * ((low + high) % 5);
  pairs.ALFA(high, low) = 1E-4 * ((low * high) % 3);
  pairs.TAUT0(i, j) = 0.05 * ((3 * i + j) % 5 - 2);
  pairs.TAUT1(i, j) = 8.0 * ((i + 2 * j) % 7 - 2);
  pairs.TAUT2(i, j) = 300.0 * ((2 * i + j) % 5 - 2);
  pairs.BICWS(low, high) = pairs.BICWS(high, low) = 0.02 * ((low + 2 * high) % 5);
}

}  // namespace

void reset_cubic_family() {
  reset_fixture();
  set_pair_parameters();
  models = {};
  vardo95 = {};
  srk_variants = {};
  reset_two_dimensional_tables();
  for (int i = 1; i <= kMaxComponents; ++i) {
    comp.ICSTD(i) = -1;
    set_variants(i);
    for (int j = 1; j <= kMaxComponents; ++j)
      if (i != j) set_pair(i, j);
  }
  update_pairs();
}

I4 load_model(I4 code) {
  I4 slot = 0;
  I4 failure = 0;
  SMDAO0(code, slot, failure);
  EXPECT_EQ(failure, status::ok) << code;
  return slot;
}

void use_constants(I4 slot) {
  cur = {.C1PAR = models.C1PAR(slot),
         .C2PAR = models.C2PAR(slot),
         .OAPAR = models.OAPAR(slot),
         .OBPAR = models.OBPAR(slot),
         .M1PAR = models.M1PAR(slot),
         .M2PAR = models.M2PAR(slot),
         .M3PAR = models.M3PAR(slot),
         .M4PAR = models.M4PAR(slot)};
}

}  // namespace talix::test
