#include "eos/ssm_mixing_consistent_pairs.h"

#include <algorithm>
#include <array>

#include "database/component_record.h"
#include "database/pair_record.h"
#include "engine/codes.h"
#include "eos/consistency_record.h"

namespace talix {

namespace {

// Standard numbers of the component list.
constexpr I4 kCarbonDioxide = 4;
constexpr I4 kWater = 9;
constexpr I4 kHydrogenSulphide = 11;
constexpr I4 kNitrogen = 15;
constexpr I4 kMethane = 20;
constexpr I4 kMethanol = 328;

constexpr R8 kLargestOmega = 4.0;
constexpr R8 kLightMethanol = 0.275;  // acentric factor below which a hydrocarbon with methanol is light

// Non-randomness and interactions of a pair: 0 constant, 1 slope; IJ and JI the two directions.
struct Constants {
  R8 ALFA;
  R8 TAUT0_IJ, TAUT0_JI;
  R8 TAUT1_IJ, TAUT1_JI;
};

struct Row {
  I4 I, J;
  Constants constants;
};

constexpr auto kRows = std::to_array<Row>({
    {kMethanol, kWater, {0.028197, 0.219979, 0.296615, 0.00437244, 0.028197}},
    {kMethane, kWater, {0.0155946, 1.7046, -1.85009, 0.0, 0.0}},
    {kMethanol, kMethane, {0.0111006, -0.633853, 1.20332, 0.0, 0.0}},
    {kMethanol, kCarbonDioxide, {0.00837428, -0.501413, 1.08614, 0.0, 0.0}},
    {kWater, kHydrogenSulphide, {0.0137792, -0.795447, 0.802731, 0.0, 0.0}},
    {kMethanol, kHydrogenSulphide, {0.0, 0.08588, 0.08588, 0.0, 0.0}},
    {kWater, kNitrogen, {0.055412, 0.400329, 2.47228, 0.0, 0.0}},
    {kMethanol, kNitrogen, {0.0210646, 0.189796, -0.622384, 0.0, 0.0}},
    {kWater, kCarbonDioxide, {0.0769874, 0.264708, 0.453692, 0.000172757, -0.00240108}},
});

bool is_hydrocarbon(I4 i) { return comp.NOTRY(i) == 0 && comp.ICSTD(i) != kMethane; }

Constants water_with_hydrocarbon(R8 W) {
  return {.ALFA = 0.0599661 + W * (0.0448648 + 0.0319449 * W),
          .TAUT0_IJ = 0.710276 - W * (5.00883 + 4.11244 * W),
          .TAUT0_JI = 1.06208 - W * (1.61424 + 1.27413 * W),
          .TAUT1_IJ = 0.0,
          .TAUT1_JI = 0.0};
}

// The factor W stands inside both products of the heavy rows as well.
Constants methanol_with_hydrocarbon(R8 W) {
  if (W < kLightMethanol) {
    return {.ALFA = 0.398609 + W * (-1.29199 + 3.25274 * W),
            .TAUT0_IJ = 0.94878 - W * (-3.77673 + 5.41626 * W),
            .TAUT0_JI = -0.159706 + W * (2.2467 - 1.29119 * W),
            .TAUT1_IJ = 0.0,
            .TAUT1_JI = 0.0};
  }
  return {.ALFA = 0.184852 + W * (0.577901 - 1.09106 * W),
          .TAUT0_IJ = -2.5489 + W * (21.1037 * W - 38.3256 * W),
          .TAUT0_JI = 0.184852 + W * (0.577901 * W - 1.09106 * W),
          .TAUT1_IJ = 0.0,
          .TAUT1_JI = 0.0};
}

// The built-in constants of the pair in this order, if there are any.
bool built_in(I4 I, I4 J, Constants& constants) {
  for (const Row& row : kRows) {
    if (comp.ICSTD(I) != row.I || comp.ICSTD(J) != row.J) continue;
    constants = row.constants;
    return true;
  }
  if (!is_hydrocarbon(J)) return false;
  const R8 W = std::min(comp.OMEGA(J), kLargestOmega);
  if (comp.ICSTD(I) == kWater)
    constants = water_with_hydrocarbon(W);
  else if (comp.ICSTD(I) == kMethanol)
    constants = methanol_with_hydrocarbon(W);
  else
    return false;
  return true;
}

}  // namespace

// SICBI0: constants of one pair.
//
// Water and methanol with some components, and with every hydrocarbon but methane by its acentric factor,
// have constants of their own; every other pair takes the interaction parameters of the quadratic rule.
//
// In       I, J  I4  components
// Shared   reads comp.ICSTD, NOTRY, OMEGA, pairs.TETA0, TETA0T; writes consistency.ALFA, TAUT0, TAUT1, TAUT2
// Status   ok
// Oddity   an acentric factor above 4 counts as 4; methane is no hydrocarbon here, whatever its flag;
//          methanol with water has the non-randomness as one of its slopes; of methanol with a heavy
//          hydrocarbon both products carry the acentric factor twice
void SICBI0(const I4& I, const I4& J, I4& ICODE) {
  ConsistencyRecord& c = consistency;
  ICODE = status::ok;
  c.TAUT2(I, J) = c.TAUT2(J, I) = 0.0;
  Constants constants{};
  if (!built_in(I, J, constants)) {
    if (built_in(J, I, constants)) return;
    constants = {.ALFA = 0.0,
                 .TAUT0_IJ = pairs.TETA0(I, J),
                 .TAUT0_JI = pairs.TETA0(J, I),
                 .TAUT1_IJ = pairs.TETA0T(I, J),
                 .TAUT1_JI = pairs.TETA0T(J, I)};
  }
  c.ALFA(I, J) = c.ALFA(J, I) = constants.ALFA;
  c.TAUT0(I, J) = constants.TAUT0_IJ;
  c.TAUT0(J, I) = constants.TAUT0_JI;
  c.TAUT1(I, J) = constants.TAUT1_IJ;
  c.TAUT1(J, I) = constants.TAUT1_JI;
}

}  // namespace talix
