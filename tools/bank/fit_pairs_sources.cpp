#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "bank/fit_pairs.h"

namespace talix::bank {

namespace {

HenryConstant read_henry(const SourceTable& table, std::size_t row, const PairNumbers& numbers) {
  HenryConstant h;
  const int gas = table.integer(row, "gas", 2, 9999);
  if (gas != numbers.first && gas != numbers.second) table.fail(row, "gas", "not one of the pair");
  h.gas_first = gas == numbers.first;
  h.h1 = table.required(row, "h1", {"-", -1e4, 1e4});
  h.h2 = table.required(row, "h2_K", {"K", -1e6, 1e6});
  h.h3 = table.required(row, "h3", {"-", -1e3, 1e3});
  h.h4 = table.required(row, "h4_1_K", {"1/K", -10, 10});
  h.tmin = table.required(row, "tmin_K", {"K", 200, 700});
  h.tmax = table.required(row, "tmax_K", {"K", h.tmin + 20, 700});
  h.gas_phase = table.number(row, "gas_phase", {"-", -1, 1});
  h.gas_origin = table.text(row, "gas_origin");
  h.source = table.text(row, "source");
  return h;
}

PublishedPair read_published(const SourceTable& table, std::size_t row) {
  PublishedPair p;
  const std::string& equation = table.text(row, "equation");
  if (equation != "soave" && equation != "robinson") table.fail(row, "equation", "write soave or robinson");
  p.cubic = equation == "soave" ? PairCubic::soave : PairCubic::robinson;
  p.kij = table.required(row, "kij", {"-", -1, 1});
  p.kijt = table.number(row, "kij_t_1_K", {"1/K", -0.01, 0.01}).value_or(0.0);
  p.basis = table.text(row, "basis");
  return p;
}

PairChoice read_choice(const SourceTable& table, std::size_t row) {
  PairChoice c;
  c.kind = table.text(row, "choice");
  c.words = table.text(row, "words");
  std::istringstream list(table.text(row, "like"));
  std::string item;
  while (std::getline(list, item, ';')) {
    PairNumbers like;
    char dash = 0;
    std::istringstream fields(item);
    if (!(fields >> like.first >> dash >> like.second) || dash != '-' || like.first >= like.second)
      table.fail(row, "like", "write pairs as low-high, parted by ;");
    c.like.push_back(like);
  }
  if (c.kind == "value") c.value = table.required(row, "value", {"-", -1, 1});
  const bool known = c.kind == "like" || c.kind == "value" || c.kind == "none";
  if (!known || c.like.empty() == (c.kind == "like"))
    table.fail(row, "choice", "write like with its pairs, value with its figure, or none");
  if (c.kind != "like" && c.words.empty()) table.fail(row, "words", "empty; say why");
  return c;
}

template <typename Value, typename Read>
std::map<PairNumbers, Value> read_rows(const std::filesystem::path& file,
                                       const std::map<int, std::string>& codes, Read read) {
  const SourceTable table = SourceTable::read(file);
  std::map<PairNumbers, Value> rows;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const PairNumbers numbers = pair_numbers(table, row, codes);
    if (!rows.emplace(numbers, read(table, row, numbers)).second)
      table.fail(row, "number2", "this pair stands in the table already");
  }
  return rows;
}

}  // namespace

PairSources read_pair_sources(const std::string& data_dir, const std::map<int, std::string>& codes) {
  const std::filesystem::path dir(data_dir);
  PairSources s;
  s.points = read_pair_points(SourceTable::read(dir / "pair_points.csv"), codes);
  s.henry = read_rows<HenryConstant>(dir / "pair_henry.csv", codes, read_henry);
  s.published = read_rows<PublishedPair>(
      dir / "pair_published.csv", codes,
      [](const SourceTable& t, std::size_t row, const PairNumbers&) { return read_published(t, row); });
  s.choices = read_rows<PairChoice>(
      dir / "pair_choices.csv", codes,
      [](const SourceTable& t, std::size_t row, const PairNumbers&) { return read_choice(t, row); });
  return s;
}

}  // namespace talix::bank
