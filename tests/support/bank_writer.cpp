#include "support/bank_writer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>

namespace talix::test {

namespace {

template <class T>
void append(std::string& bytes, T value) {
  char raw[sizeof value];
  std::memcpy(raw, &value, sizeof value);
  bytes.append(raw, sizeof value);
}

std::string padded(std::string text, std::size_t length) {
  text.resize(length, ' ');
  return text;
}

// RECORDS, each filled up with zeros to LENGTH bytes.
void write_records(const std::filesystem::path& file, const std::vector<std::string>& records,
                   std::size_t length) {
  std::string all;
  for (std::string record : records) {
    record.resize(length, '\0');
    all += record;
  }
  write_bytes(file, all);
}

}  // namespace

CellRecord& CellRecord::text(int cell, std::string_view text) {
  std::memcpy(bytes_.data() + 4 * (cell - 1), text.data(), text.size());
  return *this;
}
CellRecord& CellRecord::integer(int cell, int value) {
  const std::int32_t stored = value;
  std::memcpy(bytes_.data() + 4 * (cell - 1), &stored, 4);
  return *this;
}
CellRecord& CellRecord::real(int cell, float value) {
  std::memcpy(bytes_.data() + 4 * (cell - 1), &value, 4);
  return *this;
}

CellRecord pure_record(int number, std::string_view code) {
  CellRecord record{250};
  record.text(1, std::string(100, ' '));
  const std::string digits = std::to_string(number);
  record.text(1, std::string(4 - digits.size(), ' ') + digits);
  record.text(2, padded(std::string{code}, 4));
  return record;
}

CellRecord hydrocarbon_record(const Hydrocarbon& h) {
  CellRecord record = pure_record(h.number, h.code);
  record.integer(26, h.carbon).integer(27, h.hydrogen);
  record.real(51, h.tc).real(52, h.pc).real(53, h.vc).real(54, h.omega).real(55, h.molar_mass);
  record.real(56, h.boiling).real(58, h.gravity);
  return record;
}

void write_code_directory(const std::filesystem::path& file, const DirectoryHead& head,
                          const std::vector<std::string>& codes) {
  const int entries = head.entries >= 0 ? head.entries : static_cast<int>(codes.size());
  const int blocks =
      head.blocks >= 0 ? head.blocks : (entries + head.per_block - 1) / std::max(head.per_block, 1);
  const int many = head.many >= 0 ? head.many : static_cast<int>(head.names.size());
  std::string first;
  for (const int size : head.sizes) append<std::int32_t>(first, size);
  for (const int value : {entries, blocks, head.per_block, many}) append<std::int32_t>(first, value);
  for (const std::string& name : head.names) first += name;
  for (const int length : head.lengths) append<std::int32_t>(first, length);
  append<std::int32_t>(first, head.words);
  append<std::int32_t>(first, 0);
  first += head.date;

  std::vector<std::string> records{first};
  for (int k = 0; k < blocks; ++k) records.emplace_back("never read");
  std::string block;
  int in_block = 0;
  for (const std::string& code : codes) {
    block += padded(code, static_cast<std::size_t>(std::max(4 * head.words, 0)));
    append<std::int32_t>(block, -7);
    if (++in_block == head.per_block) {
      records.push_back(block);
      block.clear();
      in_block = 0;
    }
  }
  if (in_block > 0) records.push_back(block);
  write_records(file, records, 4800);
}

void write_text_directory(const std::filesystem::path& file, const std::vector<std::string>& codes,
                          int fields) {
  char head[128];
  std::snprintf(head, sizeof head, "%5d%5d%5d%5d%5d%5d%5d%5d%5dSTD MFD %5d%5d%5d%5dsome date in here   \n",
                1000, 1500, 25, 25, 200, static_cast<int>(codes.size()), 1, 400, fields, 1, 1, 2, 0);
  std::string all = head;
  for (const std::string& code : codes) all += code + "\n";
  write_bytes(file, all);
}

void write_pairs(const std::filesystem::path& folder, std::vector<PairRow> rows,
                 const PairDirectoryHead& head) {
  const auto key = [](const PairRow& row) { return 10000 * row.low + row.high; };
  std::sort(rows.begin(), rows.end(), [&](const PairRow& a, const PairRow& b) { return key(a) < key(b); });

  const int entries = head.entries >= 0 ? head.entries : static_cast<int>(rows.size());
  const int blocks =
      head.blocks >= 0 ? head.blocks : (entries + head.per_block - 1) / std::max(head.per_block, 1);
  std::string first = "2 February 2002     ";
  for (const int size : head.sizes) append<std::int32_t>(first, size);
  for (const int value : {0, entries, blocks, head.per_block}) append<std::int32_t>(first, value);
  std::vector<std::string> directory{first};
  std::vector<std::string> data;
  std::string block;
  int in_block = 0;
  for (const PairRow& row : rows) {
    append<std::int32_t>(block, key(row));
    append<std::int32_t>(block, -7);
    if (++in_block == head.per_block) {
      directory.push_back(block);
      block.clear();
      in_block = 0;
    }
    std::string record;
    append<std::int32_t>(record, key(row));
    std::string text(100, ' ');
    text[4] = row.eos;
    text[5] = row.activity;
    text.replace(16, 5, padded(row.source, 5));
    record += text;
    for (const float value : row.values) append<float>(record, value);
    data.push_back(record);
  }
  if (in_block > 0) directory.push_back(block);
  write_records(folder / "bzandir.out", directory, 4800);
  write_records(folder / "binzan.out", data, 300);
}

void write_hydrates(const std::filesystem::path& folder, const std::vector<HydrateRow>& rows) {
  std::vector<std::string> codes;
  std::vector<std::string> data;
  for (const HydrateRow& row : rows) {
    codes.push_back("   1" + padded(row.code, 4));
    CellRecord record{50};
    record.text(1, padded(row.code, 40));
    for (int i = 0; i < 4; ++i) record.integer(11 + i, row.flags[static_cast<std::size_t>(i)]);
    for (int i = 0; i < static_cast<int>(row.coefficients.size()); ++i)
      record.real(26 + i, row.coefficients[static_cast<std::size_t>(i)]);
    data.push_back(record.bytes());
  }
  write_code_directory(folder / "phyddir.out", {.sizes = kHydrateSizes}, codes);
  write_records(folder / "purehyd.out", data, 200);
}

void write_bytes(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream out{file, std::ios::binary | std::ios::trunc};
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string read_bytes(const std::filesystem::path& file) {
  std::ifstream in{file, std::ios::binary};
  return {std::istreambuf_iterator<char>{in}, {}};
}

std::string directory_code(const CellRecord& record) { return record.bytes().substr(0, 8); }

void Bank::write(const std::filesystem::path& folder) const {
  std::filesystem::create_directories(folder);
  std::vector<std::string> codes;
  std::vector<std::string> data;
  for (const CellRecord& record : pure) {
    codes.push_back(directory_code(record));
    data.push_back(record.bytes());
  }
  if (old_style) {
    write_code_directory(folder / "pzandir.out", {.sizes = kPureSizes}, codes);
  } else {
    write_text_directory(folder / "pcdir.asc", codes);
  }
  write_records(folder / "purezan.out", data, 1000);
  write_pairs(folder, pairs);
  write_hydrates(folder, hydrates);
}

}  // namespace talix::test
