// The whole cubic family over the components of the equation-of-state fixture: model slots as the model table
// has them, with parameters for every temperature function and mixing rule.
#pragma once

#include "base/real.h"

namespace talix::test {

// The fixture with an empty model table, coefficients of the temperature functions of every variant, NRTL
// terms and parameters of the A-excess rule for every pair.
void reset_cubic_family();
// Slot of a model, loaded now.
I4 load_model(I4 code);
// Makes the constants of a slot those of the model in use.
void use_constants(I4 slot);

}  // namespace talix::test
