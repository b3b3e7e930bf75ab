#include "support/reference_split.h"

#include <algorithm>
#include <cmath>

namespace talix::test::reference {

namespace {

constexpr int kSubstitutions = 60;
constexpr int kPolishing = 12;
constexpr int kDescents = 200;
constexpr int kBisections = 200;
constexpr R8 kSettled = 1.0E-12;  // change of ln K
constexpr R8 kDigits = 4.0E-14;   // of a Gibbs energy
constexpr R8 kAccepted = 1.0E-6;  // difference of ln f at the end
constexpr R8 kDistinct = 1.0E-7;  // of two phases, in mole fraction or compressibility factor

R8 rachford_rice(const Numbers& z, const Numbers& K, R8 share) {
  R8 sum = 0.0;
  for (std::size_t i = 0; i < z.size(); ++i) sum += z[i] * (K[i] - 1.0) / (1.0 + share * (K[i] - 1.0));
  return sum;
}

// Bisection between the poles next to 0 and 1; the share may lie outside 0 to 1 on the way.
bool solve_share(const Numbers& z, const Numbers& K, R8& share) {
  const auto [least, most] = std::minmax_element(K.begin(), K.end());
  if (!(*least < 1.0 && *most > 1.0)) return false;
  R8 low = 1.0 / (1.0 - *most);
  R8 high = 1.0 / (1.0 - *least);
  const R8 margin = 1.0E-14 * (high - low);
  low += margin;
  high -= margin;
  for (int step = 0; step < kBisections && high - low > 1.0E-17 * (1.0 + std::fabs(low)); ++step) {
    share = 0.5 * (low + high);
    (rachford_rice(z, K, share) > 0.0 ? low : high) = share;
  }
  return true;
}

struct Pair {
  R8 share = 0.0;
  Phase a, b;
};

// Compositions of both phases from K-values, then their fugacity coefficients.
bool form_phases(const Mixture& m, R8 T, R8 P, const Numbers& lnK, Pair& pair) {
  Numbers K(lnK.size());
  for (std::size_t i = 0; i < K.size(); ++i) K[i] = std::exp(std::clamp(lnK[i], -250.0, 250.0));
  if (!solve_share(m.z, K, pair.share)) return false;
  Numbers x(K.size()), y(K.size());
  for (std::size_t i = 0; i < K.size(); ++i) {
    x[i] = m.z[i] / (1.0 + pair.share * (K[i] - 1.0));
    y[i] = K[i] * x[i];
    if (!(x[i] > 0.0)) return false;
  }
  return evaluate(m, T, P, normalised(y), pair.a) && evaluate(m, T, P, normalised(x), pair.b);
}

// Substitution with an extrapolation along the slowest direction now and then; the largest last change of ln K.
R8 substitute(const Mixture& m, R8 T, R8 P, int passes, Numbers& lnK, Pair& pair) {
  R8 change = 1.0;
  Numbers step(lnK.size()), before(lnK.size());
  for (int pass = 1; pass <= passes; ++pass) {
    if (!form_phases(m, T, P, lnK, pair)) return -1.0;
    R8 product = 0.0, square = 0.0;
    change = 0.0;
    for (std::size_t i = 0; i < lnK.size(); ++i) {
      step[i] = pair.b.lnphi[i] - pair.a.lnphi[i] - lnK[i];
      change = std::max(change, std::fabs(step[i]));
      product += step[i] * before[i];
      square += before[i] * before[i];
    }
    const R8 ratio = square > 0.0 ? product / square : 0.0;
    const R8 reach = pass % 6 == 0 && ratio > 0.3 && ratio < 0.98 ? 1.0 / (1.0 - ratio) : 1.0;
    for (std::size_t i = 0; i < lnK.size(); ++i) lnK[i] += reach * step[i];
    before = step;
    if (change < kSettled) break;
  }
  return change;
}

// The Gibbs energy of a division of one mole of feed, V moles of each component in phase a.
struct Division {
  Numbers v;
  Pair pair;
  R8 g = 0.0;
};

bool divide(const Mixture& m, R8 T, R8 P, Division& d, Square* slopes_a, Square* slopes_b) {
  const std::size_t n = m.size();
  Numbers l(n);
  R8 V = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    l[i] = m.z[i] - d.v[i];
    if (!(d.v[i] > 0.0 && l[i] > 0.0)) return false;
    V += d.v[i];
  }
  const Numbers y = normalised(d.v);
  const Numbers x = normalised(l);
  const bool done = slopes_a == nullptr ? evaluate(m, T, P, y, d.pair.a) && evaluate(m, T, P, x, d.pair.b)
                                        : evaluate(m, T, P, y, d.pair.a, *slopes_a) &&
                                              evaluate(m, T, P, x, d.pair.b, *slopes_b);
  d.pair.share = V;
  d.g = V * d.pair.a.g + (1.0 - V) * d.pair.b.g;
  return done;
}

// Largest difference of ln f, each with the weight of its component.
R8 gradient(const Mixture& m, const Division& d) {
  R8 size = 0.0;
  for (std::size_t i = 0; i < m.size(); ++i) {
    const R8 r = std::log(d.pair.a.x[i]) + d.pair.a.lnphi[i] - std::log(d.pair.b.x[i]) - d.pair.b.lnphi[i];
    size = std::max(size, std::fabs(r) * std::sqrt(d.v[i] * (m.z[i] - d.v[i]) / m.z[i]));
  }
  return size;
}

// One Newton step down the Gibbs energy, the Hessian lifted until the step falls; false when none does.
bool descend(const Mixture& m, R8 T, R8 P, Division& d, R8& shift, R8& size) {
  const std::size_t n = m.size();
  Square A, B;
  if (!divide(m, T, P, d, &A, &B)) return false;
  const R8 V = d.pair.share, L = 1.0 - V;
  Numbers scale(n), downhill(n);
  Square H(n);
  size = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    scale[i] = std::sqrt(d.v[i] * (m.z[i] - d.v[i]) / m.z[i]);
    const R8 r = std::log(d.pair.a.x[i]) + d.pair.a.lnphi[i] - std::log(d.pair.b.x[i]) - d.pair.b.lnphi[i];
    downhill[i] = -scale[i] * r;
  }
  size = gradient(m, d);
  if (size < 1.0E-14) return false;
  for (std::size_t i = 0; i < n; ++i)
    for (std::size_t j = 0; j < n; ++j)
      H(i, j) = scale[i] * scale[j] * ((A(i, j) - 1.0) / V + (B(i, j) - 1.0) / L) + (i == j ? 1.0 : 0.0);
  for (int attempt = 0; attempt < 40; ++attempt) {
    Numbers step;
    if (solve_positive(H, shift, downhill, step)) {
      Division next;
      next.v.resize(n);
      for (std::size_t i = 0; i < n; ++i) {
        const R8 v = d.v[i] + scale[i] * step[i];
        const R8 least = 1.0E-3 * d.v[i];
        const R8 most = m.z[i] - 1.0E-3 * (m.z[i] - d.v[i]);
        next.v[i] = std::clamp(v, least, most);
      }
      // Where the digits of the Gibbs energy end, the gradient has to fall.
      if (divide(m, T, P, next, nullptr, nullptr) &&
          (next.g < d.g - kDigits || (next.g < d.g + kDigits && gradient(m, next) < 0.9 * size))) {
        d = next;
        shift = shift > 1.0E-3 ? 0.2 * shift : 0.0;
        return true;
      }
    }
    shift = shift > 0.0 ? 4.0 * shift : 1.0E-2;
  }
  return false;
}

