#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "bank/record.h"
#include "bank/tables.h"

namespace talix::bank {

namespace {

namespace fs = std::filesystem;

// Configuration values that the readers check, and the fixed codes of the directory fields.
constexpr std::array<std::int32_t, 5> kPureConfig{1000, 1500, 25, 25, 200};
constexpr std::array<std::int32_t, 5> kHydrateConfig{200, 1500, 10, 15, 25};
constexpr std::array<std::int32_t, 5> kPairConfig{300, 100, 49, 1, 12};
constexpr std::int32_t kEntryWords = 2;  // of 4 characters: STD, MFD
constexpr std::int32_t kEntriesPerBlock = kDirectoryBytes / (4 * kEntryWords + 4);  // 400
constexpr std::int32_t kKeysPerBlock = kDirectoryBytes / 8;                         // 600
constexpr std::size_t kHeaderWidth = 93;                                            // line 1 of pcdir.asc

std::int32_t blocks(std::size_t entries, std::int32_t per_block) {
  return (static_cast<std::int32_t>(entries) + per_block - 1) / per_block;
}

void write_file(const fs::path& file, std::string_view content) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  out.close();
  if (!out) throw BankError(file.string() + ": cannot be written; make the folder or free the disk");
}

// Bytes of a direct-access file, appended in order and filled up to whole records.
class Image {
 public:
  void integer(std::int32_t value) {
    for (int i = 0; i < 4; ++i) {
      content_ += static_cast<char>(static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> (8 * i)));
    }
  }
  void text(std::string_view value, std::size_t width) {
    content_ += value.substr(0, width);
    content_.append(width - std::min(width, value.size()), ' ');
  }
  template <std::size_t N>
  void bytes(const std::array<std::uint8_t, N>& value) {
    for (const std::uint8_t byte : value) content_ += static_cast<char>(byte);
  }
  // Fills with zeros up to the start of record NUMBER (from 1) of SIZE bytes.
  void seek(std::int32_t number, int size) {
    content_.resize(static_cast<std::size_t>(number - 1) * static_cast<std::size_t>(size), '\0');
  }
  [[nodiscard]] const std::string& content() const { return content_; }

 private:
  std::string content_;
};

// A directory in blocks: the header record, as many records again as there are blocks, then the blocks.
void write_block_directory(const fs::path& file, const std::array<std::int32_t, 5>& config,
                           std::span<const DirectoryEntry> entries) {
  const std::int32_t count = blocks(entries.size(), kEntriesPerBlock);
  Image image;
  for (const std::int32_t value : config) image.integer(value);
  image.integer(static_cast<std::int32_t>(entries.size()));
  image.integer(count);
  image.integer(kEntriesPerBlock);
  image.integer(2);  // code fields
  image.text("STD ", 4);
  image.text("MFD ", 4);
  image.integer(1);  // length of each field in words
  image.integer(1);
  image.integer(kEntryWords);
  image.integer(0);
  image.text(kEdition, 20);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (i % kEntriesPerBlock == 0) {
      image.seek(static_cast<std::int32_t>(i) / kEntriesPerBlock + count + 2, kDirectoryBytes);
    }
    image.text(entries[i].standard, 4);
    image.text(entries[i].code, 4);
    image.integer(0);
  }
  image.seek(2 * count + 2, kDirectoryBytes);
  write_file(file, image.content());
}

std::string fixed_integer(std::int32_t value) {
  const std::string digits = std::to_string(value);
  return std::string(5 - std::min<std::size_t>(5, digits.size()), ' ') + digits;
}

// ---------------------------------------------------------------- reading

// One file in memory, with checked access; every fault names file and byte offset.
class Source {
 public:
  Source(const fs::path& file, int record_bytes) : name_(file.string()), record_bytes_(record_bytes) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw BankError(name_ + ": cannot be opened; run talix-bank build");
    content_.assign(std::istreambuf_iterator<char>(in), {});
    if (content_.empty()) fail(0, "the file is empty");
    if (record_bytes_ > 0 && content_.size() % static_cast<std::size_t>(record_bytes_) != 0) {
      fail(content_.size(), "the file ends inside a record of " + std::to_string(record_bytes_) + " bytes");
    }
  }
  [[noreturn]] void fail(std::size_t offset, const std::string& what) const {
    throw BankError(name_ + ", byte offset " + std::to_string(offset) + ": " + what +
                    "; run talix-bank build");
  }
  [[nodiscard]] std::size_t records() const {
    return content_.size() / static_cast<std::size_t>(record_bytes_);
  }
  [[nodiscard]] std::size_t size() const { return content_.size(); }
  [[nodiscard]] std::int32_t integer(std::size_t offset) const {
    need(offset, 4);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
      value |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(content_[offset + i])) << (8 * i);
    }
    return static_cast<std::int32_t>(value);
  }
  [[nodiscard]] std::string text(std::size_t offset, std::size_t length) const {
    need(offset, length);
    return content_.substr(offset, length);
  }
  template <int N>
  [[nodiscard]] CellRecord<N> record(std::size_t index) const {
    CellRecord<N> result;
    const std::size_t offset = index * static_cast<std::size_t>(N);
    need(offset, static_cast<std::size_t>(N));
    std::copy_n(content_.begin() + static_cast<std::ptrdiff_t>(offset), N, result.bytes.begin());
    return result;
  }
  // An integer that must have one value.
  void expect(std::size_t offset, std::int32_t value, const std::string& what) const {
    if (integer(offset) != value) {
      fail(offset, what + " is " + std::to_string(integer(offset)) + " and must be " + std::to_string(value));
    }
  }
  // An integer that must lie in a range.
  [[nodiscard]] std::size_t count(std::size_t offset, std::int32_t low, std::int32_t high,
                                  const std::string& what) const {
    const std::int32_t value = integer(offset);
    if (value < low || value > high) {
      fail(offset, what + " is " + std::to_string(value) + " and must lie in " + std::to_string(low) +
                       " to " + std::to_string(high));
    }
    return static_cast<std::size_t>(value);
  }

 private:
  void need(std::size_t offset, std::size_t length) const {
    if (offset + length > content_.size()) fail(content_.size(), "the file ends too early");
  }

  std::string name_;
  int record_bytes_;
  std::string content_;
};

