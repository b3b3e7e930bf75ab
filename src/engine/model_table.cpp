#include "engine/model_table.h"

#include <cmath>

#include "engine/codes.h"
#include "engine/model_record.h"
#include "engine/model_table_tables.h"
#include "engine/setup_record.h"
#include "eos/a_excess_record.h"

namespace talix {

constinit ModelRecord models{};
constinit ReservedRecord resv{};

namespace {

// Start of the search for OBPAR.
constexpr R8 kFirstCovolume = widen(0.08F);

// Fit point of the A-excess rule when the model that uses it is selected.
constexpr R8 kExcessTemperature = widen(298.15F);  // [K]
constexpr R8 kExcessPressure = widen(101325.0F);   // [Pa]

const ModelRow* find_row(I4 model_code) {
  for (const ModelRow& row : kModelRows)
    if (row.MODEL == model_code) return &row;
  return nullptr;
}

void fill_slot(int slot, const ModelRow& row) {
  models.MODEL(slot) = row.MODEL;
  models.MODTYP(slot) = row.MODTYP;
  models.MODPUR(slot) = row.MODPUR;
  models.MODFUN(slot) = row.MODFUN;
  models.MODMIX(slot) = row.MODMIX;
  models.MODLIQ(slot) = row.MODLIQ;
  models.MODRSF(slot) = row.MODRSF;
  models.MODRSP(slot) = row.MODRSP;
  models.MDFCAL(slot) = row.can.fugacity;
  models.MDVCAL(slot) = row.can.volume;
  models.MDHCAL(slot) = row.can.enthalpy;
  for (int i = 1; i <= 5; ++i) models.MODCOR(i, slot) = row.MODCOR(i);
  models.C1PAR(slot) = widen(row.cubic.c1);
  models.C2PAR(slot) = widen(row.cubic.c2);
  models.M1PAR(slot) = widen(row.cubic.m1);
  models.M2PAR(slot) = widen(row.cubic.m2);
  models.M3PAR(slot) = widen(row.cubic.m3);
  models.M4PAR(slot) = 0.0;
}

// Critical-point constants of the cubic with the pair C1PAR, C2PAR: Newton's method for OBPAR, which makes
// the three roots of the critical isotherm fall together, then OAPAR from it.
void critical_constants(int slot) {
  const R8 c1 = models.C1PAR(slot);
  const R8 c2 = models.C2PAR(slot);
  const R8 n = 2.0 + c1 + c2;
  const R8 k = 27.0 * (1.0 + c1) * (1.0 + c2);

  R8 b = kFirstCovolume;
  R8 step = 1.0;
  while (std::abs(step) > 1e-14) {
    const R8 root = 1.0 - n * b;
    step = (root * root * root - k * b * b) / (3.0 * n * root * root + 2.0 * k * b);
    b += step;
  }
  const R8 f = (1.0 + (1.0 - c1 - c2) * b) / 3.0;
  models.OBPAR(slot) = b;
  models.OAPAR(slot) = f * f * f / b - c1 * c2 * (1.0 + b) * b;
}

}  // namespace

// SMDAO1: find the slot of a model.
//
// In       CODE    I4  model::*
// Out      LNO     I4  the first slot that holds CODE, 0 when none does
void SMDAO1(const I4& CODE, I4& LNO) {
  LNO = 0;
  for (int slot = 1; slot <= models.count; ++slot) {
    if (models.MODEL(slot) == CODE) {
      LNO = slot;
      return;
    }
  }
}

// SMDAO0: add a slot for a model, whether or not it has one.
//
// In       CODE    I4  model::*
// Out      LNO     I4  the new slot; as it came in on failure
//          NFAIL   I4  status
// Shared   writes models; a_excess when CODE is model::vardo3
// Status   ok; range (all ten slots taken); unknown (no such model)
void SMDAO0(const I4& CODE, I4& LNO, I4& NFAIL) {
  NFAIL = status::ok;
  if (models.count >= kMaxModels) {
    NFAIL = status::range;
    return;
  }
  const ModelRow* row = find_row(CODE);
  if (row == nullptr) {
    NFAIL = status::unknown;
    return;
  }
  const int slot = models.count + 1;
  fill_slot(slot, *row);
  critical_constants(slot);
  if (CODE == model::vardo3) {
    a_excess.TKIJ = kExcessTemperature;
    a_excess.PKIJ = kExcessPressure;
  }
  LNO = slot;
  models.count = slot;
  // The slot may have stood for another model: no cache may answer for it.
  ++setup.generation;
}

// SHMLD0: select a model together with those that it depends on.
//
// In       CODE    I4  model::*
// Out      LNO     I4  slot of CODE itself
//          NFAIL   I4  status
// Shared   writes models
// Status   as SMDAO0; when a dependent fails, those before it stay loaded
// Oddity   model::freeze_out takes a further slot at every call
void SHMLD0(const I4& CODE, I4& LNO, I4& NFAIL) {
  NFAIL = status::ok;
  SMDAO1(CODE, LNO);
  if (LNO != 0 && CODE != model::freeze_out) return;

  SMDAO0(CODE, LNO, NFAIL);
  if (NFAIL != status::ok) return;

  int slot = LNO;
  while (models.MODRSF(slot) != 0) {
    I4 dependent = 0;
    SMDAO1(models.MODRSF(slot), dependent);
    if (dependent != 0) return;
    SMDAO0(models.MODRSF(slot), dependent, NFAIL);
    if (NFAIL != status::ok) return;
    slot = dependent;
  }
}

}  // namespace talix
