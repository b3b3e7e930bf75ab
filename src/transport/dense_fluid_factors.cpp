#include <cmath>
#include <cstring>

#include "numerics/s0cbrt.h"
#include "transport/dense_fluid.h"
#include "transport/dense_fluid_record.h"
#include "transport/dense_fluid_terms.h"

namespace talix {

namespace {

constexpr int kPasses = 15;
constexpr R4 kTolerance = 1E-05F;  // of both factors, relative

// Range in which the shape factors hold, for the reduced temperature and the reduced volume.
constexpr R4 kLowest = 0.5F;
constexpr R4 kHighest = 2.0F;

R4 hold(R4 reduced) { return std::clamp(reduced, kLowest, kHighest); }

// Not a number stays one.
R4 at_least(R4 floor, R4 value) { return value < floor ? floor : value; }

R4 theta(R4 w, R4 tr, R4 ln_tr, R4 vr) {
  const auto& A = dense_fluid.A;
  return 1.0F + (w - dense_fluid.WREF) * (A(1) + A(2) * ln_tr + (A(3) + A(4) / tr) * (vr - 0.5F));
}

R4 phi(R4 w, R4 ln_tr, R4 vr) {
  const auto& B = dense_fluid.B;
  return 1.0F + (w - dense_fluid.WREF) * (B(1) * (vr + B(2)) + B(3) * (vr + B(4)) * ln_tr);
}

R4 critical_compressibility(R4 pc, R4 vc, R4 tc) { return pc * vc / (dense_fluid.RGL * tc); }

// Components with a fraction above 0, one behind the other; what the double sums read stands in rows of its own.
struct Members {
  int count;
  Vec<I4, kMaxComponents> component;
  DenseVec x;
  DenseVec f;     // temperature factors
  DenseVec root;  // cube roots of the volume factors
};

void find_members(const DenseVec& X, I4 N, Members& m) {
  m.count = 0;
  for (int i = 1; i <= N; ++i) {
    if (!(X(i) > 0.0F)) continue;
    ++m.count;
    m.component(m.count) = i;
    m.x(m.count) = X(i);
  }
}

void take_factors(Members& m) {
  for (int k = 1; k <= m.count; ++k) {
    m.f(k) = dense_mixture.F(m.component(k));
    m.root(k) = S0CBRT(dense_mixture.H(m.component(k)));
  }
}

// Mixture factors from those of the components.
void mix(const Members& m) {
  R4 fmix = 0.0F;
  R4 hmix = 0.0F;
  for (int k = 1; k <= m.count; ++k) {
    R4 s2 = 0.0F;
    R4 s3 = 0.0F;
    for (int l = 1; l < k; ++l) {
      const R4 term = m.x(l) * cube(m.root(k) + m.root(l)) / 8.0F;
      s2 += term;
      s3 += term * std::sqrt(m.f(k) * m.f(l));
    }
    // The pair of a component with itself counts once. The root of its squared factor is the factor to the last bit.
    const R4 term = m.x(k) * cube(m.root(k) + m.root(k)) / 8.0F;
    const R4 term2 = term * m.f(k);
    s2 += term;
    s3 += term2;
    hmix += m.x(k) * (2.0F * s2 - term);
    fmix += m.x(k) * (2.0F * s3 - term2);
  }
  dense_mixture.HMIX = hmix;
  dense_mixture.FMIX = fmix / hmix;
}

struct Critical {
  const DenseVec &PC, &TC, &VC, &W;
};

// Factors of the components at the state that the mixture factors give.
void shape(const Members& m, const Critical& c, R4 T0, R4 R0) {
  for (int k = 1; k <= m.count; ++k) {
    const int i = m.component(k);
    R4& f = dense_mixture.F(i);
    R4& h = dense_mixture.H(i);
    const R4 tr = hold(f * T0 / c.TC(i));
    const R4 vr = hold(h / (c.VC(i) * R0));
    const R4 ln_tr = std::log(tr);
    const R4 zc = critical_compressibility(c.PC(i), c.VC(i), c.TC(i));
    f = at_least(0.01F, theta(c.W(i), tr, ln_tr, vr)) * c.TC(i) / dense_fluid.TCREF;
    h = at_least(0.01F, phi(c.W(i), ln_tr, vr)) * dense_fluid.RHOCREF * dense_fluid.ZCREF * c.VC(i) / zc;
  }
}

void start(bool liquid, R4 T, I4 N, const Critical& c) {
  for (int i = 1; i <= N; ++i) {
    R4& f = dense_mixture.F(i);
    R4& h = dense_mixture.H(i);
    f = c.TC(i) / dense_fluid.TCREF;
    h = dense_fluid.RHOCREF * c.VC(i);
    if (!liquid) continue;
    const R4 tr = T / c.TC(i);
    const R4 ln_tr = std::log(tr);
    const R4 zc = critical_compressibility(c.PC(i), c.VC(i), c.TC(i));
    f *= at_least(0.1F, theta(c.W(i), tr, ln_tr, 0.5F));
    h = h * at_least(0.1F, phi(c.W(i), ln_tr, 0.5F)) * dense_fluid.ZCREF / zc;
  }
}

bool settled(R4 now, R4 before) { return std::abs(now - before) <= kTolerance * std::abs(before); }

template <class T>
bool same_bits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

bool same_entries(const DenseVec& a, const DenseVec& b, I4 N) {
  return std::memcmp(a.data(), b.data(), static_cast<std::size_t>(N) * sizeof(R4)) == 0;
}

void copy_entries(DenseVec& to, const DenseVec& from, I4 N) {
  std::memcpy(to.data(), from.data(), static_cast<std::size_t>(N) * sizeof(R4));
}

void copy_mixture(DenseFluidMixture& to, const DenseFluidMixture& from, I4 N) {
  copy_entries(to.F, from.F, N);
  copy_entries(to.H, from.H, N);
  to.FMIX = from.FMIX;
  to.HMIX = from.HMIX;
  to.DFDT = from.DFDT;
  to.DHDT = from.DHDT;
  to.MWETA = from.MWETA;
  to.MWLAM = from.MWLAM;
  to.ZCMIX = from.ZCMIX;
}

}  // namespace

// DCST: factors that map a mixture on the reference fluid.
//
// In       MODE    L4      the mixture is a liquid: other start values
//          P       R4      [atm], not read
//          T       R4      [K]
//          X       R4(50)  mole fractions, sum 1; a component with 0 takes no part
//          RHO     R4      [mol/L]
//          N       I4      components
//          CMW     R4(50)  molar mass [g/mol]
//          PC, TC  R4(50)  [atm], [K]
//          VC, W   R4(50)  [L/mol], [-]
// Out      RHO0    R4      density for the calls that follow [mol/L]
//          IERR    I4      0; 1 when 15 passes did not settle the factors: those of the last pass stand
// Shared   reads dense_fluid; writes dense_mixture; reads and writes dense_call: a call with the bits of the
//          last one gets the answer of the last one, which serves viscosity and conductivity of one phase
// Source   J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 20 (1981) 323 and 22 (1983) 90
void DCST(const L4& MODE, [[maybe_unused]] const R4& P, R4& RHO0, const R4& T, const DenseVec& X,
          const R4& RHO, const I4& N, const DenseVec& CMW, const DenseVec& PC, const DenseVec& TC,
          const DenseVec& VC, const DenseVec& W, I4& IERR) {
  DenseFluidCall& last = dense_call;
  const I4 mode = MODE ? 1 : 0;
  if (last.filled && last.MODE == mode && last.N == N && same_bits(last.T, T) && same_bits(last.RHO, RHO) &&
      same_entries(last.X, X, N) && same_entries(last.TC, TC, N) && same_entries(last.PC, PC, N) &&
      same_entries(last.VC, VC, N) && same_entries(last.W, W, N) && same_entries(last.CMW, CMW, N) &&
      same_bits(last.constants, dense_fluid)) {
    copy_mixture(dense_mixture, last.mixture, N);
    RHO0 = last.RHO0;
    IERR = last.IERR;
    return;
  }

  const Critical critical{PC, TC, VC, W};
  dense_mixture.FMIX = 1.0F;
  dense_mixture.HMIX = 1.0F;
  start(static_cast<bool>(MODE), T, N, critical);
  Members members;
  find_members(X, N, members);
  IERR = 1;
  R4 R0 = 0.0F;
  for (int pass = 1; pass <= kPasses && IERR != 0; ++pass) {
    const R4 fmix = dense_mixture.FMIX;
    const R4 hmix = dense_mixture.HMIX;
    take_factors(members);
    mix(members);
    R0 = RHO * dense_mixture.HMIX;
    shape(members, critical, T / dense_mixture.FMIX, R0);
    if (settled(dense_mixture.FMIX, fmix) && settled(dense_mixture.HMIX, hmix)) IERR = 0;
  }
  // Read once: RHO0 may be the caller's RHO.
  last.RHO = RHO;
  RHO0 = R0 / dense_mixture.HMIX;
  ECSTX(RHO0, T, X, N, CMW, PC, TC, VC, W);

  last.filled = true;
  last.MODE = mode;
  last.N = N;
  last.T = T;
  copy_entries(last.X, X, N);
  copy_entries(last.CMW, CMW, N);
  copy_entries(last.PC, PC, N);
  copy_entries(last.TC, TC, N);
  copy_entries(last.VC, VC, N);
  copy_entries(last.W, W, N);
  last.constants = dense_fluid;
  copy_mixture(last.mixture, dense_mixture, N);
  last.RHO0 = RHO0;
  last.IERR = IERR;
}

namespace {

// Sums of one component over its partners: M, M Z1, M Z1 Z2, M Z1 Z2 Z3, M Z1 Z2 Z3 Z4.
using PairSums = Vec<R4, 5>;

// What the pair of components K and L has in common, both ways round.
struct Pair {
  R4 root;  // mean cube root of the volume factors
  R4 HIJ, Z1, Z3, Z4;
};

Pair pair_of(const Members& m, int k, int l, R4 mass_k, R4 mass_l) {
  Pair p{};
  p.root = 0.5F * (m.root(k) + m.root(l));
  p.HIJ = cube(p.root);
  p.Z1 = k == l ? m.f(k) : std::sqrt(m.f(k) * m.f(l));
  const R4 rmij = mass_k * mass_l / (mass_k + mass_l);
  p.Z3 = S0CBRT(p.HIJ) * std::sqrt(rmij / p.Z1);
  p.Z4 = 1.0F / rmij;
  return p;
}

// Adds to the sums of a component with volume root ROOT the partner with fraction X.
void add_partner(PairSums& sums, const Pair& p, R4 x, R4 root) {
  const R4 z2 = p.root / root;
  R4 m = x * p.HIJ / z2;
  sums(1) += m;
  m *= p.Z1;
  sums(2) += m;
  m *= z2;
  sums(3) += m;
  m *= p.Z3;
  sums(4) += m;
  m *= p.Z4;
  sums(5) += m;
}

// Slopes of the shape factors of a component.
struct Slopes {
  R4 Z1, Z2, Z3, Z4;
};

Slopes slopes_of(int i, const Critical& c, R4 T, R4 RHO0, R4 zc) {
  const auto& A = dense_fluid.A;
  const auto& B = dense_fluid.B;
  const R4 f = dense_mixture.F(i);
  const R4 h = dense_mixture.H(i);
  const R4 th = f * dense_fluid.TCREF / c.TC(i);
  const R4 ph = h / (c.VC(i) * dense_fluid.RHOCREF);
  const R4 tr = hold(f * T / (dense_mixture.FMIX * c.TC(i)));
  const R4 vr = hold(h / (c.VC(i) * dense_mixture.HMIX * RHO0));
  Slopes s{};
  R4 v = (c.W(i) - dense_fluid.WREF) / th;
  s.Z1 = 1.0F - v * (A(2) - A(4) * (vr - 0.5F) / tr);
  s.Z2 = v * (A(4) / tr + A(3)) * vr;
  v = (c.W(i) - dense_fluid.WREF) * dense_fluid.ZCREF / (ph * zc);
  s.Z3 = 1.0F - v * (B(3) * std::log(tr) + B(1)) * vr;
  s.Z4 = v * B(3) * (vr + B(4));
  // At the ends of the range the shape factors stand still.
  if (tr >= kHighest) {
    s.Z1 = 1.0F;
    s.Z4 = 0.0F;
  }
  if (vr <= kLowest || vr >= kHighest) {
    s.Z2 = 0.0F;
    s.Z3 = 1.0F;
  }
  return s;
}

}  // namespace

// ECSTX: temperature derivatives of the mixture factors and the effective molar masses.
//
// In       RHO0   R4      density from DCST [mol/L]
//          T      R4      [K]
//          X      R4(50)  mole fractions; a component with 0 takes no part
//          N      I4      components
//          CMW, PC, TC, VC, W  R4(50) as in DCST
// Shared   reads dense_fluid and F, H, FMIX, HMIX of dense_mixture; writes DFDT, DHDT, MWETA, MWLAM, ZCMIX
// Oddity   DFDT and DHDT jump where a reduced temperature passes 2: the conductivity of a lean gas falls by 2.6 %
//          there, that of carbon dioxide (608 K) by 11 %
// Source   as DCST
void ECSTX(const R4& RHO0, const R4& T, const DenseVec& X, const I4& N, const DenseVec& CMW,
           const DenseVec& PC, const DenseVec& TC, const DenseVec& VC, const DenseVec& W) {
  DenseFluidMixture& mixture = dense_mixture;
  Members m;
  find_members(X, N, m);
  take_factors(m);

  // Each pair once: it joins the sums of both components, of each in the order of its partners.
  Vec<PairSums, kMaxComponents> SJ;
  for (int k = 1; k <= m.count; ++k) {
    SJ(k) = PairSums{};
    const R4 mass = CMW(m.component(k));
    for (int l = 1; l < k; ++l) {
      const Pair p = pair_of(m, k, l, mass, CMW(m.component(l)));
      add_partner(SJ(k), p, m.x(l), m.root(k));
      add_partner(SJ(l), p, m.x(k), m.root(l));
    }
    add_partner(SJ(k), pair_of(m, k, k, mass, mass), m.x(k), m.root(k));
  }

  Mat<R4, 3, 4> S{};
  mixture.MWETA = 0.0F;
  mixture.MWLAM = 0.0F;
  mixture.ZCMIX = 0.0F;
  const Critical critical{PC, TC, VC, W};
  for (int k = 1; k <= m.count; ++k) {
    const int i = m.component(k);
    const R4 x = m.x(k);
    const R4 zc = critical_compressibility(PC(i), VC(i), TC(i));
    const Slopes s = slopes_of(i, critical, T, RHO0, zc);
    const R4 z5 = s.Z1 * s.Z3 - s.Z2 * s.Z4;
    for (int l = 1; l <= 3; ++l) {
      const R4 scale = l == 1 ? mixture.HMIX : mixture.FMIX * mixture.HMIX;
      const R4 sum = x * SJ(k)(l) / (z5 * scale);
      S(l, 1) += s.Z1 * sum;
      S(l, 2) += s.Z2 * sum;
      S(l, 3) += s.Z3 * sum;
      S(l, 4) += s.Z4 * sum;
    }
    mixture.MWETA += x * SJ(k)(4);
    mixture.MWLAM += x * SJ(k)(5);
    mixture.ZCMIX += x * zc;
  }

  const R4 v = S(3, 3) + S(2, 4);
  R4 mm = S(3, 2) + S(2, 1);
  mixture.DFDT = 1.0F - S(1, 1) / (S(1, 1) * v - S(1, 4) * mm);
  mixture.DHDT = S(1, 4) * (1.0F - mixture.DFDT) / S(1, 1);
  mm = mixture.FMIX * std::pow(mixture.HMIX, 2.66666675F);
  mixture.MWETA = 2.0F * square(mixture.MWETA) / mm;
  mixture.MWLAM = 2.0F * mm / square(mixture.MWLAM);
  mixture.DFDT = mixture.FMIX * mixture.DFDT / T;
  mixture.DHDT = mixture.HMIX * mixture.DHDT / T;
}

}  // namespace talix
