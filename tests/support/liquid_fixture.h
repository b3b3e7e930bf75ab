// The engine in memory of eos_fixture.h with what the liquid transport methods read besides: element counts,
// critical volumes, standard densities, the directory of components, the constants of the dense-fluid method.
#pragma once

#include <initializer_list>

#include "base/array.h"
#include "database/component_record.h"
#include "database/directory_record.h"
#include "engine/setup_record.h"
#include "support/eos_fixture.h"
#include "transport/dense_fluid_record.h"

namespace talix::test {

struct LiquidRow {
  Component component;
  I4 carbon, hydrogen, nitrogen, oxygen;
  R8 VC;   // [m3/kmol]
  R8 RHO;  // [g/cm3]
};

inline constexpr LiquidRow kLiquidRows[] = {
    {kMethane, 1, 4, 0, 0, 0.0986, 0.30},         {kEthane, 2, 6, 0, 0, 0.1455, 0.3562},
    {kPropane, 3, 8, 0, 0, 0.2000, 0.507},        {kDecane, 10, 22, 0, 0, 0.6240, 0.734},
    {kCarbonDioxide, 1, 0, 0, 2, 0.0941, 0.8180}, {kWater, 0, 2, 0, 1, 0.0559, 1.0},
    {kNitrogen, 0, 0, 2, 0, 0.0892, 0.8094},      {kHydrogen, 0, 2, 0, 0, 0.0650, 0.07},
    {kButane, 4, 10, 0, 0, 0.2550, 0.584},        {kHexane, 6, 14, 0, 0, 0.3680, 0.664},
};

// Whether component I is in the directory; one that is not is a pseudo-component.
inline void list_component(int I, bool listed) { setup.CUCOMP(I) = listed ? "LIST" : "NONE"; }

// After reset_fixture: no component has a correlation set yet.
inline void reset_liquid_fixture() {
  reset_fixture();
  set_dense_fluid_constants();
  reset_directory_record();
  directory.NDIR = 2;
  directory.CDENT(2) = "0002LIST";
  for (int i = 1; i <= kMaxComponents; ++i) {
    list_component(i, true);
    comp.VC(i) = 0.4;
    comp.RHO(i) = 0.7;
    comp.ELEM(i, 1) = 8;
    comp.ELEM(i, 2) = 18;
  }
  for (const LiquidRow& row : kLiquidRows) {
    comp.ELEM(row.component, 1) = row.carbon;
    comp.ELEM(row.component, 2) = row.hydrogen;
    comp.ELEM(row.component, 3) = row.nitrogen;
    comp.ELEM(row.component, 4) = row.oxygen;
    comp.VC(row.component) = row.VC;
    comp.RHO(row.component) = row.RHO;
  }
}

// A heavy fraction with round constants.
inline void set_fraction(int I) {
  comp.RMOLW(I) = 200.0;
  comp.HCRAT(I) = 1.9;
  comp.ATBP(I) = 550.0;
  comp.TC(I) = 740.0;
  comp.PC(I) = 15.0;
  comp.VC(I) = 1.0;
  comp.RHO(I) = 0.85;
  comp.UOPK(I) = 0.0;
}

inline CompVec composition(std::initializer_list<R8> fractions) {
  CompVec x{};
  int i = 0;
  for (const R8 fraction : fractions) x(++i) = fraction;
  return x;
}

}  // namespace talix::test
