#include "support/dense_fluid_cases.h"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace talix::test {

const DenseComponent& dense_component(std::string_view name) {
  const auto* found = std::find_if(kDenseComponents.begin(), kDenseComponents.end(),
                                   [&](const DenseComponent& c) { return c.name == name; });
  return found == kDenseComponents.end() ? kDenseComponents.front() : *found;
}

DenseCase dense_case(const std::vector<DenseShare>& shares, R4 T, R4 RHO, bool liquid) {
  DenseCase c;
  c.T = T;
  c.RHO = RHO;
  c.liquid = liquid;
  for (const DenseShare& share : shares) {
    const DenseComponent& d = dense_component(share.name);
    const int i = ++c.N;
    c.X(i) = share.x;
    c.CMW(i) = d.CMW;
    c.PC(i) = d.PC;
    c.TC(i) = d.TC;
    c.VC(i) = d.VC;
    c.W(i) = d.W;
    c.CPC(1, i) = d.cp;
    c.ICP(i) = 1;
  }
  return c;
}

R4 run_DCST(const DenseCase& c, I4& IERR) {
  constexpr R4 unread_pressure = 1.0F;
  R4 RHO0 = 0.0F;
  DCST(logical(c.liquid), unread_pressure, RHO0, c.T, c.X, c.RHO, c.N, c.CMW, c.PC, c.TC, c.VC, c.W, IERR);
  return RHO0;
}

R4 run_DCST(const DenseCase& c) {
  I4 IERR = 0;
  return run_DCST(c, IERR);
}

DenseAnswer dense_answer(const DenseCase& c) {
  DenseAnswer a{};
  a.RHO0 = run_DCST(c, a.IERR);
  a.mixture = dense_mixture;
  a.viscosity = TRPVIS(a.RHO0, c.T, c.X, c.N, c.CMW);
  a.conductivity = THERMC(a.RHO0, c.T, c.X, c.N, c.CMW, c.CPC, c.ICP);
  return a;
}

bool same_bits(R4 a, R4 b) { return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b); }

int differing_bits(const DenseCase& c) {
  PlainFluid p;
  plain_factors(c, p);
  const DenseAnswer a = dense_answer(c);
  int different = 0;
  const auto compare = [&](R4 x, R4 y) {
    if (!same_bits(x, y)) ++different;
  };
  for (int i = 1; i <= c.N; ++i) {
    compare(a.mixture.F(i), p.mixture.F(i));
    compare(a.mixture.H(i), p.mixture.H(i));
  }
  compare(a.mixture.FMIX, p.mixture.FMIX);
  compare(a.mixture.HMIX, p.mixture.HMIX);
  compare(a.mixture.DFDT, p.mixture.DFDT);
  compare(a.mixture.DHDT, p.mixture.DHDT);
  compare(a.mixture.MWETA, p.mixture.MWETA);
  compare(a.mixture.MWLAM, p.mixture.MWLAM);
  compare(a.mixture.ZCMIX, p.mixture.ZCMIX);
  compare(a.RHO0, p.RHO0);
  compare(a.viscosity, plain_viscosity(c, p));
  compare(a.conductivity, plain_conductivity(c, p));
  compare(DELHSV(a.RHO0, c.T, c.X, c.N, c.CMW), plain_hard_spheres(c, p));
  compare(TRCOND(a.RHO0, c.T), plain_translational(c, p));
  if (a.IERR != p.IERR) ++different;
  return different;
}

}  // namespace talix::test
