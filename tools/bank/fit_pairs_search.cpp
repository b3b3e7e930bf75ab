#include "bank/fit_pairs_search.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace talix::bank {

double golden_search(const std::function<double(double)>& f, double low, double high, int steps) {
  double best = low, least = f(low);
  for (int k = 1; k <= steps; ++k) {
    const double at = low + (high - low) * k / steps;
    const double value = f(at);
    if (value < least) {
      least = value;
      best = at;
    }
  }
  const double width = (high - low) / steps;
  double a = std::max(low, best - width), b = std::min(high, best + width);
  constexpr double kGolden = 0.6180339887498949;
  double c = b - kGolden * (b - a), d = a + kGolden * (b - a);
  double fc = f(c), fd = f(d);
  while (b - a > 2e-6) {
    if (fc < fd) {
      b = d;
      d = c;
      fd = fc;
      c = b - kGolden * (b - a);
      fc = f(c);
    } else {
      a = c;
      c = d;
      fc = fd;
      d = a + kGolden * (b - a);
      fd = f(d);
    }
  }
  const double found = 0.5 * (a + b);
  return f(found) <= least ? found : best;
}

namespace {

using Point = std::vector<double>;

struct Corner {
  Point at;
  double value;
};

Point between(const Point& a, const Point& b, double t) {
  Point r(a.size());
  for (std::size_t i = 0; i < a.size(); ++i) r[i] = a[i] + t * (b[i] - a[i]);
  return r;
}

Point run(const std::function<double(const Point&)>& f, const Point& start, const Point& step, int most) {
  std::vector<Corner> simplex{{start, f(start)}};
  for (std::size_t i = 0; i < start.size(); ++i) {
    Point at = start;
    at[i] += step[i];
    simplex.push_back({at, f(at)});
  }
  const auto less = [](const Corner& a, const Corner& b) { return a.value < b.value; };
  for (int k = 0; k < most; ++k) {
    std::stable_sort(simplex.begin(), simplex.end(), less);
    Corner& worst = simplex.back();
    if (worst.value - simplex.front().value < 1e-8) break;
    Point centre(start.size(), 0.0);
    for (std::size_t c = 0; c + 1 < simplex.size(); ++c)
      for (std::size_t i = 0; i < centre.size(); ++i)
        centre[i] += simplex[c].at[i] / static_cast<double>(simplex.size() - 1);
    const auto trial = [&](double t) {
      Point at = between(centre, worst.at, t);
      const double value = f(at);
      return Corner{std::move(at), value};
    };
    Corner next = trial(-1.0);
    if (next.value < simplex.front().value) {
      Corner further = trial(-2.0);
      worst = further.value < next.value ? further : next;
    } else if (next.value < simplex[simplex.size() - 2].value) {
      worst = next;
    } else {
      Corner inside = next.value < worst.value ? trial(-0.5) : trial(0.5);
      if (inside.value < std::min(next.value, worst.value)) {
        worst = inside;
      } else {
        for (std::size_t c = 1; c < simplex.size(); ++c) {
          simplex[c].at = between(simplex.front().at, simplex[c].at, 0.5);
          simplex[c].value = f(simplex[c].at);
        }
      }
    }
  }
  return std::min_element(simplex.begin(), simplex.end(), less)->at;
}

}  // namespace

std::vector<double> simplex_search(const std::function<double(const std::vector<double>&)>& f,
                                   const std::vector<double>& start, const std::vector<double>& step) {
  constexpr int kMost = 200;
  const Point first = run(f, start, step, kMost);
  Point finer = step;
  for (double& s : finer) s *= -0.3;
  return run(f, first, finer, kMost);
}

}  // namespace talix::bank
