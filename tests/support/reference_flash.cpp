#include "support/reference_flash.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace talix::test::reference {

namespace {

constexpr int kRounds = 8;
constexpr R8 kLower = 1.0E-13;  // a Gibbs energy that counts as lower

struct Hunt {
  const Mixture& m;
  R8 T, P;
  R8 g_feed;
  Effort effort;
  bool found = false;
  Split best;
};

bool keep_if_lower(Hunt& hunt, const Numbers& lnK) {
  bool lowered = false;
  for (const Route route : {Route::substitution, Route::descent}) {
    if (route == Route::descent && hunt.effort == Effort::scan) continue;
    Split split;
    if (!split_from(hunt.m, hunt.T, hunt.P, lnK, hunt.g_feed, route, split)) continue;
    if (hunt.found ? split.g >= hunt.best.g - kLower : split.g >= hunt.g_feed) continue;
    hunt.best = split;
    hunt.found = true;
    lowered = true;
  }
  return lowered;
}

Numbers ratio(const Numbers& a, const Numbers& b) {
  Numbers lnK(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) lnK[i] = std::log(a[i]) - std::log(b[i]);
  return lnK;
}

// What is left of a mole of feed when nearly all of it that X can take has gone into X.
Numbers remainder(const Numbers& z, const Numbers& x) {
  R8 most = 1.0;
  for (std::size_t i = 0; i < z.size(); ++i) most = std::min(most, 0.99 * z[i] / x[i]);
  Numbers rest(z.size());
  for (std::size_t i = 0; i < z.size(); ++i) rest[i] = z[i] - most * x[i];
  return normalised(rest);
}

// Splits from every stationary point against the feed, from each against each, and from Wilson's K-values.
void hunt_from_trials(Hunt& hunt, const Stability& s, Effort effort) {
  for (const Stationary& trial : s.found)
    if (trial.distance < kUnstable || effort != Effort::scan)
      keep_if_lower(hunt, ratio(trial.phase.x, s.feed.x));
  if (effort != Effort::scan)
    for (std::size_t i = 0; i < s.found.size(); ++i)
      for (std::size_t j = i + 1; j < s.found.size(); ++j)
        keep_if_lower(hunt, ratio(s.found[i].phase.x, s.found[j].phase.x));
  Numbers lnK(hunt.m.size());
  for (std::size_t i = 0; i < lnK.size(); ++i) lnK[i] = std::log(wilson(hunt.m, i, hunt.T, hunt.P));
  if (effort != Effort::scan || !hunt.found) keep_if_lower(hunt, lnK);
}

// Both phases have one tangent plane: a trial below it either replaces one of them or is a third phase.
R8 hunt_below_tangent_plane(Hunt& hunt, Effort effort) {
  for (int round = 0; round < kRounds; ++round) {
    const bool larger = hunt.best.share >= 0.5;
    const Stability s = analyse(hunt.m, hunt.T, hunt.P, larger ? hunt.best.a.x : hunt.best.b.x, effort);
    if (s.failed || !(s.lowest() < kUnstable)) return 0.0;
    bool lowered = false;
    const Split before = hunt.best;
    for (const Stationary& trial : s.found) {
      if (!(trial.distance < kUnstable)) continue;
      lowered = keep_if_lower(hunt, ratio(trial.phase.x, before.a.x)) || lowered;
      lowered = keep_if_lower(hunt, ratio(trial.phase.x, before.b.x)) || lowered;
      lowered = keep_if_lower(hunt, ratio(trial.phase.x, hunt.m.z)) || lowered;
      // Both phases may have to go.
      if (effort == Effort::scan) continue;
      for (const Stationary& other : s.found)
        if (&other != &trial) lowered = keep_if_lower(hunt, ratio(trial.phase.x, other.phase.x)) || lowered;
      lowered = keep_if_lower(hunt, ratio(trial.phase.x, remainder(hunt.m.z, trial.phase.x))) || lowered;
    }
    if (!lowered) return s.lowest();
  }
  return 0.0;
}

// Vapour is the phase that is identified as such; of two that are identified alike, the one of lower mass density.
bool first_is_light(const Mixture& m, const Phase& a, const Phase& b) {
  if (a.liquid != b.liquid) return b.liquid;
  return density(m, a) <= density(m, b);
}

void hand_over(const Mixture& m, const Split& split, Answer& answer) {
  answer.phases = 2;
  const bool a_is_light = first_is_light(m, split.a, split.b);
  answer.light = a_is_light ? split.a : split.b;
  answer.heavy = a_is_light ? split.b : split.a;
  answer.light_share = a_is_light ? split.share : 1.0 - split.share;
  answer.two_liquids = answer.light.liquid && answer.heavy.liquid;
  answer.vapour_share = answer.two_liquids ? 0.0 : answer.light_share;
  answer.g = split.g;
}

}  // namespace

Answer flash(const Mixture& m, R8 T, R8 P, Effort effort) {
  Answer answer;
  const Stability s = analyse(m, T, P, m.z, effort);
  if (s.failed) {
    answer.failed = true;
    return answer;
  }
  Hunt hunt{m, T, P, s.feed.g, effort, false, {}};
  if (s.lowest() < kUnstable) hunt_from_trials(hunt, s, effort);
  if (!hunt.found) {
    // Unstable without a split that lowers the Gibbs energy: the reference has no answer.
    answer.failed = s.lowest() < 100.0 * kUnstable;
    answer.phases = 1;
    answer.heavy = answer.light = s.feed;
    answer.vapour_share = answer.light_share = s.feed.liquid ? 0.0 : 1.0;
    answer.g = s.feed.g;
    return answer;
  }
  const R8 missing = hunt_below_tangent_plane(hunt, effort);
  hand_over(m, hunt.best, answer);
  answer.missing = missing;
  return answer;
}

}  // namespace talix::test::reference
