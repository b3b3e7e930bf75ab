#include "bank/pairs_points.h"

#include <gtest/gtest.h>

namespace talix::bank {
namespace {

const std::map<int, std::string> kCodes{{9, "H2O "}, {20, " 1P "}, {22, " 3P "}};
const std::string kHeader = "number1,number2,code1,code2,kind,type,T_K,P_Pa,x1,y1,doubt,citation\n";
const std::string kPair = "20,22,\" 1P \",\" 3P \",";

auto read(const std::string& rows) {
  return read_pair_points(SourceTable::parse("pair_points.csv", kHeader + rows), kCodes);
}

std::string error_of(const std::string& rows) {
  try {
    (void)read(rows);
  } catch (const BankError& error) {
    return error.what();
  }
  return {};
}

std::string row(const std::string& kind, int T) {
  return kPair + kind + ",bubble," + std::to_string(T) + ",1e6,0.3,,,paper\n";
}

TEST(PairPoints, EveryFourthIsKeptOut) {
  std::string rows;
  for (const int T : {290, 250, 270, 260, 280, 300, 310}) rows += row("measured", T);
  for (const int T : {240, 230, 220}) rows += row("computed", T);
  const auto points = read(rows);
  const std::vector<PairPoint>& list = points.at({20, 22});
  ASSERT_EQ(list.size(), 10U);
  std::vector<double> out;
  for (std::size_t i = 0; i < list.size(); ++i) {
    EXPECT_EQ(list[i].measured, i < 7U);
    if (list[i].kept_out) out.push_back(list[i].T);
  }
  EXPECT_EQ(out, (std::vector<double>{270, 310, 240}));
}

TEST(PairPoints, OrderOfTheRowsDoesNotMatter) {
  const std::string a = row("measured", 250), b = row("measured", 260), c = row("measured", 270);
  const auto one = read(a + b + c), other = read(c + a + b);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(one.at({20, 22})[i].T, other.at({20, 22})[i].T);
    EXPECT_EQ(one.at({20, 22})[i].kept_out, other.at({20, 22})[i].kept_out);
  }
}

TEST(PairPoints, AbsentFractionsStayAbsent) {
  const auto points = read(kPair + "measured,gas,250,1e6,,0.9,suspect,paper\n");
  const PairPoint& p = points.at({20, 22}).front();
  EXPECT_FALSE(p.x.has_value());
  EXPECT_DOUBLE_EQ(p.y.value(), 0.9);
  EXPECT_TRUE(p.doubtful);
}

TEST(PairPoints, FaultsNameLineAndColumn) {
  const std::pair<const char*, std::string> faults[] = {
      {"kind", kPair + "guessed,bubble,250,1e6,0.3,,,paper\n"},
      {"T_K", kPair + "measured,bubble,-5,1e6,0.3,,,paper\n"},
      {"P_Pa", kPair + "measured,bubble,250,,0.3,,,paper\n"},
      {"x1", kPair + "measured,bubble,250,1e6,1.3,,,paper\n"},
      {"x1", kPair + "measured,bubble,250,1e6,,,,paper\n"},
      {"citation", kPair + "measured,bubble,250,1e6,0.3,,,\n"},
      {"code1", "20,22,\" 2P \",\" 3P \",measured,bubble,250,1e6,0.3,,,paper\n"},
      {"number2", "20,23,\" 1P \",\" 4P \",measured,bubble,250,1e6,0.3,,,paper\n"},
      {"number2", "22,20,\" 3P \",\" 1P \",measured,bubble,250,1e6,0.3,,,paper\n"}};
  for (const auto& [column, rows] : faults)
    EXPECT_NE(error_of(rows).find("pair_points.csv, line 2, column " + std::string(column)),
              std::string::npos)
        << rows << error_of(rows);
}

}  // namespace
}  // namespace talix::bank
