#include "support/reference_stability.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace talix::test::reference {

namespace {

constexpr int kSubstitutions = 24;
constexpr int kNewtonSteps = 60;
constexpr int kRandomStarts = 6;
constexpr int kExhaustiveStarts = 300;
constexpr R8 kPureReach =
    -2.0;  // of ln f over that of the pure component, for a near-pure phase to be thinkable
constexpr R8 kSame = 1.0E-5;           // two compositions are the same phase
constexpr R8 kGradient = 1.0E-13;      // of the scaled gradient at a stationary point
constexpr R8 kRoughGradient = 1.0E-7;  // of one that no step improves
constexpr R8 kDigits = 2.0E-14;        // of a distance
constexpr R8 kLargestLog = 250.0;

struct Search {
  const Mixture& m;
  R8 T, P;
  Numbers d;  // ln z + ln phi(z)
  Stability& result;
};

Numbers exponential(const Numbers& lnW) {
  Numbers W(lnW.size());
  for (std::size_t i = 0; i < W.size(); ++i) W[i] = std::exp(std::clamp(lnW[i], -kLargestLog, kLargestLog));
  return W;
}

R8 sum_of(const Numbers& v) {
  R8 sum = 0.0;
  for (const R8 x : v) sum += x;
  return sum;
}

// tm of a trial whose phase has been evaluated.
R8 distance(const Search& s, const Numbers& W, const Phase& p) {
  R8 tm = 1.0;
  for (std::size_t i = 0; i < W.size(); ++i) tm += W[i] * (std::log(W[i]) + p.lnphi[i] - s.d[i] - 1.0);
  return tm;
}

// Largest component of the gradient of tm in 2 sqrt(W).
R8 gradient(const Search& s, const Numbers& W, const Phase& p) {
  R8 size = 0.0;
  for (std::size_t i = 0; i < W.size(); ++i)
    size = std::max(size, std::sqrt(W[i]) * std::fabs(std::log(W[i]) + p.lnphi[i] - s.d[i]));
  return size;
}

// Minimises tm in 2 sqrt(W) by Newton steps whose Hessian is lifted until it is positive and the step falls.
bool second_order(const Search& s, Numbers& W, Phase& p, R8& tm) {
  const std::size_t n = W.size();
  Square slopes;
  R8 shift = 0.0;
  for (int pass = 0; pass < kNewtonSteps; ++pass) {
    if (!evaluate(s.m, s.T, s.P, normalised(W), p, slopes)) return false;
    tm = distance(s, W, p);
    const R8 total = sum_of(W);
    Numbers downhill(n);
    Square H(n);
    const R8 size = gradient(s, W, p);
    for (std::size_t i = 0; i < n; ++i) {
      const R8 r = std::log(W[i]) + p.lnphi[i] - s.d[i];
      downhill[i] = -std::sqrt(W[i]) * r;
      for (std::size_t j = 0; j < n; ++j) H(i, j) = std::sqrt(W[i] * W[j]) * slopes(i, j) / total;
      H(i, i) += 1.0 + 0.5 * r;
    }
    // Far inside a region of two phases the trial amounts to many moles: what rounding leaves grows with it.
    const R8 scale = std::max(1.0, total);
    if (size < kGradient * std::sqrt(scale)) return true;
    bool moved = false;
    for (int attempt = 0; attempt < 40 && !moved; ++attempt) {
      Numbers step;
      if (solve_positive(H, shift, downhill, step)) {
        Numbers next(n);
        bool inside = true;
        for (std::size_t i = 0; i < n; ++i) {
          const R8 root = std::sqrt(W[i]) + 0.5 * step[i];
          // A trace that the step would turn negative stays positive.
          next[i] = root > 0.0 ? root * root : W[i] * 1.0E-4;
          inside = inside && std::isfinite(next[i]);
        }
        Phase q;
        if (inside && evaluate(s.m, s.T, s.P, normalised(next), q)) {
          const R8 value = distance(s, next, q);
          const R8 digits = kDigits * scale * (1.0 + std::log(scale));
          if (value < tm - digits || (value < tm + digits && gradient(s, next, q) < 0.9 * size)) {
            W = next;
            moved = true;
            shift = shift > 1.0E-3 ? 0.2 * shift : 0.0;
            continue;
          }
        }
      }
      shift = shift > 0.0 ? 4.0 * shift : 1.0E-2;
    }
    // No step lowers tm any more: as far as the digits reach.
    if (!moved) return size < kRoughGradient * std::sqrt(scale);
  }
  return true;
}

bool known(const Search& s, const Numbers& x, R8 Z) {
  if (largest_difference(x, s.result.feed.x) < kSame && std::fabs(Z - s.result.feed.Z) < kSame) return true;
  return std::any_of(s.result.found.begin(), s.result.found.end(), [&](const Stationary& other) {
    return largest_difference(x, other.phase.x) < kSame && std::fabs(Z - other.phase.Z) < 1.0E-3;
  });
}

void run_trial(Search& s, Numbers lnW, bool local) {
  Phase p;
  Numbers W = exponential(lnW);
  for (int pass = 0; pass < (local ? 0 : kSubstitutions); ++pass) {
    if (!evaluate(s.m, s.T, s.P, normalised(W), p)) return;
    R8 change = 0.0;
    for (std::size_t i = 0; i < W.size(); ++i) {
      const R8 next = s.d[i] - p.lnphi[i];
      change = std::max(change, std::fabs(next - lnW[i]));
      lnW[i] = next;
    }
    W = exponential(lnW);
    // Close enough to a known end that it will not leave it again.
    if (pass > 8 && known(s, normalised(W), p.Z) && (s.result.curvature > 1.0E-2 || !s.result.found.empty()))
      return;
    if (change < 1.0E-10) break;
  }
  R8 tm = 0.0;
  if (!second_order(s, W, p, tm)) return;
  const Numbers x = normalised(W);
  if (!evaluate(s.m, s.T, s.P, x, p) || known(s, x, p.Z)) return;
  // At the stationary point tm is 1 - sum W.
  s.result.found.push_back({p, tm});
}

void add_wilson(Search& s, R8 power) {
  Numbers lnW(s.m.size());
  for (std::size_t i = 0; i < lnW.size(); ++i)
    lnW[i] = std::log(s.result.feed.x[i]) + power * std::log(wilson(s.m, i, s.T, s.P));
  run_trial(s, lnW, false);
}

// Whether a phase of component K next to pure could form, or nearly.
bool may_be_pure(const Search& s, std::size_t k) {
  Phase pure;
  Numbers x(s.m.size(), 0.0);
  x[k] = 1.0;
  return evaluate(s.m, s.T, s.P, x, pure) && s.d[k] - pure.lnphi[k] > kPureReach;
}

void add_pure_end(Search& s, std::size_t k) {
  Numbers x(s.m.size());
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = 1.0E-4 * s.result.feed.x[i];
  x[k] = 1.0;
  Numbers lnW(x.size());
  const Numbers fractions = normalised(x);
  for (std::size_t i = 0; i < lnW.size(); ++i) lnW[i] = std::log(fractions[i]);
  run_trial(s, lnW, false);
}

// Down the distance from next to a pure component, without substitution: where a little of another component in it has
// a very small or a very large fugacity coefficient, substitution leaps to the feed.
void add_pure_descent(Search& s, std::size_t k) {
  for (const R8 others : {1.0E-4, 0.05}) {
    Numbers x(s.m.size());
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = others * s.result.feed.x[i];
    x[k] += 1.0 - others;
    Phase p;
    if (!evaluate(s.m, s.T, s.P, x, p)) continue;
    // The amount of it that lies lowest.
    R8 plane = 0.0;
    for (std::size_t i = 0; i < x.size(); ++i) plane += x[i] * (std::log(x[i]) + p.lnphi[i] - s.d[i]);
    Numbers lnW(x.size());
    for (std::size_t i = 0; i < x.size(); ++i) lnW[i] = std::log(x[i]) - plane;
    run_trial(s, lnW, true);
  }
}

// Both roots of the composition itself as first approximations.
void add_root(Search& s, I4 type) {
  Phase p;
  if (!evaluate(s.m, s.T, s.P, s.result.feed.x, p, type)) return;
  Numbers lnW(s.m.size());
  for (std::size_t i = 0; i < lnW.size(); ++i) lnW[i] = s.d[i] - p.lnphi[i];
  run_trial(s, lnW, false);
}

void add_random(Search& s, std::mt19937& engine) {
  Numbers lnW(s.m.size());
  for (R8& w : lnW) {
    const R8 u = (static_cast<R8>(engine()) + 0.5) / 4294967296.0;
    w = 2.0 * std::log(-std::log(u));
  }
  run_trial(s, lnW, false);
}

// Along the direction in which the Gibbs energy is least curved, both ways: where the critical point is near.
void add_softest(Search& s, const Numbers& direction, R8 length) {
  Numbers lnW(s.m.size());
  for (std::size_t i = 0; i < lnW.size(); ++i) {
    const R8 root = std::sqrt(s.result.feed.x[i]) + 0.5 * length * direction[i];
    lnW[i] = root > 0.0 ? 2.0 * std::log(root) : std::log(s.result.feed.x[i]) - 8.0;
  }
  run_trial(s, lnW, true);
}

}  // namespace

