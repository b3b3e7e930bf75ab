#include "support/reference_phase.h"

#include <algorithm>
#include <cmath>

#include "engine/shmix_driver.h"
#include "fastprops/flash_record.h"

namespace talix::test::reference {

namespace {

constexpr R8 kPascal = 1.0E5;
constexpr R8 kEngineGasConstant = 8.314471;
constexpr R8 kVanishing = 1.0E-290;

// Arguments of one call of the engine; static for its size, filled anew each time.
struct Arguments {
  Vec<I4, kMaxComponents> IC{};
  CompVec X{};
  ReservedCodes IRESRV{};
  I4 IPHRTN = phase::none;
  L4 AMBIG{};
  R8 ZFUG = 0.0, ZVOL = 0.0, DZDT = 0.0, DZDP = 0.0;
  CompVec DZDN{}, FUG{}, DFDT{}, DFDP{}, DHDN{}, DSDN{};
  CompMat DFDN{};
  R8 H = 0.0, DHDT = 0.0, DHDP = 0.0, S = 0.0, DSDT = 0.0, DSDP = 0.0;
  ReservedValues RESRV{};
  I4 NFAIL = status::failed;
};
Arguments a;

bool call(const Mixture& m, R8 T, R8 P, const Numbers& x, I4 asked, bool slopes, bool thermal_wanted) {
  const I4 count = m.listed;
  for (int i = 1; i <= count; ++i) {
    a.IC(i) = i;
    a.X(i) = 0.0;
  }
  for (std::size_t i = 0; i < x.size(); ++i) a.X(m.positions[i]) = x[i];
  Flags3 none{};
  Flags3 composition{};
  composition(3) = slopes;
  const I4 no_model = 0;
  const I4 thermal_slot = thermal_wanted ? fl.MODELID : no_model;
  const I4 no_results = 0;
  SHMIX0(asked, root_option::real_only, T, P * kPascal, count, a.IC, a.X, no_model, none, fl.MODELID,
         composition, thermal_slot, thermal::total, none, a.IRESRV, no_results, a.IPHRTN, a.AMBIG, a.ZFUG,
         a.ZVOL, a.DZDT, a.DZDP, a.DZDN, a.FUG, a.DFDT, a.DFDP, a.DFDN, a.H, a.DHDT, a.DHDP, a.DHDN, a.S,
         a.DSDT, a.DSDP, a.DSDN, a.RESRV, a.NFAIL);
  return a.NFAIL == status::ok;
}

bool take(const Mixture& m, const Numbers& x, Phase& result) {
  result.x = x;
  result.lnphi.resize(x.size());
  result.Z = a.ZFUG;
  result.g = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    result.lnphi[i] = a.FUG(m.positions[i]);
    if (!std::isfinite(result.lnphi[i])) return false;
    if (x[i] > 0.0) result.g += x[i] * (std::log(x[i]) + result.lnphi[i]);
  }
  result.liquid = !a.AMBIG && a.IPHRTN == phase::liquid;
  return true;
}

}  // namespace

Mixture mixture_of(const std::vector<R4>& feed) {
  Mixture m;
  m.listed = static_cast<int>(feed.size());
  R8 total = 0.0;
  for (const R4 f : feed) total += static_cast<R8>(f);
  for (std::size_t i = 0; i < feed.size(); ++i) {
    if (!(feed[i] > 0.0F)) continue;
    m.positions.push_back(static_cast<int>(i) + 1);
    m.z.push_back(static_cast<R8>(feed[i]) / total);
  }
  return m;
}

bool evaluate(const Mixture& m, R8 T, R8 P, const Numbers& x, Phase& result, I4 asked) {
  if (!call(m, T, P, x, asked, false, false)) return false;
  // A root of a given type that does not exist comes back as the one that does.
  if (asked != phase::gibbs && !a.AMBIG && a.IPHRTN != asked) return false;
  return take(m, x, result);
}

bool evaluate(const Mixture& m, R8 T, R8 P, const Numbers& x, Phase& result, Square& slopes) {
  if (!call(m, T, P, x, phase::gibbs, true, false) || !take(m, x, result)) return false;
  slopes = Square(x.size());
  for (std::size_t i = 0; i < x.size(); ++i)
    for (std::size_t j = 0; j < x.size(); ++j) slopes(i, j) = a.DFDN(m.positions[i], m.positions[j]);
  return true;
}

