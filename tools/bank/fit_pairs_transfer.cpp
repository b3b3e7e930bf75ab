#include "bank/fit_pairs_transfer.h"

#include <array>
#include <cmath>
#include <vector>

#include "bank/fit_pairs_search.h"

namespace talix::bank {

namespace {

constexpr std::array kReduced{0.55, 0.65, 0.75, 0.85};  // temperatures over the higher critical temperature
constexpr std::array kFractions{0.05, 0.2, 0.5, 0.8};  // of the component with the lower critical temperature
constexpr double kHighest = 1.5e7;                     // pressure [Pa]
constexpr double kLowest = 10.0;                       // of the less volatile component [Pa]
constexpr double kBelow = 0.97;                        // of the lower critical temperature: two liquids

constexpr double kPoorest = 5.0;   // mean deviation of a transfer that counts [%]
constexpr double kFurthest = 0.2;  // change of the parameter that counts [-]

// One state of the comparison and the effect to be met.
struct Target {
  double T, x, start;
  bool gas;  // above the lower critical temperature
  double effect;
};

// The effect of the mixture, see the header; false where a state is missing.
bool effect(const PairEquation& equation, bool light_first, Target& t) {
  const PairState mixture = bubble_point(equation, t.T, t.x, t.start);
  const double heavy_end = light_first ? 0.0 : 1.0;
  const PairState heavy = bubble_point(equation, t.T, heavy_end, 1e4);
  if (!mixture.ok || !heavy.ok || mixture.P > kHighest || heavy.P < kLowest) return false;
  const double light = light_first ? t.x : 1.0 - t.x;
  t.start = mixture.P;
  if (t.gas) {
    const double part = mixture.P - (1.0 - light) * heavy.P;
    t.effect = std::log(part / light);
    return part > 0.0;
  }
  const PairState other = bubble_point(equation, t.T, 1.0 - heavy_end, 1e5);
  if (!other.ok) return false;
  t.effect = std::log(mixture.P / (light * other.P + (1.0 - light) * heavy.P));
  return true;
}

}  // namespace

PairTransfer transfer(PairCubic cubic, const PairComponent& first, const PairComponent& second, double kij) {
  PairTransfer result;
  const bool light_first = first.tc < second.tc;
  const double low = light_first ? first.tc : second.tc, high = light_first ? second.tc : first.tc;
  const PairEquation published(cubic, first, second, {.t0 = kij});
  std::vector<Target> targets;
  for (const double reduced : kReduced) {
    const double T = reduced * high;
    for (const double fraction : kFractions) {
      Target t{T, light_first ? fraction : 1.0 - fraction, 1e6, T > kBelow * low, 0.0};
      if (t.gas && fraction > 0.3) continue;  // the critical region of wide-boiling pairs
      if (effect(published, light_first, t)) targets.push_back(t);
    }
  }
  if (targets.size() < 2) return result;
  PairEquation own(PairCubic::bank, first, second, {});
  const auto mean = [&](double t0) {
    own.set({.t0 = t0});
    double sum = 0.0;
    for (const Target& target : targets) {
      Target t = target;
      sum += effect(own, light_first, t) ? std::fmin(std::fabs(t.effect - target.effect), 1.0) : 1.0;
    }
    return sum / static_cast<double>(targets.size());
  };
  result.t0 = golden_search(mean, -0.5, 0.7, 30);
  result.t0 = std::round(result.t0 * 1e5) / 1e5;
  result.states = static_cast<int>(targets.size());
  result.mean = 100.0 * mean(result.t0);
  result.tmin = targets.front().T;
  result.tmax = targets.back().T;
  result.ok = result.mean < kPoorest && std::fabs(result.t0 - kij) < kFurthest;
  return result;
}

}  // namespace talix::bank
