#include "support/stability_check.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "fastprops/engine_call.h"
#include "fastprops/flash_record.h"

namespace talix::test {

namespace {

constexpr int kTrialSteps = 300;
// A trial nearer to the composition than this in every ln ratio has gone back to it.
constexpr R8 kTrivial = 1.0E-3;

R8 wilson(int i, R8 T, R8 P) {
  const R8 tc = static_cast<R8>(fl.TC(i));
  const R8 pc = static_cast<R8>(fl.PC(i));
  return pc / P * std::exp(5.37 * (1.0 + static_cast<R8>(fl.OMEG(i))) * (1.0 - tc / T));
}

std::vector<R8> normalised(const std::vector<R8>& w) {
  R8 sum = 0.0;
  for (const R8 v : w) sum += v;
  std::vector<R8> x = w;
  for (R8& v : x) v /= sum;
  return x;
}

// Distance at the stationary point that the trial W runs to; 0 for the trivial one or a failure.
R8 stationary_distance(R8 T, R8 P, const std::vector<R8>& z, const std::vector<R8>& d, std::vector<R8> W) {
  const std::size_t n = z.size();
  std::vector<R8> phi;
  R8 distance = 0.0;
  for (int step = 0; step < kTrialSteps; ++step) {
    if (!log_phi(phase::gibbs, T, P, normalised(W), phi)) return 0.0;
    R8 change = 0.0;
    R8 away = 0.0;
    distance = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
      if (!(z[i] > 0.0)) continue;
      const R8 next = std::exp(std::clamp(d[i] - phi[i], -200.0, 200.0));
      change = std::max(change, std::fabs(std::log(next / W[i])));
      away = std::max(away, std::fabs(std::log(next / z[i])));
      W[i] = next;
      distance -= next;
    }
    if (away < kTrivial) return 0.0;
    if (change < 1.0E-9) break;
  }
  return distance;
}

}  // namespace

bool log_phi(I4 asked, R8 T, R8 P, const std::vector<R8>& x, std::vector<R8>& result) {
  static EngineCall call;
  call = EngineCall{};
  const I4 n = static_cast<I4>(x.size());
  for (int i = 1; i <= n; ++i) {
    call.IC(i) = i;
    call.X(i) = x[static_cast<std::size_t>(i - 1)];
  }
  SHMIX0(asked, root_option::pseudo, T, P * kPascalPerBar, n, call.IC, call.X, model::none, call.DV,
         fl.MODELID, call.DF, model::none, thermal::total, call.DH, call.IRESRV, call.NRESRV, call.IPHRTN,
         call.AMBIG, call.ZFUG, call.ZVOL, call.DZDT, call.DZDP, call.DZDN, call.FUG, call.DFDT, call.DFDP,
         call.DFDN, call.H, call.DHDT, call.DHDP, call.DHDN, call.S, call.DSDT, call.DSDP, call.DSDN,
         call.RESRV, call.NFAIL);
  result.assign(x.size(), 0.0);
  for (int i = 1; i <= n; ++i) result[static_cast<std::size_t>(i - 1)] = call.FUG(i);
  return call.NFAIL == status::ok;
}

R8 tangent_plane_distance(R8 T, R8 P, const std::vector<R8>& z) {
  std::vector<R8> phi;
  if (!log_phi(phase::gibbs, T, P, z, phi)) return 0.0;
  const std::size_t n = z.size();
  std::vector<R8> d(n, 0.0);
  for (std::size_t i = 0; i < n; ++i) d[i] = z[i] > 0.0 ? std::log(z[i]) + phi[i] : 0.0;
  R8 lowest = 0.0;
  for (const R8 power : {1.0, -1.0, 1.0 / 3.0, -1.0 / 3.0}) {
    std::vector<R8> W(n);
    for (std::size_t i = 0; i < n; ++i) W[i] = z[i] * std::pow(wilson(static_cast<int>(i) + 1, T, P), power);
    lowest = std::min(lowest, stationary_distance(T, P, z, d, W));
  }
  // Every component alone as a trial, for liquids that the boiling order does not find.
  for (std::size_t k = 0; k < n; ++k) {
    std::vector<R8> W = z;
    for (R8& w : W) w *= 1.0E-3;
    W[k] = 1.0;
    if (z[k] > 0.0) lowest = std::min(lowest, stationary_distance(T, P, z, d, W));
  }
  return lowest;
}

}  // namespace talix::test
