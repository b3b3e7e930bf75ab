// One point of a line of constant phase fraction, in 64-bit reals.
#pragma once

#include "flash/robust_phase.h"

namespace talix {

// ln K of the components, then ln T and ln P.
inline constexpr int kMaxUnknowns = kMaxComponents + 2;
using LineVec = Vec<R8, kMaxUnknowns>;

// Two phases x and y in the proportion 1 - fraction to fraction, K = y/x. Which of the two is the lighter one is
// open: beyond a critical point of the line they have changed their parts.
struct LinePoint {
  LineVec u;      // ln K, ln(T/K), ln(P/bar)
  R8 fraction;    // of the feed in y [mol/mol]
  I4 root_x;      // root that x is evaluated on, as in evaluate_phase
  I4 root_y;      // and y
  R8 Zx, Zy;      // compressibility factors of the last evaluation [-]
  R8 Vx, Vy;      // molar volumes over the mean critical volume, but for a factor that x and y share
  I4 iterations;  // Newton steps of the last solve_point
};

enum class PointAnswer {
  solved,
  trivial,  // both phases became alike
  no_convergence,
  unsettled  // the engine failed or the budget ran out
};

int temperature_unknown(const RobustMixture& mixture);
int pressure_unknown(const RobustMixture& mixture);

R8 temperature_of(const RobustMixture& mixture, const LinePoint& point);
R8 pressure_of(const RobustMixture& mixture, const LinePoint& point);

// Compositions of x and y, not normalised, from ln K and the fraction.
void compositions_of(const RobustMixture& mixture, const LinePoint& point, CompVec& x, CompVec& y);

// Newton iteration with unknown HELD kept at VALUE, from the values in the point.
PointAnswer solve_point(const RobustMixture& mixture, int held, R8 value, int max_iterations,
                        LinePoint& point);
// Slopes of the unknowns with respect to unknown HELD along the line, at the point that solve_point has solved last;
// false when there are none.
bool line_slopes(const RobustMixture& mixture, int held, const LinePoint& point, LineVec& slopes);

// The phases of the last evaluation of solve_point or line_slopes.
const RobustPhase& phase_x();
const RobustPhase& phase_y();

}  // namespace talix
