#include "database/sdb_srk.h"

#include "database/component_record.h"
#include "database/keyed_file.h"
#include "database/keyed_fixture.h"
#include "database/srk_variant_record.h"

namespace talix::test {
namespace {

std::string simsci(int number, int form, double c1, double c2, double c3) {
  return in_columns(" %4d%-28s%2d      %6.4f      %6.4f      %6.4f", number, "some name", form, c1, c2, c3);
}

std::string aspen(int number, double tc, double pc, double omega, int form, double p1) {
  return in_columns(" %4d   %6.2f   %6.2f   %6.4f %2d      %7.4f      %7.4f      %7.4f", number, tc, pc,
                    omega, form, p1, 0.5, -0.25);
}

class SrkDatabase : public DatabaseTest {
 protected:
  void write_simsci(const std::vector<std::string>& records, int last = -1) {
    write_bytes(folder / "sdbp2.dat", keyed_file(71, 4, records, last));
  }
  void write_aspen(const std::vector<std::string>& records, int last = -1) {
    write_bytes(folder / "srkap.dat", keyed_file(74, 4, records, last));
  }
  static I4 read_simsci(I4 i, I4 number) {
    I4 NFAIL = 0;
    SP2DB0(i, number, NFAIL);
    return NFAIL;
  }
  static I4 read_aspen(I4 i, I4 number) {
    I4 NFAIL = 0;
    SAPDB0(i, number, NFAIL);
    return NFAIL;
  }
};

TEST_F(SrkDatabase, FormsAndCoefficientsAreRead) {
  write_simsci(
      {simsci(9, 6, 0.4163, 0.8796, 2.1254), simsci(20, 1, 0.4951, 0.0, 0.0), simsci(9999, 1, 0, 0, 0)});
  const I4 before = setup.generation;
  ASSERT_EQ(read_simsci(3, 9), status::ok);
  EXPECT_GT(setup.generation, before);
  EXPECT_EQ(srk_variants.P2ALPH(3), 6);
  EXPECT_EQ(srk_variants.CSRKP2(3, 1), 0.4163);
  EXPECT_EQ(srk_variants.CSRKP2(3, 2), 0.8796);
  EXPECT_EQ(srk_variants.CSRKP2(3, 3), 2.1254);
  ASSERT_EQ(read_simsci(50, 20), status::ok);
  EXPECT_EQ(srk_variants.P2ALPH(50), 1);
  EXPECT_EQ(srk_variants.CSRKP2(50, 1), 0.4951);
  EXPECT_EQ(srk_variants.P2ALPH(3), 6);
  EXPECT_EQ(open_units(), 0);
  EXPECT_EQ(ring.count, 0);
}

TEST_F(SrkDatabase, OwnCriticalDataAreRead) {
  write_aspen({aspen(9, 647.1, 220.64, 0.3443, 4, 0.1277), aspen(20, 190.56, 45.99, 0.0114, 2, 0),
               aspen(9999, 1, 1, 0, 2, 0)});
  ASSERT_EQ(read_aspen(2, 9), status::ok);
  EXPECT_EQ(srk_variants.TCASP(2), 647.1);
  EXPECT_EQ(srk_variants.PCASP(2), 220.64);
  EXPECT_EQ(srk_variants.OMASP(2), 0.3443);
  EXPECT_EQ(srk_variants.APALPH(2), 4);
  EXPECT_EQ(srk_variants.CSRKAP(2, 1), 0.1277);
  EXPECT_EQ(srk_variants.CSRKAP(2, 2), 0.5);
  EXPECT_EQ(srk_variants.CSRKAP(2, 3), -0.25);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(SrkDatabase, FieldsWithoutAPointTakeTheDecimalsOfTheLayout) {
  std::string record = simsci(20, 6, 0.5, 0.5, 0.5);
  record.replace(41, 6, " 12345");
  write_simsci({record, simsci(9999, 1, 0, 0, 0)});
  ASSERT_EQ(read_simsci(1, 20), status::ok);
  EXPECT_EQ(srk_variants.CSRKP2(1, 1), 1.2345);
  record = aspen(20, 1, 1, 1, 2, 0);
  record.replace(8, 6, " 19056");
  write_aspen({record, aspen(9999, 1, 1, 0, 2, 0)});
  ASSERT_EQ(read_aspen(1, 20), status::ok);
  EXPECT_EQ(srk_variants.TCASP(1), 190.56);
}

TEST_F(SrkDatabase, TheHighestKeyIsNotReached) {
  // Every record is found but the last one of the range, whatever their number.
  for (int count = 1; count <= 40; ++count) {
    std::vector<std::string> records;
    for (int k = 1; k <= count; ++k) records.push_back(simsci(10 * k, 1, k / 10.0, 0, 0));
    write_simsci(records);
    for (int k = 1; k < count; ++k) {
      ASSERT_EQ(read_simsci(1, 10 * k), status::ok) << k << " of " << count;
      EXPECT_EQ(srk_variants.CSRKP2(1, 1), k / 10.0);
    }
    EXPECT_EQ(read_simsci(1, 10 * count), status::not_available) << count;
    for (int k = 0; k <= count; ++k) EXPECT_EQ(read_simsci(1, 10 * k + 5), status::not_available);
    // With one more record behind it the highest key is found.
    records.push_back(simsci(9999, 1, 0, 0, 0));
    write_simsci(records);
    ASSERT_EQ(read_simsci(1, 10 * count), status::ok);
  }
}

TEST_F(SrkDatabase, SearchGivesTheRecord) {
  write_simsci(
      {simsci(9, 6, 1, 1, 1), simsci(20, 6, 1, 1, 1), simsci(22, 6, 1, 1, 1), simsci(9999, 1, 0, 0, 0)});
  I4 NFAIL = 0;
  I4 unit = 33;
  SFLOP0(unit, (folder / "sdbp2.dat").string(), "DIRECT", "FORMATTED", 72, NFAIL);
  ASSERT_EQ(NFAIL, status::ok);
  L4 found{};
  I4 record = 0;
  SSADB3(unit, 3, 6, 20, found, record);
  EXPECT_TRUE(static_cast<bool>(found));
  EXPECT_EQ(record, 4);
  SSADB3(unit, 3, 6, 9, found, record);
  EXPECT_TRUE(static_cast<bool>(found));
  EXPECT_EQ(record, 3);
  SSADB3(unit, 3, 6, 21, found, record);
  EXPECT_FALSE(static_cast<bool>(found));
  // Ranges without a record, and records that are not there.
  for (const auto& [low, high] : {std::pair{3, 3}, std::pair{6, 3}, std::pair{0, 6}, std::pair{-5, -1},
                                  std::pair{1000, 2000}, std::pair{3, 2147483647}}) {
    SSADB3(unit, low, high, 20, found, record);
    EXPECT_FALSE(static_cast<bool>(found)) << low << " " << high;
  }
  SFLCL0(unit, "KEEP");
}

TEST_F(SrkDatabase, AComponentThatIsNotThereIsEmptied) {
  write_simsci({simsci(9, 6, 1, 1, 1), simsci(9999, 1, 0, 0, 0)});
  write_aspen({aspen(9, 647.1, 220.64, 0.3443, 4, 0.1277), aspen(9999, 1, 1, 0, 2, 0)});
  ASSERT_EQ(read_simsci(1, 9), status::ok);
  ASSERT_EQ(read_aspen(1, 9), status::ok);
  EXPECT_EQ(read_simsci(1, 10), status::not_available);
  EXPECT_EQ(read_aspen(1, -1), status::not_available);
  EXPECT_EQ(srk_variants.P2ALPH(1), 0);
  EXPECT_EQ(srk_variants.CSRKP2(1, 2), 0.0);
  EXPECT_EQ(srk_variants.APALPH(1), 0);
  EXPECT_EQ(srk_variants.TCASP(1), 0.0);
  EXPECT_EQ(srk_variants.CSRKAP(1, 3), 0.0);
}

TEST_F(SrkDatabase, TheLoopStopsAtTheFirstFailure) {
  write_simsci({simsci(9, 6, 1, 1, 1), simsci(20, 6, 1, 1, 1), simsci(9999, 1, 0, 0, 0)});
  write_aspen({aspen(9, 647.1, 220.64, 0.3443, 4, 0.1), aspen(20, 190.56, 45.99, 0.01, 4, 0.1),
               aspen(9999, 1, 1, 0, 2, 0)});
  comp.ICSTD = {{9, 15, 20}};
  srk_variants.P2ALPH(3) = 77;
  srk_variants.APALPH(3) = 77;
  I4 NFAIL = 0;
  SP2DB1(1, 3, comp.ICSTD, logical(true), NFAIL);
  EXPECT_EQ(NFAIL, status::not_available);
  EXPECT_EQ(srk_variants.P2ALPH(1), 6);
  EXPECT_EQ(srk_variants.P2ALPH(2), 0);
  EXPECT_EQ(srk_variants.P2ALPH(3), 77);
  SAPDB1(1, 3, comp.ICSTD, logical(false), NFAIL);
  EXPECT_EQ(NFAIL, status::not_available);
  EXPECT_EQ(srk_variants.APALPH(1), 4);
  EXPECT_EQ(srk_variants.APALPH(3), 77);
  SP2DB1(3, 3, comp.ICSTD, logical(true), NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  SAPDB1(2, 1, comp.ICSTD, logical(true), NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(SrkDatabase, MissingAndBrokenFiles) {
  EXPECT_EQ(read_simsci(1, 9), status::not_available);
  EXPECT_EQ(read_aspen(1, 9), status::not_available);
  EXPECT_FALSE(std::filesystem::exists(folder / "sdbp2.dat"));
  std::filesystem::create_directories(folder / "sdbp2.dat");
  EXPECT_EQ(read_simsci(1, 9), status::not_available);
  std::filesystem::remove(folder / "sdbp2.dat");

  const std::string whole =
      keyed_file(71, 4, {simsci(9, 6, 1, 1, 1), simsci(20, 6, 1, 1, 1), simsci(9999, 1, 0, 0, 0)});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    write_bytes(folder / "sdbp2.dat", whole.substr(0, length));
    const I4 found = read_simsci(1, 20);
    // Record 4 holds the component; what stands behind it is not read.
    EXPECT_EQ(found, length >= 4 * 72 - 1 ? status::ok : status::not_available) << length;
    EXPECT_EQ(srk_variants.P2ALPH(1), found == status::ok ? 6 : 0);
  }
  std::string record = simsci(9, 6, 1, 1, 1);
  record.replace(42, 3, "abc");
  write_simsci({record, simsci(9999, 1, 0, 0, 0)});
  EXPECT_EQ(read_simsci(1, 9), status::not_available);
  EXPECT_EQ(srk_variants.P2ALPH(1), 0);
  write_bytes(folder / "sdbp2.dat", std::string(5000, 'x'));
  EXPECT_EQ(read_simsci(1, 9), status::not_available);
  write_simsci({simsci(9, 6, 1, 1, 1)}, 9999);
  EXPECT_EQ(read_simsci(1, 20), status::not_available);
  EXPECT_EQ(open_units(), 0);
}

}  // namespace
}  // namespace talix::test
