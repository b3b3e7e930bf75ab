// Records of the compiled bank and the files they stand in. All cells are 4 bytes, little-endian, whatever
// the machine; texts are blank-padded. Writers take any record, so that tests can make altered or broken
// banks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace talix::bank {

// Sizes that the readers of the library expect.
inline constexpr int kPureBytes = 1000;       // purezan.out, one record
inline constexpr int kPairBytes = 300;        // binzan.out
inline constexpr int kHydrateBytes = 200;     // purehyd.out
inline constexpr int kDirectoryBytes = 4800;  // bzandir.out, pzandir.out, phyddir.out
inline constexpr int kHighestNumber = 1246;   // highest component number that the library lists
inline constexpr int kMostEntries = 1500;     // entries of a directory
inline constexpr int kMostPairs = 7500;       // keys of the pair directory

// Text of 20 characters that stands where a file has its date; fixed, so that equal sources give equal files.
inline constexpr std::string_view kEdition = "Talix bank edition 1";

// A record of N bytes, addressed by cells of 4 bytes counted from 1.
template <int N>
class CellRecord {
 public:
  static constexpr int kCells = N / 4;

  void set_text(int cell, int cells, std::string_view text) {
    for (int i = 0; i < 4 * cells; ++i) {
      at(cell, i) = static_cast<std::uint8_t>(
          i < static_cast<int>(text.size()) ? text[static_cast<std::size_t>(i)] : ' ');
    }
  }
  void set_integer(int cell, std::int32_t value) { set_bits(cell, static_cast<std::uint32_t>(value)); }
  void set_real(int cell, float value);

  [[nodiscard]] std::string text(int cell, int cells) const {
    std::string result;
    for (int i = 0; i < 4 * cells; ++i) result += static_cast<char>(at(cell, i));
    return result;
  }
  [[nodiscard]] std::int32_t integer(int cell) const { return static_cast<std::int32_t>(bits(cell)); }
  [[nodiscard]] float real(int cell) const;

  std::array<std::uint8_t, static_cast<std::size_t>(N)> bytes{};

 private:
  [[nodiscard]] std::uint8_t& at(int cell, int offset) {
    return bytes.at(4 * static_cast<std::size_t>(cell - 1) + static_cast<std::size_t>(offset));
  }
  [[nodiscard]] std::uint8_t at(int cell, int offset) const {
    return bytes.at(4 * static_cast<std::size_t>(cell - 1) + static_cast<std::size_t>(offset));
  }
  void set_bits(int cell, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) at(cell, i) = static_cast<std::uint8_t>(value >> (8 * i));
  }
  [[nodiscard]] std::uint32_t bits(int cell) const {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) value |= static_cast<std::uint32_t>(at(cell, i)) << (8 * i);
    return value;
  }
};

extern template class CellRecord<kPureBytes>;
extern template class CellRecord<kPairBytes>;
extern template class CellRecord<kHydrateBytes>;

using PureRecord = CellRecord<kPureBytes>;
using PairRecord = CellRecord<kPairBytes>;
using HydrateRecord = CellRecord<kHydrateBytes>;

// A pure record of an unused number: blank texts, all numbers 0.
PureRecord blank_pure_record();
// True where the record has neither number nor code.
bool is_unused(const PureRecord& record);

// A pair record with blank text and zeros, under the key 10000 * low + high.
PairRecord blank_pair_record(std::int32_t key);
// Number INDEX (1 to 49) of the reals of a pair record.
void set_pair_real(PairRecord& record, int index, float value);
float pair_real(const PairRecord& record, int index);
// Characters FIRST to LAST (1 to 100) of the text of a pair record.
void set_pair_text(PairRecord& record, int first, int last, std::string_view text);
std::string pair_text(const PairRecord& record, int first, int last);

// What a cell of the pure record holds.
enum class Kind { text, integer, real };

struct CellField {
  int cell;   // first cell
  int cells;  // how many
  Kind kind;
  int flag;  // cell of the flag that says whether the set is there; 0 for none
  std::string_view name;
  std::string_view unit;
  std::string_view meaning;
};

// The cells in use, in the order of the file.
std::span<const CellField> pure_fields();
// The field of that name. Throws std::out_of_range where there is none.
const CellField& pure_field(std::string_view name);

// One entry of a directory: the standard number as four characters, then the component code.
struct DirectoryEntry {
  std::string standard;  // 4 characters
  std::string code;      // 4 characters
};

// The bank in memory: entry K of the directory describes record K; both count from 1, record 1 is the file's
// own.
struct Bank {
  std::vector<PureRecord> pure;
  std::vector<DirectoryEntry> directory;
  std::vector<PairRecord> pairs;  // keys ascending
  std::vector<HydrateRecord> hydrate;
  std::vector<DirectoryEntry> hydrate_directory;
};

// Writers, each to a file of its fixed name in `dir`. They throw BankError where a file cannot be written.
void write_pure_file(const std::filesystem::path& dir, std::span<const PureRecord> records);
void write_directory(const std::filesystem::path& dir, std::span<const DirectoryEntry> entries);
void write_old_directory(const std::filesystem::path& dir, std::span<const DirectoryEntry> entries);
void write_pair_files(const std::filesystem::path& dir, std::span<const PairRecord> records);
void write_hydrate_files(const std::filesystem::path& dir, std::span<const HydrateRecord> records,
                         std::span<const DirectoryEntry> entries);
// All files of a bank. The pure directory stands twice, as text and in the old style in blocks; the library takes the
// text where it finds both.
void write_bank(const std::filesystem::path& dir, const Bank& bank);

// Reads the files back; a directory in the old style may be absent, and must agree where it is there. Throws BankError
// that names file, offset and fault.
Bank read_bank(const std::filesystem::path& dir);

}  // namespace talix::bank
