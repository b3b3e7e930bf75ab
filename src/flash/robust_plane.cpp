#include "flash/robust_plane.h"

#include <algorithm>
#include <cmath>

#include "engine/codes.h"
#include "flash/robust_symmetric.h"

namespace talix {

namespace {

// Logarithms stay within these, so that no mole number becomes 0 or infinite.
constexpr R8 kLnLow = -600.0;
constexpr R8 kLnHigh = 300.0;
// A trial may be taken for a known phase within this squared length of it, in 2 sqrt(W), and within this in ln Z.
constexpr R8 kNearKnown2 = 0.5;
constexpr R8 kVeryNear2 = 1.0E-3;
constexpr R8 kSameRootLnZ = 0.3;
// Greatest deviation from the quadratic form of a known phase, relative.
constexpr R8 kBowl = 0.25;
// A soft direction makes up a fair share of the form from one part in this.
constexpr R8 kFairShare = 4.0;
// A distance of this size is nothing.
constexpr R8 kNegligible = 1.0E-10;
// A distance that a partner converged only loosely may show, and how close to it a point has to lie.
constexpr R8 kPartnerNoise = -1.0E-5;
constexpr R8 kAtPartner2 = 1.0E-5;

constinit CompVec gradient{}, offset{}, newton{};

// True when POINT lies in the bowl of a known phase: the gradient is the one of the quadratic form of that
// phase, so that the Newton step of that form from here ends close to it. Measured in the form itself, which
// weighs the soft directions near a critical point as they deserve.
bool in_bowl(const TangentPlane& plane, Bowl& bowl, const TrialPoint& p, bool& failed) {
  const int n = plane.mixture->n;
  R8 far2 = 0.0;
  R8 outward = 0.0;
  for (int i = 1; i <= n; ++i) {
    offset(i) = 2.0 * (p.root_w(i) - std::sqrt(bowl.x(i)));
    gradient(i) = p.root_w(i) * p.residual(i);
    far2 += offset(i) * offset(i);
    outward += offset(i) * gradient(i);
  }
  if (far2 > kNearKnown2 || !(outward > 0.0) || p.tm > outward) return false;
  if (std::fabs(std::log(p.phase.Z / bowl.Z)) > kSameRootLnZ) return false;
  if (!curve_bowl(plane, bowl)) {
    failed = true;
    return false;
  }
  if (!(bowl.softest > 0.0)) return false;
  if (far2 < kVeryNear2 && std::fabs(p.tm) < 0.01 * kNegligible) return true;
  cholesky_solve(n, bowl.factor, gradient, newton);
  R8 miss2 = 0.0;
  R8 size2 = 0.0;
  R8 along = 0.0;
  for (int j = 1; j <= n; ++j) {
    along += bowl.soft(j) * offset(j);
    for (int i = 1; i <= n; ++i) {
      const R8 h = bowl.hessian(i, j);
      miss2 += (newton(i) - offset(i)) * h * (newton(j) - offset(j));
      size2 += offset(i) * h * offset(j);
    }
  }
  // The distance has to agree as well: beyond a second minimum the gradient alone may do so by chance. With a soft
  // direction both say something only where it makes up a fair share of the form.
  if (std::fabs(p.tm - 0.5 * size2) > kBowl * 0.5 * size2) return false;
  if (bowl.softest < kSoft && size2 > kFairShare * bowl.softest * along * along && size2 > kNegligible)
    return false;
  return miss2 < kBowl * kBowl * size2;
}

void open_bowl(I4 n, const RobustPhase& known, Bowl& bowl) {
  for (int i = 1; i <= n; ++i) bowl.x(i) = known.x(i);
  bowl.Z = known.Z;
  bowl.root = known.root == phase::liquid ? phase::liquid : phase::vapour;
  bowl.known = known.known == PhaseDerivatives::none ? nullptr : &known;
  bowl.curved = false;
}

}  // namespace

void open_plane(const RobustMixture& mixture, R8 T, R8 P, const RobustPhase& tested,
                const RobustPhase* PARTNER, TangentPlane& plane) {
  plane.mixture = &mixture;
  plane.T = T;
  plane.P = P;
  open_bowl(mixture.n, tested, plane.tested);
  plane.paired = PARTNER != nullptr;
  if (plane.paired) open_bowl(mixture.n, *PARTNER, plane.partner);
  for (int i = 1; i <= mixture.n; ++i) {
    plane.lnx(i) = std::max(std::log(tested.x(i)), kLnLow);
    plane.d(i) = plane.lnx(i) + tested.lnphi(i);
    // The phase that holds more of a component knows its fugacity better: traces come out of differences.
    if (plane.paired && PARTNER->x(i) > tested.x(i)) {
      plane.d(i) = std::log(PARTNER->x(i)) + PARTNER->lnphi(i);
      plane.lnx(i) = std::max(plane.d(i) - tested.lnphi(i), kLnLow);
    }
  }
}

bool curve_bowl(const TangentPlane& plane, Bowl& bowl) {
  if (bowl.curved) return true;
  const int n = plane.mixture->n;
  static constinit RobustPhase itself{};
  const RobustPhase* at = bowl.known;
  if (at == nullptr) {
    evaluate_phase(*plane.mixture, plane.T, plane.P, bowl.x, bowl.root, PhaseDerivatives::composition,
                   itself);
    if (itself.status != status::ok) return false;
    at = &itself;
  }
  fill_second(n, *at, bowl.hessian);
  // The eigenvalue itself matters only where it is small.
  bowl.softest = kSoft;
  if (!cholesky_factor(n, bowl.hessian, -kSoft, bowl.factor))
    bowl.softest = smallest_eigenvalue(n, bowl.hessian, bowl.soft);
  if (!cholesky_factor(n, bowl.hessian, 0.0, bowl.factor)) bowl.softest = std::min(bowl.softest, 0.0);
  bowl.curved = true;
  return true;
}

bool evaluate_point(const TangentPlane& plane, I4 ROOT, PhaseDerivatives derivatives, TrialPoint& p) {
  const int n = plane.mixture->n;
  static constinit CompVec w{};
  R8 total = 0.0;
  for (int i = 1; i <= n; ++i) {
    p.lnW(i) = std::clamp(p.lnW(i), kLnLow, kLnHigh);
    w(i) = std::exp(p.lnW(i));
    p.root_w(i) = std::sqrt(w(i));
    total += w(i);
  }
  const R8 lnTotal = std::log(total);
  for (int i = 1; i <= n; ++i) w(i) /= total;
  evaluate_phase(*plane.mixture, plane.T, plane.P, w, ROOT, derivatives, p.phase);
  if (p.phase.status != status::ok) return false;
  R8 tpd = 0.0;
  p.step2 = 0.0;
  for (int i = 1; i <= n; ++i) {
    p.residual(i) = p.lnW(i) + p.phase.lnphi(i) - plane.d(i);
    tpd += w(i) * p.residual(i);
    p.step2 += total * w(i) * p.residual(i) * p.residual(i);
  }
  p.tm = 1.0 - total + total * tpd;
  p.distance = -std::expm1(lnTotal - tpd);
  return true;
}

// B = 1 + sqrt(w_i w_j) N dlnphi_i/dn_j, the second derivatives by 2 sqrt(W) at a stationary point.
void fill_second(I4 n, const RobustPhase& phase, CompMat& B) {
  static constinit CompVec root{};
  for (int i = 1; i <= n; ++i) root(i) = std::sqrt(phase.x(i));
  for (int j = 1; j <= n; ++j) {
    for (int i = 1; i <= n; ++i) B(i, j) = root(i) * root(j) * phase.lnphi_n(i, j);
    B(j, j) += 1.0;
  }
}

bool at_known_phase(TangentPlane& plane, const TrialPoint& p, bool& failed) {
  return in_bowl(plane, plane.tested, p, failed) ||
         (plane.paired && !failed && in_bowl(plane, plane.partner, p, failed));
}

// True when the point lies below the plane, and not only because the partner does by the rounding of its equilibrium.
bool is_below(const TangentPlane& plane, const TrialPoint& p) {
  if (!(p.distance < kBelowPlane)) return false;
  if (!plane.paired || p.distance < kPartnerNoise) return true;
  R8 far2 = 0.0;
  for (int i = 1; i <= plane.mixture->n; ++i) {
    const R8 apart = 2.0 * (std::sqrt(p.phase.x(i)) - std::sqrt(plane.partner.x(i)));
    far2 += apart * apart;
  }
  return far2 > kAtPartner2 || std::fabs(std::log(p.phase.Z / plane.partner.Z)) > kSameRootLnZ;
}

}  // namespace talix