bool enthalpy(const Mixture& m, R8 T, R8 P, const Numbers& x, R8& h) {
  if (!call(m, T, P, x, phase::gibbs, false, true)) return false;
  h = kEngineGasConstant * T * a.H;
  return std::isfinite(h);
}

R8 density(const Mixture& m, const Phase& p) {
  R8 mass = 0.0;
  for (std::size_t i = 0; i < p.x.size(); ++i) mass += p.x[i] * static_cast<R8>(fl.AMW(m.positions[i]));
  return mass / p.Z;
}

Numbers normalised(const Numbers& w) {
  R8 sum = 0.0;
  for (const R8 v : w) sum += v;
  Numbers x = w;
  for (R8& v : x) v = std::max(v / sum, kVanishing);
  return x;
}

R8 wilson(const Mixture& m, std::size_t i, R8 T, R8 P) {
  const int k = m.positions[i];
  const R8 exponent = 5.37 * (1.0 + static_cast<R8>(fl.OMEG(k))) * (1.0 - static_cast<R8>(fl.TC(k)) / T);
  return static_cast<R8>(fl.PC(k)) / P * std::exp(std::clamp(exponent, -200.0, 200.0));
}

R8 largest_difference(const Numbers& p, const Numbers& q) {
  R8 most = 0.0;
  for (std::size_t i = 0; i < p.size(); ++i) most = std::max(most, std::fabs(p[i] - q[i]));
  return most;
}

bool solve_positive(const Square& A, R8 shift, const Numbers& b, Numbers& s) {
  const std::size_t n = A.n;
  Square L(n);
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = 0; j <= i; ++j) {
      R8 sum = A(i, j) + (i == j ? shift : 0.0);
      for (std::size_t k = 0; k < j; ++k) sum -= L(i, k) * L(j, k);
      if (i != j) {
        L(i, j) = sum / L(j, j);
      } else {
        if (!(sum > 1.0E-14)) return false;
        L(i, i) = std::sqrt(sum);
      }
    }
  }
  s = b;
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t k = 0; k < i; ++k) s[i] -= L(i, k) * s[k];
    s[i] /= L(i, i);
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t k = i + 1; k < n; ++k) s[i] -= L(k, i) * s[k];
    s[i] /= L(i, i);
  }
  return true;
}

R8 lowest_eigenvalue(Square A, Numbers& vector) {
  const std::size_t n = A.n;
  Square V(n);
  for (std::size_t i = 0; i < n; ++i) V(i, i) = 1.0;
  for (int sweep = 0; sweep < 30; ++sweep) {
    R8 off = 0.0;
    for (std::size_t p = 0; p < n; ++p)
      for (std::size_t q = p + 1; q < n; ++q) off += A(p, q) * A(p, q);
    if (off < 1.0E-22) break;
    for (std::size_t p = 0; p < n; ++p) {
      for (std::size_t q = p + 1; q < n; ++q) {
        if (std::fabs(A(p, q)) < 1.0E-300) continue;
        const R8 theta = (A(q, q) - A(p, p)) / (2.0 * A(p, q));
        const R8 t = (theta >= 0.0 ? 1.0 : -1.0) / (std::fabs(theta) + std::sqrt(theta * theta + 1.0));
        const R8 c = 1.0 / std::sqrt(t * t + 1.0);
        const R8 s = t * c;
        for (std::size_t k = 0; k < n; ++k) {
          const R8 kp = A(k, p), kq = A(k, q);
          A(k, p) = c * kp - s * kq;
          A(k, q) = s * kp + c * kq;
        }
        for (std::size_t k = 0; k < n; ++k) {
          const R8 pk = A(p, k), qk = A(q, k);
          A(p, k) = c * pk - s * qk;
          A(q, k) = s * pk + c * qk;
          const R8 vp = V(k, p), vq = V(k, q);
          V(k, p) = c * vp - s * vq;
          V(k, q) = s * vp + c * vq;
        }
      }
    }
  }
  std::size_t best = 0;
  for (std::size_t i = 1; i < n; ++i)
    if (A(i, i) < A(best, best)) best = i;
  vector.assign(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) vector[i] = V(i, best);
  return A(best, best);
}

}  // namespace talix::test::reference