std::vector<DirectoryEntry> read_block_directory(const fs::path& file,
                                                 const std::array<std::int32_t, 5>& config) {
  const Source source(file, kDirectoryBytes);
  for (std::size_t i = 0; i < config.size(); ++i) {
    source.expect(4 * i, config[i], "configuration value " + std::to_string(i + 1));
  }
  const std::size_t entries = source.count(20, 1, kMostEntries, "the number of entries");
  source.expect(28, kEntriesPerBlock, "the number of entries per block");
  source.expect(32, 2, "the number of code fields");
  const auto count = static_cast<std::size_t>(blocks(entries, kEntriesPerBlock));
  source.expect(24, static_cast<std::int32_t>(count), "the number of blocks");
  if (source.text(36, 8) != "STD MFD ") source.fail(36, "the code fields are not STD and MFD");
  source.expect(44, 1, "the length of the field STD");
  source.expect(48, 1, "the length of the field MFD");
  std::vector<DirectoryEntry> result;
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t block = i / kEntriesPerBlock + count + 1;
    const std::size_t offset = block * kDirectoryBytes + (i % kEntriesPerBlock) * 12;
    result.push_back({source.text(offset, 4), source.text(offset + 4, 4)});
  }
  return result;
}

std::vector<DirectoryEntry> read_text_directory(const fs::path& file) {
  const Source source(file, 0);
  const std::string content = source.text(0, source.size());
  const std::size_t header = content.find('\n');
  if (header != kHeaderWidth)
    source.fail(0, "line 1 is not " + std::to_string(kHeaderWidth) + " characters long");
  const std::size_t body = content.size() - header - 1;
  if (body % 9 != 0) source.fail(content.size(), "the file ends inside a line of 8 characters");
  std::vector<DirectoryEntry> result;
  for (std::size_t at = header + 1; at < content.size(); at += 9) {
    if (content[at + 8] != '\n') source.fail(at + 8, "the line is not 8 characters long");
    result.push_back({content.substr(at, 4), content.substr(at + 4, 4)});
  }
  const std::string digits = content.substr(25, 5);
  if (digits != fixed_integer(static_cast<std::int32_t>(result.size()))) {
    source.fail(25, "line 1 promises " + digits + " entries, the file has " + std::to_string(result.size()));
  }
  return result;
}

// Of two directories with different entries the library would take one and a user look into the other.
void compare_old_directory(const fs::path& file, const std::vector<DirectoryEntry>& entries) {
  if (!fs::exists(file)) return;
  const std::vector<DirectoryEntry> old = read_block_directory(file, kPureConfig);
  const auto same = [](const DirectoryEntry& a, const DirectoryEntry& b) {
    return a.standard == b.standard && a.code == b.code;
  };
  if (!std::ranges::equal(old, entries, same)) {
    throw BankError(file.string() + ": its entries are not those of pcdir.asc; run talix-bank build");
  }
}

std::vector<PairRecord> read_pairs(const fs::path& dir) {
  const Source keys(dir / "bzandir.out", kDirectoryBytes);
  for (std::size_t i = 0; i < kPairConfig.size(); ++i) {
    keys.expect(20 + 4 * i, kPairConfig[i], "configuration value " + std::to_string(i + 1));
  }
  const std::size_t entries = keys.count(44, 1, kMostPairs, "the number of keys");
  keys.expect(48, blocks(entries, kKeysPerBlock), "the number of blocks");
  keys.expect(52, kKeysPerBlock, "the number of entries per block");

  const Source data(dir / "binzan.out", kPairBytes);
  if (data.records() != entries) {
    data.fail(data.size(), "the file has " + std::to_string(data.records()) + " records, its directory " +
                               std::to_string(entries));
  }
  std::vector<PairRecord> result;
  std::int32_t last = 0;
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t offset = (i / kKeysPerBlock + 1) * kDirectoryBytes + (i % kKeysPerBlock) * 8;
    const std::int32_t key = keys.integer(offset);
    if (key <= last) {
      keys.fail(offset, "key " + std::to_string(key) + " does not rise above " + std::to_string(last));
    }
    last = key;
    data.expect(i * kPairBytes, key, "the key");
    result.push_back(data.record<kPairBytes>(i));
  }
  return result;
}

}  // namespace

