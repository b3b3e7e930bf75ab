#include "verify/verify_tally.h"

#include <algorithm>

namespace talix::verify {

using test::reference::Comparison;
using test::reference::Outcome;
using test::reference::Verdict;

namespace {

void count(Cell& c, const Outcome& o) {
  c.calls += o.engine_calls;
  c.most_calls = std::max(c.most_calls, o.engine_calls);
  ++c.states;
  if (o.verdict == Verdict::unanswered)
    ++c.unanswered;
  else if (!test::reference::is_wrong(o.verdict))
    ++c.right;
  else if (o.with_text)
    ++c.warned;
  else
    ++c.wrong;
}

template <std::size_t N>
int bin_of(const std::array<R8, N>& edges, R8 value) {
  int k = 0;
  while (k + 2 < static_cast<int>(N) && value >= edges[static_cast<std::size_t>(k + 1)]) ++k;
  return k;
}

R8 percent(int part, int all) { return all > 0 ? 100.0 * part / all : 0.0; }

void print_cell(std::FILE* out, const char* label, const Cell& c) {
  std::fprintf(out, "  %-26s %7d %9.3f %7d %7d %7d %9.1f %7d\n", label, c.states, percent(c.right, c.states),
               c.wrong, c.warned, c.unanswered,
               c.states > 0 ? static_cast<R8>(c.calls) / static_cast<R8>(c.states) : 0.0, c.most_calls);
}

}  // namespace

void Tally::add(const Comparison& c) {
  const Outcome& o = c.outcome;
  ++verdicts_[static_cast<std::size_t>(o.verdict)];
  if (o.verdict == Verdict::undecided) return;
  if (!o.solvable) {
    count(none_, o);
    return;
  }
  if (o.verdict == Verdict::right && !c.nearest) ++farther_;
  count(all_, o);
  count(by_phases_[std::clamp(c.phases, 0, 2)], o);
  count(bin_[bin_of(kTemperatures, c.T)][bin_of(kPressures, c.P)], o);
}

void Tally::print(std::FILE* out, const char* title) const {
  std::fprintf(out, "\n%s\n  %-26s %7s %9s %7s %7s %7s %9s %7s\n", title, "", "states", "right %", "wrong",
               "warned", "no ans.", "calls", "most");
  print_cell(out, "all", all_);
  if (none_.states > 0) print_cell(out, "reference has no answer", none_);
  if (by_phases_[1].states > 0) print_cell(out, "one phase", by_phases_[1]);
  if (by_phases_[2].states > 0) print_cell(out, "two phases", by_phases_[2]);
  for (int i = 0; i < kRows; ++i) {
    for (int j = 0; j < kColumns; ++j) {
      const Cell& c = bin_[i][j];
      if (c.states == 0) continue;
      const auto edge = [](R8 value) { return value < 1.0E8 ? value : 999.0; };
      char label[64];
      std::snprintf(
          label, sizeof label, "%3.0f-%3.0f K, %3.0f-%3.0f bar", kTemperatures[static_cast<std::size_t>(i)],
          edge(kTemperatures[static_cast<std::size_t>(i + 1)]), kPressures[static_cast<std::size_t>(j)],
          edge(kPressures[static_cast<std::size_t>(j + 1)]));
      print_cell(out, label, c);
    }
  }
  std::fprintf(out, "  verdicts:");
  for (int v = 0; v < test::reference::kVerdicts; ++v)
    if (verdicts_[static_cast<std::size_t>(v)] > 0)
      std::fprintf(out, " %s %d;", test::reference::name_of(static_cast<Verdict>(v)),
                   verdicts_[static_cast<std::size_t>(v)]);
  if (farther_ > 0) std::fprintf(out, " right but not the nearest of several %d;", farther_);
  std::fprintf(out, "\n");
}

}  // namespace talix::verify
