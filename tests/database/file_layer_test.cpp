#include "database/file_layer.h"

#include "database/database_fixture.h"

namespace talix::test {
namespace {

class FileLayer : public DatabaseTest {
 protected:
  std::string name(std::string_view file) const { return (folder / file).string(); }

  static I4 open(I4 unit, std::string_view file, std::string_view access = "SEQUENTIAL",
                 std::string_view form = "FORMATTED", I4 length = 0) {
    I4 NFAIL = 0;
    SFLOP0(unit, file, access, form, length, NFAIL);
    return NFAIL;
  }
  static void occupy(I4 first, I4 last) {
    for (I4 unit = first; unit <= last; ++unit) {
      if (unit == 5 || unit == 6) continue;
      ASSERT_EQ(open_unit(unit, {"", Opening::scratch, false, false, 0}), io::ok) << unit;
    }
  }
};

TEST_F(FileLayer, FreeUnitSkipsTheStandardUnits) {
  occupy(4, 4);
  I4 unit = 4;
  I4 NFAIL = 0;
  SFLAO1(unit, NFAIL);
  EXPECT_EQ(unit, 7);
  EXPECT_EQ(NFAIL, status::ok);
}

TEST_F(FileLayer, FreeUnitStartsOverForAReservedNumber) {
  for (const I4 start : {5, 6, 0, -3, 100, 4711}) {
    I4 unit = start;
    I4 NFAIL = 0;
    SFLAO1(unit, NFAIL);
    EXPECT_EQ(unit, 1) << start;
    EXPECT_EQ(NFAIL, status::ok);
  }
}

TEST_F(FileLayer, AllUnitsInUseLeaveUnit100) {
  occupy(1, 4);
  occupy(7, 99);
  I4 unit = 1;
  I4 NFAIL = 0;
  SFLAO1(unit, NFAIL);
  EXPECT_EQ(unit, 100);
  EXPECT_EQ(NFAIL, status::failed);
}

TEST_F(FileLayer, Unit99IsHandedOutButRefusedByTheOpen) {
  occupy(1, 4);
  occupy(7, 98);
  I4 unit = 1;
  I4 NFAIL = 0;
  SFLAO1(unit, NFAIL);
  EXPECT_EQ(unit, 99);
  EXPECT_EQ(NFAIL, status::ok);
  EXPECT_EQ(open(99, name("a")), status::failed);
}

TEST_F(FileLayer, OpenRefusesReservedUnits) {
  for (const I4 unit : {0, -1, 5, 6, 99, 100}) EXPECT_EQ(open(unit, name("a")), status::failed) << unit;
  EXPECT_FALSE(std::filesystem::exists(folder / "a"));
}

TEST_F(FileLayer, OpenRefusesAUnitInUse) {
  EXPECT_EQ(open(20, name("a")), status::ok);
  EXPECT_EQ(open(20, name("b")), status::failed);
  EXPECT_FALSE(std::filesystem::exists(folder / "b"));
}

TEST_F(FileLayer, DirectAccessWantsARecordLength) {
  EXPECT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 0), status::failed);
  EXPECT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", -1), status::failed);
  EXPECT_EQ(open(20, "", "DIRECT", "UNFORMATTED", 0), status::failed);
  EXPECT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 1), status::ok);
}

TEST_F(FileLayer, OpenRefusesAnUnknownForm) {
  EXPECT_EQ(open(20, name("a"), "SEQUENTIAL", "formatted"), status::failed);
  EXPECT_EQ(open(20, name("a"), "SEQUENTIAL", ""), status::failed);
  EXPECT_EQ(open(20, name("a"), "SEQUENTIAL", "FORMATTED   "), status::ok);
}

TEST_F(FileLayer, OpenRefusesAnUnknownAccess) {
  EXPECT_EQ(open(20, name("a"), "RANDOM"), status::failed);
  EXPECT_GT(sfl.IOSTAT, 0);
}

TEST_F(FileLayer, AFailedOpenNamesTheFile) {
  const std::string missing = name("no/such/folder/file");
  EXPECT_EQ(open(20, missing), status::failed);
  std::string number = std::to_string(sfl.IOSTAT);
  number.insert(0, 5 - number.size(), ' ');
  EXPECT_EQ(last_entry(), "3 SFLOP0 Error opening file, IOSTAT= " + number + "FILE= " + missing);
}

TEST_F(FileLayer, ALongGivenNameIsShownFromCharacter41) {
  std::string given = "/no-such-folder/0123456789012345678901234567890123456789";
  const std::string shown = given.substr(40);
  given.resize(255, ' ');
  EXPECT_EQ(open(20, given), status::failed);
  EXPECT_EQ(last_entry().substr(42), "FILE= " + shown);

  given.resize(214);
  EXPECT_EQ(open(20, given), status::failed);
  EXPECT_EQ(last_entry().substr(42), "FILE= /no-such-folder/0123456789012345678901234567890123456789");
}

