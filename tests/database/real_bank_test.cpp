// The compiled bank of the build: every component loads, alone and in long lists.
#include <cmath>
#include <filesystem>

#include "database/database_fixture.h"
#include "database/load_order.h"
#include "database/sdb_pure.h"

namespace talix::test {
namespace {

class RealBank : public DatabaseTest {
 protected:
  RealBank() {
    I4 NFAIL = 0;
    SSYAO2(install_directory() + "\\Zandor\\", NFAIL);
    SDBPC0(NFAIL);
    EXPECT_EQ(NFAIL, status::ok);
    // Numbers without a component have an entry that names none.
    for (I4 entry = 2; entry <= directory.NDIR; ++entry)
      if (!trimmed(directory.CDENT(entry).sub(1, 4)).empty() &&
          !trimmed(directory.CDENT(entry).sub(5, 8)).empty())
        codes.emplace_back(directory.CDENT(entry).sub(5, 8));
  }
  static void expect_sound(I4 i) {
    EXPECT_GT(comp.ICSTD(i), 1);
    EXPECT_GT(comp.TC(i), 1.0);
    EXPECT_LT(comp.TC(i), 4000.0);  // sodium chloride: 3400 K
    EXPECT_GT(comp.PC(i), 0.1);
    EXPECT_LT(comp.PC(i), 4000.0);
    EXPECT_GT(comp.RMOLW(i), 1.0);
    for (const R8 value : {comp.TC(i), comp.PC(i), comp.VC(i), comp.OMEGA(i), comp.RMOLW(i), comp.RHO(i)})
      EXPECT_TRUE(std::isfinite(value));
  }

  std::vector<std::string> codes;
};

TEST_F(RealBank, EveryComponentLoadsAlone) {
  ASSERT_GE(codes.size(), 60U);
  for (const std::string& code : codes) {
    SCOPED_TRACE(code);
    set_components({code});
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << last_entry();
    EXPECT_EQ(comp.ICS(1).view(), code);
    expect_sound(1);
  }
  EXPECT_EQ(open_units(), 0);
}

TEST_F(RealBank, EveryComponentLoadsInListsOfFifty) {
  for (std::size_t first = 0; first < codes.size(); first += 25) {
    setup.NUMH = 0;
    for (std::size_t k = first; k < std::min(first + 50, codes.size()); ++k)
      setup.SHCOMP(++setup.NUMH) = codes[k];
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    ASSERT_EQ(NFAIL, status::ok) << last_entry();
    for (I4 i = 1; i <= setup.NUMH; ++i) {
      for (I4 j = 1; j <= setup.NUMH; ++j) {
        ASSERT_TRUE(std::isfinite(pairs.TETA0(i, j)));
        ASSERT_EQ(pairs.TETA0(i, j), pairs.TETA0(j, i));
        ASSERT_EQ(pairs.TETA0T(i, j), pairs.TETA0T(j, i));
        ASSERT_EQ(pairs.TETA1(i, j), -pairs.TETA1(j, i));
        ASSERT_EQ(pairs.TETA1T(i, j), -pairs.TETA1T(j, i));
      }
    }
  }
}

// Without the text directory the library falls back to the one in the old style, which names the same records.
TEST_F(RealBank, DirectoryInTheOldStyleNamesTheSameRecords) {
  namespace fs = std::filesystem;
  std::vector<std::string> entries;
  for (I4 k = 1; k <= directory.NDIR; ++k) entries.emplace_back(directory.CDENT(k).sub(1, 8));
  ASSERT_TRUE(directory.NEWZANSTYLE);
  const fs::path bank = fs::path(install_directory()) / "Zandor";
  for (const char* const file : {"pzandir.out", "purezan.out"})
    fs::copy_file(bank / file, folder / file, fs::copy_options::overwrite_existing);
  I4 NFAIL = 0;
  SSYAO2(folder.string() + "\\", NFAIL);
  SDBPC0(NFAIL);
  ASSERT_EQ(NFAIL, status::ok) << last_entry();
  EXPECT_FALSE(directory.NEWZANSTYLE);
  ASSERT_EQ(directory.NDIR, static_cast<I4>(entries.size()));
  EXPECT_GT(directory.NDIR, 1200);
  for (I4 k = 1; k <= directory.NDIR; ++k)
    EXPECT_EQ(directory.CDENT(k).sub(1, 8), entries[static_cast<std::size_t>(k) - 1]) << k;
  SSYAO2(install_directory() + "\\Zandor\\", NFAIL);
}

}  // namespace
}  // namespace talix::test
