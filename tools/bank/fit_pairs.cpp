#include "bank/fit_pairs.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "bank/build.h"
#include "bank/fit_pairs_transfer.h"
#include "bank/fit_progress.h"

namespace talix::bank {

namespace {

// Numbers and families that decide what is left to the estimate rules.
constexpr int kHelium = 3, kHydrogen = 8, kOxygen = 17;
constexpr int kWater = 1, kGlycols = 3, kOthers = 10, kHydrocarbons = 20;  // families
constexpr int kLightest = 22;  // propane: lighter hydrocarbons with hydrogen have a published value

constexpr const char* kHeader =
    "number1,number2,code1,code2,teta0,teta0t_1_K,teta1,teta1t_1_K,status,source_digits,basis";

std::string text(const char* format, auto... values) {
  char buffer[300];
  std::snprintf(buffer, sizeof buffer, format, values...);
  return buffer;
}

// Pairs for which a published value is no better than the rules: it is a round figure for a whole class, or belongs
// to another curve of hydrogen.
bool left_to_rules(const PairNumbers& numbers, const PairComponent& first, const PairComponent& second) {
  const bool hydrocarbon = first.family == kHydrocarbons || second.family == kHydrocarbons;
  if (!hydrocarbon) return false;
  const int other = first.family == kHydrocarbons ? second.family : first.family;
  if (other == kWater || other == kGlycols) return true;
  const bool light = numbers.first == kHelium || numbers.first == kOxygen;
  return light || (numbers.first == kHydrogen && numbers.second >= kLightest && numbers.second < 200);
}

// Families with hydrogen bonds: their pairs with others may need the term in the composition.
bool polar(int family) { return family < kOthers && family != 6; }

char grade(double percent) {
  return percent <= 1.0 ? '1' : percent <= 2.0 ? '2' : percent <= 5.0 ? '3' : percent <= 10.0 ? '4' : '5';
}

std::string digits(char origin, const PairParameters& k, char quality) {
  const bool slope = k.t0t != 0.0 || k.t1t != 0.0;
  const bool odd = k.t1 != 0.0;
  const char shape = odd ? (slope ? '4' : '3') : (slope ? '2' : '1');
  return {origin, shape, quality, '1', '0'};
}

void set_status(PairRow& row) {
  const bool zero = row.k.t0 == 0.0 && row.k.t0t == 0.0 && row.k.t1 == 0.0 && row.k.t1t == 0.0;
  row.status = zero ? '3' : '1';
  row.ok = true;
}

PairRow from_points(const PairFit& fit, bool measured) {
  PairRow row;
  row.k = fit.k;
  row.digits = digits(measured ? '8' : '9', fit.k, grade(fit.mean));
  row.basis = text("fitted to %d %s, %.0f to %.0f K, mean deviation %.2f %%", fit.points,
                   measured ? "measured points" : "points of GERG-2008", fit.tmin, fit.tmax, fit.mean);
  if (fit.missing > 0) row.basis += text(", %d beyond the critical point of the equation", fit.missing);
  set_status(row);
  return row;
}

PairRow from_henry(const PairFit& fit, const HenryConstant& henry) {
  PairRow row;
  row.k = fit.k;
  row.digits = digits('8', fit.k, grade(fit.worst));
  const std::string name = henry.source.substr(0, henry.source.find_first_of(",("));
  row.basis = text("Henry constants in water, %.0f to %.0f K, within %.1f %%", fit.tmin, fit.tmax, fit.worst);
  if (fit.points > 0)
    row.basis += text(", and %d measured points, mean deviation %.1f %%", fit.points, fit.mean);
  row.basis += " (" + name.substr(0, name.find_last_not_of(' ') + 1) + ")";
  if (henry.gas_phase) row.basis += text(", %.3g in the gas after ", *henry.gas_phase) + henry.gas_origin;
  set_status(row);
  return row;
}

PairRow from_published(const PublishedPair& p, const PairComponent& first, const PairComponent& second) {
  PairRow row;
  const char* const cubic = p.cubic == PairCubic::soave ? "Soave" : "Peng-Robinson";
  const bool gerg = p.basis.find("fitted to GERG") != std::string::npos;
  const char origin = gerg ? '4' : '7';
  const PairTransfer t = transfer(p.cubic, first, second, p.kij);
  if (t.ok && p.kij != 0.0) {
    row.k = {t.t0, p.kijt, 0.0, 0.0};
    row.basis = text("%.5g of %s carried over, %d states, %.0f to %.0f K, to %.1f %%: ", p.kij, cubic,
                     t.states, t.tmin, t.tmax, t.mean) +
                p.basis;
    row.digits = digits(origin, row.k, '0');
  } else {
    row.k = {p.kij, p.kijt, 0.0, 0.0};
    row.basis = text("value of %s as published, not carried over: ", cubic) + p.basis;
    row.digits = digits(origin, row.k, '0');
  }
  set_status(row);
  return row;
}

// A row from the rows of similar pairs, or as chosen by hand.
PairRow from_choice(const PairChoice& choice, const std::map<PairNumbers, PairRow>& rows,
                    const std::map<int, std::string>& names) {
  PairRow row;
  row.basis = choice.words;
  if (choice.kind == "like") {
    row.basis = choice.like.size() == 1 ? "taken over from " : "mean of ";
    const double n = static_cast<double>(choice.like.size());
    const char* between = "";
    for (const PairNumbers& like : choice.like) {
      const auto found = rows.find(like);
      if (found == rows.end())
        throw BankError("pair_choices.csv: pair " + std::to_string(like.first) + "-" +
                        std::to_string(like.second) + ", to be taken over, has no parameters of its own");
      const PairParameters& k = found->second.k;
      row.k = {row.k.t0 + k.t0 / n, row.k.t0t + k.t0t / n, row.k.t1 + k.t1 / n, row.k.t1t + k.t1t / n};
      row.basis += between + names.at(like.first) + " with " + names.at(like.second);
      between = " and ";
    }
    row.k = rounded(row.k);
  } else if (choice.kind == "value") {
    row.k.t0 = choice.value;
  }
  row.digits = digits('2', row.k, '0');
  set_status(row);
  return row;
}

bool write_rows(const std::string& path, const std::map<PairNumbers, PairRow>& rows,
                const std::map<int, std::string>& codes) {
  const std::string part = path + ".part";
  {
    std::ofstream out(part);
    out << "# Interaction parameters of pairs.\n# Made by talix-bank fit --pairs; do not edit by hand.\n"
        << kHeader << '\n';
    for (const auto& [n, row] : rows) {
      std::string basis = row.basis;
      std::replace(basis.begin(), basis.end(), '"', '\'');
      out << n.first << ',' << n.second << ",\"" << codes.at(n.first) << "\",\"" << codes.at(n.second)
          << "\"," << text("%.6g,%.8g,%.6g,%.8g,", row.k.t0, row.k.t0t, row.k.t1, row.k.t1t) << row.status
          << ',' << row.digits << ",\"" << basis << "\"\n";
    }
    if (!out.flush()) return false;
  }
  std::error_code failed;
  std::filesystem::rename(part, path, failed);
  return !failed;
}

// Components by number: those of the bank, and texts of all of the table.
struct Components {
  std::map<int, PairComponent> data;
  std::map<int, std::string> codes;
  std::map<int, std::string> names;
};

Components read_components(const std::string& data_dir) {
  Components c;
  const SourceTable table = SourceTable::read(std::filesystem::path(data_dir) / "components.csv");
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const int number = table.integer(row, "number", 2, kHighestNumber);
    c.codes[number] = table.text(row, "code");
    c.names[number] = table.text(row, "name");
  }
  for (const PureRecord& record : compile_bank(data_dir).bank.pure) {
    if (is_unused(record)) continue;
    const PairComponent component = pair_component(record);
    if (component.number >= 2) c.data[component.number] = component;
  }
  return c;
}

std::map<PairNumbers, PairRow> fit_all(const PairSources& sources, const Components& components,
                                       const PairFitOptions& options) {
  std::set<PairNumbers> wanted;
  for (const auto& entry : sources.points) wanted.insert(entry.first);
  for (const auto& entry : sources.henry) wanted.insert(entry.first);
  for (const auto& entry : sources.published) wanted.insert(entry.first);
  // A component that the bank leaves out for want of curves has no pairs.
  const auto absent = [&](const PairNumbers& n) {
    return components.data.find(n.first) == components.data.end() ||
           components.data.find(n.second) == components.data.end();
  };
  std::vector<PairNumbers> tasks(wanted.begin(), wanted.end());
  std::erase_if(tasks, absent);
  std::vector<PairRow> results(tasks.size());
  FitProgress progress(tasks.size(), 0, options.silent);
  std::atomic<std::size_t> next{0};
  std::mutex turn;
  const auto work = [&] {
    for (std::size_t i = next++; i < tasks.size(); i = next++) {
      const auto& [low, high] = tasks[i];
      results[i] = fit_pair(sources, tasks[i], components.data.at(low), components.data.at(high));
      const std::lock_guard<std::mutex> lock(turn);
      progress.step(components.names.at(low) + " with " + components.names.at(high));
    }
  };
  const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t jobs = options.jobs > 0 ? static_cast<std::size_t>(options.jobs) : cores;
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k + 1 < std::min(jobs, tasks.size()); ++k) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  progress.finish();
  std::map<PairNumbers, PairRow> rows;
  for (std::size_t i = 0; i < tasks.size(); ++i)
    if (results[i].ok) rows[tasks[i]] = results[i];
  std::map<PairNumbers, PairRow> chosen;
  for (const auto& [numbers, choice] : sources.choices)
    if (rows.find(numbers) == rows.end()) chosen[numbers] = from_choice(choice, rows, components.names);
  rows.merge(chosen);
  return rows;
}

}  // namespace

