#include "bank/pair_accuracy.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <system_error>

#include "bank/accuracy_lines.h"
#include "bank/fit_pairs_measured.h"
#include "bank/pair_accuracy_engine.h"

namespace talix::bank {

namespace {

constexpr double kPressureGoal = 5.0;  // mean over the points kept out [%]
constexpr double kVapourGoal = 0.02;   // [-]

// Components that decide the group of a system.
constexpr int kCarbonDioxide = 4, kHydrogen = 8, kHydrogenSulphide = 11, kNitrogen = 15;
constexpr int kWater = 1, kGases = 6, kHydrocarbons = 20;  // families

struct GroupText {
  PairGroup group;
  const char* words;
  bool goal;  // the goals hold for it
};
constexpr std::array kGroups{
    GroupText{PairGroup::hydrocarbon, "hydrocarbons with each other", true},
    GroupText{PairGroup::carbon_dioxide, "carbon dioxide with hydrocarbons and gases", true},
    GroupText{PairGroup::nitrogen, "nitrogen with hydrocarbons", true},
    GroupText{PairGroup::hydrogen_sulphide, "hydrogen sulphide with hydrocarbons and gases", true},
    GroupText{PairGroup::hydrogen, "hydrogen with hydrocarbons", true},
    GroupText{PairGroup::other_gas, "other gases", false},
    GroupText{PairGroup::water, "water with anything", false},
    GroupText{PairGroup::polar, "alcohols, glycols, ketones without water", false}};

// A component as the report sees it.
struct Member {
  std::string code, name;
  int family = 0;
};

std::map<int, Member> members(const Bank& bank) {
  std::map<int, Member> all;
  const auto text = [](const PureRecord& record, std::string_view field) {
    return record.text(pure_field(field).cell, pure_field(field).cells);
  };
  for (const PureRecord& record : bank.pure) {
    if (is_unused(record)) continue;
    std::string name = text(record, "CIUPAC");
    name.erase(name.find_last_not_of(' ') + 1);
    all[record.integer(pure_field("IDDB").cell)] = {text(record, "ICS"), name,
                                                    record.integer(pure_field("ISOFAM").cell)};
  }
  return all;
}

PairGroup group_of(const PairNumbers& n, const Member& first, const Member& second) {
  if (first.family == kWater || second.family == kWater) return PairGroup::water;
  const auto plain = [](const Member& m) { return m.family == kGases || m.family == kHydrocarbons; };
  const auto has = [&](int number) { return n.first == number || n.second == number; };
  const bool sulphide = has(kHydrogenSulphide);
  const Member& other = n.first == kHydrogenSulphide ? second : first;
  if (sulphide ? !plain(other) : !plain(first) || !plain(second)) return PairGroup::polar;
  if (has(kHydrogen)) return PairGroup::hydrogen;
  if (sulphide) return PairGroup::hydrogen_sulphide;
  if (has(kCarbonDioxide)) return PairGroup::carbon_dioxide;
  if (has(kNitrogen)) return PairGroup::nitrogen;
  return first.family == second.family && first.family == kHydrocarbons ? PairGroup::hydrocarbon
                                                                        : PairGroup::other_gas;
}

void add_point(PairShare& share, const PointDeviation& d) {
  share.missing += d.missing;
  if (d.ln_p) share.pressure.add(100.0 * std::fabs(std::expm1(*d.ln_p)));
  if (d.y) share.vapour.add(std::fabs(*d.y));
}

// Bank files in a folder of their own while it lives.
class BankFolder {
 public:
  explicit BankFolder(const Bank& bank)
      : path_(std::filesystem::temp_directory_path() / ("talix-pairs-" + std::to_string(::getpid()))) {
    std::filesystem::create_directories(path_);
    write_bank(path_, bank);
  }
  ~BankFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  BankFolder(const BankFolder&) = delete;
  BankFolder& operator=(const BankFolder&) = delete;
  [[nodiscard]] std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

std::string pressure_text(const PairMean& m) {
  return m.n == 0
             ? "-"
             : figure("%.2f", m.mean()) + " / " + figure("%.1f", m.worst) + " (" + std::to_string(m.n) + ")";
}

std::string vapour_text(const PairMean& m) {
  return m.n == 0 ? "-" : figure("%.4f", m.mean()) + " (" + std::to_string(m.n) + ")";
}

void add_share(PairShare& to, const PairShare& from) {
  to.pressure.add(from.pressure);
  to.vapour.add(from.vapour);
  to.missing += from.missing;
}

void write_group(std::ostream& out, const char* words, const PairShare& kept, const PairShare& fit,
                 const PairShare& doubt, const char* verdict) {
  out << "| " << words << " | " << pressure_text(kept.pressure) << " | " << vapour_text(kept.vapour) << " | "
      << kept.missing << " | " << pressure_text(fit.pressure) << " | " << vapour_text(fit.vapour) << " | "
      << fit.missing << " | " << pressure_text(doubt.pressure) << " | " << verdict << " |\n";
}

void write_groups(std::ostream& out, const std::vector<PairLine>& lines, bool measured) {
  out << "| systems | kept out: pressure | vapour | no state | in the fit: pressure | vapour | no state | "
         "doubtful | "
         "goals |\n|---|---|---|---|---|---|---|---|---|\n";
  PairShare kept, fit, doubt;
  const auto verdict = [](const PairShare& s) {
    return s.pressure.mean() <= kPressureGoal && s.vapour.mean() <= kVapourGoal ? "held" : "missed";
  };
  for (const GroupText& g : kGroups) {
    const PairShare k = group_share(lines, g.group, measured, &PairLine::kept_out);
    const PairShare f = group_share(lines, g.group, measured, &PairLine::fitted);
    const PairShare d = group_share(lines, g.group, measured, &PairLine::doubtful);
    if (k.pressure.n + k.vapour.n + f.pressure.n + f.missing == 0) continue;
    write_group(out, g.words, k, f, d, g.goal ? verdict(k) : "-");
    if (!g.goal) continue;
    add_share(kept, k);
    add_share(fit, f);
    add_share(doubt, d);
  }
  write_group(out, "**the first five together**", kept, fit, doubt, verdict(kept));
  out << '\n';
}

void write_systems(std::ostream& out, const std::vector<PairLine>& lines) {
  out << "| system | points | kept out: pressure | vapour | no state | in the fit: pressure | vapour | no "
         "state | "
         "doubtful |\n|---|---|---|---|---|---|---|---|---|\n";
  for (const GroupText& g : kGroups) {
    for (const PairLine& l : lines) {
      if (l.group != g.group) continue;
      out << "| " << l.name << " | " << (l.measured ? "measured" : "GERG-2008") << " | "
          << pressure_text(l.kept_out.pressure) << " | " << vapour_text(l.kept_out.vapour) << " | "
          << l.kept_out.missing << " | " << pressure_text(l.fitted.pressure) << " | "
          << vapour_text(l.fitted.vapour) << " | " << l.fitted.missing << " | "
          << pressure_text(l.doubtful.pressure) << " |\n";
    }
  }
  out << '\n';
}

}  // namespace

void PairMean::add(double deviation) {
  ++n;
  sum += deviation;
  worst = std::max(worst, deviation);
}

void PairMean::add(const PairMean& other) {
  n += other.n;
  sum += other.sum;
  worst = std::max(worst, other.worst);
}

std::vector<PairLine> pair_accuracy(const Bank& bank,
                                    const std::map<PairNumbers, std::vector<PairPoint>>& points) {
  const std::map<int, Member> all = members(bank);
  const BankFolder folder(bank);
  std::vector<PairLine> lines;
  for (const auto& [numbers, list] : points) {
    const auto first = all.find(numbers.first), second = all.find(numbers.second);
    if (first == all.end() || second == all.end()) continue;
    const PairEngine engine(folder.path(), first->second.code, second->second.code);
    for (const bool measured : {true, false}) {
      PairLine line;
      line.numbers = numbers;
      line.name = first->second.name + " with " + second->second.name;
      line.group = group_of(numbers, first->second, second->second);
      line.measured = measured;
      bool any = false;
      for (const PairPoint& p : list) {
        if (p.measured != measured) continue;
        any = true;
        add_point(p.doubtful   ? line.doubtful
                  : p.kept_out ? line.kept_out
                               : line.fitted,
                  point_deviation(engine, p));
      }
      if (any) lines.push_back(line);
    }
  }
  return lines;
}

PairShare group_share(const std::vector<PairLine>& lines, PairGroup group, bool measured,
                      PairShare PairLine::*share) {
  PairShare sum;
  for (const PairLine& l : lines)
    if (l.group == group && l.measured == measured) add_share(sum, l.*share);
  return sum;
}

void write_pair_report(std::ostream& out, const Bank& bank, const std::filesystem::path& data_dir) {
  std::map<int, std::string> codes;
  const SourceTable components = SourceTable::read(data_dir / "components.csv");
  for (std::size_t row = 0; row < components.rows(); ++row)
    codes[components.integer(row, "number", 2, kHighestNumber)] = components.text(row, "code");
  const auto points = read_pair_points(SourceTable::read(data_dir / "pair_points.csv"), codes);
  const std::vector<PairLine> lines = pair_accuracy(bank, points);
  out << "## Phase equilibria of pairs\n\n"
         "Bubble pressure by the library's engine against `data/pair_points.csv`: mean / worst deviation in "
         "percent and\n"
         "number of points; mean deviation of the vapour mole fraction. The third of every four points of a "
         "pair is kept\n"
         "out of the fit of its parameters. No state: the equation has no bubble point there, mostly since "
         "it lies beyond\n"
         "its critical point. Doubtful points, of sets that disagree with others or far off any cubic, take "
         "no part in\n"
         "fits and means. Goals over the points kept out: "
      << figure("%g", kPressureGoal) << " % and " << figure("%g", kVapourGoal) << ".\n\nMeasured points:\n\n";
  write_groups(out, lines, true);
  out << "Points computed with GERG-2008:\n\n";
  write_groups(out, lines, false);
  out << "Each system:\n\n";
  write_systems(out, lines);
}

}  // namespace talix::bank
