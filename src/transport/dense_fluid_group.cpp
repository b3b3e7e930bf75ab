#include "transport/dense_fluid_group.h"

#include "database/component_record.h"

namespace talix {

namespace {

constexpr R8 kBarPerAtmosphere = 1.01325;
constexpr R8 kPascalPerAtmosphere = 101325.0;

constexpr R8 kMicropoise = 0.0001;  // [mPa s]
constexpr R8 kMilliwatt = 0.001;    // [W]

R4 single(R8 value) { return static_cast<R4>(value); }

// What DCST reads of the components; it leaves the factors of the group in place.
R4 mixture_factors(DenseFluidGroup& g, bool liquid, R8 T, R8 P, R8 RHO) {
  for (int k = 1; k <= g.N; ++k) {
    const int i = g.component(k);
    g.X(k) = single(g.x(k) / g.total);
    g.CMW(k) = single(comp.RMOLW(i));
    g.PC(k) = single(comp.PC(i) / kBarPerAtmosphere);
    g.TC(k) = single(comp.TC(i));
    g.VC(k) = single(comp.VC(i));
    g.W(k) = single(comp.OMEGA(i));
  }
  R4 RHO0 = 0.0F;
  I4 not_converged = 0;  // no stop: the factors of the last pass serve
  DCST(logical(liquid), single(P / kPascalPerAtmosphere), RHO0, single(T), g.X, single(RHO), g.N, g.CMW, g.PC,
       g.TC, g.VC, g.W, not_converged);
  return RHO0;
}

}  // namespace

void clear_group(DenseFluidGroup& group) {
  group.N = 0;
  group.total = 0.0;
}

void add_to_group(DenseFluidGroup& group, int I, R8 fraction) {
  ++group.N;
  group.component(group.N) = I;
  group.x(group.N) = fraction;
  group.total += fraction;
}

// group_viscosity: viscosity of a group of components by corresponding states.
//
// In, out  group   its components and fractions; the copies for DCST are filled
// In       liquid  bool  start values of a liquid
//          T, P    R8    [K], [Pa]
//          RHO     R8    [mol/L]
// Returns  R8, mPa s
// Shared   reads comp; writes dense_mixture
R8 group_viscosity(DenseFluidGroup& group, bool liquid, R8 T, R8 P, R8 RHO) {
  const R4 RHO0 = mixture_factors(group, liquid, T, P, RHO);
  return kMicropoise * static_cast<R8>(TRPVIS(RHO0, single(T), group.X, group.N, group.CMW));
}

// group_conductivity: thermal conductivity of a group of components by corresponding states.
//
// In, out  group   as in group_viscosity
// In       liquid, T, P, RHO  as in group_viscosity
// Returns  R8, W/(m K)
// Shared   reads comp; writes dense_mixture
R8 group_conductivity(DenseFluidGroup& group, bool liquid, R8 T, R8 P, R8 RHO) {
  const R4 RHO0 = mixture_factors(group, liquid, T, P, RHO);
  for (int k = 1; k <= group.N; ++k) {
    const int i = group.component(k);
    for (int c = 1; c <= DenseHeatCapacity::rows; ++c) group.CPC(c, k) = single(comp.COFHT(i, c));
    group.ICP(k) = comp.ICPIG(i);
  }
  return kMilliwatt *
         static_cast<R8>(THERMC(RHO0, single(T), group.X, group.N, group.CMW, group.CPC, group.ICP));
}

}  // namespace talix
