#include "fastprops/enthal_direct.h"

#include <algorithm>
#include <cmath>

#include "fastprops/redlab.h"
#include "fastprops/small_arrays.h"

namespace talix {

namespace {

// Parameters of the mixture and their temperature derivatives.
struct Sums {
  R4 ASUM, D1ASUM, D2ASUM;  // [cm3/mol], per K, per K squared
  R4 BSUM, D1BSUM, D2BSUM;
};

// Adds the pair I, J, which are different components, with its weight.
void add_pair(int I, int J, R4 weight, Sums& s) {
  const R4 Q = std::sqrt(fl.A(I) / fl.A(J));
  const R4 W = fl.A(J) / fl.A(I);
  const R4 a = std::sqrt(fl.A(I) * fl.A(J));
  const R4 slopes = W * fl.DA1(I) + fl.DA1(J);
  const R4 da2 = (Q / 2.0F) * (W * fl.DA2(I) + fl.DA2(J) + fl.DA1(I) * fl.DA1(J) / fl.A(I) -
                               (W / fl.A(I)) * fl.DA1(I) * fl.DA1(I)) +
                 (slopes / 2.0F) * ((0.5F / a) * fl.DA1(I) - ((Q / 2.0F) / fl.A(J)) * fl.DA1(J));
  s.ASUM += weight * a;
  s.D1ASUM += weight * (Q / 2.0F) * slopes;
  s.D2ASUM += weight * da2;
  s.BSUM += weight * (fl.B(I) + fl.B(J)) / 2.0F;
  s.D1BSUM += weight * (fl.DB1(I) + fl.DB1(J)) / 2.0F;
  s.D2BSUM += weight * (fl.DB2(I) + fl.DB2(J)) / 2.0F;
}

Sums mix(I4 NC, const FlashVec& FRAC) {
  Sums s{};
  for (int I = 1; I <= NC; ++I) {
    for (int J = 1; J <= NC; ++J) {
      const R4 weight = FRAC(I) * FRAC(J);
      if (I != J) {
        add_pair(I, J, weight, s);
        continue;
      }
      s.ASUM += weight * fl.A(I);
      s.D1ASUM += weight * fl.DA1(I);
      s.D2ASUM += weight * fl.DA2(I);
      s.BSUM += weight * fl.B(I);
      s.D1BSUM += weight * fl.DB1(I);
      s.D2BSUM += weight * fl.DB2(I);
    }
  }
  return s;
}

// Integrals of the powers of T from the reference temperature.
struct Powers {
  R4 T1, T2, T3, T4, T5, T6;  // of T^0 to T^5
  R4 TX, TM, TM2;             // of 1/T, 1/T^2, 1/T^3
};

Powers integrals(R4 T, R4 TREF) {
  Powers p{};
  R4 power = T * T;
  R4 reference = TREF * TREF;
  p.T1 = T - TREF;
  p.T2 = (power - reference) / 2.0F;
  R4* const higher[] = {&p.T3, &p.T4, &p.T5, &p.T6};
  R4 n = 3.0F;
  for (R4* term : higher) {
    power *= T;
    reference *= TREF;
    *term = (power - reference) / n;
    n += 1.0F;
  }
  p.TX = std::log(T / TREF);
  p.TM = 1.0F / TREF - 1.0F / T;
  p.TM2 = -(1.0F / (T * T) - 1.0F / (TREF * TREF)) / 2.0F;
  return p;
}

// Ideal gas; the entropy without its mixing term, at 1 bar.
void ideal_gas(I4 NC, R4 T, const FlashVec& FRAC, R4& HID, R4& SID, R4& CPID) {
  const Powers p = integrals(T, fl.TZERO);
  HID = SID = CPID = 0.0F;
  for (int i = 1; i <= NC; ++i) {
    const auto C = [i](int k) { return fl.COFHT(k, i); };
    HID += FRAC(i) * (C(1) * p.T1 + C(2) * p.T2 + C(3) * p.T3 + C(4) * p.T4 + C(5) * p.T5 + C(6) * p.T6 +
                      C(7) * p.TX + C(8) * p.TM);
    SID += FRAC(i) * (C(1) * p.TX + C(2) * p.T1 + C(3) * p.T2 + C(4) * p.T3 + C(5) * p.T4 + C(6) * p.T5 +
                      C(7) * p.TM + C(8) * p.TM2);
    CPID += FRAC(i) *
            (C(1) + (C(2) + (C(3) + (C(4) + (C(5) + C(6) * T) * T) * T) * T) * T + C(7) / T + C(8) / (T * T));
  }
}

R4 mixing_entropy(I4 NC, R4 RJMK, const FlashVec& FRAC) {
  R4 sum = 0.0F;
  for (int i = 1; i <= NC; ++i)
    if (FRAC(i) > 0.0F) sum += FRAC(i) * std::log(FRAC(i));
  return -RJMK * sum;
}

// Departures from the ideal gas at the same temperature, the entropy's from 1 bar.
struct Departures {
  R4 HDEP, SDEP, CVDEP;  // [J/mol], [J/(mol K)], [J/(mol K)]
};

Departures departures(const Sums& s, R4 R, R4 T, R4 Z, R4 V) {
  const R4 VP = V + s.BSUM;
  const R4 VM = V - s.BSUM;
  const R4 ALOG1 = std::log(1.0F + s.BSUM / V);
  const R4 RTK = R * 0.1F * T;
  const R4 G = s.ASUM / s.BSUM;
  const R4 U = 1.0F / VP;
  const R4 ADEP = -RTK * (G * ALOG1 + std::log(VM / (R * T)));
  const R4 K1 = G * U - 1.0F / VM;
  const R4 K2 = (s.D1ASUM - G * s.D1BSUM) / s.BSUM;
  const R4 K3 = s.D1BSUM * K1 + K2 * ALOG1;
  const R4 K4 = K2 * U - s.D1BSUM * (G * U * U + 1.0F / (VM * VM));
  const R4 K5 = (s.D2ASUM - G * s.D2BSUM - 2.0F * K2 * s.D1BSUM) / s.BSUM;
  const R4 K6 = s.D2BSUM * K1 + s.D1BSUM * (K2 * U + K4) + K5 * ALOG1;
  return {
      .HDEP = RTK * (K3 * T + Z - 1.0F), .SDEP = -ADEP / T + K3 * RTK, .CVDEP = RTK * (2.0F * K3 + K6 * T)};
}

}  // namespace

// direct_properties: thermal properties of one phase, a departure function over the ideal-gas polynomial.
//
// In       NC    I4      number of components
//          R     R4      gas constant [bar cm3/(mol K)]
//          T, P  R4      [K], [bar]
//          Z     R4      compressibility factor of the phase [-]
//          FRAC  R4(50)  mole fractions
// Out      RHO   R4      density [kg/m3]
//          MW    R4      mean molar mass [g/mol]
//          HID, SID, CPID  R4  ideal gas [J/mol], [J/(mol K)] at 1 bar, [J/(mol K)]
//          H, S  R4      enthalpy [J/mol], entropy [J/(mol K)]
//          CV, CP  R4    heat capacities [J/(g K)]
//          SONIC R4      speed of sound [m/s], 0 where its square is negative
//          JT    R4      Joule-Thomson coefficient [K/bar]
//          KAPPA R4      isothermal compressibility [1/bar]
// Shared   reads fl.TZERO, COFHT, AMW; sets fl.A, B, DA1, DA2, DB1, DB2
// Oddity   the entropy of the ideal gas stands at 1 bar, not at P
void direct_properties(const I4& NC, const R4& R, R4& RHO, const R4& T, const R4& P, const R4& Z,
                       const FlashVec& FRAC, R4& MW, R4& HID, R4& SID, R4& CPID, R4& H, R4& S, R4& CV, R4& CP,
                       R4& SONIC, R4& JT, R4& KAPPA) {
  I4 IER = 0;
  REDLAB(T, 1, NC, IER);
  const Sums s = mix(NC, FRAC);
  ideal_gas(NC, T, FRAC, HID, SID, CPID);

  const R4 RJMK = R * 0.1F;
  const R4 V = Z * R * T / P;
  MOL(NC, FRAC, MW);
  RHO = 1000.0F * MW / V;

  const Departures d = departures(s, R, T, Z, V);
  H = HID + d.HDEP;
  SID = SID + mixing_entropy(NC, RJMK, FRAC);
  S = SID + d.SDEP;
  CV = CPID - RJMK + d.CVDEP;

  // Slopes of the pressure.
  const R4 VP = V + s.BSUM;
  const R4 VM = V - s.BSUM;
  const R4 U = 1.0F / VP;
  const R4 U2 = U * U / (V * V);
  const R4 GAMMAV = R * ((T * s.D1BSUM + VM) / (VM * VM) -
                         (V * VP * (T * s.D1ASUM + s.ASUM) - s.ASUM * T * V * s.D1BSUM) * U2);
  KAPPA = 1.0F / (V * R * T * (1.0F / (VM * VM) - s.ASUM * (2.0F * V + s.BSUM) * U2));
  const R4 ALPHAP = GAMMAV * KAPPA;

  CP = T * V * ALPHAP * GAMMAV * 0.1F + CV;
  JT = (V / CP) * (T * ALPHAP - 1.0F) * 0.1F;
  const R4 BETAS = (CV / CP) * KAPPA;
  CV = CV / MW;
  CP = CP / MW;
  const R4 square = V / (MW * BETAS);
  SONIC = 10.0F * std::sqrt(square > 0.0F ? square : 0.0F);
}

}  // namespace talix
