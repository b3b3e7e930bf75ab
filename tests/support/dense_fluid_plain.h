// The corresponding-states transport method written out plainly: every root and power where its formula has it, full
// double sums, full elimination, nothing kept. The library must give the same bits.
#pragma once

#include "transport/dense_fluid.h"
#include "transport/dense_fluid_record.h"

namespace talix::test {

struct PlainFluid {
  DenseFluidMixture mixture{};
  R4 RHO0 = 0.0F;
  I4 IERR = 0;
  int passes = 0;      // passes of the iteration
  int cube_roots = 0;  // calls of the cube root
};

// Arguments of one call, as the routines of the library take them.
struct DenseCase {
  I4 N = 0;
  R4 T = 0.0F;    // [K]
  R4 RHO = 0.0F;  // [mol/L]
  bool liquid = false;
  DenseVec X{}, CMW{}, PC{}, TC{}, VC{}, W{};
  DenseHeatCapacity CPC{};
  Vec<I4, kMaxComponents> ICP{};
};

void plain_factors(const DenseCase& c, PlainFluid& p);
R4 plain_hard_spheres(const DenseCase& c, PlainFluid& p);
R4 plain_viscosity(const DenseCase& c, PlainFluid& p);
R4 plain_translational(const DenseCase& c, PlainFluid& p);
R4 plain_conductivity(const DenseCase& c, PlainFluid& p);

}  // namespace talix::test
