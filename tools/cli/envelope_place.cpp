#include "cli/envelope_place.h"

#include <cmath>

namespace talix::cli {

namespace {

constexpr double kZeroCelsius = 273.15;

}  // namespace

Place place(double T_C, double P_bar) { return {(T_C + kZeroCelsius) / kKelvinPerUnit, std::log(P_bar)}; }
double temperature(const Place& at) { return at.x * kKelvinPerUnit - kZeroCelsius; }
double pressure(const Place& at) { return std::exp(at.y); }
Place along(const Place& from, const Place& direction, double length) {
  return {from.x + direction.x * length, from.y + direction.y * length};
}
double distance(const Place& a, const Place& b) { return std::hypot(a.x - b.x, a.y - b.y); }
Place direction(const Place& from, const Place& to) {
  const double length = distance(from, to);
  return length > 0 ? Place{(to.x - from.x) / length, (to.y - from.y) / length} : Place{0, 1};
}
double turn(const Place& a, const Place& b) {
  return std::abs(std::atan2(a.x * b.y - a.y * b.x, a.x * b.x + a.y * b.y));
}

}  // namespace talix::cli
