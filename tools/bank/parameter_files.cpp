#include "bank/parameter_files.h"

#include <fstream>
#include <functional>

#include "bank/parameter_field.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

namespace fs = std::filesystem;

constexpr double kBarPerMPa = 10.0;

std::string stripped(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string record_text(const PureRecord& record, std::string_view field) {
  const CellField& at = pure_field(field);
  return record.text(at.cell, at.cells);
}

double record_real(const PureRecord& record, std::string_view field) {
  return static_cast<double>(record.real(pure_field(field).cell));
}

void write_text(const fs::path& file, const std::string& content) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  if (!out) throw BankError(file.string() + ": cannot be written; make the folder or free the disk");
}

}  // namespace

std::vector<ParameterComponent> parameter_components(std::span<const PureRecord> records) {
  std::vector<ParameterComponent> result;
  for (const PureRecord& record : records) {
    if (is_unused(record)) continue;
    result.push_back({record.integer(pure_field("IDDB").cell), record_text(record, "ICS").substr(0, 4),
                      stripped(record_text(record, "cas")), stripped(record_text(record, "CIUPAC")),
                      record_real(record, "TC"), kBarPerMPa * record_real(record, "PC"),
                      record_real(record, "OMEGA")});
  }
  return result;
}

std::string KeyedFile::line(const std::string& record) const {
  if (record.size() > static_cast<std::size_t>(columns_))
    throw BankError("a record of " + std::to_string(record.size()) + " columns in a file of " +
                    std::to_string(columns_));
  return padded_text(record, columns_) + "\n";
}

void KeyedFile::add(int key, const std::string& record) {
  if (key <= last_key_)
    throw BankError("the keys of a parameter file do not ascend at " + std::to_string(key));
  last_key_ = key;
  records_.push_back(line(record));
}

std::string KeyedFile::text(const std::string& closing) const {
  constexpr int kFirstRecord = 3;
  const int last = kFirstRecord + static_cast<int>(records_.size());
  std::string result =
      line(integer_text(last, header_width_)) + line(integer_text(kFirstRecord, header_width_));
  for (const std::string& record : records_) result += record;
  return result + line(closing);
}

std::vector<ParameterFile> write_parameter_files(const fs::path& dir, const fs::path& data_dir,
                                                 std::span<const PureRecord> records) {
  const std::vector<ParameterComponent> components = parameter_components(records);
  const auto unifac = [&](const char* table) {
    return [&, table](std::size_t& count) { return unifac_text(data_dir, table, count); };
  };
  struct Row {
    const char* file;
    const char* table;  // without it the file is left out
    std::function<std::string(std::size_t&)> text;
  };
  const Row rows[] = {
      {"sufori.out", "unifac_interactions.csv", unifac("original")},
      {"udo2002.out", "unifac_interactions.csv", unifac("dortmund")},
      {"suflyn.out", "unifac_interactions.csv", unifac("lyngby")},
      {"suflin.out", "unifac_interactions.csv", unifac("linear")},
      {"cpapur.dat", "association_pure.csv",
       [&](std::size_t& count) { return association_pure_text(data_dir, components, count); }},
      {"cpabin.dat", "association_pairs.csv",
       [&](std::size_t& count) { return association_pair_text(data_dir, components, count); }},
      {"sdbp2.dat", "srk_twu.csv",
       [&](std::size_t& count) { return simsci_text(data_dir, components, count); }},
      {"srkap.dat", "srk_polar.csv",
       [&](std::size_t& count) { return aspen_text(data_dir, components, count); }},
  };
  std::vector<ParameterFile> written;
  for (const Row& row : rows) {
    if (!fs::exists(data_dir / row.table)) continue;
    std::size_t count = 0;
    write_text(dir / row.file, row.text(count));
    written.push_back({row.file, count});
  }
  return written;
}

}  // namespace talix::bank
