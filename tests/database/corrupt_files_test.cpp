// Damaged data files: a load ends with a status, and never reads or writes outside its tables.
#include <random>

#include "database/database_fixture.h"
#include "database/load_order.h"

namespace talix::test {
namespace {

class CorruptFiles : public DatabaseTest, public ::testing::WithParamInterface<const char*> {
 protected:
  void write_bank(bool old_style) const {
    Bank bank;
    bank.old_style = old_style;
    bank.pure = {pure_record(1, "----")};
    for (int i = 0; i < 40; ++i) {
      CellRecord record = hydrocarbon_record(
          {20 + i, std::to_string(1000 + i), 6, 14, 507.0F, 3.0F, 0.37F, 0.3F, 86.0F, 342.0F, 0.66F});
      for (int k = 0; k < 8; ++k)
        record.real(207 + 2 * k, static_cast<float>(1 + 13 * k)).real(208 + 2 * k, 1.0F);
      bank.pure.push_back(record);
      bank.hydrates.push_back({std::to_string(1000 + i), {1, 0, 1, 0}, {1.0F, 2.0F}});
      for (int j = i + 1; j < 40; j += 2)
        bank.pairs.push_back(
            {.low = 20 + i, .high = 20 + j, .activity = '1', .source = "11", .values = {0.01F}});
    }
    bank.write(folder);
  }
  static I4 load() {
    set_components({"1000", "1007", "1013", "1020", "1039"});
    I4 NFAIL = 0;
    SHDBS0(NFAIL);
    return NFAIL;
  }
};

// One damage: bytes changed at random, extreme integers put in place, a cut, or noise throughout. Half of the
// changes go to the first bytes, where the sizes stand.
std::string damaged(std::string bytes, std::mt19937& random) {
  const auto below = [&random](std::size_t n) {
    return n == 0 ? std::size_t{0} : std::uniform_int_distribution<std::size_t>{0, n - 1}(random);
  };
  switch (below(5)) {
    case 0:
      bytes.resize(below(bytes.size() + 1));
      break;
    case 1:
      for (char& c : bytes) c = static_cast<char>(below(256));
      break;
    case 2: {
      constexpr std::int32_t kExtremes[] = {0, 1, -1, 2147483647, -2147483647 - 1, 1501, 7501, 65536};
      const std::size_t words = bytes.size() / 4;
      for (int i = 0; i < 3 && words > 0; ++i) {
        const std::size_t at = 4 * below(below(2) == 0 ? std::min<std::size_t>(words, 24) : words);
        const std::int32_t value = kExtremes[below(8)];
        bytes.replace(at, 4, reinterpret_cast<const char*>(&value), 4);
      }
      break;
    }
    default:
      for (int i = 0; i < 8 && !bytes.empty(); ++i)
        bytes[below(below(2) == 0 ? std::min<std::size_t>(bytes.size(), 96) : bytes.size())] =
            static_cast<char>(below(256));
  }
  return bytes;
}

TEST_P(CorruptFiles, EndWithAStatus) {
  const std::string file = GetParam();
  write_bank(file == "pzandir.out");
  ASSERT_EQ(load(), status::ok);
  const std::string sound = read_bytes(folder / file);
  ASSERT_FALSE(sound.empty());
  std::mt19937 random{20260101U};
  int refused = 0;
  for (int i = 0; i < 200; ++i) {
    write_bytes(folder / file, damaged(sound, random));
    const I4 NFAIL = load();
    const bool stated = NFAIL == status::ok || NFAIL == status::failed || NFAIL == status::unknown ||
                        NFAIL == status::severe_warning;
    ASSERT_TRUE(stated) << file << " " << i << " " << NFAIL;
    ASSERT_EQ(open_units(), 0) << file << " " << i;
    ASSERT_GE(directory.NDIR, 0);
    ASSERT_LE(directory.NDIR, kMaxEntries);
    ASSERT_LE(directory.NLBI, kMaxPairKeys);
    for (I4 c = 1; c <= 5; ++c) {
      ASSERT_LE(comp.NGRP(c), 8);
      for (I4 k = 1; k <= comp.NGRP(c); ++k) {
        ASSERT_GE(comp.GRPTYP(c, k), 1);
        ASSERT_LE(comp.GRPTYP(c, k), 160);
      }
    }
    refused += NFAIL != status::ok ? 1 : 0;
  }
  EXPECT_GT(refused, 0) << "no damage was noticed";
  EXPECT_TRUE(stops.empty());

  write_bytes(folder / file, sound);
  EXPECT_EQ(load(), status::ok);
}

INSTANTIATE_TEST_SUITE_P(EachFile, CorruptFiles,
                         ::testing::Values("purezan.out", "pcdir.asc", "pzandir.out", "binzan.out",
                                           "bzandir.out", "purehyd.out", "phyddir.out"),
                         [](const auto& file) {
                           std::string name = file.param;
                           name.erase(name.find('.'), 1);
                           return name;
                         });

}  // namespace
}  // namespace talix::test
