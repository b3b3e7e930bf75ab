#include "database/sdb_hydrate.h"

#include "database/database_fixture.h"
#include "solids/hydrate_record.h"

namespace talix::test {
namespace {

class HydrateDatabase : public DatabaseTest {
 protected:
  static I4 open() {
    I4 NFAIL = 0;
    SDBPC2(NFAIL);
    return NFAIL;
  }
  void write_directory(const DirectoryHead& head) {
    write_code_directory(folder / "phyddir.out", head, {"   1AAAA"});
    write_bytes(folder / "purehyd.out", std::string(200, ' '));
  }
};

TEST_F(HydrateDatabase, DirectoryAndRecordsAreRead) {
  std::vector<float> coefficients;
  for (int k = 1; k <= 19; ++k) coefficients.push_back(0.5F * static_cast<float>(k));
  write_hydrates(folder, {{"C1  ", {1, 0, 0, 1}, {}}, {"CO2 ", {1, 1, 0, 1}, coefficients}});
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NDIRH, 2);
  EXPECT_EQ(directory.CDENTH(2).view(), "   1CO2         ");
  EXPECT_EQ(directory.L1MANH(directory.MMFDH), 5);
  EXPECT_EQ(directory.L2MANH(directory.MMFDH), 8);
  EXPECT_EQ(directory.CMANYH(1).view(), "STD ");
  EXPECT_EQ(directory.MSTDH, 1);
  EXPECT_EQ(setup.date_hydrate.view(), "1 January 2001      ");
  EXPECT_TRUE(unit_is_open(directory.hydrate_unit));

  const I4 before = setup.generation;
  I4 NFAIL = 0;
  SDBPC3(7, 2, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_GT(setup.generation, before);
  EXPECT_TRUE(static_cast<bool>(hydrate.ENTERS(1, 7, 1)));
  EXPECT_TRUE(static_cast<bool>(hydrate.ENTERS(1, 7, 2)));
  EXPECT_FALSE(static_cast<bool>(hydrate.ENTERS(2, 7, 1)));
  EXPECT_TRUE(static_cast<bool>(hydrate.ENTERS(2, 7, 2)));
  for (int k = 1; k <= 19; ++k) EXPECT_EQ(hydrate.COHPC(k, 7), 0.5 * k);
}

TEST_F(HydrateDatabase, OnlyAFlagOfOneCounts) {
  write_hydrates(folder, {{"C1  ", {2, -1, 0, 1}, {}}});
  ASSERT_EQ(open(), status::ok);
  hydrate.ENTERS.fill(logical(true));
  I4 NFAIL = 0;
  SDBPC3(1, 1, NFAIL);
  EXPECT_FALSE(static_cast<bool>(hydrate.ENTERS(1, 1, 1)));
  EXPECT_FALSE(static_cast<bool>(hydrate.ENTERS(1, 1, 2)));
  EXPECT_FALSE(static_cast<bool>(hydrate.ENTERS(2, 1, 1)));
  EXPECT_TRUE(static_cast<bool>(hydrate.ENTERS(2, 1, 2)));
}

TEST_F(HydrateDatabase, ASlotOfZeroOnlyReads) {
  write_hydrates(folder, {{"C1  ", {1, 1, 1, 1}, {3.0F}}});
  ASSERT_EQ(open(), status::ok);
  I4 NFAIL = 0;
  SDBPC3(0, 1, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  SDBPC3(-2, 1, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(hydrate.COHPC(1, 1), 0.0);
}

TEST_F(HydrateDatabase, ARecordThatCannotBeReadIsReported) {
  write_hydrates(folder, {{"C1  ", {1, 1, 1, 1}, {}}});
  ASSERT_EQ(open(), status::ok);
  I4 NFAIL = 0;
  SDBPC3(1, 2, NFAIL);
  EXPECT_EQ(NFAIL, status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Read error in hydrate database, record 2");
}

TEST_F(HydrateDatabase, FailuresAreNamed) {
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Hydrate database directory file not found");
  std::filesystem::create_directories(folder / "phyddir.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Could not open hydrate database directory file");
  std::filesystem::remove(folder / "phyddir.out");

  write_directory({.sizes = kPureSizes});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Configuration error on hydrate database directory file");
  write_directory({.sizes = kHydrateSizes, .names = {"STD ", "ABC "}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 STD or MFD fields not found");
  write_directory({.sizes = kHydrateSizes, .lengths = {1, 2}});
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Incorrect length of component code");

  write_directory({.sizes = kHydrateSizes});
  std::filesystem::remove(folder / "purehyd.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Hydrate database not found");
  std::filesystem::create_directories(folder / "purehyd.out");
  EXPECT_EQ(open(), status::failed);
  EXPECT_EQ(last_entry(), "3 SDPC2 Could not open hydrate database");
  EXPECT_EQ(open_units(), 0);
}

TEST_F(HydrateDatabase, ThereIsNoTextDirectory) {
  write_hydrates(folder, {{"C1  ", {1, 1, 1, 1}, {}}});
  write_text_directory(folder / "pcdir.asc", {});
  ASSERT_EQ(open(), status::ok);
  EXPECT_EQ(directory.NDIRH, 1);
}

}  // namespace
}  // namespace talix::test
