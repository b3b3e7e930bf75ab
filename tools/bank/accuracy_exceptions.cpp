#include "bank/accuracy_exceptions.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "bank/fit_csv.h"

namespace talix::bank {

namespace {

constexpr double kBoiling = 0.5;        // K
constexpr double kHeat = 5.0;           // percent
constexpr double kFarBoiling = 25.0;    // beyond this no disagreement of sources explains a boiling point [K]
constexpr double kSourceApart = 0.15;   // from here on a source boils elsewhere than the record [K]
constexpr double kHeatApart = 3.0;      // from here on two sources of a heat disagree [%]
constexpr double kVapourApart = 3.0;    // from here on the vapour is too light or too dense [%]
constexpr double kPressureApart = 1.5;  // from here on the fitted vapour pressure is off its source [%]

double percent(double value, double reference) { return 100.0 * (value / reference - 1.0); }

std::string figures(const char* format, double a, double b) {
  char text[160];
  std::snprintf(text, sizeof text, format, a, b);
  return text;
}

// Molecules that pair up in the vapour, which the equation knows nothing of.
bool pairs_in_vapour(const FitComponent& c) {
  constexpr std::array<std::string_view, 4> kOthers{"hydrogen fluoride", "nitrogen dioxide",
                                                    "dinitrogen tetroxide", "sulphur"};
  return c.family.find("acid") != std::string::npos ||
         std::find(kOthers.begin(), kOthers.end(), c.name) != kOthers.end();
}

std::string note_of(const std::map<int, std::string>& notes, int number) {
  const auto it = notes.find(number);
  return it != notes.end() ? it->second : std::string();
}

std::string boiling_reason(const Line& l, const std::string& note) {
  const BoilingFigures& b = l.boiling;
  if (!note.empty()) return note;
  if (b.cubic > 0.0 && std::fabs(b.cubic - b.given) > kFarBoiling) return {};
  if (b.source <= 0.0) return "the source of the vapour pressure does not reach 1 atm";
  if (std::fabs(b.source - b.given) > kSourceApart && std::fabs(b.cubic - b.source) < kBoiling)
    return figure(l.psat_estimated ? "the estimate of the vapour pressure boils at %.2f K"
                                   : "the source of the vapour pressure boils at %.2f K",
                  b.source);
  if (std::fabs(b.psat_off) > kPressureApart)
    return figure("the fit is %.1f %% off its source of the vapour pressure there", b.psat_off);
  return {};
}

std::string heat_reason(const Line& l, const std::string& note) {
  const BoilingFigures& b = l.boiling;
  const double slope = b.hvap_slope > 0.0 ? percent(b.hvap_slope, b.hvap_given) : 0.0;
  const double vapour = b.rhov_source > 0.0 ? percent(b.rhov_cubic, b.rhov_source) : 0.0;
  if (pairs_in_vapour(*l.component)) return "molecules pair up in the vapour; the equation has single ones";
  if (std::fabs(vapour) > kVapourApart)
    return figure("the equation gives the saturated vapour %+.1f %% off in density", vapour);
  if (std::fabs(slope) > kHeatApart && std::fabs(percent(b.hvap_cubic, b.hvap_slope)) < kHeat) {
    return figure(l.hvap_estimated
                      ? "its source is an estimate; the slope of the vapour pressure asks for %.2f kJ/mol"
                      : "the sources disagree: the slope of the vapour pressure asks for %.2f kJ/mol",
                  b.hvap_slope / 1000.0);
  }
  if (!note.empty()) return note;
  if (l.hvap_estimated) return "its source is an estimate";
  if (b.hvap_slope > 0.0 && std::fabs(percent(b.hvap_cubic, b.hvap_slope)) > kHeatApart)
    return figure("the fitted vapour pressure has another slope there than its source, by %.1f %%",
                  percent(b.hvap_cubic, b.hvap_slope));
  return {};
}

void check_boiling(const Line& l, const std::string& note, std::vector<Finding>& out) {
  const BoilingFigures& b = l.boiling;
  if (b.given <= 0.0 || b.sublimes) return;
  if (b.cubic <= 0.0) {
    out.push_back({l.component, "no boiling point", note});
  } else if (std::fabs(b.cubic - b.given) > kBoiling) {
    out.push_back(
        {l.component, figures("boils at %.2f K, record %.2f K", b.cubic, b.given), boiling_reason(l, note)});
  }
  if (b.hvap_given <= 0.0 || b.hvap_cubic <= 0.0) return;
  const double off = percent(b.hvap_cubic, b.hvap_given);
  if (std::fabs(off) > kHeat)
    out.push_back(
        {l.component,
         figures("heat of vaporisation %+.1f %% off its source, %.2f kJ/mol", off, b.hvap_given / 1000.0),
         heat_reason(l, note)});
}

void check_shape(const Line& l, const std::string& note, std::vector<Finding>& out) {
  const CurveFaults& f = l.faults;
  if (f.a > 0.0) out.push_back({l.component, figure("a not above its floor at %.0f K", f.a), ""});
  if (f.b > 0.0) out.push_back({l.component, figure("b not positive at %.0f K", f.b), ""});
  if (f.pressure > 0.0)
    out.push_back({l.component, figure("vapour pressure does not rise at %.0f K", f.pressure), ""});
  if (f.density > 0.0) {
    const bool water = l.component->name == "water" || l.component->name == "deuterium oxide";
    out.push_back({l.component, figure("liquid density does not fall at %.0f K", f.density),
                   water ? "so it is in nature: densest above freezing" : note});
  }
}

}  // namespace

std::map<int, std::string> fit_notes(const std::filesystem::path& data_dir) {
  std::map<int, std::string> notes;
  CsvTable table;
  if (!read_csv((data_dir / "curves.csv").string(), table)) return notes;
  for (std::size_t row = 0; row < table.rows.size(); ++row)
    if (!table.text(row, "note").empty())
      notes[static_cast<int>(table.number(row, "number", 0.0))] = table.text(row, "note");
  return notes;
}

std::vector<Finding> find_exceptions(const std::vector<Line>& lines,
                                     const std::map<int, std::string>& notes) {
  std::vector<Finding> out;
  for (const Line& l : lines) {
    const std::string note = note_of(notes, l.component->number);
    check_boiling(l, note, out);
    check_shape(l, note, out);
  }
  return out;
}

void write_exceptions(std::ostream& out, const std::vector<Finding>& findings, const std::vector<Line>& lines,
                      const std::map<int, std::string>& notes) {
  std::size_t sublime = 0, named = 0;
  for (const Line& l : lines) sublime += l.boiling.sublimes ? 1 : 0;
  std::vector<const FitComponent*> missing;
  for (const Finding& f : findings)
    if (missing.empty() || missing.back() != f.component) missing.push_back(f.component);
  named = missing.size();
  out << "## Exceptions\n\n"
         "Every component boils within "
      << kBoiling << " K of its record by the equation, has a heat of vaporisation within " << kHeat
      << " % of its\nsource there, a vapour pressure that rises and a liquid density that falls with "
         "temperature, and a "
         "and b above zero\nfrom 0.3 to 4 Tc, but for the following "
      << named << " of " << lines.size() << ". Boiling points of the " << sublime
      << " components that sublime are left\nout.\n\n| number | component | what | reason "
         "|\n|---|---|---|---|\n";
  for (const Finding& f : findings)
    out << "| " << f.component->number << " | " << f.component->name << " | " << f.what << " | "
        << (f.reason.empty() ? "none known" : f.reason) << " |\n";
  out << "\n## Less than a full fit\n\n"
         "Components whose curves are not a full fit to their own data: what was wrong, and what stands in "
         "its "
         "place.\n\n| number | component | |\n|---|---|---|\n";
  for (const Line& l : lines) {
    const auto it = notes.find(l.component->number);
    if (it != notes.end())
      out << "| " << it->first << " | " << l.component->name << " | " << it->second << " |\n";
  }
  out << '\n';
}

void write_listed(std::ostream& out, const std::vector<std::string>& faults, ListedExceptions& listed,
                  const std::vector<Line>& lines) {
  out << "## Cells outside their usual range\n\n"
         "What the check of single records finds and `data/exceptions.csv` lets pass.\n\n"
         "| number | component | what | reason |\n|---|---|---|---|\n";
  for (const std::string& fault : faults) {
    const RecordFault parts = fault_parts(fault);
    const auto reason = listed.reason(parts.number, parts.what);
    if (!reason) continue;
    const auto at = std::find_if(lines.begin(), lines.end(),
                                 [&](const Line& l) { return l.component->number == parts.number; });
    out << "| " << parts.number << " | " << (at != lines.end() ? at->component->name : "") << " | "
        << parts.what << " | " << *reason << " |\n";
  }
  out << '\n';
}

}  // namespace talix::bank
