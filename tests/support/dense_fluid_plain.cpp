#include "support/dense_fluid_plain.h"

#include <algorithm>
#include <cmath>

namespace talix::test {

namespace {

const DenseFluidConstants& k() { return dense_fluid; }

R4 cbrt(R4 a, PlainFluid& p) {
  ++p.cube_roots;
  const R4 root = std::pow(std::abs(a), 0.333333343F);
  return a < 0.0F ? -root : root;
}

R4 bexp(R4 x) { return std::exp(std::min(std::max(x, -75.0F), 75.0F)); }

R4 held(R4 x) { return std::min(std::max(x, 0.5F), 2.0F); }

R4 theta(R4 w, R4 Tr, R4 Vr) {
  return 1.0F +
         (w - k().WREF) * (k().A(1) + k().A(2) * std::log(Tr) + (k().A(3) + k().A(4) / Tr) * (Vr - 0.5F));
}

R4 phi(R4 w, R4 Tr, R4 Vr) {
  return 1.0F + (w - k().WREF) * (k().B(1) * (Vr + k().B(2)) + k().B(3) * (Vr + k().B(4)) * std::log(Tr));
}

R4 ZC(const DenseCase& c, int I) { return c.PC(I) * c.VC(I) / (k().RGL * c.TC(I)); }

void plain_derivatives(const DenseCase& c, PlainFluid& p) {
  auto& m = p.mixture;
  R4 S[4][5] = {};
  m.MWETA = 0.0F;
  m.MWLAM = 0.0F;
  m.ZCMIX = 0.0F;
  for (int I = 1; I <= c.N; ++I) {
    if (!(c.X(I) > 0.0F)) continue;
    const R4 GI = cbrt(m.H(I), p);
    R4 SJ[6] = {};
    for (int J = 1; J <= c.N; ++J) {
      if (!(c.X(J) > 0.0F)) continue;
      const R4 half = 0.5F * (GI + cbrt(m.H(J), p));
      const R4 HIJ = half * half * half;
      const R4 Z1 = std::sqrt(m.F(I) * m.F(J));
      const R4 RMIJ = c.CMW(I) * c.CMW(J) / (c.CMW(I) + c.CMW(J));
      const R4 Z3 = cbrt(HIJ, p) * std::sqrt(RMIJ / Z1);
      const R4 Z4 = 1.0F / RMIJ;
      const R4 Z2 = 0.5F * (GI + cbrt(m.H(J), p)) / GI;
      const R4 M = c.X(J) * HIJ / Z2;
      SJ[1] += M;
      SJ[2] += M * Z1;
      SJ[3] += M * Z1 * Z2;
      SJ[4] += M * Z1 * Z2 * Z3;
      SJ[5] += M * Z1 * Z2 * Z3 * Z4;
    }
    const R4 TH = m.F(I) * k().TCREF / c.TC(I);
    const R4 PH = m.H(I) / (c.VC(I) * k().RHOCREF);
    const R4 Tr = held(m.F(I) * c.T / (m.FMIX * c.TC(I)));
    const R4 Vr = held(m.H(I) / (c.VC(I) * m.HMIX * p.RHO0));
    R4 V = (c.W(I) - k().WREF) / TH;
    R4 Z1 = 1.0F - V * (k().A(2) - k().A(4) * (Vr - 0.5F) / Tr);
    R4 Z2 = V * (k().A(4) / Tr + k().A(3)) * Vr;
    V = (c.W(I) - k().WREF) * k().ZCREF / (PH * ZC(c, I));
    R4 Z3 = 1.0F - V * (k().B(3) * std::log(Tr) + k().B(1)) * Vr;
    R4 Z4 = V * k().B(3) * (Vr + k().B(4));
    if (Tr >= 2.0F) {
      Z1 = 1.0F;
      Z4 = 0.0F;
    }
    if (Vr <= 0.5F || Vr >= 2.0F) {
      Z2 = 0.0F;
      Z3 = 1.0F;
    }
    const R4 Z5 = Z1 * Z3 - Z2 * Z4;
    const R4 Z[5] = {0.0F, Z1, Z2, Z3, Z4};
    for (int L = 1; L <= 3; ++L) {
      const R4 M = L == 1 ? m.HMIX : m.FMIX * m.HMIX;
      SJ[L] = c.X(I) * SJ[L] / (Z5 * M);
      for (int n = 1; n <= 4; ++n) S[L][n] += Z[n] * SJ[L];
    }
    m.MWETA += c.X(I) * SJ[4];
    m.MWLAM += c.X(I) * SJ[5];
    m.ZCMIX += c.X(I) * ZC(c, I);
  }
  const R4 V = S[3][3] + S[2][4];
  R4 M = S[3][2] + S[2][1];
  m.DFDT = 1.0F - S[1][1] / (S[1][1] * V - S[1][4] * M);
  m.DHDT = S[1][4] * (1.0F - m.DFDT) / S[1][1];
  M = m.FMIX * std::pow(m.HMIX, 2.66666675F);
  m.MWETA = 2.0F * (m.MWETA * m.MWETA) / M;
  m.MWLAM = 2.0F * M / (m.MWLAM * m.MWLAM);
  m.DFDT = m.FMIX * m.DFDT / c.T;
  m.DHDT = m.HMIX * m.DHDT / c.T;
}

// Tables as large as the largest call, from 1.
struct Tables {
  R4 SIGMA[51][51], S[51][51], H[51][52], Y[51];
};
Tables t;

R4 plain_enskog(int N, R4 RHOX, const R4* CMW, const R4* X) {
  const R4 PI6 = 0.52359879F;
  const R4 TERM = RHOX * PI6;
  R4 S2 = 0.0F;
  R4 S3 = 0.0F;
  for (int I = 1; I <= N; ++I) {
    const R4 d = t.SIGMA[I][I];
    S2 += X[I] * TERM * (d * d);
    S3 += X[I] * TERM * (d * d * d);
  }
  const R4 E = 1.0F - S3;
  R4 VIS = 0.0F;
  for (int I = 1; I <= N; ++I) {
    t.Y[I] = 0.0F;
    R4 SE = 0.0F;
    for (int J = 1; J <= N; ++J) {
      const R4 G = t.SIGMA[I][I] * t.SIGMA[J][J] / (t.SIGMA[I][I] + t.SIGMA[J][J]);
      const R4 d = t.SIGMA[I][J];
      const R4 BG = d * d * d * 4.0F * PI6 * RHOX;
      const R4 JF = BG * (E * S2 * 3.0F * G + E * E + S2 * S2 * 2.0F * (G * G)) / (E * E * E);
      const R4 FR = CMW[J] / (CMW[I] + CMW[J]);
      const R4 EIJ = BG * std::sqrt(2.0F * CMW[I] * FR) / (d * d);
      t.Y[I] += X[J] * FR * JF;
      SE += X[J] * EIJ * JF;
      t.S[I][J] = X[J] * JF * (FR * FR) / EIJ;
    }
    t.Y[I] = X[I] * (1.0F + 0.8F * t.Y[I]);
    VIS += X[I] * SE;
  }
  for (int I = 1; I <= N; ++I) {
    for (int J = 1; J <= N; ++J) {
      R4 sum = 0.0F;
      for (int L = 1; L <= N; ++L) {
        const R4 Q = CMW[I] / (3.0F * CMW[L]);
        const R4 own = I == J ? 1.0F + 5.0F * Q : 0.0F;
        const R4 other = L == J ? 2.0F * Q : 0.0F;
        sum += t.S[I][L] * (own - other);
      }
      t.H[I][J] = 2.0F * X[I] * sum;
    }
    t.H[I][N + 1] = t.Y[I];
  }
  if (N == 1) {
    t.H[1][2] = t.Y[1] / t.H[1][1];
  } else {
    for (int K = 1; K <= N; ++K) {
      const R4 diagonal = t.H[K][K];
      for (int J = 1; J <= N + 1; ++J) t.H[K][J] /= diagonal;
      for (int I = 1; I <= N; ++I) {
        if (I == K) continue;
        const R4 factor = t.H[I][K];
        for (int J = 1; J <= N + 1; ++J) t.H[I][J] -= factor * t.H[K][J];
      }
    }
  }
  VIS = 8.0F * VIS / (25.0F * PI6);
  for (int I = 1; I <= N; ++I) VIS += t.H[I][N + 1] * t.Y[I];
  return VIS;
}

R4 omega(R4 TS) {
  return k().C(1) / std::pow(TS, k().C(2)) + k().C(3) * bexp(-k().C(4) * TS) +
         k().C(5) * bexp(-k().C(6) * TS);
}

}  // namespace

void plain_factors(const DenseCase& c, PlainFluid& p) {
  auto& m = p.mixture;
  p.IERR = 0;
  m.FMIX = m.HMIX = 1.0F;
  for (int I = 1; I <= c.N; ++I) {
    m.F(I) = c.TC(I) / k().TCREF;
    m.H(I) = k().RHOCREF * c.VC(I);
    if (!c.liquid) continue;
    const R4 Tr = c.T / c.TC(I);
    m.F(I) = m.F(I) * std::max(theta(c.W(I), Tr, 0.5F), 0.1F);
    m.H(I) = m.H(I) * std::max(phi(c.W(I), Tr, 0.5F), 0.1F) * k().ZCREF / ZC(c, I);
  }
  R4 R0 = 0.0F;
  p.IERR = 1;
  for (p.passes = 1; p.passes <= 15; ++p.passes) {
    const R4 FOLD = m.FMIX;
    const R4 HOLD = m.HMIX;
    m.FMIX = m.HMIX = 0.0F;
    for (int I = 1; I <= c.N; ++I) {
      if (!(c.X(I) > 0.0F)) continue;
      R4 S2 = 0.0F;
      R4 S3 = 0.0F;
      R4 term = 0.0F;
      R4 term2 = 0.0F;
      for (int J = 1; J <= I; ++J) {
        if (!(c.X(J) > 0.0F)) continue;
        const R4 sum = cbrt(m.H(I), p) + cbrt(m.H(J), p);
        term = c.X(J) * (sum * sum * sum) / 8.0F;
        term2 = term * std::sqrt(m.F(I) * m.F(J));
        S2 += term;
        S3 += term2;
      }
      m.HMIX += c.X(I) * (2.0F * S2 - term);
      m.FMIX += c.X(I) * (2.0F * S3 - term2);
    }
    m.FMIX = m.FMIX / m.HMIX;
    const R4 T0 = c.T / m.FMIX;
    R0 = c.RHO * m.HMIX;
    for (int I = 1; I <= c.N; ++I) {
      if (!(c.X(I) > 0.0F)) continue;
      const R4 Tr = held(m.F(I) * T0 / c.TC(I));
      const R4 Vr = held(m.H(I) / (c.VC(I) * R0));
      m.F(I) = std::max(theta(c.W(I), Tr, Vr), 0.01F) * c.TC(I) / k().TCREF;
      m.H(I) = std::max(phi(c.W(I), Tr, Vr), 0.01F) * k().RHOCREF * k().ZCREF * c.VC(I) / ZC(c, I);
    }
    if (std::abs(m.FMIX - FOLD) <= 1E-05F * std::abs(FOLD) &&
        std::abs(m.HMIX - HOLD) <= 1E-05F * std::abs(HOLD)) {
      p.IERR = 0;
      break;
    }
  }
  p.RHO0 = R0 / m.HMIX;
  plain_derivatives(c, p);
}

R4 plain_hard_spheres(const DenseCase& c, PlainFluid& p) {
  const auto& m = p.mixture;
  const int N = c.N;
  const R4 RHO0 = std::max(p.RHO0, 1E-20F);
  R4 Z[51] = {};
  R4 S[51] = {};
  R4 CMW[51] = {};
  const R4 CMWN = c.CMW(N);
  for (int I = 1; I <= N; ++I) {
    Z[I] = c.X(I) > 0.0F ? c.X(I) : 1E-06F;
    S[I] = cbrt(97.751F * m.H(I) / 1.84183347F, p);
    CMW[I] = c.CMW(I) / CMWN;
  }
  const R4 SN = S[N];
  const R4 RHOSN = SN * SN * SN * 0.0006023F * RHO0;
  for (int I = 1; I <= N; ++I) S[I] = S[I] / SN;
  R4 SUM1 = 0.0F;
  R4 SUM2 = 0.0F;
  for (int I = 1; I <= N; ++I) {
    R4 SI = 0.0F;
    R4 SM = 0.0F;
    for (int J = 1; J <= N; ++J) {
      const R4 SIJ = 0.5F * (S[I] + S[J]);
      t.SIGMA[I][J] = SIJ;
      const R4 A = Z[J] * (SIJ * SIJ * SIJ);
      SI += A;
      SM += SIJ * A * std::sqrt(CMW[I] * CMW[J] / (CMW[I] + CMW[J]));
    }
    SUM1 += Z[I] * SI;
    SUM2 += Z[I] * SM;
  }
  const R4 SX = cbrt(SUM1, p);
  const R4 M1 = SUM2 / (SUM1 * SX);
  const R4 MX = 2.0F * CMWN * (M1 * M1);
  const R4 SIGX = SN * SX;
  const R4 RHOX = SIGX * SIGX * SIGX * 0.0006023F * RHO0;
  R4 V1 = plain_enskog(N, RHOSN, CMW, Z);
  V1 = V1 * 26.693F * std::sqrt(CMWN * c.T) / (SN * SN);
  t.SIGMA[1][1] = 1.0F;
  CMW[1] = 1.0F;
  Z[1] = 1.0F;
  R4 V2 = plain_enskog(1, RHOX, CMW, Z);
  V2 = V2 * 26.693F * std::sqrt(MX * c.T) / (SIGX * SIGX);
  return V1 - V2;
}

R4 plain_viscosity(const DenseCase& c, PlainFluid& p) {
  const auto& m = p.mixture;
  const R4 D0 = 0.001F * p.RHO0 * m.HMIX * k().MWREF;
  const R4 T0 = c.T / m.FMIX;
  const R4 TI = 1.0F / T0;
  const R4 T1 = std::sqrt(T0);
  const R4 TF = T0 - 90.65F;
  R4 HTAN = 1.0F;
  if (TF < -40.0F)
    HTAN = -1.0F;
  else if (!(TF > 40.0F))
    HTAN = (bexp(TF) - bexp(-TF)) / (bexp(TF) + bexp(-TF));
  const R4 W1 = 0.5F * (1.0F + HTAN);
  const R4 W2 = 0.5F * (1.0F - HTAN);
  const R4 L = k().GV(3) - std::log(T0 / k().GV(4));
  const R4 G = k().GV(1) + k().GV(2) * (L * L);
  R4 TRM0 = k().EV(1) + k().EV(2) * TI;
  R4 TRM2 = k().EV(3) + k().EV(4) * TI / T1;
  R4 TRM3 = k().EV(5) + TI * (k().EV(6) + k().EV(7) * TI);
  const R4 TRMX = bexp(TRM0);
  const R4 ETA0 = k().ETA0K * T1 / omega(T0 / k().EPSK);
  const R4 R1 = std::pow(D0, 0.1F);
  const R4 R2 = (D0 / k().RHOV - 1.0F) * std::sqrt(D0);
  R4 ETAX = bexp(TRM0 + TRM2 * R1 + TRM3 * R2) - TRMX;
  if (std::abs(W2) > 1E-05F) {
    TRM0 = -9.74602F + 44.6055F * TI;
    TRM2 = 18.0834F + -4126.66F * TI / T1;
    TRM3 = 0.976544F + TI * (81.8134F + 15649.9F * TI);
    const R4 ETAX2 = bexp(TRM0 + TRM2 * R1 + TRM3 * R2) - bexp(TRM0);
    ETAX = W1 * ETAX + W2 * ETAX2;
  }
  const R4 FETA = std::sqrt(m.FMIX * m.MWETA / k().MWREF) / cbrt(m.HMIX * m.HMIX, p);
  const R4 G2 = std::sqrt((1.0F - 1.5F * T0 * std::min(m.DFDT, 0.0F)) * m.ZCMIX / k().ZCREF);
  return (G * D0 + ETA0 + ETAX * G2) * FETA + plain_hard_spheres(c, p);
}

R4 plain_translational(const DenseCase& c, PlainFluid& p) {
  const auto& m = p.mixture;
  const R4 D0 = 0.001F * p.RHO0 * m.HMIX * k().MWREF;
  const R4 T0 = c.T / m.FMIX;
  const R4 TI = 1.0F / T0;
  const R4 T1 = std::sqrt(T0);
  const R4 L = k().GL(3) - std::log(T0 / k().GL(4));
  const R4 G = k().GL(1) + k().GL(2) * (L * L);
  const R4 TRM0 = k().EL(1) + k().EL(2) * TI;
  const R4 TRM2 = k().EL(3) + k().EL(4) * TI / T1;
  const R4 TRM3 = k().EL(5) + TI * (k().EL(6) + k().EL(7) * TI);
  const R4 LAM0 = 0.194345042F * k().ETA0K * T1 / omega(T0 / k().EPSK);
  const R4 R1 = std::pow(D0, 0.1F);
  const R4 R2 = (D0 / k().RHOL - 1.0F) * std::sqrt(D0);
  const R4 EXC = bexp(TRM0 + TRM2 * R1 + TRM3 * R2) - bexp(TRM0);
  const R4 slope = std::min(m.DFDT, 0.0F);
  return (G * D0 + LAM0 + EXC) * (std::sqrt(m.FMIX * k().MWREF / m.MWLAM) / cbrt(m.HMIX * m.HMIX, p)) *
         std::pow((1.0F - T0 * slope) * k().ZCREF / m.ZCMIX, 1.5F);
}

R4 plain_conductivity(const DenseCase& c, PlainFluid& p) {
  const auto& m = p.mixture;
  const R4 TCTMIX = plain_translational(c, p);
  R4 TCINT[51] = {};
  for (int I = 1; I <= c.N; ++I) {
    const auto q = [&](int n) { return c.CPC(n, I); };
    R4 CP0 = 0.0F;
    if (c.ICP(I) == 7) {
      CP0 = q(1);
      if (q(3) != 0.0F) {
        const R4 r = q(3) / c.T / std::sinh(q(3) / c.T);
        CP0 += q(2) * (r * r);
      }
      if (q(5) != 0.0F) {
        const R4 r = q(5) / c.T / std::cosh(q(5) / c.T);
        CP0 += q(4) * (r * r);
      }
      CP0 = CP0 / 1000.0F;
    } else {
      CP0 = q(1) + c.T * (q(2) + c.T * (q(3) + c.T * (q(4) + c.T * (q(5) + c.T * q(6))))) +
            (q(7) + q(8) / c.T) / c.T;
    }
    CP0 = CP0 / 4.184F;
    const R4 TS = c.T / (m.F(I) * k().EPSK);
    const R4 TRM =
        k().ETA0K * std::sqrt(c.T / (k().MWREF * c.CMW(I))) / (omega(TS) * cbrt(m.H(I) * m.H(I), p));
    TCINT[I] = 0.552288F * (CP0 - 4.968F) * TRM;
  }
  R4 SUM = 0.0F;
  for (int I = 1; I <= c.N; ++I) {
    R4 A = 0.0F;
    R4 B = 0.0F;
    for (int J = 1; J <= I; ++J) {
      const R4 both = TCINT[I] + TCINT[J];
      A = both != 0.0F ? c.X(J) * TCINT[J] / both : 0.0F;
      B += A;
    }
    SUM += c.X(I) * TCINT[I] * (2.0F * B - A);
  }
  return 2.0F * SUM + TCTMIX;
}

}  // namespace talix::test
