#include "transport/svi_liquid_heavy.h"

#include <algorithm>
#include <cmath>

#include "database/component_record.h"
#include "engine/codes.h"
#include "engine/error_ring.h"

namespace talix {

namespace {

constexpr R8 kRankinePerKelvin = widen(1.8F);

// Fractions with no more carbon atoms than this are not heavy.
constexpr R8 kLightestCarbonNumber = 5.0;

// The Watson factor from boiling point [K] and specific gravity.
constexpr R8 kWatsonFactor = widen(1.2154F);

// Temperature of the stored density: 60 F [K].
constexpr R8 kStandardTemperature = widen(288.15F);

// [bar m3/(kmol K)]
constexpr R8 kGasConstantBar = widen(0.083143F);

// ln of 210 F over 100 F in absolute temperature, ln of 210 F [R].
constexpr R8 kChartSpan = widen(0.179437637F);
constexpr R8 kChartUpper = widen(6.50678492F);

constexpr R8 kHighestKinematic = 1e15;  // [mm2/s]

// One value of the chart as a function of the boiling point.
struct ChartRow {
  R4 a, b, c, d, e, f;
  R8 limit;  // [mm2/s]
};

// At 210 F and 100 F, each for the Watson factors 10 and 12.
constexpr ChartRow kV21010{11124.9F, -258.131F, 40.4918F, -0.0356499F, 4.68001e-19F, 2.81192e-09F, 1000.0};
constexpr ChartRow kV21012{11787.9F, -243.268F, 37.3558F, -0.0283454F, 4.06341e-19F, 1.62873e-09F, 1000.0};
constexpr ChartRow kV10010{7831.91F, -234.362F, 38.3044F, -0.04301F, 8.41988e-19F, 5.55144e-09F, 10000.0};
constexpr ChartRow kV10012{22615.7F, -509.138F, 80.4388F, -0.0763095F, 2.44956e-19F, 8.19108e-09F, 10000.0};

R8 chart_value(const ChartRow& row, R8 TBR, R8 L) {
  const R8 cube = TBR * TBR * TBR;
  const R8 exponent = widen(row.a) / TBR + widen(row.b) + widen(row.c) * L + widen(row.d) * TBR +
                      (widen(row.e) * cube + widen(row.f)) * cube;
  return std::min(std::exp(exponent), row.limit);
}

// The chart's Z of a kinematic viscosity.
R8 chart_ordinate(R8 V) {
  const R8 z = widen(0.7F) + V;
  return V > 2.0 ? z : z + std::exp(-widen(1.47F) - widen(1.84F) * V - widen(0.51F) * V * V);
}

// Z back to the kinematic viscosity [mm2/s].
R8 kinematic_from(R8 Z1) {
  if (!(Z1 < widen(2.7F))) return Z1;
  return Z1 - std::exp(-widen(0.7487F) + Z1 * (-widen(3.295F) + Z1 * (widen(0.6119F) - widen(0.3193F) * Z1)));
}

// Density at T [g/cm3] from that at 60 F.
R8 density_at(R8 T, I4 I) {
  const R8 tc = comp.TC(I);
  const R8 v1 = std::pow(1.0 - kStandardTemperature / tc, 2.0 / 7.0);
  const R8 v2 = std::pow(1.0 - T / tc, 2.0 / 7.0);
  const R8 zcr = comp.PC(I) * comp.VC(I) / (kGasConstantBar * tc);
  return comp.RHO(I) * std::pow(10.0, -(v2 - v1) * std::log10(zcr));
}

// Kinematic viscosity at T [mm2/s] on the straight line of the chart between its two temperatures. The chart
// ends where Z is no more above 1: there ln ln Z does not exist.
I4 chart_viscosity(R8 T, R8 ATBP, R8 UOP, R8& VKIN) {
  const R8 tbr = kRankinePerKelvin * ATBP;
  const R8 l = std::log(tbr);
  const R8 weight = 0.5 * UOP - 5.0;
  const auto at = [&](const ChartRow& ten, const ChartRow& twelve) {
    const R8 v10 = chart_value(ten, tbr, l);
    return v10 * std::pow(chart_value(twelve, tbr, l) / v10, weight);
  };
  const R8 z210 = chart_ordinate(at(kV21010, kV21012));
  const R8 z100 = chart_ordinate(at(kV10010, kV10012));
  if (!(z210 > 1.0 && z100 > 1.0)) return status::range;

  const R8 upper = std::log(std::log(z210));
  const R8 lower = std::log(std::log(z100));
  const R8 b = (upper - lower) / kChartSpan;
  const R8 line = std::min(b * (std::log(kRankinePerKelvin * T) - kChartUpper) + upper, 3.0);
  VKIN = kinematic_from(std::exp(std::exp(line)) - widen(0.7F));
  return status::ok;
}

// Whether the constants that the chart and the density need are there.
bool have_constants(I4 I) {
  return comp.ATBP(I) > 0.0 && comp.RHO(I) > 0.0 && comp.PC(I) > 0.0 && comp.VC(I) > 0.0;
}

// Stores an estimate of a missing Watson factor.
void provide_watson_factor(I4 I) {
  if (!(comp.UOPK(I) > 0.0)) comp.UOPK(I) = kWatsonFactor * std::cbrt(comp.ATBP(I)) / comp.RHO(I);
}

}  // namespace

// kinematic_to_dynamic: the viscosity of a liquid from the kinematic one.
//
// In       VKIN    R8   kinematic viscosity [mm2/s]
//          RHO     R8   density [g/cm3]
// Out      ETA     R8   [mPa s]; 0 when the status is not ok
//          STATUS  I4   status
// Status   ok; range (too high)
// Reports  "Kinematic viscosity > 10**15", severity 3, as SVICR0
void kinematic_to_dynamic(R8 VKIN, R8 RHO, R8& ETA, I4& STATUS) {
  ETA = 0.0;
  STATUS = status::range;
  if (VKIN > kHighestKinematic) return SERPU0(severity::error, "SVICR0", "Kinematic viscosity > 10**15");
  if (!(VKIN * RHO > 0.0)) return;
  ETA = VKIN * RHO;
  STATUS = status::ok;
}

// SVICR0: liquid viscosity of a heavy fraction.
//
// In       T       R8   [K]
//          I       I4   component
// Out      ETA     R8   [mPa s]; 0 when the status is not ok
//          STATUS  I4   status
// Shared   reads comp.RMOLW, HCRAT, ATBP, RHO, TC, PC, VC; reads and writes comp.UOPK: an estimate is stored
// Status   ok; not_available (not heavy); supercritical (T above critical); model_error (a constant is
//          missing); range (the chart has no line for the boiling point)
// Reports  "Correlation inapplicable: component not heavy", "Kinematic viscosity > 10**15", severity 3
// Oddity   the limit 3 on the chart's ordinate caps the kinematic viscosity at 5.28e8 mm2/s
// Source   ASTM D 341, viscosity-temperature charts for liquid petroleum products
void SVICR0(const R8& T, const I4& I, R8& ETA, I4& STATUS) {
  ETA = 0.0;
  STATUS = status::not_available;
  const R8 xnc = comp.RMOLW(I) / (widen(12.01115F) + widen(1.00797F) * comp.HCRAT(I));
  if (!(xnc > kLightestCarbonNumber))
    return SERPU0(severity::error, "SVICR0", "Correlation inapplicable: component not heavy");
  STATUS = status::supercritical;
  if (!(T <= comp.TC(I))) return;
  STATUS = status::model_error;
  if (!have_constants(I)) return;
  provide_watson_factor(I);
  R8 vkin = 0.0;
  STATUS = chart_viscosity(T, comp.ATBP(I), comp.UOPK(I), vkin);
  if (STATUS != status::ok) return;
  kinematic_to_dynamic(vkin, density_at(T, I), ETA, STATUS);
}

}  // namespace talix
