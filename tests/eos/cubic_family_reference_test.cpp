// ln phi, Z, H and S of the Peng-Robinson, Soave-Redlich-Kwong, van der Waals and Twu forms against a second
// implementation: textbook expressions in extended precision with the same constants.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/model_record.h"
#include "support/cubic_family.h"
#include "support/eos_fixture.h"

namespace talix::test {
namespace {

using Real = long double;

Real wide(R8 value) { return static_cast<Real>(value); }

constexpr int kStates = 1000;

// Square root of alpha and its slope with T/Tc.
struct Root {
  Real value, slope;
};

Root soave_root(Real m, Real Tr) {
  return {.value = 1 + m * (1 - std::sqrt(Tr)), .slope = -m / (2 * std::sqrt(Tr))};
}

Root root_of(I4 code, int slot, int i, Real Tr) {
  const Real w = wide(comp.OMEGA(i));
  if (code == model::peng_robinson) {
    const Real m = comp.OMEGA(i) > 0.49 ? 0.379642L + w * (1.48503L + w * (-0.164423L + w * 0.016666L))
                                        : 0.37464L + w * (1.54226L - w * 0.26992L);
    return soave_root(m, Tr);
  }
  if (code == model::srk_simsci && srk_variants.P2ALPH(i) == 6) {
    const Real L = wide(srk_variants.CSRKP2(i, 1));
    const Real M = wide(srk_variants.CSRKP2(i, 2));
    const Real N = wide(srk_variants.CSRKP2(i, 3));
    const Real alpha = std::pow(Tr, N * (M - 1)) * std::exp(L * (1 - std::pow(Tr, M * N)));
    const Real value = std::sqrt(alpha);
    return {.value = value, .slope = value / (2 * Tr) * (N * (M - 1) - L * M * N * std::pow(Tr, M * N))};
  }
  if (code == model::srk_simsci) return soave_root(wide(srk_variants.CSRKP2(i, 1)), Tr);
  const Real m1 = wide(models.M1PAR(slot));
  const Real m2 = wide(models.M2PAR(slot));
  const Real m3 = wide(models.M3PAR(slot));
  return soave_root((0.84509804L + w) * (m1 + m2 * w) / (1 + m3 * w) - 1, Tr);
}

// A mixture at T and P in reduced form: A = a P/(R T)^2, B = b P/(R T).
class Textbook {
 public:
  Textbook(I4 code, int slot, const std::vector<R8>& x, R8 T_in, R8 P_in)
      : n_(static_cast<int>(x.size())),
        T_(wide(T_in)),
        P_(wide(P_in)),
        c1_(wide(models.C1PAR(slot))),
        c2_(wide(models.C2PAR(slot))) {
    for (const R8 value : x) x_.push_back(wide(value));
    for (int i = 1; i <= n_; ++i) {
      const Real Tc = wide(comp.TC(i));
      const Real Pc = wide(comp.PC(i)) * 1E5L;
      const Root r = root_of(code, slot, i, T_ / Tc);
      // a of the component in units of R^2, b in units of R.
      const Real scale = std::sqrt(wide(models.OAPAR(slot)) * Tc * Tc / Pc);
      root_a_.push_back(scale * std::fabs(r.value));
      root_a_slope_.push_back(scale * r.slope / Tc * (r.value < 0 ? -1 : 1));
      b_.push_back(wide(models.OBPAR(slot)) * Tc / Pc);
    }
    for (int i = 0; i < n_; ++i) {
      Real sum = 0;
      for (int j = 0; j < n_; ++j) sum += at(x_, j) * pair(i, j);
      half_gradient_.push_back(sum);
      a_ += at(x_, i) * sum;
      bm_ += at(x_, i) * at(b_, i);
      for (int j = 0; j < n_; ++j) slope_ += at(x_, i) * at(x_, j) * pair_slope(i, j);
    }
    A_ = a_ * P_ / (T_ * T_);
    B_ = bm_ * P_ / T_;
  }

  // Compressibility factors above B, ascending.
  std::vector<Real> roots() const {
    const Real s = c1_ + c2_;
    const Real p = c1_ * c2_;
    const Real k2 = (s - 1) * B_ - 1;
    const Real k1 = A_ + (p - s) * B_ * B_ - s * B_;
    const Real k0 = -(p * B_ * B_ * (B_ + 1) + A_ * B_);
    const auto f = [&](Real z) { return ((z + k2) * z + k1) * z + k0; };
    // Between the stationary points, by bisection.
    std::vector<Real> edges{B_};
    const Real D = k2 * k2 - 3 * k1;
    if (D > 0)
      for (const Real sign : {-1.0L, 1.0L}) {
        const Real z = (-k2 + sign * std::sqrt(D)) / 3;
        if (z > B_) edges.push_back(z);
      }
    edges.push_back(1 + B_ + A_ + std::fabs(k2) + std::fabs(k1) + std::fabs(k0));
    std::vector<Real> found;
    for (std::size_t e = 0; e + 1 < edges.size(); ++e) {
      Real low = edges[e], high = edges[e + 1];
      if ((f(low) < 0) == (f(high) < 0)) continue;
      const bool rising = f(low) < 0;
      for (int step = 0; step < 200; ++step) {
        const Real middle = (low + high) / 2;
        ((f(middle) < 0) == rising ? low : high) = middle;
      }
      found.push_back((low + high) / 2);
    }
    return found;
  }
  Real ln_phi(int i, Real Z) const {
    const Real r = at(b_, i) / bm_;
    return r * (Z - 1) - std::log(Z - B_) - A_ / B_ * (2 * at(half_gradient_, i) / a_ - r) * attraction(Z);
  }
  Real enthalpy(Real Z) const { return Z - 1 - (a_ - T_ * slope_) / (bm_ * T_) * attraction(Z); }
  Real entropy(Real Z) const { return std::log(Z - B_) + slope_ / bm_ * attraction(Z); }
  Real gibbs(Real Z) const {
    Real sum = 0;
    for (int i = 0; i < n_; ++i) sum += at(x_, i) * ln_phi(i, Z);
    return sum;
  }

