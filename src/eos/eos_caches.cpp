#include "eos/eos_caches.h"

#include "engine/model_record.h"
#include "engine/setup_record.h"
#include "eos/consistency_record.h"

namespace talix {

// A key of zeros fits no request.
constinit PureCache pure_cache{};
constinit QuadraticCache quadratic_cache{};

PureKey pure_key(const R8& T, const I4& MODEL, const I4& IFCOM, const I4& ILCOM) {
  return {.T = T,
          .generation = setup.generation + 1,
          .IFCOM = IFCOM,
          .ILCOM = ILCOM,
          .MODEL = MODEL,
          .MODPUR = models.MODPUR(MODEL),
          .constants = cur};
}

void reset_eos_caches() {
  for (PureKey& key : pure_cache.level) key = {};
  pure_cache.generation = 0;
  quadratic_cache.key = {};
  consistency.generation = 0;
  consistency.key = {};
}

}  // namespace talix
