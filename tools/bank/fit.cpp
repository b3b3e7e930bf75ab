#include "bank/fit.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>

#include "bank/fit_journal.h"
#include "bank/fit_progress.h"
#include "bank/transport_tables.h"

namespace talix::bank {

namespace {

volatile std::sig_atomic_t interrupted = 0;

// While it lives, an interrupt or a request to end asks the fit to stop behind the components at work.
class InterruptGuard {
 public:
  InterruptGuard() {
    interrupted = 0;
    struct sigaction action {};
    action.sa_handler = [](int) { interrupted = 1; };
    ::sigaction(SIGINT, &action, &old_int_);
    ::sigaction(SIGTERM, &action, &old_term_);
  }
  ~InterruptGuard() {
    ::sigaction(SIGINT, &old_int_, nullptr);
    ::sigaction(SIGTERM, &old_term_, nullptr);
  }
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

 private:
  struct sigaction old_int_ {
  }, old_term_{};
};

bool selected(const FitOptions& options, const FitComponent& c) {
  const auto is = [&](const std::string& key) {
    return key == c.code || key == c.name || key == c.cas || key == std::to_string(c.number);
  };
  return options.only.empty() || std::any_of(options.only.begin(), options.only.end(), is);
}

using TableRows = std::map<int, std::vector<std::string>>;  // rows of a table by catalogue number

// Rows of a table as they stand; none where there is no table. False for a table with other columns.
bool existing(const std::string& path, const std::string& header, TableRows& rows) {
  std::ifstream in(path);
  std::string line;
  bool first = true;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    if (first && line != header) return false;
    if (!first) rows[std::atoi(line.c_str())].push_back(line);
    first = false;
  }
  return true;
}

// A table takes its place only when it is whole.
bool write_table(const std::string& path, const char* comment, const char* header, const TableRows& rows) {
  const std::string part = path + ".part";
  {
    std::ofstream out(part);
    out << "# " << comment << "\n# Made by talix-bank fit; do not edit by hand.\n" << header << "\n";
    for (const auto& [number, lines] : rows)
      for (const std::string& line : lines) out << line << "\n";
    if (!out.flush()) return false;
  }
  std::error_code failed;
  std::filesystem::rename(part, path, failed);
  return !failed;
}

// One component of a run.
struct Task {
  const FitComponent* component = nullptr;
  const Curves* given = nullptr;
  std::uint64_t key = 0;
  ComponentRows rows;
  bool done = false;
};

// Works off the tasks on several threads; false after an interrupt.
bool run(std::vector<Task>& tasks, const ReferenceTables& tables, const FitParts& parts,
         const FitOptions& options, FitJournal& journal, FitProgress& progress) {
  std::atomic<std::size_t> next{0};
  std::mutex turn;
  const auto work = [&] {
    for (std::size_t i = next++; i < tasks.size() && interrupted == 0; i = next++) {
      Task& task = tasks[i];
      if (task.done) continue;
      task.rows = fit_component(tables, *task.component, parts, task.given);
      const std::lock_guard<std::mutex> lock(turn);
      task.done = true;
      journal.add(task.component->number, task.key, task.rows);
      progress.step(task.component->name);
      if (options.verbose) std::fprintf(stderr, "%s\n", task.rows.log.c_str());
    }
  };
  const std::size_t cores = std::max(1U, std::thread::hardware_concurrency());
  const std::size_t jobs = options.jobs > 0 ? static_cast<std::size_t>(options.jobs) : cores;
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k + 1 < std::min(jobs, tasks.size()); ++k) threads.emplace_back(work);
  work();
  for (std::thread& t : threads) t.join();
  progress.finish();
  return std::all_of(tasks.begin(), tasks.end(), [](const Task& t) { return t.done; });
}

bool write_tables(const FitOptions& options, const std::vector<Task>& tasks) {
  const std::string dir = options.data_dir + "/";
  const auto table = [&](const char* name, const char* comment, const char* header, auto rows_of) {
    TableRows rows;
    if (!options.only.empty() && !existing(dir + name, header, rows)) return false;
    for (const Task& t : tasks) {
      rows[t.component->number] = rows_of(t.rows);
      std::erase(rows[t.component->number], std::string());
    }
    return write_table(dir + name, comment, header, rows);
  };
  using Lines = std::vector<std::string>;
  if (options.curves) {
    const bool written = table("curves.csv", kCurvesComment, kCurvesHeader,
                               [](const ComponentRows& r) { return Lines{r.curves}; }) &&
                         table("ideal_gas.csv", kIdealComment, kIdealHeader,
                               [](const ComponentRows& r) { return Lines{r.ideal_gas}; }) &&
                         table("vapour_pressure.csv", kVapourComment, kVapourHeader,
                               [](const ComponentRows& r) { return Lines{r.vapour_pressure}; });
    if (!written) return false;
  }
  return !options.transport || table("transport.csv", kTransportComment, kTransportHeader,
                                     [](const ComponentRows& r) { return r.transport; });
}

int fail(const std::string& what) {
  std::fprintf(stderr, "talix-bank fit: %s\n", what.c_str());
  return 1;
}

}  // namespace

int fit_main(const FitOptions& options) {
  ReferenceTables tables;
  std::string message;
  if (!read_reference(options.data_dir, tables, message)) return fail(message);
  const FitParts parts{options.curves, options.transport};
  std::map<int, Curves> given;
  if (!parts.curves && !read_curves(options.data_dir, tables, given))
    return fail("cannot read " + options.data_dir + "/curves.csv");
  std::vector<Task> tasks;
  for (const FitComponent& c : tables.components) {
    if (!selected(options, c)) continue;
    Task task;
    task.component = &c;
    if (!parts.curves) task.given = &given.at(c.number);
    task.key = fit_key(tables, c, parts, task.given);
    tasks.push_back(task);
  }
  if (tasks.empty()) return fail("no component of that name");

  FitJournal journal(options.data_dir, options.fresh);
  std::size_t taken_over = 0;
  for (Task& task : tasks) {
    const ComponentRows* const rows = journal.find(task.component->number, task.key);
    if (rows == nullptr) continue;
    task.rows = *rows;
    task.done = true;
    ++taken_over;
  }
  if (taken_over > 0 && !options.silent)
    std::fprintf(stderr, "%zu components taken over from the run that was interrupted\n", taken_over);

  FitProgress progress(tasks.size(), taken_over, options.silent || options.verbose);
  {
    const InterruptGuard guard;
    if (!run(tasks, tables, parts, options, journal, progress)) {
      std::fprintf(stderr, "talix-bank fit: interrupted; the same command goes on from here\n");
      return kFitInterrupted;
    }
  }
  if (!write_tables(options, tasks))
    return fail("cannot write the tables in " + options.data_dir +
                (options.only.empty() ? "" : ", or they have other columns; fit all components"));
  std::vector<int> numbers;
  for (const Task& t : tasks) numbers.push_back(t.component->number);
  journal.finish(numbers);
  if (options.silent) return 0;
  std::size_t notes = 0;
  for (const Task& t : tasks) {
    if (t.rows.note.empty()) continue;
    ++notes;
    std::fprintf(stderr, "%d %s: %s\n", t.component->number, t.component->name.c_str(), t.rows.note.c_str());
  }
  std::fprintf(stderr, "fitted %zu components in %.0f s, %zu of them with less than a full fit\n",
               tasks.size() - taken_over, progress.seconds(), notes);
  return 0;
}

}  // namespace talix::bank