TEST_F(FileLayer, ARefusalReportsTheLastStatus) {
  sfl.IOSTAT = 1234567;
  EXPECT_EQ(open(5, "x"), status::failed);
  EXPECT_EQ(last_entry(), "3 SFLOP0 Error opening file, IOSTAT= *****FILE= x");
  sfl.IOSTAT = 17;
  EXPECT_EQ(open(5, "x"), status::failed);
  EXPECT_EQ(last_entry(), "3 SFLOP0 Error opening file, IOSTAT=    17FILE= x");
}

TEST_F(FileLayer, ReservedUnitsCountAsInUseWithoutASystemCall) {
  for (const I4 unit : {6, 5, 0, -1, 100}) {
    L4 in_use{};
    I4 IOS = 77;
    SFLUQ0(unit, in_use, IOS);
    EXPECT_TRUE(static_cast<bool>(in_use)) << unit;
    EXPECT_EQ(IOS, 77) << unit;
  }
}

TEST_F(FileLayer, AUnitIsInUseWhileItsFileIsOpen) {
  L4 in_use{};
  I4 IOS = 77;
  SFLUQ0(20, in_use, IOS);
  EXPECT_FALSE(static_cast<bool>(in_use));
  EXPECT_EQ(IOS, 0);
  ASSERT_EQ(open(20, name("a")), status::ok);
  SFLUQ0(20, in_use, IOS);
  EXPECT_TRUE(static_cast<bool>(in_use));
  SFLCL0(20, "KEEP");
  SFLUQ0(20, in_use, IOS);
  EXPECT_FALSE(static_cast<bool>(in_use));
}

#if defined(__linux__)
TEST_F(FileLayer, AFaultOfTheHostIsReportedByTheUnitInquiry) {
  ASSERT_EQ(open_unit(20, {"/dev/full", Opening::unknown, false, false, 0}), io::ok);
  EXPECT_GT(write_line(20, "text"), 0);
  L4 in_use{};
  I4 IOS = 0;
  SFLUQ0(20, in_use, IOS);
  EXPECT_TRUE(static_cast<bool>(in_use));
  EXPECT_EQ(IOS, 28);
  EXPECT_EQ(last_entry(), "1 SFLUQ0 Unit inquire failed, IOSTAT =   28");
}

TEST_F(FileLayer, AnInquiryThatFailsIsReported) {
  L4 exists = logical(true);
  SFLIQ0(name(std::string(300, 'x')), exists);
  EXPECT_FALSE(static_cast<bool>(exists));
  EXPECT_EQ(last_entry(), "1 SFLIQ0 File inquire failed, IOSTAT =   36");
}
#endif

TEST_F(FileLayer, InquiryTellsWhetherAFileExists) {
  L4 exists = logical(true);
  SFLIQ0(name("a"), exists);
  EXPECT_FALSE(static_cast<bool>(exists));
  write_bytes(folder / "a", "x");
  SFLIQ0(name("a") + "     ", exists);
  EXPECT_TRUE(static_cast<bool>(exists));
  SFLIQ0("", exists);
  EXPECT_FALSE(static_cast<bool>(exists));
  EXPECT_EQ(ring.count, 0);
}

TEST_F(FileLayer, CloseDeletesOnlyWhenAskedTo) {
  ASSERT_EQ(open(20, name("kept")), status::ok);
  ASSERT_EQ(open(21, name("gone")), status::ok);
  SFLCL0(20, "KEEP");
  SFLCL0(21, "DELETE");
  EXPECT_TRUE(std::filesystem::exists(folder / "kept"));
  EXPECT_FALSE(std::filesystem::exists(folder / "gone"));
  for (const I4 unit : {-1, 0, 6, 20, 99, 100}) SFLCL0(unit, "DELETE");
  EXPECT_TRUE(std::filesystem::exists(folder / "kept"));
}

TEST_F(FileLayer, ABlankNameIsAScratchFile) {
  ASSERT_EQ(open(20, "   "), status::ok);
  EXPECT_EQ(write_line(20, "one"), io::ok);
  SFLCL0(20, "KEEP");
  EXPECT_EQ(open_units(), 0);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(FileLayer, UnknownOpensWhatCannotBeWritten) {
  write_bytes(folder / "a", "first\nsecond\n");
  std::filesystem::permissions(folder / "a", std::filesystem::perms::owner_read);
  EXPECT_EQ(open(20, name("a")), status::ok);
  Line line;
  EXPECT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), "first");
}

TEST_F(FileLayer, OldDoesNotCreate) {
  EXPECT_GT(open_unit(20, {name("a"), Opening::old, false, false, 0}), 0);
  EXPECT_FALSE(std::filesystem::exists(folder / "a"));
  EXPECT_FALSE(unit_is_open(20));
}

