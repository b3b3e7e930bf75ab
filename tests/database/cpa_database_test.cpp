#include "database/sdb_cpa.h"

#include "association/cpa_record.h"
#include "database/keyed_fixture.h"

namespace talix::test {
namespace {

std::string record(int key, const std::vector<double>& values, std::size_t fields) {
  std::string text = in_columns("%8d", key);
  for (std::size_t k = 0; k < fields; ++k) text += in_columns(" %13.6E", k < values.size() ? values[k] : 0.0);
  return text;
}

std::string pure(int number, const std::vector<double>& values) { return record(number, values, 15); }
std::string pair(int low, int high, const std::vector<double>& values) {
  return record(10000 * low + high, values, 5);
}

const std::string kPureEnd = pure(99999999, {});
const std::string kPairEnd = record(99999999, {}, 5);

class CpaDatabase : public DatabaseTest {
 protected:
  CpaDatabase() : before_(std::filesystem::current_path()) { std::filesystem::current_path(scratch.path()); }
  ~CpaDatabase() override { std::filesystem::current_path(before_); }

  void write_pure(const std::vector<std::string>& records) {
    write_bytes(folder / "cpapur.dat", keyed_file(218, 8, records));
  }
  void write_pairs(const std::vector<std::string>& records) {
    write_bytes(folder / "cpabin.dat", keyed_file(78, 8, records));
  }
  static I4 read(I4 i, I4 number) {
    I4 NFAIL = 0;
    SCPDB0(i, number, NFAIL);
    return NFAIL;
  }
  static I4 read_pairs(I4 n) {
    I4 NFAIL = 0;
    SCPDB2(n, NFAIL);
    return NFAIL;
  }
  static void alkane(I4 i, I4 number, std::string_view code, I4 carbons) {
    comp.ICSTD(i) = number;
    comp.ICS(i) = code;
    comp.NOTRY(i) = 0;
    comp.ELEM(i, 1) = carbons;
  }