Stability analyse(const Mixture& m, R8 T, R8 P, const Numbers& x, Effort effort) {
  Stability result;
  Square slopes;
  if (!evaluate(m, T, P, x, result.feed, slopes)) {
    result.failed = true;
    return result;
  }
  const std::size_t n = m.size();
  if (n < 2) return result;
  Search s{m, T, P, Numbers(n), result};
  Square H(n);
  for (std::size_t i = 0; i < n; ++i) {
    s.d[i] = std::log(x[i]) + result.feed.lnphi[i];
    for (std::size_t j = 0; j < n; ++j)
      H(i, j) = std::sqrt(x[i] * x[j]) * slopes(i, j) + (i == j ? 1.0 : 0.0);
  }
  Numbers softest;
  result.curvature = lowest_eigenvalue(H, softest);

  add_wilson(s, 1.0);
  add_wilson(s, -1.0);
  if (result.curvature < 0.5)
    for (const R8 length : {0.02, -0.02, 0.2, -0.2, 0.6, -0.6}) add_softest(s, softest, length);
  std::size_t lightest = 0, heaviest = 0;
  for (std::size_t i = 1; i < n; ++i) {
    if (wilson(m, i, T, P) > wilson(m, lightest, T, P)) lightest = i;
    if (wilson(m, i, T, P) < wilson(m, heaviest, T, P)) heaviest = i;
  }
  for (std::size_t i = 0; i < n; ++i)
    if (i == lightest || i == heaviest || effort != Effort::scan || may_be_pure(s, i)) add_pure_end(s, i);
  for (std::size_t i = 0; i < n; ++i)
    if (effort != Effort::scan || may_be_pure(s, i)) add_pure_descent(s, i);
  if (effort != Effort::scan) {
    for (const R8 power : {1.0 / 3.0, -1.0 / 3.0}) add_wilson(s, power);
    add_root(s, phase::vapour);
    add_root(s, phase::liquid);
    std::mt19937 engine(20261121U);
    const int starts = effort == Effort::exhaustive ? kExhaustiveStarts : kRandomStarts;
    for (int k = 0; k < starts; ++k) add_random(s, engine);
  }
  std::sort(result.found.begin(), result.found.end(),
            [](const Stationary& a, const Stationary& b) { return a.distance < b.distance; });
  return result;
}

}  // namespace talix::test::reference