TEST_F(FileLayer, AppendFollowsThePlatform) {
  for (const I4 code : {platform::pc_ftn77, platform::hp9000, platform::pc_lahey, platform::vax,
                        platform::indigo, platform::octane, platform::sun, platform::rs6000}) {
    setup.platform = code;
    write_bytes(folder / "log", "old\n");
    ASSERT_EQ(open(20, name("log"), "APPEND"), status::ok) << code;
    EXPECT_TRUE(unit_is_open(20)) << code;
    write_line(20, "new");
    SFLCL0(20, "KEEP");
    EXPECT_EQ(read_bytes(folder / "log"), "old\nnew\n") << code;
  }
  setup.platform = platform::unknown;
  EXPECT_EQ(open(20, name("log"), "APPEND"), status::ok);
  EXPECT_FALSE(unit_is_open(20));
}

TEST_F(FileLayer, WordCountingPlatformsDivideTheRecordLengthByFour) {
  write_bytes(folder / "a", "0123456789ABCDEF");
  char record[8] = {};
  for (const I4 code : {platform::vax, platform::indigo, platform::octane}) {
    setup.platform = code;
    ASSERT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 10), status::ok);
    ASSERT_EQ(read_record(20, 2, record, 8), io::ok);  // two words of four bytes
    EXPECT_EQ(std::string_view(record, 8), "89ABCDEF");
    SFLCL0(20, "KEEP");
    EXPECT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 3), status::failed);
  }
  setup.platform = platform::pc_ftn77;
  ASSERT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 10), status::ok);
  ASSERT_EQ(read_record(20, 2, record, 6), io::ok);
  EXPECT_EQ(std::string_view(record, 6), "ABCDEF");
}

TEST_F(FileLayer, RecordsOutsideTheFileAreNotRead) {
  write_bytes(folder / "a", "0123456789");
  ASSERT_EQ(open(20, name("a"), "DIRECT", "UNFORMATTED", 4), status::ok);
  char record[8] = {};
  EXPECT_EQ(read_record(20, 2, record, 4), io::ok);
  EXPECT_GT(read_record(20, 3, record, 4), 0);  // half a record
  EXPECT_EQ(read_record(20, 3, record, 2), io::ok);
  EXPECT_GT(read_record(20, 4, record, 4), 0);
  EXPECT_GT(read_record(20, 0, record, 4), 0);
  EXPECT_GT(read_record(20, -5, record, 4), 0);
  EXPECT_GT(read_record(20, 2147483647, record, 4), 0);
  EXPECT_GT(read_record(20, 1, record, 5), 0);
  EXPECT_GT(read_record(21, 1, record, 4), 0);
  EXPECT_GT(read_record(100, 1, record, 4), 0);
  EXPECT_EQ(read_record(20, 1, record, 4), io::ok);
  EXPECT_EQ(std::string_view(record, 4), "0123");
}

TEST_F(FileLayer, LinesEndWithTheFile) {
  write_bytes(folder / "a", "one\r\n\n" + std::string(2000, 'x') + "\nlast");
  ASSERT_EQ(open(20, name("a")), status::ok);
  Line line;
  ASSERT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), "one");
  EXPECT_EQ(line.columns(2, 9), "ne");
  EXPECT_EQ(line.columns(4, 9), "");
  ASSERT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), "");
  ASSERT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), std::string(kLineLength, 'x'));
  ASSERT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), "last");
  EXPECT_EQ(read_line(20, line), io::end_of_file);
  EXPECT_EQ(read_line(20, line), io::end_of_file);
}

TEST_F(FileLayer, WritingToAUnitThatIsNotOpenDropsTheLine) {
  EXPECT_GT(write_line(33, "text"), 0);
  EXPECT_GT(write_line(-4, "text"), 0);
  ::testing::internal::CaptureStdout();
  EXPECT_EQ(write_line(6, "to the output"), io::ok);
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), "to the output\n");
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(write_line(0, "to the error output"), io::ok);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "to the error output\n");
}

TEST_F(FileLayer, BackSlashesSeparateFoldersAndNamesMayBeInAnyScript) {
  const std::string chinese = "\xE6\xB0\xB4";
  std::filesystem::create_directories(folder / chinese / "b");
  write_bytes(folder / chinese / "b" / "a.txt", "line\n");
  EXPECT_EQ(open(20, folder.string() + "\\" + chinese + "\\b\\a.txt"), status::ok);
  Line line;
  EXPECT_EQ(read_line(20, line), io::ok);
  EXPECT_EQ(line.view(), "line");
}

TEST_F(FileLayer, NamesThatNoFileCanHaveAreRefused) {
  EXPECT_EQ(open(20, std::string(2000, 'x')), status::failed);
  EXPECT_EQ(open(20, std::string_view("a\0b", 3)), status::failed);
  EXPECT_EQ(open(20, folder.string()), status::failed);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(FileLayer, EveryFileHasOneDate) {
  Text<23> date{};
  SFLDT0(date);
  EXPECT_EQ(date.view(), "     JAN 01 2000  00:01");
}

}  // namespace
}  // namespace talix::test
