// Small source tables and folders for the tests of the bank tool.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "support/test_support.h"

namespace talix::bank::testing {

// A scratch folder with files written and read as a whole.
class Folder {
 public:
  [[nodiscard]] const std::filesystem::path& path() const { return scratch_.path(); }

  void write(const std::string& file, const std::string& content) const {
    std::ofstream(path() / file, std::ios::binary) << content;
  }
  [[nodiscard]] std::string read(const std::string& file) const {
    std::ifstream in(path() / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

 private:
  test::ScratchDirectory scratch_;
};

// One row of components.csv as a map from column to text; absent columns stay empty.
using Row = std::map<std::string, std::string>;

inline Row propane() {
  return {{"number", "22"},
          {"code", "\" 3P \""},
          {"cas", "74-98-6"},
          {"name", "propane"},
          {"name28", "propane"},
          {"short_name", "Propane"},
          {"isofam", "20"},
          {"C", "3"},
          {"H", "8"},
          {"mw", "44.09562"},
          {"tc_K", "369.89"},
          {"pc_Pa", "4251200"},
          {"omega", "0.1521"},
          {"vc_m3_per_mol", "0.0002"},
          {"tb_K", "231.0362"},
          {"tm_K", "85.5"},
          {"sg_60F", "0.507187"},
          {"unifac_original", "1:2;2:1"}};
}

inline Row water() {
  return {{"number", "9"},      {"code", "\"H2O \""},
          {"cas", "7732-18-5"}, {"name", "water"},
          {"name28", "water"},  {"short_name", "Water"},
          {"isofam", "1"},      {"H", "2"},
          {"O", "1"},           {"mw", "18.01528"},
          {"tc_K", "647.096"},  {"pc_Pa", "22064000"},
          {"omega", "0.3443"},  {"vc_m3_per_mol", "5.5948e-05"},
          {"tb_K", "373.1243"}, {"sg_60F", "1"},
          {"dipole_D", "1.85"}, {"unifac_original", "16:1"}};
}

inline Row methane() {
  return {{"number", "20"},
          {"code", "\" 1P \""},
          {"cas", "74-82-8"},
          {"name", "methane"},
          {"name28", "methane"},
          {"short_name", "Methane"},
          {"isofam", "20"},
          {"C", "1"},
          {"H", "4"},
          {"mw", "16.0425"},
          {"tc_K", "190.564"},
          {"pc_Pa", "4599200"},
          {"omega", "0.01142"},
          {"vc_m3_per_mol", "9.86278e-05"},
          {"tb_K", "111.6672"},
          {"sg_60F", "0.299394"}};
}

// components.csv of the given rows.
inline std::string component_table(const std::vector<Row>& rows) {
  const std::vector<std::string> columns = {"number",
                                            "code",
                                            "cas",
                                            "name",
                                            "name28",
                                            "short_name",
                                            "synonyms",
                                            "formula",
                                            "isofam",
                                            "C",
                                            "H",
                                            "N",
                                            "O",
                                            "S",
                                            "F",
                                            "Cl",
                                            "Br",
                                            "I",
                                            "other_atoms",
                                            "mw",
                                            "tc_K",
                                            "pc_Pa",
                                            "vc_m3_per_mol",
                                            "omega",
                                            "tb_K",
                                            "tm_K",
                                            "dipole_D",
                                            "hf_gas_J_per_mol",
                                            "gf_gas_J_per_mol",
                                            "hcomb_net_J_per_mol",
                                            "hcomb_gross_J_per_mol",
                                            "hfus_J_per_mol",
                                            "hvap_tb_J_per_mol",
                                            "vliq_25C_m3_per_mol",
                                            "sg_60F",
                                            "solubility_param_Pa05",
                                            "parachor",
                                            "unifac_original"};
  const std::string counts = " C H N O S F Cl Br I ";
  std::string text;
  for (const std::string& column : columns) text += (text.empty() ? "" : ",") + column;
  for (const Row& row : rows) {
    text += '\n';
    for (const std::string& column : columns) {
      const auto cell = row.find(column);
      const bool count = counts.find(" " + column + " ") != std::string::npos;
      if (column != columns.front()) text += ',';
      text += cell != row.end() ? cell->second : (count ? "0" : "");
    }
  }
  return text + '\n';
}

inline const std::string kPairHeader =
    "number1,number2,code1,code2,teta0,teta0t_1_K,teta1,teta1t_1_K,status,source_digits,basis\n";

// A folder with propane and water and one pair.
inline void write_small_sources(const Folder& folder) {
  folder.write("components.csv", component_table({water(), propane()}));
  folder.write("pairs.csv", kPairHeader + "9,22,\"H2O \",\" 3P \",0.25,0.0005,-0.1,0,1,31000,test\n");
}

}  // namespace talix::bank::testing
