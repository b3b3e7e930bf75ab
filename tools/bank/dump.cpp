#include "bank/dump.h"

#include <algorithm>
#include <cctype>
#include <iomanip>
#include <iostream>
#include <sstream>

#include "bank/tables.h"

namespace talix::bank {

namespace {

std::string without_blanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::string field_text(const PureRecord& record, std::string_view field) {
  const CellField& at = pure_field(field);
  return without_blanks(record.text(at.cell, at.cells));
}

std::string values(const PureRecord& record, const CellField& field) {
  if (field.kind == Kind::text) return '"' + record.text(field.cell, field.cells) + '"';
  std::ostringstream out;
  out << std::setprecision(8);
  for (int i = 0; i < field.cells; ++i) {
    if (i > 0) out << ' ';
    if (field.kind == Kind::integer) {
      out << record.integer(field.cell + i);
    } else {
      out << record.real(field.cell + i);
    }
  }
  return out.str();
}

// Components whose name holds the text, at most ten.
std::string similar(const Bank& bank, const std::string& wanted) {
  std::string result;
  int count = 0;
  for (const PureRecord& record : bank.pure) {
    if (is_unused(record) || lower(field_text(record, "CIUPAC")).find(lower(wanted)) == std::string::npos)
      continue;
    if (++count > 10) break;
    result += (result.empty() ? "" : ", ") + field_text(record, "CIUPAC");
  }
  return result;
}

void print_pairs(std::ostream& out, const Bank& bank, int number) {
  for (const PairRecord& pair : bank.pairs) {
    const std::int32_t key = pair.integer(1);
    if (key / 10000 != number && key % 10000 != number) continue;
    out << pair_text(pair, 23, 31) << "  status " << pair_text(pair, 5, 5) << std::setprecision(6);
    constexpr const char* kNames[] = {"TETA0", "TETA0T", "TETA1", "TETA1T"};
    for (int i = 0; i < 4; ++i) out << "  " << kNames[i] << ' ' << pair_real(pair, i + 1);
    out << "  " << without_blanks(pair_text(pair, 33, 100)) << '\n';
  }
}

}  // namespace

std::filesystem::path bank_folder(const std::filesystem::path& share) {
  return std::filesystem::exists(share / "purezan.out") ? share : share / "Zandor";
}

std::optional<int> find_component(const Bank& bank, const std::string& wanted) {
  const std::string key = lower(without_blanks(wanted));
  const bool digits =
      !key.empty() && key.find_first_not_of("0123456789") == std::string::npos && key.size() <= 4;
  // A code comes before a name, a number before both.
  constexpr std::string_view kKeys[] = {"ICSTD", "ICS", "CIUPAC", "CMFNAM", "cas"};
  for (const std::string_view field : kKeys) {
    if (field == "ICSTD" && !digits) continue;
    for (std::size_t i = 1; i < bank.pure.size(); ++i) {
      const PureRecord& record = bank.pure[i];
      if (!is_unused(record) && lower(field_text(record, field)) == key) return static_cast<int>(i) + 1;
    }
  }
  return std::nullopt;
}

void print_record(std::ostream& out, const PureRecord& record) {
  for (const CellField& field : pure_fields()) {
    std::ostringstream cells;
    cells << field.cell;
    if (field.cells > 1) cells << '-' << field.cell + field.cells - 1;
    out << std::left << std::setw(8) << cells.str() << std::setw(13) << field.name;
    const bool absent = field.flag != 0 && record.integer(field.flag) == 0;
    out << (absent ? "absent" : values(record, field));
    if (!field.unit.empty() && !absent) out << " [" << field.unit << ']';
    out << "  (" << field.meaning << ")\n";
  }
}

int dump_main(const DumpOptions& options) {
  try {
    const Bank bank = read_bank(bank_folder(options.share));
    const std::optional<int> number = find_component(bank, options.component);
    if (!number) {
      const std::string near = similar(bank, options.component);
      std::cerr << "talix-bank: no component \"" << options.component << "\"";
      std::cerr << (near.empty() ? "; give a number, a code, a name or a CAS number"
                                 : "; did you mean: " + near);
      std::cerr << '\n';
      return 1;
    }
    print_record(std::cout, bank.pure[static_cast<std::size_t>(*number - 1)]);
    if (options.pairs) print_pairs(std::cout, bank, *number);
    return 0;
  } catch (const BankError& error) {
    std::cerr << "talix-bank: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace talix::bank