void write_pure_file(const fs::path& dir, std::span<const PureRecord> records) {
  Image image;
  for (const PureRecord& record : records) image.bytes(record.bytes);
  write_file(dir / "purezan.out", image.content());
}

void write_directory(const fs::path& dir, std::span<const DirectoryEntry> entries) {
  Image image;
  std::string header;
  for (const std::int32_t value : kPureConfig) header += fixed_integer(value);
  header += fixed_integer(static_cast<std::int32_t>(entries.size()));
  header += fixed_integer(blocks(entries.size(), kEntriesPerBlock));
  header += fixed_integer(kEntriesPerBlock) + fixed_integer(2) + "STD MFD ";
  header += fixed_integer(1) + fixed_integer(1) + fixed_integer(kEntryWords) + fixed_integer(0);
  header += kEdition;
  header.resize(kHeaderWidth, ' ');
  image.text(header + "\n", header.size() + 1);
  for (const DirectoryEntry& entry : entries) {
    image.text(entry.standard, 4);
    image.text(entry.code, 4);
    image.text("\n", 1);
  }
  write_file(dir / "pcdir.asc", image.content());
}

void write_old_directory(const fs::path& dir, std::span<const DirectoryEntry> entries) {
  write_block_directory(dir / "pzandir.out", kPureConfig, entries);
}

void write_pair_files(const fs::path& dir, std::span<const PairRecord> records) {
  const std::int32_t count = blocks(records.size(), kKeysPerBlock);
  Image keys;
  keys.text(kEdition, 20);
  for (const std::int32_t value : kPairConfig) keys.integer(value);
  keys.integer(0);
  keys.integer(static_cast<std::int32_t>(records.size()));
  keys.integer(count);
  keys.integer(kKeysPerBlock);
  keys.seek(2, kDirectoryBytes);
  for (const PairRecord& record : records) {
    keys.integer(record.integer(1));
    keys.integer(0);
  }
  keys.seek(count + 2, kDirectoryBytes);
  write_file(dir / "bzandir.out", keys.content());

  Image data;
  for (const PairRecord& record : records) data.bytes(record.bytes);
  write_file(dir / "binzan.out", data.content());
}

void write_hydrate_files(const fs::path& dir, std::span<const HydrateRecord> records,
                         std::span<const DirectoryEntry> entries) {
  write_block_directory(dir / "phyddir.out", kHydrateConfig, entries);
  Image image;
  for (const HydrateRecord& record : records) image.bytes(record.bytes);
  write_file(dir / "purehyd.out", image.content());
}

void write_bank(const fs::path& dir, const Bank& bank) {
  std::error_code failed;
  fs::create_directories(dir, failed);
  if (failed) throw BankError(dir.string() + ": the folder cannot be made: " + failed.message());
  write_pure_file(dir, bank.pure);
  write_directory(dir, bank.directory);
  write_old_directory(dir, bank.directory);
  write_pair_files(dir, bank.pairs);
  write_hydrate_files(dir, bank.hydrate, bank.hydrate_directory);
}

Bank read_bank(const fs::path& dir) {
  Bank bank;
  const Source pure(dir / "purezan.out", kPureBytes);
  for (std::size_t i = 0; i < pure.records(); ++i) bank.pure.push_back(pure.record<kPureBytes>(i));
  bank.directory = read_text_directory(dir / "pcdir.asc");
  if (bank.directory.size() != bank.pure.size()) {
    pure.fail(pure.size(), "the file has " + std::to_string(bank.pure.size()) + " records, its directory " +
                               std::to_string(bank.directory.size()));
  }
  compare_old_directory(dir / "pzandir.out", bank.directory);
  bank.pairs = read_pairs(dir);
  bank.hydrate_directory = read_block_directory(dir / "phyddir.out", kHydrateConfig);
  const Source hydrate(dir / "purehyd.out", kHydrateBytes);
  if (hydrate.records() != bank.hydrate_directory.size()) {
    hydrate.fail(hydrate.size(), "the file has " + std::to_string(hydrate.records()) +
                                     " records, its directory " +
                                     std::to_string(bank.hydrate_directory.size()));
  }
  for (std::size_t i = 0; i < hydrate.records(); ++i)
    bank.hydrate.push_back(hydrate.record<kHydrateBytes>(i));
  return bank;
}

}  // namespace talix::bank
