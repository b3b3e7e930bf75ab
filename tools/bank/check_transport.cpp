#include "bank/check_transport.h"

#include <cmath>
#include <sstream>

#include "bank/transport_forms.h"

namespace talix::bank {

namespace {

constexpr double kAtmosphere = 0.101325;  // MPa
constexpr int kSteps = 50;

double real(const PureRecord& record, std::string_view field, int offset = 0) {
  return static_cast<double>(record.real(pure_field(field).cell + offset));
}

int flag_of(const PureRecord& record, std::string_view field) {
  return record.integer(pure_field(field).cell);
}

SetValues set_of(const PureRecord& record, std::string_view field) {
  SetValues c{};
  const int count = pure_field(field).cells;
  for (int i = 0; i < count && i < static_cast<int>(c.size()); ++i)
    c.at(static_cast<std::size_t>(i)) = real(record, field, i);
  return c;
}

// The record with what most checks ask of it, and the faults found.
struct Sets {
  const PureRecord& record;
  std::vector<std::string>& faults;
  double tc, pc, tb, mw;

  void fault(std::string_view field, const std::string& what) const {
    faults.push_back(std::string(field) + ": " + what);
  }
  // VALUE must lie between the bounds.
  void within(std::string_view field, const std::string& what, double value, double low, double high) const {
    if (value >= low && value <= high) return;
    std::ostringstream out;
    out << what << " is " << value << ", outside " << low << " to " << high;
    fault(field, out.str());
  }
};

void check_pressure(const Sets& s) {
  if (flag_of(s.record, "IPSA") == 0) return;
  const SetValues c = set_of(s.record, "PSAT");
  if (std::fabs(c[2]) > 0) {
    s.fault("PSAT", "its third entry is not 0, which makes it an Antoine set");
    return;
  }
  s.within("PSAT", "pressure at the critical temperature over PC", psat_pressure(c, s.tc * 0.9999) / s.pc,
           0.85, 1.15);
  // A sublimation temperature is no boiling point.
  if (s.tb < real(s.record, "TMELT")) return;
  s.within("PSAT", "pressure at the boiling point [MPa]", psat_pressure(c, s.tb), 0.8 * kAtmosphere,
           1.25 * kAtmosphere);
}

void check_density(const Sets& s) {
  const double critical = s.mw / real(s.record, "VC");
  const SetValues dlip = set_of(s.record, "DLIP"), ddip = set_of(s.record, "DDIP");
  if (flag_of(s.record, "IDLI") != 0 || std::fabs(dlip[0]) > 0) {
    s.within("DLIP", "density at 0.7 of the critical temperature over the critical one",
             dlip_density(dlip, s.tc, 0.7 * s.tc) / critical, 1.5, 4.5);
    s.within("DLIP", "density at the critical temperature over the critical one", dlip[0] / critical, 0.3,
             2.0);
  }
  if (std::fabs(ddip[0]) > 0) {
    s.within("DDIP", "density at 0.7 of the critical temperature over the critical one",
             ddip_density(ddip, s.mw, 0.7 * s.tc) / critical, 1.5, 4.5);
  }
}

void check_heat(const Sets& s) {
  if (flag_of(s.record, "IHVA") == 0) return;
  const SetValues c = set_of(s.record, "HVAPCF");
  for (int k = 1; k < kSteps; ++k) {
    if (hvap_exponent(c, s.tc, s.tc * k / kSteps) >= 0) continue;
    s.fault("HVAPCF", "its exponent is negative below the critical temperature");
    break;
  }
  const double given = real(s.record, "HVAP");
  if (given > 0 && s.tb < 0.98 * s.tc) {
    s.within("HVAPCF", "heat of vaporisation at the boiling point over HVAP",
             hvap_heat(c, s.tc, s.tb) / given, 0.9, 1.1);
  }
}

void check_viscosity(const Sets& s) {
  const int form = flag_of(s.record, "IVIL");
  if (form != 0) {
    const SetValues c = set_of(s.record, "VIL");
    if (form != kTabulatedForm && !(std::fabs(c[0]) > 0 && std::fabs(c[1]) > 0 && std::fabs(c[2]) > 0))
      s.fault("VIL", "one of the first three coefficients is 0, which makes it another form");
    s.within("VIL", "viscosity at 0.7 of the critical temperature [mPa s]",
             vil_viscosity(form, c, 0.7 * s.tc), 5e-4, 20.0);
    const double lowest = std::fmax(0.5 * s.tc, real(s.record, "TMELT"));
    double last = vil_viscosity(form, c, lowest);
    for (int k = 1; k <= kSteps; ++k) {
      const double v = vil_viscosity(form, c, lowest + (s.tc - lowest) * k / kSteps);
      if (!(v > 0 && v < 1.01 * last)) {
        s.fault("VIL", "viscosity does not fall up to the critical temperature");
        break;
      }
      last = v;
    }
  }
  if (flag_of(s.record, "IQISS") != 0) {
    if (!(real(s.record, "SS 5-8", 0) < real(s.record, "SS 5-8", 1) &&
          real(s.record, "SS 5-8", 2) < real(s.record, "SS 5-8", 3)))
      s.fault("SS", "its limits of temperature or pressure do not ascend");
  }
}

void check_conductivity(const Sets& s) {
  if (flag_of(s.record, "ITCL") != kTabulatedForm) return;
  const SetValues c = set_of(s.record, "TCL");
  if (!(c[5] < c[6])) s.fault("TCL", "its limits of temperature do not ascend");
  for (const double T : {0.8 * c[5], c[5], c[6], s.tc})
    s.within("TCL", "conductivity at " + std::to_string(T) + " K [W/(m K)]", tcl_conductivity(c, T), 1e-3,
             30.0);
}

void check_surface(const Sets& s) {
  if (flag_of(s.record, "ISUR") != 0) {
    s.within("SURT", "its exponent", real(s.record, "SURT", 1), 0.5, 3.0);
    s.within("SURT", "its first coefficient [mN/m]", real(s.record, "SURT"), 0.1, 2000.0);
  }
  if (flag_of(s.record, "ILVT") != 0) {
    for (int i = 0; i < 5; ++i)
      s.within("PARL2", "parameter " + std::to_string(i + 1), real(s.record, "PARL2", i), 1e-3, 1e4);
  }
}

}  // namespace

std::vector<std::string> transport_faults(const PureRecord& record) {
  std::vector<std::string> faults;
  const Sets sets{
      record, faults, real(record, "TC"), real(record, "PC"), real(record, "ATBP"), real(record, "RMOLW")};
  check_pressure(sets);
  check_density(sets);
  check_heat(sets);
  check_viscosity(sets);
  check_conductivity(sets);
  check_surface(sets);
  return faults;
}

}  // namespace talix::bank
