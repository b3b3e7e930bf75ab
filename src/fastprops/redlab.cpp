#include "fastprops/redlab.h"

#include <algorithm>
#include <cmath>

#include "fastprops/error_matrix.h"
#include "fastprops/flash_message.h"
#include "fastprops/flash_record.h"
#include "fastprops/vrdo.h"

namespace talix {

namespace {

constexpr R4 kSameTemperature = 1.0E-4F;  // [K]
constexpr R4 kSmallestA = 0.001F;
constexpr R4 kWarm = 0.90909F;  // Tc/T from which on the rational a curve holds alone
constexpr R4 kWarmSlope = -11.0F;
constexpr R4 kJoin = 1.04F;        // Tc/T at which the two b curves meet
constexpr R4 kHeavyOmega = 0.85F;  // acentric factors from here on need no correction of b
constexpr I4 kHeavyClass = 6;      // state class of heavy pseudo-components
constexpr I4 kFirstCorrected = 4;  // state classes whose b is corrected
constexpr I4 kLastCorrected = 6;
constexpr I4 kOffsetA = 0;  // columns of PARABF before the a curve
constexpr I4 kOffsetB = 5;  // and before the b curve

// Sigmoids of the correction of b: PLOW in columns 1 to 5, PHIG in columns 6 to 10.
constexpr R4 kCorrection[10] = {6.33875F, -0.0346255F, 17.3909F, 1.08955F, -0.0247886F,
                                5.19634F, -0.0254752F, 1.0055F,  1.51707F, -1.28944F};

// The work on one component.
struct Parameters {
  R4 X;                         // Tc/T [-]
  R4 A, B, DA1, DA2, DB1, DB2;  // reduced parameters and their derivatives with T/Tc [-]
  bool IACOR;                   // a follows its line
  bool IBCOR;                   // b is corrected
  bool INCOR;                   // everything came from VRDO11
  R4 TMP;                       // slope of the line of a in Tc/T
  R4 B1, B2, B3, B4;            // constants of the b curve above the critical region
};

R4 sigmoid(I4 I, I4 offset, R4 X, I4 ID) {
  return VRDOE1(fl.PARABF.data(), kMaxComponents, I, offset, X, ID);
}
R4 rational(I4 I, R4 X, I4 ID) { return VRDOE3(fl.PARABF.data(), kMaxComponents, I, X, ID); }

R4 correction(R4 X, I4 ID) {
  return VRDOE1(kCorrection, 1, 1, kOffsetB, X, ID) - 0.01F * VRDOE1(kCorrection, 1, 1, kOffsetA, X, ID);
}

// A heavy pseudo-component in the transition band above the critical region.
void warn_heavy(I4 I) {
  mark_error(error_row::REDLAB, 1);
  constexpr std::string_view kText = " KELDAR component in super-critical region not valid";
  Text<60> message{};
  message = fl.NAME(I).sub(1, 8);
  for (int k = 0; k < 52; ++k) message(9 + k) = kText[static_cast<std::size_t>(k)];
  if (fl.MSGHOOK) {
    echo(message.view());
    return;
  }
  constexpr std::string_view kBanner = " ----- Warning !!! ----- Warning !!!";
  Text<76> description{};
  description = " Description of ";
  for (int k = 1; k <= 60; ++k) description(16 + k) = message(k);
  write_line("");
  write_line(kBanner);
  write_line("");
  write_line(description.view());
  write_line(" Message from subroutine REDLAB");
  write_line("");
  write_line(kBanner);
}

// Parameters from the acentric factor; true when nothing is left to do but the scaling.
bool heavy_component(I4 I, I4 MODE, Parameters& p, I4& IER) {
  I4 IER1 = vrdo_result::general;
  VRDO11(fl.PARABF.data(), kMaxComponents, I, MODE, p.X, fl.OMEG(I), p.A, p.B, p.DA1, p.DB1, p.DA2, p.DB2,
         IER1);
  if (IER1 == vrdo_result::refused) warn_heavy(I);
  IER = std::max(IER, IER1);
  if (IER1 != vrdo_result::done) return false;
  p.INCOR = true;
  p.IBCOR = !(fl.OMEG(I) >= kHeavyOmega);
  return true;
}

void value_of_a(I4 I, Parameters& p) {
  if (p.X >= 1.0F) {
    p.A = sigmoid(I, kOffsetA, p.X, 1);
  } else if (p.X > kWarm) {
    const R4 AC = sigmoid(I, kOffsetA, 1.0F, 1);
    const R4 ALIM = rational(I, kWarm, 1);
    p.TMP = kWarmSlope * (ALIM - AC);
    p.A = p.TMP * (p.X - 1.0F) + AC;
    p.IACOR = true;
  } else {
    p.A = rational(I, p.X, 1);
  }
  if (p.A < kSmallestA) p.A = kSmallestA;
}

// Constants of the b curve above the critical region; the light gases have their own.
void warm_constants(I4 I, Parameters& p) {
  const std::string_view tag = fl.NAME(I).sub(1, 2);
  const auto set = [&p](R4 B1, R4 B2, R4 B3, R4 B4) {
    p.B1 = B1;
    p.B2 = B2;
    p.B3 = B3;
    p.B4 = B4;
  };
  if (tag == "H2") return set(0.084456F, 0.0058822F, 0.9636F, 2.0F);
  if (tag == "HE") return set(0.105F, -0.0284F, 1.0F, 2.0F);
  if (tag == "N2") return set(0.081516F, 0.092116F, -7.50201F, 5.48383F);
  // The two forms meet at the join.
  const R4 B1 = fl.PARABF(I, 11) / 4.934F;
  const R4 B2 = (sigmoid(I, kOffsetB, kJoin, 1) - B1) / (-std::exp(0.08F / (1.1005F - 1.04F)) * 0.04F);
  set(B1, B2, 0.08F, 1.1005F);
}

void value_of_b(I4 I, Parameters& p) {
  if (p.X >= kJoin) {
    p.B = sigmoid(I, kOffsetB, p.X, 1);
    p.IBCOR = fl.OMEG(I) < kHeavyOmega && fl.ISTAT2(I) >= kFirstCorrected && fl.ISTAT2(I) <= kLastCorrected;
    return;
  }
  warm_constants(I, p);
  p.B = VRDOE2(p.B1, p.B2, p.B3, p.B4, p.X, 1);
}

void slopes(I4 I, Parameters& p) {
  if (p.X >= 1.0F) {
    p.DA1 = sigmoid(I, kOffsetA, p.X, 2);
    p.DA2 = sigmoid(I, kOffsetA, p.X, 3);
  } else if (p.IACOR) {
    p.DA1 = -p.X * p.X * p.TMP;
    p.DA2 = 2.0F * p.X * p.X * p.X * p.TMP;
  } else {
    p.DA1 = rational(I, p.X, 2);
    p.DA2 = rational(I, p.X, 3);
  }
  if (p.X >= kJoin) {
    p.DB1 = sigmoid(I, kOffsetB, p.X, 2);
    p.DB2 = sigmoid(I, kOffsetB, p.X, 3);
    if (p.IBCOR) {
      p.DB1 += correction(p.X, 2);
      p.DB2 += correction(p.X, 3);
    }
  } else {
    p.DB1 = VRDOE2(p.B1, p.B2, p.B3, p.B4, p.X, 2);
    p.DB2 = VRDOE2(p.B1, p.B2, p.B3, p.B4, p.X, 3);
  }
}

void component_parameters(I4 I, R4 T, I4 MODE, I4& IER) {
  const R4 RTP = fl.TC(I) * fl.RGAS / fl.PC(I);
  Parameters p{};
  p.X = fl.TC(I) / T;
  if (fl.ISTAT2(I) != kHeavyClass || !heavy_component(I, MODE, p, IER)) {
    value_of_a(I, p);
    value_of_b(I, p);
  }
  fl.A(I) = p.A * RTP;
  if (p.IBCOR) p.B = p.B + correction(p.X, 1);
  fl.B(I) = p.B * RTP;
  if (MODE == 0) return;

  if (!p.INCOR) slopes(I, p);
  const R4 RTPTM1 = RTP / fl.TC(I);
  const R4 RTPTM2 = RTPTM1 / fl.TC(I);
  fl.DA1(I) = p.DA1 * RTPTM1;
  fl.DB1(I) = p.DB1 * RTPTM1;
  fl.DA2(I) = p.DA2 * RTPTM2;
  fl.DB2(I) = p.DB2 * RTPTM2;
}

}  // namespace

// REDLAB: parameters of the cubic of the direct route.
//
// In       T     R4  temperature [K]
//          MODE  I4  0 A and B; else with derivatives
//          NC    I4  number of components
// Out      IER   I4  largest code of VRDO11 in this call, 0 if none; not touched when T and MODE are as before
// Shared   reads fl.TC, PC, OMEG, ISTAT2, NAME, RGAS; sets fl.A, B [volume per mole, in the unit of RGAS],
//          DA1, DB1 [per K], DA2, DB2 [per K squared], REDLAB_MODE, REDLAB_T; class 6 overwrites its row of
//          fl.PARABF; counts refused components in cell 1 of REDLAB
// Reports  the name and " KELDAR component in super-critical region not valid", with a banner
// Oddity   a component of class 6 in the transition band has its b corrected but not the slopes of b
void REDLAB(const R4& T, const I4& MODE, const I4& NC, I4& IER) {
  if (MODE == fl.REDLAB_MODE && std::fabs(T - fl.REDLAB_T) < kSameTemperature) return;
  IER = 0;
  for (int I = 1; I <= NC; ++I) component_parameters(I, T, MODE, IER);
  fl.REDLAB_MODE = MODE;
  fl.REDLAB_T = T;
}

}  // namespace talix
