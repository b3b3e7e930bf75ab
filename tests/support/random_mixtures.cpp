#include "support/random_mixtures.h"

#include <algorithm>
#include <cmath>

#include "fastprops/flash_record.h"

namespace talix::test {

namespace {

struct Kind {
  const char* name;
  std::vector<int> first;  // always there
  R8 first_weight;         // mean feed of these over that of the others
  std::vector<int> pool;   // the others
  int fewest, most;        // components
};

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> all = {
      {"narrow-boiling", {}, 1.0, {28, 31, 32, 229, 232, 277, 33, 39, 40, 238}, 2, 8},
      {"methane and decane", {20, 116}, 1.0, {22}, 2, 3},
      {"lean gas", {20}, 20.0, {21, 22, 23, 24, 15, 4, 25, 28}, 3, 9},
      {"gas condensate", {20, 21, 22}, 5.0, {23, 24, 25, 26, 28, 33, 42, 102, 116, 15, 4, 277, 278}, 8, 15},
      {"liquefied gas", {}, 1.0, {21, 22, 23, 24, 200, 201, 202, 203}, 2, 8},
      {"oil", {}, 1.0, {25, 28, 33, 42, 102, 116, 125, 277, 278, 232, 238}, 2, 11},
      {"rich in carbon dioxide", {4}, 6.0, {20, 21, 22, 23, 15, 11, 25}, 2, 8},
      {"light gases", {}, 1.0, {15, 17, 58, 81, 20, 725}, 2, 6},
  };
  return all;
}

R8 wilson(int i, R8 T, R8 P) {
  const R8 tc = static_cast<R8>(fl.TC(i));
  return static_cast<R8>(fl.PC(i)) / P *
         std::exp(5.37 * (1.0 + static_cast<R8>(fl.OMEG(i))) * (1.0 - tc / T));
}

// Temperature at which the sum of z K (bubble) or z/K (dew) is 1.
R8 boundary(const FlashCase& c, R8 P, bool bubble) {
  R8 total = 0.0;
  for (const R4 f : c.feed) total += static_cast<R8>(f);
  R8 low = 20.0, high = 1500.0;
  for (int step = 0; step < 60; ++step) {
    const R8 T = 0.5 * (low + high);
    R8 sum = 0.0;
    for (int i = 1; i <= c.nc(); ++i) {
      const R8 z = static_cast<R8>(c.feed[static_cast<std::size_t>(i - 1)]) / total;
      sum += bubble ? z * wilson(i, T, P) : z / wilson(i, T, P);
    }
    const bool above = bubble ? sum > 1.0 : sum < 1.0;
    (above ? high : low) = T;
  }
  return 0.5 * (low + high);
}

}  // namespace

FlashCase MixtureSource::next() {
  const Kind& kind = kinds()[static_cast<std::size_t>(count_) % kinds().size()];
  ++count_;
  kind_ = kind.name;
  FlashCase c;
  c.numbers = kind.first;
  const int n = kind.fewest + static_cast<int>(uniform() * static_cast<R8>(kind.most - kind.fewest + 1));
  while (c.nc() < n) {
    const int number = kind.pool[static_cast<std::size_t>(uniform() * static_cast<R8>(kind.pool.size()))];
    if (std::find(c.numbers.begin(), c.numbers.end(), number) == c.numbers.end()) c.numbers.push_back(number);
  }
  R8 total = 0.0;
  std::vector<R8> feed;
  for (std::size_t i = 0; i < c.numbers.size(); ++i) {
    const R8 weight = i < kind.first.size() ? kind.first_weight : 1.0;
    feed.push_back(weight * (0.05 - std::log(1.0 - uniform())));
    total += feed.back();
  }
  for (const R8 f : feed) c.feed.push_back(static_cast<R4>(f / total));
  return c;
}

R8 temperature_between(const FlashCase& c, R8 P, R8 share) {
  const R8 bubble = boundary(c, P, true);
  return bubble + share * (boundary(c, P, false) - bubble);
}

void load(FlashCase c) {
  c.T = 25.0F;
  c.P = 1.0F;
  c.FRV = 1.0F;
  c.IFLASH = flash_type::isothermal;
  c.run();
}

}  // namespace talix::test
