// Intermediates of the generalised curves as functions of the shifted acentric factor.
#pragma once

#include <array>

#include "base/real.h"

namespace talix {

// c0 + c1 w + c2 w^2 + c3 w^3 + amplitude exp(rate w), single-precision figures [-].
struct GeneralisedTerm {
  R4 c0, c1, c2, c3, amplitude, rate;
};

using GeneralisedTerms = std::array<GeneralisedTerm, 5>;  // Q1 to Q5

// One range of the acentric factor: w is the acentric factor less the origin.
struct GeneralisedRange {
  R8 origin;
  GeneralisedTerms b;  // columns 6 to 10
  GeneralisedTerms a;  // columns 1 to 5
};

inline constexpr GeneralisedRange kGeneralisedHigh{
    .origin = 1.9603,
    .b = {{{-0.765217F, -7.23916F, -1.6456F, 0.0F, 5.89471F, 1.16095F},
           {0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F},
           {-26.3531F, -27.011F, -24.1673F, 0.0F, 33.6807F, 1.09797F},
           {-1.35813F, 0.092F, 0.0F, 0.0F, 0.0F, 0.0F},
           {0.0F, 0.0F, 0.0F, 0.0F, 0.337022F, -2.24F}}},
    .a = {{{-6.09523F, -7.04448F, 13.0211F, -34.8313F, 0.0F, 0.0F},
           {3.19863F, 3.3374F, -4.79384F, 15.2838F, 0.0F, 0.0F},
           {7.84802F, 12.7236F, -27.3912F, 57.4649F, 0.0F, 0.0F},
           {-1.0F, 0.0F, 0.0F, 0.0F, 0.30123F, -1.0F},
           {0.0F, 0.0F, 0.0F, 0.0F, 0.0865F, -1.0F}}}};

inline constexpr GeneralisedRange kGeneralisedMiddle{
    .origin = 0.8899,
    .b = {{{6.84F, -2.30516F, 0.660642F, 0.0F, 0.0F, 0.0F},
           {-0.2298F, 0.214686F, 0.0F, 0.0F, 0.0F, 0.0F},
           {0.71944F, 2.4884F, 3.44278F, 0.0F, 0.0F, 0.0F},
           {-1.56238F, -0.233476F, 0.396386F, 0.0F, 0.0F, 0.0F},
           {1.26515F, -0.831265F, -0.033464F, 0.0F, 0.0F, 0.0F}}},
    .a = {{{-5.48548F, -1.9473F, 1.28702F, 0.0F, 0.0F, 0.0F},
           {2.03895F, 1.05456F, 0.0269543F, 0.0F, 0.0F, 0.0F},
           {5.65695F, 2.35889F, -0.291408F, 0.0F, 0.0F, 0.0F},
           {-0.35932F, -0.170314F, -0.13716F, 0.0F, 0.0F, 0.0F},
           {0.9F, -0.724991F, -0.0326716F, 0.0F, 0.0F, 0.0F}}}};

inline constexpr GeneralisedRange kGeneralisedLow{
    .origin = 0.209,
    .b = {{{-26.6192F, 0.0F, 0.0F, 0.0F, 35.0305F, -0.0674F},
           {-0.22394F, -0.323813F, 0.462888F, 0.0F, 0.0F, 0.0F},
           {-0.609812F, 1.27768F, 0.990627F, 0.0F, 0.0F, 0.0F},
           {-1.28F, 0.0F, 0.0F, 0.0F, -11.4702F, -5.44021F},
           {1.05962F, 0.301848F, 0.0F, 0.0F, 0.0F, 0.0F}}},
    .a = {{{-5.26729F, 0.0F, 0.0F, 0.0F, -0.345306F, -0.674207F},
           {1.51527F, 0.773867F, -0.007F, 0.0F, 0.0F, 0.0F},
           {6.5856F, -1.50273F, 0.203965F, 0.0F, 0.0F, 0.0F},
           {-0.224051F, -0.198662F, 0.0F, 0.0F, 0.0F, 0.0F},
           {0.9F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F}}}};

}  // namespace talix
