// Writes small databases with the layouts of the real ones, byte by byte and independently of the bank tool.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace talix::test {

// A record of 4-byte cells, counted from 1.
class CellRecord {
 public:
  explicit CellRecord(int cells) : bytes_(static_cast<std::size_t>(4 * cells), '\0') {}
  // TEXT from the first byte of CELL on.
  CellRecord& text(int cell, std::string_view text);
  CellRecord& integer(int cell, int value);
  CellRecord& real(int cell, float value);
  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  std::string& bytes() { return bytes_; }

 private:
  std::string bytes_;
};

// A record of the pure database: blank texts, zeros, standard number and code.
CellRecord pure_record(int number, std::string_view code);

struct Hydrocarbon {
  int number;
  std::string_view code;
  int carbon, hydrogen;
  float tc, pc, vc, omega, molar_mass, boiling, gravity;
};
CellRecord hydrocarbon_record(const Hydrocarbon& h);

// Head and fields of a direct-access code directory. Negative entries are filled in from the codes.
struct DirectoryHead {
  std::array<int, 5> sizes;
  std::vector<std::string> names{"STD ", "MFD "};
  std::vector<int> lengths{1, 1};
  int words = 2;
  int entries = -1;
  int blocks = -1;
  int per_block = 400;
  int many = -1;
  std::string date = "1 January 2001      ";
};
inline constexpr std::array<int, 5> kPureSizes{1000, 1500, 25, 25, 200};
inline constexpr std::array<int, 5> kHydrateSizes{200, 1500, 10, 15, 25};

void write_code_directory(const std::filesystem::path& file, const DirectoryHead& head,
                          const std::vector<std::string>& codes);
// Codes of 8 characters: standard code, then MFD code.
void write_text_directory(const std::filesystem::path& file, const std::vector<std::string>& codes,
                          int fields = 2);

struct PairRow {
  int low = 0, high = 0;
  char eos = '1';
  char activity = '0';
  std::string source = "11   ";
  std::vector<float> values{};
};
struct PairDirectoryHead {
  std::array<int, 5> sizes{300, 100, 49, 1, 12};
  int entries = -1;
  int blocks = -1;
  int per_block = 600;
};
// Both binary files; rows are put in the order of their keys.
void write_pairs(const std::filesystem::path& folder, std::vector<PairRow> rows,
                 const PairDirectoryHead& head = {});

struct HydrateRow {
  std::string code;
  std::array<int, 4> flags;
  std::vector<float> coefficients;
};
void write_hydrates(const std::filesystem::path& folder, const std::vector<HydrateRow>& rows);

void write_bytes(const std::filesystem::path& file, std::string_view bytes);
std::string read_bytes(const std::filesystem::path& file);

// A whole database in one folder.
struct Bank {
  std::vector<CellRecord> pure;
  std::vector<PairRow> pairs;
  std::vector<HydrateRow> hydrates;
  bool old_style = false;  // the direct-access pure directory in place of the text one

  void write(const std::filesystem::path& folder) const;
};

// Code of a pure record as the directory has it: 8 characters.
std::string directory_code(const CellRecord& record);

}  // namespace talix::test
