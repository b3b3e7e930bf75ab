#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>

#include "bank/parameter_field.h"
#include "bank/parameter_files.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kHeaderWidth = 8;
constexpr int kWidth = 13;  // of a real, behind one blank
constexpr int kClosingKey = 99999999;
constexpr std::size_t kPureFields = 15;
constexpr std::size_t kPairFields = 5;

// A published set, with a0 and c1 moved to the critical temperature of the component.
struct Association {
  int number;
  double a0, b, c1;       // [Pa m6/mol2], [m3/mol], [-]
  double energy, volume;  // association energy [J/mol] and volume [-]
  double half_sites;      // half the number of sites [-]
  bool single;            // one site that bonds with its own kind
  [[nodiscard]] bool associates() const { return energy > 0; }
  // One site carries half the weight of a donor and acceptor pair; the volume makes up for it.
  [[nodiscard]] double stored_volume() const { return single ? 2 * volume : volume; }
};

using ByCas = std::map<std::string, Association>;

// sqrt(a0)(1 + c1 (1 - sqrt(T/tc))) written for another critical temperature: the same function of T.
void move_critical_temperature(Association& set, double from, double to) {
  const double root = std::sqrt(set.a0);
  const double slope = set.c1 * root;
  const double moved = root + slope * (1 - std::sqrt(to / from));
  set.c1 = slope * std::sqrt(to / from) / moved;
  set.a0 = moved * moved;
}

ByCas read_sets(const std::filesystem::path& data_dir, std::span<const ParameterComponent> components) {
  std::map<std::string, const ParameterComponent*> by_cas;
  for (const ParameterComponent& component : components) by_cas[component.cas] = &component;
  const SourceTable table = SourceTable::read(data_dir / "association_pure.csv");
  ByCas sets;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    Association set{0,
                    table.required(row, "a0_Pa_m6_per_mol2", {"Pa m6/mol2", 1e-3, 100}),
                    table.required(row, "b_m3_per_mol", {"m3/mol", 1e-6, 1e-2}),
                    table.required(row, "c1", {"-", 0, 5}),
                    table.required(row, "eps_J_per_mol", {"J/mol", 0, 1e5}),
                    table.required(row, "beta", {"-", 0, 10}),
                    table.required(row, "half_sites", {"-", 0, 4}),
                    table.text(row, "scheme") == "1A"};
    const double tc = table.required(row, "tc_K", {"K", 1, 2500});
    const auto found = by_cas.find(table.text(row, "cas"));
    if (found == by_cas.end()) continue;
    set.number = found->second->number;
    move_critical_temperature(set, tc, found->second->tc);
    if (!sets.emplace(found->first, set).second)
      table.fail(row, "cas", "this component stands in the table already");
  }
  return sets;
}

template <std::size_t N>
std::string record(int key, const std::array<double, N>& values) {
  std::string text = integer_text(key, kHeaderWidth);
  for (const double value : values) text += " " + real_text(value, kWidth, 6);
  return text;
}

// The three cross association parameters of a pair as the library has them: what is to be added to the geometric mean
// of the volumes, to the mean of the energies, and a temperature term.
struct Cross {
  double volume, energy, logarithmic;
};

std::optional<Cross> cross_association(const std::string& rule, const Association& i, const Association& j,
                                       std::optional<double> volume, std::optional<double> energy) {
  const double stored_mean = std::sqrt(i.stored_volume() * j.stored_volume());
  if (rule == "none") return Cross{0, 0, 0};
  if (rule == "CR-1") {
    // Between a single site and a pair of sites the published strength counts twice.
    const double wanted = std::sqrt(i.volume * j.volume) * (i.single != j.single ? 2 : 1);
    return Cross{wanted - stored_mean, 0, 0};
  }
  if (rule == "ECR" && !i.single && !j.single)
    return Cross{stored_mean * (2 * std::sqrt(i.b * j.b) / (i.b + j.b) - 1), 0, 0};
  if (rule == "solvation" && volume) {
    // Between two partners that do not associate by themselves there is no energy to share.
    if (!i.associates() && !j.associates()) return Cross{0, 0, 0};
    const double mean = (i.energy + j.energy) / 2;
    return Cross{*volume - stored_mean, energy ? *energy - mean : 0, 0};
  }
  return std::nullopt;
}

}  // namespace

std::string association_pure_text(const std::filesystem::path& data_dir,
                                  std::span<const ParameterComponent> components, std::size_t& records) {
  std::map<int, Association> by_number;
  for (const auto& [cas, set] : read_sets(data_dir, components)) by_number.emplace(set.number, set);
  KeyedFile file(kHeaderWidth + static_cast<int>(kPureFields) * (1 + kWidth), kHeaderWidth);
  for (const auto& [number, set] : by_number) {
    // Two fields are not used; the curve has its seventh coefficient in front of the first five.
    file.add(number, record<kPureFields>(number, {set.stored_volume(), set.energy, 0, 0, set.half_sites, 0, 0,
                                                  set.a0, set.b, 0, set.c1, 0, 0, 0, 0}));
  }
  records = file.size();
  return file.text(record<kPureFields>(kClosingKey, {}));
}

std::string association_pair_text(const std::filesystem::path& data_dir,
                                  std::span<const ParameterComponent> components, std::size_t& records) {
  std::map<std::string, int> numbers;
  for (const ParameterComponent& component : components) numbers[component.cas] = component.number;
  const ByCas sets = read_sets(data_dir, components);
  const Association none{};
  const auto set_of = [&](const std::string& cas) { return sets.contains(cas) ? sets.at(cas) : none; };

  const SourceTable table = SourceTable::read(data_dir / "association_pairs.csv");
  std::map<int, std::array<double, kPairFields>> by_key;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const std::string& first = table.text(row, "cas1");
    const std::string& second = table.text(row, "cas2");
    const double kij = table.required(row, "kij", {"-", -3, 3});
    const double slope = table.required(row, "kijT_per_K", {"1/K", -0.1, 0.1});
    const std::optional<Cross> cross = cross_association(
        table.text(row, "cross_rule"), set_of(first), set_of(second), table.number(row, "beta", {"-", 0, 10}),
        table.number(row, "eps_J_per_mol", {"J/mol", 0, 1e5}));
    if (!cross)
      table.fail(row, "cross_rule", "write none, CR-1, ECR (no single sites) or solvation with its beta");
    if (!numbers.contains(first) || !numbers.contains(second)) continue;
    const auto [low, high] = std::minmax(numbers.at(first), numbers.at(second));
    if (!by_key
             .emplace(10000 * low + high,
                      std::array{kij, slope, cross->volume, cross->energy, cross->logarithmic})
             .second)
      table.fail(row, "cas2", "this pair stands in the table already");
  }
  KeyedFile file(kHeaderWidth + static_cast<int>(kPairFields) * (1 + kWidth), kHeaderWidth);
  for (const auto& [key, values] : by_key) file.add(key, record<kPairFields>(key, values));
  records = file.size();
  return file.text(record<kPairFields>(kClosingKey, {}));
}

}  // namespace talix::bank
