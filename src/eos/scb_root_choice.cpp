#include "eos/scb_root_choice.h"

#include <cmath>
#include <string_view>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "eos/cubic_record.h"

namespace talix {

namespace {

using q_index::IA;
using q_index::IB;

constexpr R8 kSmallestA = 1E-37;
constexpr R8 kRootTolerance = 1E-12;
constexpr I4 kRootSteps = 25;

// The cubic in y = B/z, monic unless its leading coefficient vanishes.
struct PackingCubic {
  R8 CA, CB, CC, CD;
};

PackingCubic packing_cubic(R8 A, R8 B) {
  const R8 product = cur.C1PAR * cur.C2PAR;
  const R8 sum = cur.C1PAR + cur.C2PAR;
  const R8 AB = A / B;
  const R8 SCALE = AB + (1.0 + B) * product;
  const R8 CB = product - AB - (1.0 + B) * (product - sum);
  const R8 CC = 1.0 + B * (1.0 - sum);
  if (SCALE == 0.0) return {.CA = 0.0, .CB = CB, .CC = CC, .CD = -B};
  return {.CA = 1.0, .CB = CB / SCALE, .CC = CC / SCALE, .CD = -B / SCALE};
}

// Gibbs energy of the liquid-type root less that of the vapour-type root, over RT.
R8 gibbs_gap(R8 A, R8 B, R8 Zv, R8 Zl) {
  const R8 c1 = cur.C1PAR;
  const R8 c2 = cur.C2PAR;
  const R8 L1 = std::log((Zv - B) / (Zl - B));
  if (c1 != c2) {
    const R8 ratio = ((c2 * B + Zv) * (c1 * B + Zl)) / ((c1 * B + Zv) * (c2 * B + Zl));
    return (A / (B * (c2 - c1))) * std::log(ratio) + L1 - (Zv - Zl);
  }
  return A / (c1 * B + Zv) + L1 - A / (c1 * B + Zl) - (Zv - Zl);
}

// Stationary point of the cubic on the side of the missing root.
void stationary_point(R8& ROOT, R8 CB, R8 DISCR, R8 side, std::string_view made, std::string_view none,
                      I4& ICODE) {
  if (DISCR > 0.0) {
    const R8 XTEMP = (-2.0 * CB + side * std::sqrt(DISCR)) / 6.0;
    if (0.0 < XTEMP && XTEMP < 1.0) {
      SERPU0(severity::warning, "SCBDS2", made);
      ROOT = XTEMP;
      ICODE = status::failed;
      return;
    }
  }
  SERPU0(severity::warning, "SCBDS2", none);
}

}  // namespace

// SCBDS0: physical roots of the cubic in the packing y.
//
// In       CA..CD  R8     coefficients from the third power down to the constant
//          TOL     R8     relative tolerance of the polish [-]
//          MAXIT   I4     steps of the polish
// Out      NROOT   I4     roots with 0 < y < 1
//          ROOT    R8(3)  these, descending: the densest first
// Status   ok; numerical (coefficients too small)
// Reports  through SSVCR0 and SSVCR1
void SCBDS0(const R8& CA, const R8& CB, const R8& CC, const R8& CD, const R8& TOL, const I4& MAXIT, I4& NROOT,
            RootTable& ROOT, I4& ICODE) {
  ICODE = status::ok;
  NROOT = 0;
  RootTable all{};
  I4 found = 0;
  SSVCR0(CA, CB, CC, CD, found, all, ICODE);
  if (ICODE != status::ok) return;
  for (int i = found; i >= 1; --i) {
    R8 y = all(i);
    SSVCR1(y, CA, CB, CC, CD, TOL, MAXIT);
    if (0.0 < y && y < 1.0) ROOT(++NROOT) = y;
  }
}

// SCBDS1: type of each physical root.
//
// In       MODFUN  I4        fun::cubic for a result with one root
//          Q       R8(0..2)  a [K/Pa], b [K/Pa]
//          T       R8        temperature [K]
//          NROOT   I4        roots in ROOT
//          ROOT    R8(3)     packing y, descending
// Out      IROOT   I4(3)     phase::liquid, phase::middle, phase::vapour, phase::single, phase::no_root
// Shared   reads cur
// Status   ok; no_root; not_available (one root and another model)
// Reports  "Equation of state has no physical root", severity 3
//          "Equation of state  model not of type VARDO (impossible)", severity 3
//          "Exactly two physical equation of state roots (impossible)", severity 1
void SCBDS1(const I4& MODFUN, const QVec& Q, const R8& T, const I4& NROOT, const RootTable& ROOT,
            RootTypes& IROOT, I4& ICODE) {
  ICODE = status::ok;
  switch (NROOT) {
    case 3:
      IROOT(1) = phase::liquid;
      IROOT(2) = phase::middle;
      IROOT(3) = phase::vapour;
      return;
    case 2:
      IROOT(1) = phase::liquid;
      IROOT(2) = phase::vapour;
      SERPU0(severity::warning, "SCBDS1", "Exactly two physical equation of state roots (impossible)");
      return;
    case 1: {
      if (MODFUN != fun::cubic) {
        SERPU0(severity::error, "SCBDS1", "Equation of state  model not of type VARDO (impossible)");
        ICODE = status::not_available;
        return;
      }
      // Pseudo-critical temperature and packing tell a single root below the critical point apart.
      const R8 TCPS = Q(IA) * T * cur.OBPAR / (Q(IB) * cur.OAPAR);
      const R8 BVCPS = 3.0 * cur.OBPAR / (1.0 + (1.0 - cur.C1PAR - cur.C2PAR) * cur.OBPAR);
      if (T > TCPS) {
        IROOT(1) = phase::single;
      } else {
        IROOT(1) = ROOT(1) > BVCPS ? phase::liquid : phase::vapour;
      }
      return;
    }
    default:
      SERPU0(severity::error, "SCBDS1", "Equation of state has no physical root");
      IROOT(1) = phase::no_root;
      ICODE = status::no_root;
  }
}

// SCBDS2: pseudo-root in place of a root of the type opposite to the one asked for.
//
// The pseudo-root is the stationary point of the cubic at which the missing branch comes closest to a
// solution; it does not solve the equation.
//
// In       CB, CC  R8  coefficients of y^2 and y of the monic cubic
//          IPHASE  I4  type asked for
//          IPHRTN  I4  type found
// In/Out   ROOT    R8  packing y
// Status   ok; failed (125: a pseudo-root was made, which SCBDS3 turns into phase::pseudo_root)
// Reports  "Pseudo vapour root used in equation of state", severity 1
//          "No (pseudo)root of vapour type available", severity 1
//          "Pseudo liquid root used in equation of state", severity 1
//          "No (pseudo)root of liquid type available", severity 1
void SCBDS2(R8& ROOT, const R8& CB, const R8& CC, const I4& IPHASE, const I4& IPHRTN, I4& ICODE) {
  ICODE = status::ok;
  const R8 DISCR = 4.0 * CB * CB - 12.0 * CC;
  if (IPHASE == phase::vapour && IPHRTN == phase::liquid) {
    stationary_point(ROOT, CB, DISCR, -1.0, "Pseudo vapour root used in equation of state",
                     "No (pseudo)root of vapour type available", ICODE);
  } else if (IPHASE == phase::liquid && IPHRTN == phase::vapour) {
    stationary_point(ROOT, CB, DISCR, 1.0, "Pseudo liquid root used in equation of state",
                     "No (pseudo)root of liquid type available", ICODE);
  }
}

// SCBDS3: choose the root of the generalised cubic.
//
// In       MODFUN  I4        fun::cubic or fun::ideal_gas
//          Q       R8(0..2)  a [K/Pa], b [K/Pa]
//          T, P    R8        [K], [Pa]
//          IPHASE  I4        phase::vapour, phase::liquid: the asked type; any other: lowest Gibbs energy
//          KROOT   I4        root_option::pseudo allows a pseudo-root
// Out      Z       R8        compressibility [-]
//          ZOTHER  R8        the opposite extreme root [-]; with one root 0, or that root after a Gibbs
//          choice ZGAP    R8        difference of the Gibbs measure of the extreme roots, 0 where not
//          compared IPHRTN  I4        type of the root
// Shared   reads cur
// Status   ok; no_root; not_available (model unknown); numerical (a too small)
// Reports  "Value of VARDO A-parameter too small", severity 3
//          "Requested model not available", severity 3
// Oddity   a tie in Gibbs energy goes to the vapour-type root
void SCBDS3(const I4& MODFUN, const QVec& Q, const R8& T, const R8& P, const I4& IPHASE, R8& Z, R8& ZOTHER,
            R8& ZGAP, const I4& KROOT, I4& IPHRTN, I4& ICODE) {
  ICODE = status::ok;
  const R8 POVERT = P / T;
  ZOTHER = 0.0;
  ZGAP = 0.0;
  if (MODFUN == fun::ideal_gas) {
    Z = 1.0;
    ZOTHER = 1.0;
    IPHRTN = phase::single;
    return;
  }
  if (MODFUN != fun::cubic) {
    SERPU0(severity::error, "SCBDS3", "Requested model not available");
    ICODE = status::not_available;
    return;
  }
  const R8 A = Q(IA) * POVERT;
  const R8 B = Q(IB) * POVERT;
  if (!(A > kSmallestA)) {
    SERPU0(severity::error, "SCBDS3", "Value of VARDO A-parameter too small");
    ICODE = status::numerical;
    return;
  }

  // Roots and their types.
  const PackingCubic cubic = packing_cubic(A, B);
  I4 NROOT = 0;
  RootTable ROOT{};
  RootTypes IROOT{};
  SCBDS0(cubic.CA, cubic.CB, cubic.CC, cubic.CD, kRootTolerance, kRootSteps, NROOT, ROOT, ICODE);
  if (ICODE != status::ok) return;
  SCBDS1(MODFUN, Q, T, NROOT, ROOT, IROOT, ICODE);
  if (ICODE != status::ok) {
    if (ICODE == status::no_root) IPHRTN = phase::no_root;
    return;
  }

  // The extreme root asked for, or the one of lower Gibbs energy.
  const bool typed = IPHASE == phase::vapour || IPHASE == phase::liquid;
  bool take_vapour = IPHASE == phase::vapour;
  if (!typed) {
    const R8 Zv = B / ROOT(NROOT);
    const R8 Zl = B / ROOT(1);
    const R8 Gm = NROOT == 1 ? 0.0 : gibbs_gap(A, B, Zv, Zl);
    ZGAP = std::abs(Gm);
    ZOTHER = Zl;
    take_vapour = !(Gm < 0.0);
  }
  const int first = take_vapour ? NROOT : 1;
  R8 y = ROOT(first);
  IPHRTN = IROOT(first);

  if (typed && KROOT == root_option::pseudo) {
    // A cubic without its third power has no such point.
    const bool monic = cubic.CA != 0.0;
    SCBDS2(y, monic ? cubic.CB : 0.0, monic ? cubic.CC : 0.0, IPHASE, IPHRTN, ICODE);
    if (ICODE == status::failed) {
      IPHRTN = phase::pseudo_root;
      ICODE = status::ok;
    }
  }

  Z = B / y;
  if (NROOT == 1) return;
  ZOTHER = B / ROOT(take_vapour ? 1 : NROOT);
}

}  // namespace talix