 private:
  std::filesystem::path before_;
};

TEST_F(CpaDatabase, FieldsGoWhereTheyBelong) {
  write_pure(
      {pure(9, {0.0692, 16655, 0.5, -0.25, 2, 71, 72, 0.12277, 1.4515e-5, 0.7, 0.67359, 0.2, 0.3, 0.4, 0.6}),
       kPureEnd});
  cpa_sets.EOSK.fill(9.0);
  const I4 before = setup.generation;
  ASSERT_EQ(read(4, 9), status::ok);
  EXPECT_GT(setup.generation, before);
  EXPECT_EQ(cpa_sets.ASB(4), 0.0692);
  EXPECT_EQ(cpa_sets.ASA(4), 16655.0);
  EXPECT_EQ(cpa_sets.ASC(4), 0.5);
  EXPECT_EQ(cpa_sets.ASD(4), -0.25);
  EXPECT_EQ(cpa_sets.ASF(4), 2.0);
  EXPECT_EQ(cpa_sets.EOSA(4), 0.12277);
  EXPECT_EQ(cpa_sets.EOSB(4), 1.4515e-5);
  EXPECT_EQ(cpa_sets.EOSK(7, 4), 0.7);
  EXPECT_EQ(cpa_sets.EOSK(1, 4), 0.67359);
  EXPECT_EQ(cpa_sets.EOSK(2, 4), 0.2);
  EXPECT_EQ(cpa_sets.EOSK(3, 4), 0.3);
  EXPECT_EQ(cpa_sets.EOSK(4, 4), 0.4);
  EXPECT_EQ(cpa_sets.EOSK(5, 4), 0.6);
  EXPECT_EQ(cpa_sets.EOSK(6, 4), 0.0);  // not on file
  EXPECT_EQ(cpa_sets.EOSK(1, 5), 9.0);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(CpaDatabase, AComponentThatIsNotOnFileHasNoParameters) {
  write_pure({pure(9, {1, 1}), pure(20, {1, 1}), kPureEnd});
  cpa_sets.ASA(1) = cpa_sets.EOSB(1) = 5.0;
  EXPECT_EQ(read(1, 15), status::ok);
  EXPECT_EQ(cpa_sets.ASA(1), 0.0);
  EXPECT_EQ(cpa_sets.EOSB(1), 0.0);
  EXPECT_EQ(read(1, -1), status::ok);
}

TEST_F(CpaDatabase, TheHighestKeyIsNotReached) {
  write_pure({pure(4, {1}), pure(9, {2}), pure(20, {3})});
  EXPECT_EQ(read(1, 4), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 1.0);
  EXPECT_EQ(read(1, 9), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 2.0);
  EXPECT_EQ(read(1, 20), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 0.0);
  write_pure({pure(4, {1}), pure(9, {2}), pure(20, {3}), kPureEnd});
  EXPECT_EQ(read(1, 20), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 3.0);
}

TEST_F(CpaDatabase, MissingAndBrokenFiles) {
  cpa_sets.ASA(1) = 5.0;
  EXPECT_EQ(read(1, 9), status::not_available);
  EXPECT_EQ(cpa_sets.ASA(1), 0.0);
  EXPECT_EQ(read_pairs(3), status::not_available);
  EXPECT_FALSE(std::filesystem::exists(folder / "cpapur.dat"));
  EXPECT_EQ(ring.count, 0);
  std::string broken = pure(9, {1, 2, 3});
  broken.replace(40, 4, "x.yz");
  write_pure({broken, kPureEnd});
  EXPECT_EQ(read(1, 9), status::not_available);
  EXPECT_EQ(cpa_sets.ASB(1), 0.0);
  const std::string whole = keyed_file(218, 8, {pure(9, {1, 2}), kPureEnd});
  for (const std::size_t length : {0UL, 5UL, 200UL, 219UL, 430UL, 437UL, 600UL, 655UL}) {
    write_bytes(folder / "cpapur.dat", whole.substr(0, length));
    const I4 found = read(1, 9);
    // A file that ends in the heading has no range, one that ends behind it has no such component, and one that ends
    // in the record cannot give it.
    EXPECT_EQ(found, length == 437 ? status::ok : status::not_available) << length;
    EXPECT_EQ(cpa_sets.ASB(1), 0.0) << length;
  }
  write_bytes(folder / "cpapur.dat", whole.substr(0, 656));
  EXPECT_EQ(read(1, 9), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 1.0);
  EXPECT_EQ(open_units(), 0);
}

TEST_F(CpaDatabase, ALocalFileGoesBeforeTheDatabase) {
  write_pure({pure(9, {1, 2, 3, 4, 5, 0, 0, 6, 7, 8, 9, 10, 11, 12, 13}), kPureEnd});
  const std::filesystem::path local = scratch.path() / "cpastr.dat";
  write_bytes(local, " 9  water\n0.5\n 2.5E3 energy\n1D-1\n");
  ASSERT_EQ(read(1, 9), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 0.5);
  EXPECT_EQ(cpa_sets.ASA(1), 2500.0);
  EXPECT_EQ(cpa_sets.ASC(1), 0.1);
  EXPECT_EQ(cpa_sets.ASD(1), 4.0);  // what it does not have stays
  ASSERT_EQ(read(1, 20), status::ok);
  EXPECT_EQ(cpa_sets.ASB(1), 0.0);  // it is for one component alone

  write_bytes(local, "20\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n99\n");
  std::filesystem::remove(folder / "cpapur.dat");
  EXPECT_EQ(read(1, 20), status::not_available);
  EXPECT_EQ(cpa_sets.ASB(1), 1.0);
  EXPECT_EQ(cpa_sets.ASF(1), 5.0);
  EXPECT_EQ(cpa_sets.EOSA(1), 6.0);
  EXPECT_EQ(cpa_sets.EOSB(1), 7.0);
  EXPECT_EQ(cpa_sets.EOSK(7, 1), 8.0);
  EXPECT_EQ(cpa_sets.EOSK(1, 1), 9.0);
  EXPECT_EQ(cpa_sets.EOSK(5, 1), 13.0);
  EXPECT_EQ(cpa_sets.EOSK(6, 1), 0.0);

  for (const char* text : {"", "\n1\n", "x\n1\n", "20.0\n1\n", "20\nx\n5\n"}) {
    write_bytes(local, text);
    read(1, 20);
    EXPECT_EQ(cpa_sets.ASB(1), 0.0) << text;
  }
  EXPECT_EQ(open_units(), 0);
}

TEST_F(CpaDatabase, PairsAreSymmetric) {
  write_pairs({pair(9, 20, {0.1, 0.2, 0.3, 400, 0.5}), pair(20, 328, {0.6}), kPairEnd});
  comp.ICSTD = {{328, 20, 9, -1, 1}};
  pairs.BCPA0.fill(7.0);
  pairs.BCPA0T.fill(7.0);
  pairs.BCPA1.fill(7.0);
  pairs.BCPA1T.fill(7.0);
  pairs.BCP1TT.fill(7.0);
  const I4 before = setup.generation;
  ASSERT_EQ(read_pairs(5), status::ok);
  EXPECT_GT(setup.generation, before);
  for (const auto& [i, j] : {std::pair{2, 3}, std::pair{3, 2}}) {
    EXPECT_EQ(pairs.BCPA0(i, j), 0.1);
    EXPECT_EQ(pairs.BCPA0T(i, j), 0.2);
    EXPECT_EQ(pairs.BCPA1(i, j), 0.3);
    EXPECT_EQ(pairs.BCPA1T(i, j), 400.0);
    EXPECT_EQ(pairs.BCP1TT(i, j), 0.5);
  }
  EXPECT_EQ(pairs.BCPA0(1, 2), 0.6);
  EXPECT_EQ(pairs.BCPA0(2, 1), 0.6);
  // All ten entries of a pair are cleared where the file has none, and those of a component with itself.
  for (const auto* table : {&pairs.BCPA0, &pairs.BCPA0T, &pairs.BCPA1, &pairs.BCPA1T, &pairs.BCP1TT}) {
    EXPECT_EQ((*table)(1, 3), 0.0);
    EXPECT_EQ((*table)(3, 1), 0.0);
    EXPECT_EQ((*table)(4, 5), 0.0);
    EXPECT_EQ((*table)(2, 2), 0.0);
    EXPECT_EQ((*table)(6, 7), 7.0);
  }
  EXPECT_EQ(open_units(), 0);
}

TEST_F(CpaDatabase, WithoutTheFileThePairsAreEmpty) {
  comp.ICSTD = {{9, 22}};
  alkane(2, 22, " 3P ", 3);
  pairs.BCPA0.fill(7.0);
  EXPECT_EQ(read_pairs(2), status::not_available);
  EXPECT_EQ(pairs.BCPA0(1, 2), 0.0);
}

TEST_F(CpaDatabase, WaterWithAnAlkaneIsEstimated) {
  write_pairs({pair(9, 22, {0.25}), kPairEnd});
  comp.ICSTD(1) = 9;
  comp.NOTRY(1) = 1;
  alkane(2, 22, " 3P ", 3);
  alkane(3, 25, " 5P ", 5);
  alkane(4, 50, "30P ", 30);
  alkane(5, 200, " 6N ", 6);
  alkane(6, 0, " 6P ", 6);
  ASSERT_EQ(read_pairs(6), status::ok);
  EXPECT_EQ(pairs.BCPA0(1, 2), 0.25);  // the file goes before
  EXPECT_NEAR(pairs.BCPA0(1, 3), 0.0615, 1e-15);
  EXPECT_EQ(pairs.BCPA0(3, 1), pairs.BCPA0(1, 3));
  EXPECT_NEAR(pairs.BCPA0(1, 4), -0.0685, 1e-15);  // as decane
  EXPECT_EQ(pairs.BCPA0(1, 5), 0.0);
  EXPECT_EQ(pairs.BCPA0(1, 6), 0.0);
  EXPECT_EQ(pairs.BCPA0(2, 3), 0.0);
  I4 NFAIL = 0;
  SCPDB5(3, 1, NFAIL);
  EXPECT_EQ(NFAIL, status::ok);
  SCPDB5(2, 3, NFAIL);
  EXPECT_EQ(NFAIL, status::failed);
  SCPDB5(1, 5, NFAIL);
  EXPECT_EQ(NFAIL, status::failed);
}

}  // namespace
}  // namespace talix::test
