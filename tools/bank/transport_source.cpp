#include "bank/transport_source.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace talix::bank {

namespace {

constexpr int kGrid = 96;
constexpr double kSideWeight = 0.05;   // of points from other sources than the core
constexpr double kLargestStep = 0.35;  // most that another source may differ at the joint [ln]

// Rows of the best rank: the pieces of one source.
struct Core {
  std::vector<const Correlation*> rows;
  double tmin = 0.0, tmax = 0.0;

  [[nodiscard]] std::optional<double> value(double T) const {
    for (const Correlation* row : rows) {
      const double v = evaluate(*row, T);
      if (T >= row->tmin && T <= row->tmax && v > 0.0) return v;
    }
    return std::nullopt;
  }
};

Core core_of(const std::vector<Correlation>& rows) {
  Core core;
  core.tmin = rows.front().tmin;
  core.tmax = rows.front().tmax;
  for (const Correlation& row : rows) {
    if (row.rank != rows.front().rank) continue;
    core.rows.push_back(&row);
    core.tmin = std::min(core.tmin, row.tmin);
    core.tmax = std::max(core.tmax, row.tmax);
  }
  return core;
}

// Value beyond the core: the first relation that reaches from the joint to T, scaled to meet the core there.
std::optional<double> beyond(const std::vector<Correlation>& rows, const Core& core, double T) {
  const double joint = T < core.tmin ? core.tmin : core.tmax;
  const auto level = core.value(joint);
  if (!level) return std::nullopt;
  for (const Correlation& row : rows) {
    if (std::min(T, joint) < row.tmin || std::max(T, joint) > row.tmax) continue;
    const double at_joint = evaluate(row, joint), v = evaluate(row, T);
    if (at_joint > 0.0 && v > 0.0 && std::fabs(std::log(at_joint / *level)) < kLargestStep) {
      return v * *level / at_joint;
    }
  }
  return std::nullopt;
}

}  // namespace

const std::vector<Correlation>& relations_of(const ReferenceTables& tables, const std::string& cas,
                                             const std::string& property) {
  static const std::vector<Correlation> none;
  const auto component = tables.relations.find(cas);
  if (component == tables.relations.end()) return none;
  const auto rows = component->second.find(property);
  return rows == component->second.end() ? none : rows->second;
}

SourceLine source_line(const ReferenceTables& tables, const FitComponent& c, const std::string& property,
                       double top) {
  SourceLine line;
  std::vector<Correlation> rows = relations_of(tables, c.cas, property);
  if (rows.empty()) return line;
  // A relation that ends at another critical temperature holds well below it only.
  for (Correlation& row : rows) {
    const double end = row.equation == "DIPPR105" ? row.c[2] : row.tc;
    if (end > 0.0 && std::fabs(end / c.tc - 1.0) > 0.02) row.tmax = std::min(row.tmax, 0.85 * end);
  }
  Core core = core_of(rows);
  core.tmax = std::min(core.tmax, top * c.tc);
  line.source = core.rows.front()->source;
  line.tmin = core.tmin;
  line.tmax = core.tmax;
  double low = core.tmin, high = core.tmax;
  for (const Correlation& row : rows) {
    low = std::min(low, row.tmin);
    high = std::max(high, std::min(row.tmax, top * c.tc));
  }
  const auto add = [&](double T) {
    const bool inside = T >= core.tmin && T <= core.tmax;
    const auto v = inside ? core.value(T) : beyond(rows, core, T);
    if (v) line.points.push_back({T, *v, inside ? 1.0 : kSideWeight, inside});
  };
  // The range of the core on a grid of its own, with both ends.
  for (int k = 0; k < kGrid / 4 && low < core.tmin; ++k) add(low + (core.tmin - low) * k / (kGrid / 4));
  for (int k = 0; k <= kGrid; ++k) add(core.tmin + (core.tmax - core.tmin) * k / kGrid);
  for (int k = 1; k <= kGrid / 4 && high > core.tmax; ++k)
    add(core.tmax + (high - core.tmax) * k / (kGrid / 4));
  return line;
}

SourceLine saturation_line(const ReferenceTables& tables, const FitComponent& c, const Reference& ref,
                           const std::string& property, double top) {
  const bool equation = tables.points.contains(c.cas);
  if (!equation) {
    SourceLine line = source_line(tables, c, property, top);
    if (!line.points.empty()) return line;
  }
  SourceLine line;
  line.source = ref.source;
  for (const SatPoint& s : ref.sat) {
    const double value = property == "hvap" ? s.hvap : s.rhol;
    if (s.T > top * c.tc || !(value > 0.0)) continue;
    if (line.points.empty()) line.tmin = s.T;
    line.tmax = s.T;
    line.points.push_back({s.T, value, 1.0, true});
  }
  return line;
}

std::vector<std::pair<double, double>> ranges_of(const FitComponent& c, const SourceLine& line) {
  constexpr int kLowSteps = 12, kHighSteps = 8;
  constexpr double kLowest = 0.48,
                   kHighest = 0.88;  // reduced temperatures that every range keeps between them
  const double low_end = std::max(line.tmin, kLowest * c.tc), high_end = std::min(line.tmax, kHighest * c.tc);
  std::vector<std::pair<double, double>> ranges;
  for (int i = 0; i <= kLowSteps; ++i) {
    for (int k = 0; k <= kHighSteps; ++k) {
      const double low = line.tmin + (low_end - line.tmin) * i / kLowSteps;
      const double high = line.tmax + (high_end - line.tmax) * k / kHighSteps;
      const bool again = (i > 0 && low <= line.tmin) || (k > 0 && high >= line.tmax);
      if (!again && high > low) ranges.emplace_back(low, high);
    }
  }
  // A kelvin at the critical end is given up more easily than one at the cold end, and least easily one at ordinary
  // temperatures.
  constexpr double kOrdinaryWeight = 4.0, kCriticalWeight = 0.35;
  const auto given_up = [&](const std::pair<double, double>& r) {
    const double ordinary = std::max(0.0, r.first - std::max(line.tmin, kOrdinary));
    return r.first - line.tmin + (kOrdinaryWeight - 1.0) * ordinary +
           kCriticalWeight * (line.tmax - r.second);
  };
  std::stable_sort(ranges.begin(), ranges.end(),
                   [&](const auto& a, const auto& b) { return given_up(a) < given_up(b); });
  return ranges;
}

SourceLine narrowed(const SourceLine& line, double low, double high, double outside) {
  SourceLine result = line;
  result.tmin = low;
  result.tmax = high;
  for (SourcePoint& p : result.points) {
    if (p.T >= low && p.T <= high) continue;
    if (p.core) p.weight = outside;
    p.core = false;
  }
  return result;
}

}  // namespace talix::bank