PairRow fit_pair(const PairSources& sources, const PairNumbers& numbers, const PairComponent& first,
                 const PairComponent& second) {
  const auto points = sources.points.find(numbers);
  static const std::vector<PairPoint> kNone;
  const std::vector<PairPoint>& list = points == sources.points.end() ? kNone : points->second;
  if (const auto henry = sources.henry.find(numbers); henry != sources.henry.end())
    return from_henry(fit_henry(first, second, henry->second, list), henry->second);
  const bool rules = left_to_rules(numbers, first, second);
  const bool measured = std::any_of(list.begin(), list.end(), [](const PairPoint& p) { return p.measured; });
  const bool water = first.family == kWater || second.family == kWater;
  if (!list.empty() && !(rules && (water || !measured))) {
    const PairFit fit = fit_points(first, second, list, polar(first.family) || polar(second.family));
    if (fit.ok) return from_points(fit, measured);
  }
  if (sources.choices.find(numbers) != sources.choices.end() || rules) return {};
  const auto published = sources.published.find(numbers);
  return published == sources.published.end() ? PairRow{} : from_published(published->second, first, second);
}

int fit_pairs_main(const PairFitOptions& options) {
  try {
    const Components components = read_components(options.data_dir);
    const PairSources sources = read_pair_sources(options.data_dir, components.codes);
    const std::map<PairNumbers, PairRow> rows = fit_all(sources, components, options);
    const std::string path = options.data_dir + "/pairs.csv";
    if (!write_rows(path, rows, components.codes)) throw BankError("cannot write " + path);
    if (options.silent) return 0;
    std::map<char, int> origins;
    for (const auto& entry : rows) ++origins[entry.second.digits[0]];
    std::fprintf(stderr,
                 "%zu pairs: %d from measured points, %d from GERG-2008, %d carried over, %d chosen\n",
                 rows.size(), origins['8'], origins['9'], origins['7'] + origins['4'], origins['2']);
    return 0;
  } catch (const BankError& error) {
    std::fprintf(stderr, "talix-bank fit: %s\n", error.what());
    return 1;
  }
}

}  // namespace talix::bank