// The amount of the phase about to form that lowers the Gibbs energy most, of a row of amounts.
bool start_division(const Mixture& m, R8 T, R8 P, const Numbers& lnK, R8 g_below, Division& d) {
  Numbers w(lnK.size());
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = m.z[i] * std::exp(std::clamp(lnK[i], -250.0, 250.0));
  w = normalised(w);
  R8 most = 1.0;
  for (std::size_t i = 0; i < w.size(); ++i) most = std::min(most, m.z[i] / w[i]);
  bool found = false;
  for (R8 amount = 0.95 * most; amount > 1.0E-9; amount *= found ? 0.8 : 0.3) {
    Division next;
    next.v = w;
    for (R8& v : next.v) v *= amount;
    if (!divide(m, T, P, next, nullptr, nullptr)) continue;
    if (next.g < g_below) {
      d = next;
      g_below = next.g;
      found = true;
    } else if (found) {
      break;
    }
  }
  return found;
}

bool minimise(const Mixture& m, R8 T, R8 P, Division& d, Numbers& lnK) {
  R8 shift = 0.0, size = 0.0;
  for (int pass = 0; pass < kDescents; ++pass)
    if (!descend(m, T, P, d, shift, size)) break;
  if (!divide(m, T, P, d, nullptr, nullptr)) return false;
  for (std::size_t i = 0; i < lnK.size(); ++i) lnK[i] = d.pair.b.lnphi[i] - d.pair.a.lnphi[i];
  return true;
}

R8 fugacity_difference(const Pair& pair) {
  R8 most = 0.0;
  for (std::size_t i = 0; i < pair.a.x.size(); ++i) {
    const R8 r = std::log(pair.a.x[i]) + pair.a.lnphi[i] - std::log(pair.b.x[i]) - pair.b.lnphi[i];
    most = std::max(most, std::fabs(r));
  }
  return most;
}

}  // namespace

bool split_from(const Mixture& m, R8 T, R8 P, const Numbers& start, R8 g_feed, Route route, Split& result) {
  Numbers lnK = start;
  Pair pair;
  const R8 change = route == Route::descent ? -1.0 : substitute(m, T, P, kSubstitutions, lnK, pair);
  const bool inside = change >= 0.0 && pair.share > 0.0 && pair.share < 1.0;
  if (!inside || change > kSettled) {
    Division d;
    d.v.resize(m.size());
    if (inside)
      for (std::size_t i = 0; i < d.v.size(); ++i)
        d.v[i] = std::min(pair.share * pair.a.x[i], (1.0 - 1.0E-12) * m.z[i]);
    const bool lower = inside && divide(m, T, P, d, nullptr, nullptr) && d.g < g_feed;
    const bool lower_still = start_division(m, T, P, start, lower ? d.g : g_feed, d);
    if (!lower && !lower_still) return false;
    if (!minimise(m, T, P, d, lnK)) return false;
    pair = d.pair;
    // Substitution settles the traces; near a critical point its K-values can lose the split, which then stands.
    Pair polished;
    if (substitute(m, T, P, kPolishing, lnK, polished) >= 0.0 && polished.share > 0.0 &&
        polished.share < 1.0 && fugacity_difference(polished) < fugacity_difference(pair))
      pair = polished;
  }
  if (fugacity_difference(pair) > kAccepted) return false;
  if (largest_difference(pair.a.x, pair.b.x) < kDistinct && std::fabs(pair.a.Z - pair.b.Z) < kDistinct)
    return false;
  result = {pair.share, pair.a, pair.b, pair.share * pair.a.g + (1.0 - pair.share) * pair.b.g};
  return true;
}

}  // namespace talix::test::reference
