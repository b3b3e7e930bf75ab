#include "database/sdb_unifac.h"

#include "database/component_record.h"
#include "database/keyed_fixture.h"
#include "liquid/unifac_record.h"

namespace talix::test {
namespace {

std::string header(int subgroups, int main_groups) {
  return in_columns("%5d%5d     %-12s     %-25s\n", subgroups, main_groups, "a name", "a text");
}

std::string subgroup(int number, const char* name, int main_group, double R, double Q, double mass) {
  return in_columns("%4d  %-8s  %4d%10.4f%10.3f%10.2f\n", number, name, main_group, R, Q, mass);
}

// The figure of pair (i, j) in a set: each of them another one.
double figure(int i, int j, int set) { return set == 3 ? 1e-6 * (100 * i + j) : 100 * i + j + 0.25 * set; }

std::string table(int main_groups) {
  std::string text;
  for (int i = 1; i <= main_groups; ++i) {
    for (int set = 1; set <= 3; ++set) {
      for (int j = 1; j <= main_groups; ++j) {
        text += in_columns(set == 3 ? "%10.3E" : "%10.4f", figure(i, j, set));
        if (j % 8 == 0 || j == main_groups) text += "\n";
      }
    }
  }
  return text;
}

class UnifacDatabase : public DatabaseTest {
 protected:
  static I4 load(I4 code) {
    I4 NFAIL = 0;
    SDBUF0(code, NFAIL);
    return NFAIL;
  }
  void write_small(const char* file, double first_R) {
    write_bytes(folder / file, header(4, 2) + subgroup(1, "CH3", 1, first_R, 0.848, 15.03) +
                                   subgroup(2, "CH2", 1, 0.6744, 0.54, 14.03) + subgroup(3, "", 0, 0, 0, 0) +
                                   subgroup(4, "CH=C(x)8", 2, 0.8886, 0.676, 25.03) + table(2));
  }
  static void groups(I4 i, std::initializer_list<std::pair<I4, R8>> list) {
    comp.NGRP(i) = 0;
    for (const auto& [type, number] : list) {
      const I4 k = ++comp.NGRP(i);
      comp.GRPTYP(i, k) = type;
      comp.GRPNUM(i, k) = number;
    }
  }
};

TEST_F(UnifacDatabase, EachModelHasItsFile) {
  const std::pair<I4, const char*> files[] = {{model::unifac, "sufori.out"},
                                              {model::lyngby_unifac, "suflyn.out"},
                                              {model::unifac_dm, "udo2002.out"},
                                              {model::linear_unifac, "suflin.out"}};
  double R = 1.0;
  for (const auto& [code, file] : files) write_small(file, R += 1.0);
  R = 1.0;
  for (const auto& [code, file] : files) {
    ASSERT_EQ(load(code), status::ok) << file;
    EXPECT_EQ(unifac.RSBGRP(1), static_cast<R4>(R += 1.0)) << file;
  }
  ASSERT_EQ(load(model::liquid_unifac), status::ok);
  EXPECT_EQ(unifac.RSBGRP(1), 4.0F);
  ASSERT_EQ(load(model::free_volume_unifac), status::ok);
  EXPECT_EQ(unifac.RSBGRP(1), 5.0F);
  EXPECT_EQ(open_units(), 0);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(UnifacDatabase, SubgroupsAndSetsAreRead) {
  write_small("sufori.out", 0.9011);
  ASSERT_EQ(load(model::unifac), status::ok);
  EXPECT_EQ(unifac.CSBGRP(1).view(), "CH3     ");
  EXPECT_EQ(unifac.CSBGRP(4).view(), "CH=C(x)8");
  EXPECT_EQ(unifac.IMNGRP(1), 1);
  EXPECT_EQ(unifac.IMNGRP(3), 0);
  EXPECT_EQ(unifac.IMNGRP(4), 2);
  EXPECT_EQ(unifac.RSBGRP(2), 0.6744F);
  EXPECT_EQ(unifac.QSBGRP(2), 0.54F);
  EXPECT_EQ(unifac.MWSGRP(4), 25.03F);
  for (int i = 1; i <= 2; ++i)
    for (int j = 1; j <= 2; ++j)
      for (int set = 1; set <= 3; ++set)
        EXPECT_EQ(unifac.AMNINT(i, j, set), static_cast<R4>(figure(i, j, set))) << i << j << set;
}

TEST_F(UnifacDatabase, LinesHoldEightFields) {
  for (const int count : {1, 7, 8, 9, 16, 17, 76, 77}) {
    write_bytes(folder / "sufori.out", header(0, count) + table(count));
    ASSERT_EQ(load(model::unifac), status::ok) << count;
    for (const int i : {1, count / 2 + 1, count})
      for (int j = 1; j <= count; ++j)
        for (int set = 1; set <= 3; ++set) {
          const double wanted = figure(i, j, set);
          EXPECT_NEAR(unifac.AMNINT(i, j, set), wanted, 2e-4 * std::abs(wanted)) << count << i << j << set;
        }
  }
}

TEST_F(UnifacDatabase, AFieldMayCarryMoreDecimalsThanTheLayout) {
  write_bytes(folder / "sufori.out", header(1, 1) + "   1  CH3          1   0.90115  0.848123   15.0312\n" +
                                         "-1553.9216\n  0.123456\n-8186501-5\n");
  ASSERT_EQ(load(model::unifac), status::ok);
  EXPECT_EQ(unifac.RSBGRP(1), 0.90115F);
  EXPECT_EQ(unifac.QSBGRP(1), 0.848123F);
  EXPECT_EQ(unifac.MWSGRP(1), 15.0312F);
  EXPECT_EQ(unifac.AMNINT(1, 1, 1), -1553.9216F);
  EXPECT_EQ(unifac.AMNINT(1, 1, 2), 0.123456F);
  EXPECT_EQ(unifac.AMNINT(1, 1, 3), -0.008186501F);
}

TEST_F(UnifacDatabase, UnknownModelAndMissingFile) {
  EXPECT_EQ(load(model::vardo1), status::model_error);
  EXPECT_EQ(last_entry(), "3 SDBUF0 Requested UNIFAC model not available");
  for (const I4 code : {model::unifac, model::lyngby_unifac, model::unifac_dm, model::liquid_unifac,
                        model::linear_unifac, model::free_volume_unifac}) {
    reset_error_ring();
    EXPECT_EQ(load(code), status::not_available);
    EXPECT_EQ(ring_texts(), std::vector<std::string>{"Loading UNIFAC data failed"});
    EXPECT_EQ(last_entry(), "3 SDBUF0 Loading UNIFAC data failed");
  }
  for ([[maybe_unused]] const auto& file : std::filesystem::directory_iterator{folder})
    ADD_FAILURE() << "a reader must not create files";
}

TEST_F(UnifacDatabase, TooManySubgroupsEndTheReadingWithTheFileOpen) {
  std::string text = header(162, 1);
  for (int k = 1; k <= 162; ++k) text += subgroup(k, "G", 1, 1, 1, 1);
  write_bytes(folder / "sufori.out", text + table(1));
  EXPECT_EQ(load(model::unifac), status::input);
  EXPECT_EQ(ring.count, 0);
  EXPECT_EQ(open_units(), 1);
  EXPECT_EQ(load(model::unifac), status::input);
  EXPECT_EQ(open_units(), 2);

  text = header(161, 1);
  for (int k = 1; k <= 161; ++k) text += subgroup(k, "G", 1, 0.5 * k, 1, 1);
  write_bytes(folder / "suflyn.out", text + table(1));
  EXPECT_EQ(load(model::lyngby_unifac), status::ok);
  EXPECT_EQ(unifac.RSBGRP(161), 80.5F);
}

TEST_F(UnifacDatabase, ABrokenTableLeavesNoneBehind) {
  write_small("sufori.out", 0.9011);
  const std::string whole = read_bytes(folder / "sufori.out");
  // Without the last line end the table is still whole.
  for (std::size_t length = 0; length + 1 < whole.size(); length += 7) {
    write_bytes(folder / "sufori.out", whole.substr(0, length));
    reset_error_ring();
    EXPECT_EQ(load(model::unifac), status::not_available) << length;
    EXPECT_EQ(last_entry(), "3 SDBUF0 Loading UNIFAC data failed");
    EXPECT_EQ(unifac.RSBGRP(1), 0.0F);
    EXPECT_EQ(unifac.AMNINT(1, 1, 1), 0.0F);
  }
  for (const std::string& text : {header(1, 78), header(-1, 2), "x" + header(4, 2),
                                  header(1, 1) + subgroup(1, "G", 2, 1, 1, 1) + table(1),
                                  header(1, 1) + subgroup(1, "G", -1, 1, 1, 1) + table(1),
                                  header(0, 1) + "   9999.xx\n      0.00\n      0.00\n"}) {
    write_bytes(folder / "sufori.out", text);
    EXPECT_EQ(load(model::unifac), status::not_available) << text;
  }
  EXPECT_EQ(open_units(), 0);
}

TEST_F(UnifacDatabase, GroupsOfTheListAreCounted) {
  write_small("udo2002.out", 0.9011);
  ASSERT_EQ(load(model::unifac_dm), status::ok);
  groups(1, {{1, 2.0}, {2, 4.0}});
  groups(2, {{4, 1.0}, {1, 3.0}, {1, 0.5}});
  groups(3, {});
  groups(4, {{3, 2.0}, {99, 1.0}});
  comp.ICS(3) = "CO2 ";
  I4 NFAIL = 0;
  SUFAO3(2, model::unifac_dm, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_TRUE(static_cast<bool>(unifac.all_grouped));
  EXPECT_EQ(unifac.NSUB, 3);
  EXPECT_EQ(unifac.SUBVEC(1), 1);
  EXPECT_EQ(unifac.SUBVEC(2), 2);
  EXPECT_EQ(unifac.SUBVEC(3), 4);
  EXPECT_EQ(unifac.NMAIN, 2);
  EXPECT_EQ(unifac.MANVEC(1), 1);
  EXPECT_EQ(unifac.MANVEC(2), 2);
  EXPECT_EQ(SUFAO2(1), 1);
  EXPECT_EQ(SUFAO2(2), 2);
  EXPECT_EQ(SUFAO2(3), -1);
  EXPECT_EQ(SUFAO2(0), -1);
  EXPECT_EQ(unifac.SUBGRP(1, 1), 2.0F);
  EXPECT_EQ(unifac.SUBGRP(1, 2), 4.0F);
  EXPECT_EQ(unifac.SUBGRP(1, 3), 0.0F);
  EXPECT_EQ(unifac.SUBGRP(2, 1), 3.5F);
  EXPECT_EQ(unifac.SUBGRP(2, 3), 1.0F);
  EXPECT_NEAR(unifac.RTOT(1), 2 * 0.9011 + 4 * 0.6744, 1e-6);
  EXPECT_NEAR(unifac.QTOT(1), 2 * 0.848 + 4 * 0.54, 1e-6);
  EXPECT_NEAR(unifac.RTOT(2), 0.8886 + 3.5 * 0.9011, 1e-6);

  // A list with a component without groups, and with groups that the table does not have.
  reset_error_ring();
  SUFAO3(4, model::liquid_unifac, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_FALSE(static_cast<bool>(unifac.all_grouped));
  EXPECT_EQ(ring_texts(), std::vector<std::string>{"No UNIFAC groups for component CO2"});
  EXPECT_EQ(ring.SEVER0(1), severity::warning);
  EXPECT_EQ(unifac.NSUB, 5);
  EXPECT_EQ(unifac.NMAIN, 3);
  EXPECT_EQ(unifac.MANVEC(3), 0);
  EXPECT_EQ(SUFAO2(0), 3);
  EXPECT_EQ(unifac.RTOT(3), 0.0);
  EXPECT_EQ(unifac.RTOT(4), 0.0);

  SUFAO3(1, model::unifac_dm, NFAIL);
  EXPECT_EQ(unifac.NSUB, 2);
  EXPECT_EQ(unifac.RTOT(2), 0.0);
  SUFAO3(1, model::vardo1, NFAIL);
  EXPECT_EQ(NFAIL, status::model_error);
  EXPECT_EQ(unifac.NSUB, 0);
  SUFAO3(0, model::unifac, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_TRUE(static_cast<bool>(unifac.all_grouped));
}

}  // namespace
}  // namespace talix::test