 private:
  static Real at(const std::vector<Real>& values, int i) { return values[static_cast<std::size_t>(i)]; }
  Real theta(int i, int j) const {
    return i == j ? 0 : wide(pairs.TETA0(i + 1, j + 1)) + T_ * wide(pairs.TETA0T(i + 1, j + 1));
  }
  Real pair(int i, int j) const { return at(root_a_, i) * at(root_a_, j) * (1 - theta(i, j)); }
  Real pair_slope(int i, int j) const {
    const Real own = i == j ? 0 : wide(pairs.TETA0T(i + 1, j + 1));
    return (at(root_a_slope_, i) * at(root_a_, j) + at(root_a_, i) * at(root_a_slope_, j)) *
               (1 - theta(i, j)) -
           at(root_a_, i) * at(root_a_, j) * own;
  }
  // b times the integral of dv/((v + c1 b)(v + c2 b)) from v to infinity.
  Real attraction(Real Z) const {
    if (c1_ == c2_) return B_ / (Z + c1_ * B_);
    return std::log((Z + c2_ * B_) / (Z + c1_ * B_)) / (c2_ - c1_);
  }
  int n_;
  Real T_, P_, c1_, c2_;
  std::vector<Real> x_, root_a_, root_a_slope_, b_, half_gradient_;
  Real a_ = 0, bm_ = 0, slope_ = 0, A_ = 0, B_ = 0;
};

class CubicFamilyReference : public ::testing::TestWithParam<I4> {};

TEST_P(CubicFamilyReference, FugacityVolumeEnthalpyAndEntropyOverSeededStates) {
  reset_cubic_family();
  pairs.TETA1.fill(0.0);
  pairs.TETA1T.fill(0.0);
  update_pairs();
  const I4 code = GetParam();
  const int slot = load_model(code);
  std::mt19937_64 random(static_cast<std::uint64_t>(2700 + code));
  std::uniform_real_distribution<R8> uniform(0.0, 1.0);
  int compared = 0, three_roots = 0;
  for (int state = 0; state < kStates; ++state) {
    const int n = state % 3 == 0 ? 1 : 2 + static_cast<int>(uniform(random) * 8.999);
    std::vector<R8> x;
    R8 sum = 0.0;
    for (int i = 0; i < n; ++i) {
      x.push_back(0.01 + uniform(random));
      sum += x.back();
    }
    for (R8& value : x) value /= sum;
    Call call;
    call.composition(x);
    call.args.MODEL = slot;
    call.args.T = 140.0 + 460.0 * uniform(random);
    call.args.P = 1E4 * std::pow(5000.0, uniform(random));
    call.args.IPHASE = state % 2 == 0 ? phase::vapour : phase::liquid;
    call.args.IHTYPE = thermal::residual;
    call.args.LFUG = call.args.LVOL = call.args.LTHERM = true;
    call.run();
    ASSERT_EQ(call.args.ICODE, status::ok);
    const Textbook book(code, slot, x, call.args.T, call.args.P);
    const std::vector<Real> roots = book.roots();
    ASSERT_TRUE(roots.size() == 1 || roots.size() == 3);
    if (roots.size() == 3) ++three_roots;
    const Real Z = call.args.IPHASE == phase::vapour ? roots.back() : roots.front();
    const R8 where = call.args.T;
    ASSERT_NEAR(call.args.Z, static_cast<R8>(Z), 1E-9 * static_cast<R8>(Z)) << where;
    const auto near = [&](R8 value, Real expected) {
      const R8 e = static_cast<R8>(expected);
      ASSERT_NEAR(value, e, 1E-9 * std::max(1.0, std::fabs(e))) << where << " K, " << call.args.P << " Pa";
    };
    for (int i = 0; i < n; ++i) near(call.FUG(i + 1), book.ln_phi(i, Z));
    near(call.args.H, book.enthalpy(Z));
    near(call.args.S, book.entropy(Z));
    near(call.args.H - call.args.S, book.gibbs(Z));
    ++compared;
  }
  EXPECT_EQ(compared, kStates);
  EXPECT_GT(three_roots, kStates / 20);
}

INSTANTIATE_TEST_SUITE_P(Models, CubicFamilyReference,
                         ::testing::Values(model::peng_robinson, model::srk, model::van_der_waals,
                                           model::srk_simsci));

}  // namespace
}  // namespace talix::test
