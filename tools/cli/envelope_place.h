// States of a phase envelope on the even axes on which its lines are followed.
#pragma once

namespace talix::cli {

// Directions and steps are measured in units of this temperature difference and of a pressure ratio of e.
inline constexpr double kKelvinPerUnit = 40;

// A state, or a direction between states, in units of the step length.
struct Place {
  double x = 0;  // temperature
  double y = 0;  // logarithm of the pressure
};

Place place(double T_C, double P_bar);
double temperature(const Place& at);  // [C]
double pressure(const Place& at);     // [bar]
Place along(const Place& from, const Place& direction, double length);
double distance(const Place& a, const Place& b);
// Of length 1.
Place direction(const Place& from, const Place& to);
// The angle between two directions [rad].
double turn(const Place& a, const Place& b);

}  // namespace talix::cli
