#include "support/reference_enthalpy.h"

#include <cmath>

namespace talix::test::reference {

bool total_enthalpy(const Mixture& m, R8 T, R8 P, R8& h, Answer& answer) {
  answer = flash(m, T, P, Effort::thorough);
  if (answer.failed) return false;
  if (answer.phases == 1) return enthalpy(m, T, P, m.z, h);
  R8 light = 0.0, heavy = 0.0;
  if (!enthalpy(m, T, P, answer.light.x, light) || !enthalpy(m, T, P, answer.heavy.x, heavy)) return false;
  h = answer.light_share * light + (1.0 - answer.light_share) * heavy;
  return true;
}

bool temperature_of_enthalpy(const Mixture& m, R8 P, R8 h, R8 low, R8 high, EnthalpyState& result) {
  R8 h_low = 0.0, h_high = 0.0;
  Answer answer;
  if (!total_enthalpy(m, low, P, h_low, answer) || !total_enthalpy(m, high, P, h_high, answer)) return false;
  if (!(h_low <= h && h <= h_high)) return false;
  for (int step = 0; step < 60 && high - low > 1.0E-11 * high; ++step) {
    const R8 middle = 0.5 * (low + high);
    R8 value = 0.0;
    if (!total_enthalpy(m, middle, P, value, answer)) return false;
    (value > h ? high : low) = middle;
    (value > h ? h_high : h_low) = value;
  }
  result.T = 0.5 * (low + high);
  result.plateau = m.size() == 1 && h_high - h_low > 1.0;
  result.vapour_share = result.plateau ? (h - h_low) / (h_high - h_low) : answer.vapour_share;
  return true;
}

}  // namespace talix::test::reference
