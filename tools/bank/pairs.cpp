#include "bank/pairs.h"

#include <algorithm>
#include <array>

#include "bank/pairs_points.h"

namespace talix::bank {

namespace {

// Characters of the text of a pair record.
constexpr int kStatus = 5;
constexpr int kActivityStatus = 6;
constexpr int kSource = 17;
constexpr int kCodes = 23;
constexpr int kBasis = 33;
constexpr int kLast = 100;
constexpr int kActivitySource = 21;  // the last of the source digits

// Reals of the NRTL set.
constexpr int kAlpha = 10, kAlphaSlope = 11, kLowToHigh = 12, kHighToLow = 15;

int component(const SourceTable& table, std::size_t row, const std::string& side,
              const std::map<int, std::string>& codes) {
  const int number = table.integer(row, "number" + side, 2, kHighestNumber);
  const auto found = codes.find(number);
  if (found == codes.end()) {
    table.fail(row, "number" + side,
               "no component of this number in components.csv; add it or drop the pair");
  }
  if (table.text(row, "code" + side) != found->second) {
    table.fail(row, "code" + side,
               "the code of component " + std::to_string(number) + " is \"" + found->second +
                   "\"; number and code must agree");
  }
  return number;
}

char status(const SourceTable& table, std::size_t row) {
  const std::string& text = table.text(row, "status");
  if (text.size() != 1 || std::string("0135").find(text[0]) == std::string::npos) {
    table.fail(row, "status", "write 0 (estimate), 1 (data), 3 (no interaction) or 5 (needed but absent)");
  }
  return text[0];
}

const std::string& source_digits(const SourceTable& table, std::size_t row) {
  const std::string& text = table.text(row, "source_digits");
  const bool digits = text.size() == 5 && text.find_first_not_of("0123456789") == std::string::npos;
  if (!digits || text[0] == '0') {
    table.fail(row, "source_digits", "write five digits, the first not 0 (0 reads as: parameters missing)");
  }
  return text;
}

}  // namespace

std::int32_t pair_key(int first, int second) {
  return 10000 * std::min(first, second) + std::max(first, second);
}

std::vector<PairRecord> read_pair_records(const SourceTable& table, const std::map<int, std::string>& codes) {
  std::map<std::int32_t, PairRecord> sorted;
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const int first = component(table, row, "1", codes);
    const int second = component(table, row, "2", codes);
    if (first >= second) table.fail(row, "number2", "the second number must be above the first");

    const std::int32_t key = pair_key(first, second);
    PairRecord record = blank_pair_record(key);
    const char state = status(table, row);
    set_pair_text(record, kStatus, kStatus, std::string(1, state));
    set_pair_text(record, kActivityStatus, kActivityStatus, "0");
    set_pair_text(record, kSource, kSource + 4, source_digits(table, row));
    set_pair_text(record, kCodes, kBasis - 2, codes.at(first) + "-" + codes.at(second));
    set_pair_text(record, kBasis, kLast, table.text(row, "basis"));
    if (table.text(row, "basis").empty())
      table.fail(row, "basis", "empty; say where the parameters come from");

    const double parameters[] = {table.required(row, "teta0", {"-", -2.5, 2.5}),
                                 table.required(row, "teta0t_1_K", {"1/K", -0.01, 0.01}),
                                 table.required(row, "teta1", {"-", -2.5, 2.5}),
                                 table.required(row, "teta1t_1_K", {"1/K", -0.01, 0.01})};
    bool zero = true;
    for (int i = 0; i < 4; ++i) {
      set_pair_real(record, i + 1, static_cast<float>(parameters[i]));
      zero = zero && !(parameters[i] != 0);
    }
    if (state == '3' && !zero)
      table.fail(row, "status", "status 3 says no interaction, but a parameter is not 0");
    if (state == '1' && zero)
      table.fail(row, "status", "status 1 says data, but all parameters are 0; write 3");
    if (!sorted.emplace(key, record).second)
      table.fail(row, "number2", "this pair stands in the table already");
  }
  std::vector<PairRecord> records;
  records.reserve(sorted.size());
  for (const auto& entry : sorted) records.push_back(entry.second);
  return records;
}

void add_activity_sets(std::vector<PairRecord>& records, const SourceTable& table,
                       const std::map<int, std::string>& codes) {
  std::map<std::int32_t, PairRecord> sorted;
  for (const PairRecord& record : records) sorted.emplace(record.integer(1), record);
  for (std::size_t row = 0; row < table.rows(); ++row) {
    const PairNumbers numbers = pair_numbers(table, row, codes);
    const std::int32_t key = pair_key(numbers.first, numbers.second);
    auto found = sorted.find(key);
    if (found == sorted.end()) {
      PairRecord record = blank_pair_record(key);
      set_pair_text(record, kStatus, kStatus, "0");
      set_pair_text(record, kActivityStatus, kActivityStatus, "0");
      set_pair_text(record, kSource, kSource + 4, "20000");
      set_pair_text(record, kCodes, kBasis - 2, codes.at(numbers.first) + "-" + codes.at(numbers.second));
      set_pair_text(record, kBasis, kLast, "NRTL: " + table.text(row, "source"));
      found = sorted.emplace(key, record).first;
    }
    PairRecord& record = found->second;
    if (pair_text(record, kActivityStatus, kActivityStatus) != "0")
      table.fail(row, "number2", "this pair stands in the table already");
    set_pair_text(record, kActivityStatus, kActivityStatus, "1");
    set_pair_text(record, kActivitySource, kActivitySource, "7");
    set_pair_real(record, kAlpha, static_cast<float>(table.required(row, "alpha", {"-", -1, 1})));
    set_pair_real(record, kAlphaSlope,
                  static_cast<float>(table.required(row, "alphat_1_K", {"1/K", -0.01, 0.01})));
    constexpr std::array kTerms{"t0_", "t1_", "t2_"};
    constexpr std::array kUnits{"", "_K", "_K2"};
    constexpr std::array kBounds{100.0, 2e4, 1e7};
    for (std::size_t i = 0; i < kTerms.size(); ++i) {
      const auto term = [&](const char* side) {
        const std::string column = std::string(kTerms.at(i)) + side + kUnits.at(i);
        return static_cast<float>(table.required(row, column, {"-", -kBounds.at(i), kBounds.at(i)}));
      };
      set_pair_real(record, kLowToHigh + static_cast<int>(i), term("12"));
      set_pair_real(record, kHighToLow + static_cast<int>(i), term("21"));
    }
  }
  records.clear();
  for (const auto& entry : sorted) records.push_back(entry.second);
}

}  // namespace talix::bank
