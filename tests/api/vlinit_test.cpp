#include "api/vlinit.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "api/small_calls.h"
#include "base/stop_handler.h"
#include "fastprops/flash_record.h"
#include "fastprops/morvei.h"
#include "support/flash_case.h"
#include "support/test_support.h"

namespace talix {
namespace {

// A component file in which every cell of record N holds a value of its own.
void write_numbered_file(const std::filesystem::path& folder, int records, int last_bytes = 1000) {
  std::filesystem::create_directories(folder / "Zandor");
  std::ofstream out(folder / "Zandor" / "purezan.out", std::ios::binary);
  for (int number = 1; number <= records; ++number) {
    std::vector<char> bytes(1000, ' ');
    for (int offset = 200; offset < 1000; offset += 4) {
      const R4 value = static_cast<R4>(number * 1000 + offset);
      std::memcpy(bytes.data() + offset, &value, 4);
    }
    const I4 state = number + 5;
    std::memcpy(bytes.data() + 168, &state, 4);
    const std::string code = "C" + std::to_string(number) + "   ";
    std::memcpy(bytes.data() + 4, code.data(), 4);
    std::memcpy(bytes.data() + 44, "SHORT1  INTERFAC", 16);
    out.write(bytes.data(), number == records ? last_bytes : 1000);
  }
}

class Vlinit : public testing::Test {
 protected:
  void SetUp() override {
    test::fresh_library();
    fl.RGAS = kFlashGasConstant;
    fl.TZERO = kFlashZeroCelsius;
  }
  void TearDown() override { set_stop_handler(nullptr); }

