#include "numerics/sal_quadrature.h"

#include <array>

#include "engine/codes.h"

namespace talix {

namespace {

struct Node {
  R4 ZEFF;    // node [-]
  R4 QPOINT;  // weight [-]
};

// Positive half of the 12-point Gauss-Hermite rule, each weight times the exponential of its node squared.
constexpr auto kNodes = std::to_array<Node>({
    {0.3142404F, 0.6293079F},
    {0.9477884F, 0.6396212F},
    {1.597683F, 0.6626628F},
    {2.279507F, 0.7052204F},
    {3.020637F, 0.7866439F},
    {3.889725F, 0.989699F},
});

}  // namespace

// SALNI0: half-range quadrature of a decaying function.
//
// In       FUNC           function of one argument
//          A       R8     length scale, in the unit of the argument
// Out      RESULT  R8     integral from 0 to infinity
//          STATUS  I4
// Status   ok
// Source   Abramowitz and Stegun, Handbook of Mathematical Functions, table 25.10
void SALNI0(const Integrand& FUNC, const R8& A, R8& RESULT, I4& STATUS) {
  STATUS = status::ok;
  R8 sum = 0.0;
  for (const Node& node : kNodes) sum += widen(node.QPOINT) * FUNC.call(FUNC.context, A * widen(node.ZEFF));
  RESULT = A * sum;
}

}  // namespace talix
