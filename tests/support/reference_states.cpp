#include "support/reference_states.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "fastprops/flash_record.h"
#include "support/flash_case.h"

namespace talix::test::reference {

namespace {

struct Kind {
  const char* name;
  std::vector<int> first;  // always there
  R8 first_weight;         // mean feed of these over that of the others
  std::vector<int> pool;   // the others
  int fewest, most;        // components
  R8 T_most = 600.0;       // [K]
};

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> all = {
      {"lean gas", {20}, 25.0, {21, 22, 23, 24, 15, 4, 25, 26, 28, 8}, 3, 10},
      {"rich gas",
       {20, 21, 22},
       6.0,
       {23, 24, 25, 26, 28, 33, 42, 102, 116, 134, 15, 4, 11, 277, 278},
       5,
       15},
      {"rich in carbon dioxide", {4}, 8.0, {20, 21, 22, 23, 15, 11, 25, 8, 58, 116}, 2, 10},
      {"hydrogen blend", {8, 20}, 8.0, {15, 4, 21, 22, 23, 24, 25, 28}, 3, 9},
      {"sour", {11, 20}, 3.0, {4, 15, 21, 22, 25, 33, 116, 278}, 2, 9},
      {"oil", {20}, 2.0, {21, 22, 23, 25, 28, 33, 42, 102, 116, 125, 134, 277, 278, 232, 238, 4, 15}, 4, 15},
      {"binary", {}, 1.0, {4, 8, 11, 15, 20, 21, 22, 23, 25, 28, 33, 116, 134, 277, 278, 58, 81, 200}, 2, 2},
      {"aromatics", {277, 278}, 2.0, {279, 281, 28, 33, 232, 238, 20, 4, 11, 21}, 3, 10},
      {"narrow-boiling", {}, 1.0, {28, 31, 32, 229, 232, 277, 33, 39, 40, 238}, 2, 8},
      {"any",
       {},
       1.0,
       {4, 8, 11, 15, 20, 21, 22, 23, 24, 25, 28, 33, 42, 116, 134, 277, 278, 323, 17, 81},
       2,
       15},
      {"wet", {9, 20}, 2.0, {4, 15, 11, 21, 22, 23, 25, 28, 116, 278}, 2, 8},
      {"cold", {20}, 2.0, {4, 11, 15, 21, 22, 25, 33, 116, 134, 278, 58}, 2, 7, 260.0},
      {"polar", {20}, 2.0, {9, 328, 403, 415, 4, 11, 21, 22, 25, 277, 116}, 2, 8},
      {"liquefied", {}, 1.0, {21, 22, 23, 24, 25, 26, 200, 201, 202, 203}, 2, 8},
  };
  return all;
}

constexpr int kCoarse = 28;  // points of a coarse scan
constexpr std::array<R8, 4> kDistances = {1.0E-1, 1.0E-2, 1.0E-3, 1.0E-4};

}  // namespace

StateSource::StateSource(std::uint32_t seed, int index) : index_(index) {
  std::seed_seq sequence{seed, static_cast<std::uint32_t>(index)};
  engine_.seed(sequence);
}

Case StateSource::draw() {
  const Kind& kind = kinds()[static_cast<std::size_t>(index_) % kinds().size()];
  Case c;
  c.kind = kind.name;
  c.numbers = kind.first;
  const int n = kind.fewest + static_cast<int>(uniform() * static_cast<R8>(kind.most - kind.fewest + 1));
  while (static_cast<int>(c.numbers.size()) < n) {
    const int number = kind.pool[static_cast<std::size_t>(uniform() * static_cast<R8>(kind.pool.size()))];
    if (std::find(c.numbers.begin(), c.numbers.end(), number) == c.numbers.end()) c.numbers.push_back(number);
  }
  Numbers amounts;
  for (std::size_t i = 0; i < c.numbers.size(); ++i) {
    const R8 weight = i < kind.first.size() ? kind.first_weight : 1.0;
    amounts.push_back(weight * (0.02 - std::log(1.0 - uniform())));
    // Every seventh feed has a trace.
    if (index_ % 7 == 0 && i + 1 == c.numbers.size()) amounts.back() *= 1.0E-5;
  }
  for (const R8 z : normalised(amounts)) c.feed.push_back(static_cast<R4>(z));
  c.T = uniform(150.0, kind.T_most);
  c.P = 0.1 * std::pow(6000.0, uniform());
  return c;
}

void StateSource::move_to_boundary(Case& c) {
  const R8 draw = uniform();
  const R8 choice = uniform();
  const R8 side = uniform() < 0.5 ? -1.0 : 1.0;
  const R8 step = kDistances[static_cast<std::size_t>(uniform() * 4.0)] * uniform(0.5, 1.0);
  if (draw < 0.5) return;
  const Mixture m = mixture_of(c.feed);
  // Near-critical: of the boundaries at several temperatures, the one whose phases are most alike.
  const bool critical = draw > 0.85;
  const Axis axis = critical || choice < 0.5 ? Axis::pressure : Axis::temperature;
  R8 best_T = 0.0, best_P = 0.0, best = 1.0E9;
  const int tries = critical ? 5 : 3;
  for (int k = 0; k < tries; ++k) {
    const R8 fixed = axis == Axis::pressure
                         ? (critical ? uniform(160.0, 600.0) : (k == 0 ? c.T : uniform(150.0, 600.0)))
                         : (k == 0 ? c.P : 0.1 * std::pow(6000.0, uniform()));
    const Line line{m, axis, fixed};
    const Scan found = scan(line, -1.0, kCoarse);
    for (const Boundary& b : found.boundaries) {
      const R8 T = line.T(b.at), P = line.P(b.at);
      if (!(T > 150.0 && T < 600.0 && P > 0.1 && P < 600.0)) continue;
      const R8 contrast = critical ? largest_difference(b.inside.light.x, b.inside.heavy.x) : uniform();
      if (contrast < best) {
        best = contrast;
        best_T = T;
        best_P = P;
      }
    }
    if (!critical && best < 1.0E9) break;
  }
  if (!(best < 1.0E9)) return;
  c.T = best_T * (axis == Axis::temperature ? 1.0 + side * step : 1.0);
  c.P = best_P * (axis == Axis::pressure ? 1.0 + side * step : 1.0);
  c.kind += critical ? ", near-critical" : ", near a boundary";
}

R4 celsius(R8 T) { return static_cast<R4>(T - 273.15); }

R8 kelvin(R4 host) { return static_cast<R8>(kFlashZeroCelsius + host); }

void load_list(const Case& c) {
  FlashCase host;
  host.numbers = c.numbers;
  host.feed = c.feed;
  const L4 before = fl.UNVERIFIED;
  fl.UNVERIFIED = true;
  host.run();
  fl.UNVERIFIED = before;
}

}  // namespace talix::test::reference