  static I4 load(const std::vector<I4>& numbers) {
    Vec<I4, kMaxComponents> list{};
    for (int i = 1; i <= static_cast<int>(numbers.size()); ++i)
      list(i) = numbers[static_cast<std::size_t>(i - 1)];
    I4 IFAIL = -99;
    VLINIT(static_cast<I4>(numbers.size()), list, IFAIL);
    return IFAIL;
  }
  test::ScratchDirectory scratch;
};

TEST_F(Vlinit, LoadsTheBankAndStartsTheEngine) {
  EXPECT_EQ(load({20, 22, 9}), 0);
  EXPECT_TRUE(static_cast<bool>(fl.ENGREADY));
  EXPECT_GT(fl.MODELID, 0);
  EXPECT_NEAR(fl.TC(1), 190.56F, 0.05F);
  EXPECT_NEAR(fl.PC(2), 42.5F, 0.1F);
  EXPECT_NEAR(fl.AMW(3), 18.015F, 0.01F);
  EXPECT_NEAR(fl.VC(1), 98.6F, 1.0F) << "cm3/mol";
  EXPECT_NEAR(fl.ZC(1), 2.86F, 0.03F) << "ten times the compressibility factor";
}

TEST_F(Vlinit, CellsLandWhereTheyBelong) {
  write_numbered_file(scratch.path(), 4);
  test::install_from(scratch.path().string());
  EXPECT_NE(load({3, 4}), 0) << "there is no engine database beside the file";
  const R4 base = 4000.0F;  // record 4 at position 2
  EXPECT_EQ(fl.MFDS(2).view(), "C4  ");
  EXPECT_EQ(fl.NAME(2).view(), "SHORT1  INTERFAC            ");
  EXPECT_EQ(fl.ISTAT2(2), 9);
  EXPECT_EQ(fl.TC(2), base + 200.0F);
  EXPECT_EQ(fl.PC(2), (base + 204.0F) * 10.0F);
  EXPECT_EQ(fl.VC(2), (base + 208.0F) * 1000.0F);
  EXPECT_EQ(fl.OMEG(2), base + 212.0F);
  EXPECT_EQ(fl.AMW(2), base + 216.0F);
  EXPECT_EQ(fl.COFHT(1, 2), base + 400.0F);
  EXPECT_EQ(fl.COFHT(8, 2), base + 428.0F);
  EXPECT_EQ(fl.PARABF(2, 1), base + 440.0F);
  EXPECT_EQ(fl.PARABF(2, 5), base + 456.0F);
  EXPECT_EQ(fl.PARABF(2, 11), base + 460.0F) << "the middle groups are crossed";
  EXPECT_EQ(fl.PARABF(2, 15), base + 476.0F);
  EXPECT_EQ(fl.PARABF(2, 6), base + 480.0F);
  EXPECT_EQ(fl.PARABF(2, 10), base + 496.0F);
  EXPECT_EQ(fl.CP0(1, 2), base + 692.0F);
  EXPECT_EQ(fl.CP0(5, 2), base + 708.0F);
  EXPECT_EQ(fl.CDEN(1, 2), base + 712.0F);
  EXPECT_EQ(fl.CDEN(4, 2), base + 724.0F);
  EXPECT_EQ(fl.CKLIQ(1, 2), base + 744.0F);
  EXPECT_EQ(fl.CKLIQ(6, 2), base + 764.0F);
  EXPECT_EQ(fl.CGAS(1, 2), base + 772.0F);
  EXPECT_EQ(fl.CGAS(2, 2), base + 776.0F);
  EXPECT_EQ(fl.CVISL(1, 2), base + 784.0F);
  EXPECT_EQ(fl.CVISL(6, 2), base + 804.0F);
  EXPECT_EQ(fl.CGAS(3, 2), base + 812.0F);
  EXPECT_EQ(fl.CGAS(4, 2), base + 816.0F);
  EXPECT_EQ(fl.SUR(1, 2), base + 924.0F);
  EXPECT_EQ(fl.SUR(2, 2), base + 928.0F);
  EXPECT_EQ(fl.TC(1), 3200.0F);
  EXPECT_EQ(fl.ZC(2), fl.PC(2) * fl.VC(2) / (8.31447F * fl.TC(2)));
}

TEST_F(Vlinit, NumberOutOfRangeStartsNoEngine) {
  for (const I4 number : {1, 1247, 0, -1}) {
    test::fresh_library();
    fl.RGAS = kFlashGasConstant;
    EXPECT_EQ(load({20, number, 22}), 2) << number;
    EXPECT_FALSE(static_cast<bool>(fl.ENGREADY));
    EXPECT_EQ(fl.LOAD, load_result::bad_number);
    EXPECT_EQ(fl.LOAD_DETAIL, number);
    EXPECT_NEAR(fl.TC(1), 190.56F, 0.05F) << "the position before keeps what was read";
    EXPECT_EQ(fl.TC(3), 0.0F);
  }
}

TEST_F(Vlinit, MissingFileGivesOne) {
  test::install_from(scratch.path().string());
  EXPECT_EQ(load({20}), 1);
  EXPECT_EQ(fl.LOAD, load_result::no_file);
}

TEST_F(Vlinit, OnlyTheStoredLengthOfTheDirectoryCounts) {
  const std::string install = test::install_directory();
  const std::string longer = install + "   and more";
  const I4 used = static_cast<I4>(install.size());
  SETTALIXINSTALL(longer.c_str(), static_cast<I4>(longer.size()), &used);
  EXPECT_EQ(load({20}), 0);
}

TEST_F(Vlinit, JoinedNameAbove256CharactersIsNotOpened) {
  std::string deep = test::install_directory();
  while (deep.size() < 240) deep += "/.";
  test::install_from(deep);
  EXPECT_EQ(load({20}), 1);
}

TEST_F(Vlinit, BackSlashesSeparateFolders) {
  std::string spelled = test::install_directory();
  for (char& c : spelled)
    if (c == '/') c = '\\';
  test::install_from(spelled);
  EXPECT_EQ(load({20}), 0);
}

TEST_F(Vlinit, DirectoryWithForeignLettersWorks) {
  const std::filesystem::path folder = scratch.path() / "d\xC3\xA9p\xC3\xB4t \xE6\xB0\x94";
  std::filesystem::create_directories(folder);
  std::filesystem::copy(std::filesystem::path(test::install_directory()) / "Zandor", folder / "Zandor",
                        std::filesystem::copy_options::recursive);
  test::install_from(folder.string());
  EXPECT_EQ(load({20}), 0);
}

TEST_F(Vlinit, RecordThatCannotBeReadIsRefusedByNumber) {
  write_numbered_file(scratch.path(), 4, 600);
  test::install_from(scratch.path().string());
  EXPECT_EQ(load({4}), 1);
  EXPECT_EQ(fl.LOAD, load_result::unreadable);
  EXPECT_EQ(load({30}), 1);
  test::FlashCase c;
  c.numbers = {30};
  c.feed = {1.0F};
  EXPECT_EQ(c.run(), " Component list not loaded, record 30 not readable, no calculation (TALIX)");
}

TEST_F(Vlinit, NumberWithoutAComponentIsRefused) {
  EXPECT_EQ(load({20, 85}), 2);
  EXPECT_EQ(fl.LOAD, load_result::empty_record);
  EXPECT_EQ(fl.LOAD_DETAIL, 85);
  test::FlashCase c;
  c.numbers = {20, 85};
  c.feed = {0.5F, 0.5F};
  EXPECT_EQ(c.run(), " Component list not loaded, no component has the number 85, no calculation (TALIX)");
}

TEST_F(Vlinit, EngineStagesAreTold) {
  const std::filesystem::path folder = scratch.path();
  write_numbered_file(folder, 40);
  test::install_from(folder.string());
  test::FlashCase c;
  c.numbers = {20};
  c.feed = {1.0F};
  EXPECT_EQ(c.run(), " Component list not loaded, engine start failed at stage 3, no calculation (TALIX)");
  EXPECT_EQ(fl.LOAD, load_result::engine);
}

TEST_F(Vlinit, EngineStartWithoutComponentsFailsAtTheFirstStage) {
  I4 IFAIL = -1;
  MORVEI(0, IFAIL);
  EXPECT_EQ(IFAIL, 1);
  EXPECT_FALSE(static_cast<bool>(fl.ENGREADY));
}

TEST_F(Vlinit, ReadyEngineStaysReadyAfterAFailedLoad) {
  ASSERT_EQ(load({20}), 0);
  EXPECT_EQ(load({1}), 2);
  EXPECT_TRUE(static_cast<bool>(fl.ENGREADY));
}

}  // namespace
}  // namespace talix
